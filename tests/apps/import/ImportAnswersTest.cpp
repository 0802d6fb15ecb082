// An export that is written and brought in again: the tools must not tell it from data that came
// without the detour.

#include "examples/Examples.h"
#include "mcp/tools/Tools.h"
#include "platform/Locale.h"
#include "platform/Logger.h"
#include "roster/Roster.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace {

using nlohmann::json;

constexpr double answeredAt = 1795147200;  // 2026-11-20 08:00 in Shanghai

/// The tools on one data root.
class Answers {
public:
  Answers(const std::filesystem::path& dataRoot, SummaryLang lang)
      : lang(lang),
        log(std::nullopt, Logger::Level::error, false, clock),
        roster(dataRoot / "members.json", log, clock) {
    roster.load();
  }

  std::string operator()(const std::string& tool, const json& arguments) {
    return Tools::answer(tool, {arguments, roster, log, lang, clock, DigitGrouping{}});
  }

private:
  SummaryLang lang;
  Clock clock = [] { return answeredAt; };
  Logger log;
  Roster roster;
};

/// The same household twice in one folder: written directly, and exported and imported.
class RoundTrip : public testing::Test {
protected:
  RoundTrip() {
    // The number of records is a wish for Ann's history alone.
    run(LARKSPUR_SAMPLE_PROGRAM,
        withSize({"--out", "direct", "--as-imported", "--records", "15000"}));
    for (const auto& [name, id, home] : {std::tuple("Ann", "ann-01", "Asia/Shanghai"),
                                         std::tuple("Ben", "ben-02", "America/New_York")}) {
      const std::string file = std::string(name) + ".zip";
      std::vector<std::string> exporting = withSize({"--export", file, "--member", name});
      if (id == std::string("ann-01")) exporting.insert(exporting.end(), {"--records", "15000"});
      run(LARKSPUR_SAMPLE_PROGRAM, exporting);
      run(LARKSPUR_IMPORT_PROGRAM,
          {"--data-root", "imported", "--member", name, "--id", id, "--time-zone", home, file});
    }
  }

  static std::vector<std::string> withSize(std::vector<std::string> arguments) {
    for (const char* word : {"--members", "2", "--years", "1", "--seed", "5", "--today"}) {
      arguments.emplace_back(word);
    }
    arguments.emplace_back("2026-11-20");
    return arguments;
  }

  void run(const char* program, const std::vector<std::string>& arguments) const {
    const ChildProcess::Ending ending = ChildProcess(program, arguments, folder.path()).finished();
    ASSERT_EQ(ending.status, 0) << program << ": " << ending.errors;
  }

  ZoneGuard zone{"Asia/Shanghai"};
  TemporaryFolder folder;
};

/// Every question to one person, of every tool; the pages of heart rates are asked for elsewhere.
std::vector<std::pair<std::string, json>> questions(const std::string& person) {
  std::vector<std::pair<std::string, json>> asked{{"get_overview", {{"person", person}}}};
  for (const char* metric : {"steps",
                             "distance",
                             "flights",
                             "active_energy",
                             "resting_heart_rate",
                             "heart_rate",
                             "hrv",
                             "respiratory_rate",
                             "oxygen_saturation",
                             "vo2max",
                             "weight",
                             "bmi",
                             "body_fat",
                             "exercise_minutes",
                             "stand_minutes",
                             "sleep"}) {
    json arguments{{"person", person}, {"metric", metric}};
    arguments["from"] = "2025-11-01";
    asked.emplace_back("get_trend", arguments);
  }
  for (int day = 1; day <= 20; ++day) {
    const std::string date = "2026-11-" + std::string(day < 10 ? "0" : "") + std::to_string(day);
    asked.emplace_back("get_day", json{{"person", person}, {"date", date}});
  }
  asked.emplace_back("compare_periods",
                     json{{"person", person},
                          {"metric", "steps"},
                          {"a_from", "2026-10-01"},
                          {"a_to", "2026-10-31"},
                          {"b_from", "2026-09-01"},
                          {"b_to", "2026-09-30"}});
  for (const char* format : {"text", "json"}) {
    asked.emplace_back("get_workouts",
                       json{{"person", person}, {"from", "2025-11-01"}, {"format", format}});
  }
  std::set<std::string> tools{"list_persons", "get_workout_heart_rate"};
  for (const auto& [tool, arguments] : asked) tools.insert(tool);
  for (const Example& example : Examples::ofToolsBut(tools)) {
    asked.emplace_back(example.tool,
                       example.argumentsWith({{"person", person},
                                              {"from", "2025-11-01"},
                                              {"to", "2026-11-20"},
                                              {"date", "2026-11-10"}}));
  }
  return asked;
}

TEST_F(RoundTrip, AnswersEveryToolAsTheDataThatWasWrittenDirectly) {
  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    Answers direct(folder / "direct", lang);
    Answers imported(folder / "imported", lang);

    EXPECT_EQ(imported("list_persons", json::object()), direct("list_persons", json::object()));
    for (const char* person : {"Ann", "Ben"}) {
      for (const auto& [tool, arguments] : questions(person)) {
        EXPECT_EQ(imported(tool, arguments), direct(tool, arguments)) << tool << arguments;
      }
    }

    const json arguments{
        {"person", "Ann"}, {"from", "2026-08-01"}, {"format", "json"}, {"limit", 100}};
    const json workouts = json::parse(direct("get_workouts", arguments)).at("workouts");
    ASSERT_GT(workouts.size(), 5U);
    for (const json& workout : workouts) {
      const json page{{"person", "Ann"}, {"workout_id", workout.at("workout_id")}};
      EXPECT_EQ(imported("get_workout_heart_rate", page), direct("get_workout_heart_rate", page));
    }
  }
}

}  // namespace
