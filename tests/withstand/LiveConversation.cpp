#include "withstand/LiveConversation.h"
#include "support/WellFormed.h"
#include "withstand/LiveSessions.h"
#include "withstand/WholeConversation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <regex>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using LiveSessions::recordsEach;
using LiveSessions::stepsEach;

/// "12,345" as a number.
std::int64_t ungrouped(std::string text) {
  std::erase(text, ',');
  return std::stoll(text);
}

/// What the groups of `pattern` match in the first place of `text` where it fits, the whole match
/// first. Fails the test when there is none.
std::vector<std::string> found(const std::string& text, const std::string& pattern) {
  std::smatch match;
  if (!std::regex_search(text, match, std::regex(pattern))) {
    ADD_FAILURE() << "no " << pattern << " in " << text;
    return std::vector<std::string>(9, "0");
  }
  return {match.begin(), match.end()};
}

/// The numbers that the first group of `pattern` matches, one a match.
std::vector<std::int64_t> numbersIn(const std::string& text, const std::string& pattern) {
  const std::regex expression(pattern);
  std::vector<std::int64_t> numbers;
  for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
       ++match) {
    numbers.push_back(ungrouped((*match)[1]));
  }
  return numbers;
}

std::int64_t sumOf(const std::vector<std::int64_t>& numbers) {
  std::int64_t sum = 0;
  for (const std::int64_t number : numbers) sum += number;
  return sum;
}

nlohmann::json everything() {
  return {{"person", "ann"}, {"from", LiveSessions::firstDay}, {"to", LiveSessions::lastDay}};
}

}  // namespace

LiveConversation::LiveConversation(const std::filesystem::path& dataRoot, std::uint64_t seed)
    : program(LARKSPUR_MCP_PROGRAM, {"--data-root", dataRoot.string()}, dataRoot), random(seed) {}

void LiveConversation::ask(const std::function<void()>& meanwhile) {
  interruption = meanwhile;
  static constexpr std::array kinds{&LiveConversation::askPersons,
                                    &LiveConversation::askOverview,
                                    &LiveConversation::askTrend,
                                    &LiveConversation::askDay,
                                    &LiveConversation::askWorkouts,
                                    &LiveConversation::askHeartRate,
                                    &LiveConversation::askComparison,
                                    &LiveConversation::askResource};
  (this->*kinds[static_cast<std::size_t>(asked) % kinds.size()])();
}

void LiveConversation::finish() {
  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
}

std::string LiveConversation::answer(Json request) {
  request["id"] = ++asked;
  program.write(request.dump() + "\n");
  if (interruption) {
    interruption();
    if (!program.hasWritten()) ++unanswered;
  }
  const Json reply = checkedReply(request, program.nextLine() + "\n");
  EXPECT_EQ(messageOf(reply), "") << request;
  return textOf(reply);
}

std::string LiveConversation::answerOf(const std::string& tool, Json arguments) {
  ++ofTools;
  return answer(toolCall(tool, std::move(arguments)));
}

void LiveConversation::sawSessions(std::int64_t number, const std::string& where) {
  EXPECT_GE(number, sessions) << "fewer than before in " << where;
  sessions = std::max(sessions, number);
}

void LiveConversation::askPersons() {
  const std::string text = answerOf("list_persons", Json::object());

  const std::int64_t records = ungrouped(found(text, "person=ann\\): ([0-9,]+) records, ")[1]);
  EXPECT_EQ(records % recordsEach, 0) << text;
  sawSessions(records / recordsEach, text);
}

void LiveConversation::askOverview() {
  checkOverview(answerOf("get_overview", {{"person", "ann"}}));
}

void LiveConversation::askResource() {
  checkOverview(answer({{"jsonrpc", "2.0"},
                        {"method", "resources/read"},
                        {"params", {{"uri", "larkspur://ann/overview"}}}}));
}

void LiveConversation::checkOverview(const std::string& text) {
  const std::int64_t records = ungrouped(found(text, "    Records: ([0-9,]+)\n")[1]);
  const std::string years = found(text, "Records per year:([^\n]*)\n")[1];
  EXPECT_EQ(records % recordsEach, 0) << text;
  EXPECT_EQ(sumOf(numbersIn(years, "[0-9]{4}:([0-9,]+)")), records) << text;
  sawSessions(records / recordsEach, text);
}

void LiveConversation::askTrend() {
  Json arguments = everything();
  arguments["metric"] = "steps";
  const std::string text = answerOf("get_trend", arguments);

  const std::vector<std::int64_t> days =
      numbersIn(text, "\n[0-9]{4}-[0-9]{2}-[0-9]{2}  ([0-9,]+)(?=\n)");
  for (const std::int64_t steps : days) EXPECT_EQ(steps % stepsEach, 0) << text;
  const auto said = found(text, "Days with data: ([0-9]+), mean ([0-9,]+)");
  EXPECT_EQ(std::stoll(said[1]), static_cast<std::int64_t>(days.size()));
  const auto count = static_cast<double>(days.size());
  EXPECT_LE(
      std::abs(static_cast<double>(ungrouped(said[2])) - static_cast<double>(sumOf(days)) / count),
      1)
      << text;
  sawSessions(sumOf(days) / stepsEach, text);
}

void LiveConversation::askDay() {
  const std::string day = LiveSessions::dayOf(static_cast<std::int64_t>(random() % 20));
  const std::string text = answerOf("get_day", {{"person", "ann"}, {"date", day}});

  const auto steps = found(text, "  StepCount: ([0-9,]+) count/min \\(([0-9]+) samples\\)\n");
  const auto pulse = found(text, "  HeartRate: 102.5 count/min \\(([0-9]+) samples\\)\n");
  const auto workouts = numbersIn(text, "\n  Running ([0-9]+) min, 0.25 km(?=\n)");
  const auto number = static_cast<std::int64_t>(workouts.size());
  EXPECT_EQ(ungrouped(steps[1]), stepsEach * number) << text;
  EXPECT_EQ(std::stoll(steps[2]), 2 * number) << text;
  EXPECT_EQ(std::stoll(pulse[1]), LiveSessions::heartRatesEach * number) << text;
  EXPECT_EQ(sumOf(workouts), number) << text;
  EXPECT_GE(number, onDay[day]) << "fewer than before on " << day;
  onDay[day] = number;
}

void LiveConversation::askWorkouts() {
  Json arguments = everything();
  const auto limit = static_cast<std::int64_t>(1 + random() % 20);
  arguments["limit"] = limit;
  arguments["order"] = random() % 2 == 0 ? "asc" : "desc";
  arguments["format"] = "json";
  const Json list = Json::parse(answerOf("get_workouts", arguments));

  const Json& totals = list.at("totals");
  const Json& page = list.at("workouts");
  const std::int64_t count = totals.at("count");
  EXPECT_EQ(totals.at("duration_min"), static_cast<double>(count));
  EXPECT_EQ(totals.at("distance_km"), 0.25 * static_cast<double>(count));
  EXPECT_EQ(totals.at("distance_km_count"), count);
  EXPECT_EQ(totals.at("by_activity").at(0).at("count"), count);
  EXPECT_EQ(list.at("available_activities").at(0).at("count"), count);
  EXPECT_EQ(list.at("pagination").at("total_count"), count);
  EXPECT_EQ(page.size(), static_cast<std::size_t>(std::min(count, limit)));
  for (const Json& workout : page) EXPECT_EQ(workout.at("humidity_status"), "valid") << workout;
  workoutID = page.at(random() % page.size()).at("workout_id");
  sawSessions(count, "get_workouts");
}

void LiveConversation::askHeartRate() {
  const Json pulse = Json::parse(
      answerOf("get_workout_heart_rate", {{"person", "ann"}, {"workout_id", workoutID}}));

  double sum = 0;
  for (const Json& sample : pulse.at("samples")) sum += sample.at("bpm").get<double>();
  EXPECT_EQ(pulse.at("samples").size(), static_cast<std::size_t>(LiveSessions::heartRatesEach));
  EXPECT_EQ(pulse.at("summary").at("count"), LiveSessions::heartRatesEach);
  EXPECT_EQ(pulse.at("pagination").at("total_count"), LiveSessions::heartRatesEach);
  EXPECT_EQ(pulse.at("excluded_candidate_count"), 0);
  EXPECT_EQ(sum / LiveSessions::heartRatesEach, LiveSessions::meanHeartRate);
  EXPECT_NEAR(pulse.at("summary").at("sample_mean_bpm").get<double>(), 102.5, 1e-9);
}

/// The same days twice: whatever is written between the two queries, both must see the same.
void LiveConversation::askComparison() {
  const std::string text = answerOf("compare_periods",
                                    {{"person", "ann"},
                                     {"metric", "steps"},
                                     {"a_from", LiveSessions::firstDay},
                                     {"a_to", LiveSessions::lastDay},
                                     {"b_from", LiveSessions::firstDay},
                                     {"b_to", LiveSessions::lastDay}});

  const std::string range =
      std::string(LiveSessions::firstDay) + " ~ " + LiveSessions::lastDay + ":";
  EXPECT_EQ(found(text, "A  " + range + "([^\n]*)\n")[1],
            found(text, "B  " + range + "([^\n]*)\n")[1]);
  EXPECT_NE(text.find("A - B = 0 (+0.0%)"), std::string::npos) << text;
}
