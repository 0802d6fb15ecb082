#include "withstand/DamagedHousehold.h"
#include "platform/Files.h"
#include "support/Conversation.h"
#include "support/MemorySource.h"
#include "support/WellFormed.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace {

using Json = nlohmann::json;

const std::string workoutDay = "2024-03-16";

std::string stampAt(const std::string& day, const std::string& time) {
  return day + " " + time + " +0000";
}

TestWorkout workoutAt(const std::string& activity, const std::string& day) {
  return {.activity_type = activity,
          .duration_min = 30,
          .source_name = "Ann's Watch",
          .start_date = stampAt(day, "08:00:00"),
          .start_day = day,
          .end_date = stampAt(day, "08:30:00"),
          .distance_km = 5.5,
          .active_energy_kcal = 320,
          .basal_energy_kcal = 40,
          .hr_avg = 140,
          .hr_min = 90,
          .hr_max = 171,
          .elevation_m = 12,
          .avg_mets = 8,
          .indoor = 0,
          .temp_c = 11,
          .humidity_pct = 60};
}

void addDay(std::vector<TestRecord>& records, const std::string& day, int number) {
  const auto add = [&](const char* type, const char* unit, const char* time, double value) {
    records.push_back({.type = type,
                       .source_name = "Ann's Watch",
                       .device = "a watch",
                       .unit = unit,
                       .start_date = stampAt(day, time),
                       .start_day = day,
                       .end_date = stampAt(day, "09:00:00"),
                       .value = std::to_string(value),
                       .value_num = value});
  };
  records.push_back({.type = "SleepAnalysis",
                     .source_name = "Ann's Watch",
                     .start_date = stampAt(day, "00:15:00"),
                     .start_day = day,
                     .end_date = stampAt(day, "07:15:00"),
                     .value = "HKCategoryValueSleepAnalysisAsleepCore"});
  add("StepCount", "count", "08:00:00", 5000 + 100 * (number % 7));
  add("StepCount", "count", "08:20:00", 1500);
  add("RestingHeartRate", "count/min", "08:00:00", 55 + number % 3);
  add("OxygenSaturation", "%", "08:00:00", 0.97);
  for (const char* time : {"08:01:00", "08:06:00", "08:11:00", "08:16:00"}) {
    add("HeartRate", "count/min", time, 120 + number % 5);
  }
}

std::string historyFile() {
  TestDatabase database;
  std::vector<TestRecord> records;
  int number = 0;
  for (const std::string& day : daysFrom("2024-02-26", 20)) addDay(records, day, number++);
  database.addRecords(records);
  database.addWorkouts({workoutAt("Walking", "2024-02-20"),
                        workoutAt("Yoga", "2024-03-10"),
                        workoutAt("Running", workoutDay)});
  database.addHumidity(
      DamagedHousehold::workoutID(),
      R"({"raw_value":55,"raw_unit":"%","encoding":"healthkit_percent","source_bundle_id":"com.apple.Workout"})");
  database.addSources({{.source_name = "Ann's Watch", .n = 180, .last = "2024-03-17"}});
  database.useRollbackJournal().run("PRAGMA page_size=512; VACUUM");
  return fileContents(database.path()).value();
}

const Json& benQuestion() {
  static const Json question =
      numbered({toolCall("get_day", {{"person", "ben"}, {"date", workoutDay}})}).front();
  return question;
}

const std::vector<Question>& questions() {
  static const std::vector<Question> all = questionsAbout("ann", DamagedHousehold::workoutID());
  return all;
}

/// What is answered about Ben, as long as his file is there.
const std::string& benAnswer() {
  static const std::string answer = [] {
    const DamagedHousehold::Replies& replies = DamagedHousehold::wholeReplies();
    std::string text = textOf(replies.at("get_day"));
    const std::string ann = "Ann (person=ann)";
    return text.replace(text.find(ann), ann.size(), "Ben (person=ben)");
  }();
  return answer;
}

}  // namespace

DamagedHousehold::DamagedHousehold() {
  patient = &members.add("ann", "Ann");
  patient->replaceFile(wholeFile());
  members.add("ben", "Ben").replaceFile(wholeFile());
}

void DamagedHousehold::replaceAnn(const std::string& bytes) const {
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    std::filesystem::remove(patient->path() + suffix);
  }
  patient->replaceFile(bytes);
}

const std::string& DamagedHousehold::wholeFile() {
  static const std::string bytes = historyFile();
  return bytes;
}

const DamagedHousehold::Replies& DamagedHousehold::wholeReplies() {
  static const Replies replies = [] {
    const DamagedHousehold household;
    const Conversation conversation(household.members);
    Replies parsed;
    for (const Question& question : questions()) {
      parsed[question.name] = conversation.replies(numbered({question.request})).at(0);
    }
    return parsed;
  }();
  return replies;
}

std::string DamagedHousehold::workoutID() { return identifierOf(workoutAt("Running", workoutDay)); }

DamagedHousehold::Replies DamagedHousehold::asked(int patienceMilliseconds) const {
  return repliesTo(questions(), patienceMilliseconds);
}

DamagedHousehold::Replies DamagedHousehold::askedInShort() const {
  std::map<std::string, std::vector<Question>> forms;
  for (const Question& question : questions()) {
    forms[question.name.substr(0, question.name.find(' '))].push_back(question);
  }
  std::vector<Question> chosen;
  for (const auto& [tool, all] : forms) chosen.push_back(all[conversations % all.size()]);
  return repliesTo(chosen, usualPatienceMilliseconds);
}

DamagedHousehold::Replies DamagedHousehold::repliesTo(const std::vector<Question>& questions,
                                                      int patienceMilliseconds) const {
  const std::size_t beforeBen = conversations++ % questions.size();
  std::vector<Json> requests;
  for (const Question& question : questions) {
    requests.push_back(numbered({question.request}).front());
    if (requests.size() == beforeBen + 1) requests.push_back(benQuestion());
  }
  const std::vector<std::string> lines =
      Conversation(members, SummaryLang::en, testNow, patienceMilliseconds)
          .writes(asLines(requests));

  Replies replies;
  EXPECT_EQ(lines.size(), requests.size());
  auto question = questions.begin();
  for (std::size_t index = 0; index < std::min(lines.size(), requests.size()); ++index) {
    const Json reply = checkedReply(requests[index], lines[index]);
    if (index == beforeBen + 1) {
      EXPECT_EQ(textOf(reply), benAnswer()) << "after " << questions[beforeBen].name;
    } else {
      replies[question++->name] = reply;
    }
  }
  return replies;
}

Json storeError(std::string_view question, const std::string& message) {
  // The heart-rate tool gives every failure of the store the code of a wrong argument.
  const int code = question == "get_workout_heart_rate" ? -32602 : -32603;
  return {{"code", code}, {"message", message}};
}

void expectAnnWithoutData(const DamagedHousehold::Replies& replies) {
  EXPECT_THAT(textOf(replies.at("list_persons")),
              testing::StartsWith("· Ann (person=ann)\n· Ben (person=ben): 180 "));
}

void expectRefused(const DamagedHousehold::Replies& replies, std::string_view message,
                   bool opening) {
  expectAnnWithoutData(replies);
  for (const auto& [name, reply] : replies) {
    if (name == "list_persons") continue;
    const bool heartRate = name == "get_workout_heart_rate";
    const std::string prefix = opening && !heartRate ? "打不开 Ann 的数据:" : "";
    EXPECT_EQ(reply.value("error", Json()), storeError(name, prefix + std::string(message)))
        << name;
  }
}

void expectHonest(const DamagedHousehold::Replies& replies) {
  using testing::AnyOf;
  using testing::StartsWith;
  for (const auto& [name, reply] : replies) {
    if (reply.contains("result")) continue;
    EXPECT_THAT(messageOf(reply),
                AnyOf(StartsWith("prepare 失败:"),
                      StartsWith("SQL 失败:"),
                      StartsWith("读取失败:"),
                      StartsWith("打不开 Ann 的数据:"),
                      StartsWith("读取湿度原值 失败:"),
                      StartsWith("读取训练心率 失败:"),
                      "没有这次训练，请从训练清单获取 workout_id",
                      "训练起止时间无效，无法匹配心率"))
        << name;
    EXPECT_EQ(reply["error"], storeError(name, messageOf(reply))) << name;
  }
}
