#include "mcp/tools/Tools.h"
#include "platform/ReceiverError.h"
#include "support/Golden.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

/// Arguments that ask for hourOfRunning(), and more.
Json asking(const Json& more = Json::object()) {
  Json arguments{{"workout_id", identifierOf(hourOfRunning())}};
  arguments.update(more);
  return arguments;
}

std::string samplesAnswer(const Household& household, const Json& arguments = asking(),
                          SummaryLang lang = SummaryLang::en) {
  return ToolCaller(household, lang).of(arguments, Tools::workoutHeartRate);
}

Json samplesDocument(const Household& household, const Json& arguments = asking(),
                     SummaryLang lang = SummaryLang::en) {
  return Json::parse(samplesAnswer(household, arguments, lang));
}

/// Expects that both languages refuse `arguments` with this message and the code of bad arguments.
void expectRefused(const Household& household, const Json& arguments, const std::string& message) {
  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    EXPECT_EQ(ToolCaller(household, lang).refusal(arguments, Tools::workoutHeartRate),
              (Refusal{-32602, message}))
        << arguments;
  }
}

struct IdentifierCase {
  std::string name;
  Json arguments;
};

void PrintTo(const IdentifierCase& identifier, std::ostream* stream) {
  *stream << identifier.arguments;
}

class OddIdentifier : public testing::TestWithParam<IdentifierCase> {};

TEST_P(OddIdentifier, IsRefusedBeforeTheDatabaseIsOpened) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());

  expectRefused(household, GetParam().arguments, "workout_id must come from get_workouts");
}

const std::string sixtyFour(64, 'a');

INSTANTIATE_TEST_SUITE_P(
    Cases, OddIdentifier,
    testing::Values(
        IdentifierCase{"Missing", Json::object()},
        IdentifierCase{"Null", {{"workout_id", nullptr}}},
        IdentifierCase{"Number", {{"workout_id", 7}}},
        IdentifierCase{"List", {{"workout_id", Json::array({"w_" + sixtyFour})}}},
        IdentifierCase{"Empty", {{"workout_id", ""}}},
        IdentifierCase{"SixtyFiveCharacters", {{"workout_id", "w_" + std::string(63, 'a')}}},
        IdentifierCase{"SixtySevenCharacters", {{"workout_id", "w_" + sixtyFour + "a"}}},
        IdentifierCase{"CharactersNotBytes", {{"workout_id", "w_\u6B65" + std::string(61, 'a')}}},
        IdentifierCase{"OtherStart", {{"workout_id", "x_" + sixtyFour}}},
        IdentifierCase{"CapitalStart", {{"workout_id", "W_" + sixtyFour}}},
        IdentifierCase{"BlankBefore", {{"workout_id", " w_" + std::string(63, 'a')}}}),
    [](const auto& test) { return test.param.name; });

TEST(GetWorkoutHeartRate, LeavesIdentifiersOfTheRightFormToTheStore) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  for (const std::string& identifier :
       {"w_" + sixtyFour, "w_" + std::string(64, 'Z'), "w_\u6B65" + std::string(63, 'a')}) {
    expectRefused(
        household, {{"workout_id", identifier}}, "没有这次训练，请从训练清单获取 workout_id");
  }
}

TEST(GetWorkoutHeartRate, AnswersWhenTheFirstSampleIsFarLongerThanTheOthers) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  database.addWorkout(hourOfRunning());
  TestRecord first = sampleAfter(0);
  first.device = std::string(20000000, 'd');
  database.addRecord(first);
  for (int second = 1; second < 3600; ++second) database.addRecord(sampleAfter(second));

  EXPECT_EQ(samplesDocument(household, asking({{"limit", 5000}})).at("samples").size(), 3600U);
}

struct RefusedPageCase {
  std::string name;
  std::string key;
  Json value;
  std::string message;
};

class OddArgument : public testing::TestWithParam<RefusedPageCase> {};

TEST_P(OddArgument, IsRefusedInEnglishInBothLanguages) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  expectRefused(household, asking({{GetParam().key, GetParam().value}}), GetParam().message);
}

RefusedPageCase noPageLimit(const std::string& name, const Json& value) {
  return {name, "limit", value, "limit must be an integer in 1...5000"};
}

RefusedPageCase noPageOffset(const std::string& name, const Json& value) {
  return {name, "offset", value, "offset must be an integer in 0...2147483647"};
}

RefusedPageCase noPageSource(const std::string& name, const Json& value) {
  return {name, "source", value, "source must be a string"};
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OddArgument,
    testing::Values(noPageLimit("LimitZero", 0), noPageLimit("LimitAboveTheLargest", 5001),
                    noPageLimit("LimitFraction", 10.5), noPageLimit("LimitTrue", true),
                    noPageLimit("LimitText", "10"), noPageLimit("LimitNull", nullptr),
                    noPageLimit("LimitHuge", 1e300), noPageOffset("OffsetNegative", -1),
                    noPageOffset("OffsetAboveTheLargest", 2147483648),
                    noPageOffset("OffsetFraction", 0.5), noPageOffset("OffsetFalse", false),
                    noPageOffset("OffsetText", "0"), noPageSource("SourceNumber", 1),
                    noPageSource("SourceNull", nullptr),
                    noPageSource("SourceList", Json::array({"Watch"}))),
    [](const auto& test) { return test.param.name; });

TEST(GetWorkoutHeartRate, ReportsTheFirstArgumentThatIsWrong) {
  Household household;
  household.addAt("m1", "Ann", household.nowhere());
  Json arguments{{"person", "Ben"}, {"workout_id", 1}, {"source", 1}, {"limit", 0}, {"offset", -1}};
  const std::vector<std::pair<Json, std::string>> steps{
      {{{"person", "Ann"}}, "No member named \"Ben\". Available: Ann"},
      {asking(), "workout_id must come from get_workouts"},
      {{{"source", ""}}, "source must be a string"},
      {{{"limit", 1}}, "limit must be an integer in 1...5000"},
      {{{"offset", 0}}, "offset must be an integer in 0...2147483647"}};

  for (const auto& [mended, message] : steps) {
    EXPECT_EQ(ToolCaller(household).refusal(arguments, Tools::workoutHeartRate),
              (Refusal{-32602, message}));
    arguments.update(mended);
  }
}

TEST(GetWorkoutHeartRate, TakesWholeNumbersWithAPoint) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  const Json pagination =
      samplesDocument(household, asking({{"limit", 1000.0}, {"offset", 7.0}})).at("pagination");

  EXPECT_EQ(pagination.at("limit").dump(), "1000");
  EXPECT_EQ(pagination.at("offset").dump(), "7");
}

TEST(GetWorkoutHeartRate, TakesTheBoundsThemselves) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  const Json pagination =
      samplesDocument(household, asking({{"limit", 5000}, {"offset", 2147483647}}))
          .at("pagination");

  EXPECT_EQ(pagination.at("limit"), 5000);
  EXPECT_EQ(pagination.at("offset"), 2147483647);
}

TEST(GetWorkoutHeartRate, GivesAThousandSamplesFromTheFirstUnlessAskedOtherwise) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  const Json pagination = samplesDocument(household).at("pagination");

  EXPECT_EQ(pagination.at("limit"), 1000);
  EXPECT_EQ(pagination.at("offset"), 0);
}

TEST(GetWorkoutHeartRate, SaysInTheStoresWordsThatAWorkoutHasNoEnd) {
  TestWorkout endless = hourOfRunning();
  endless.end_date = std::nullopt;
  Household household;
  household.add("m1", "Ann").addWorkout(endless);

  expectRefused(
      household, {{"workout_id", identifierOf(endless)}}, "训练起止时间无效，无法匹配心率");
}

TEST(GetWorkoutHeartRate, SaysInTheStoresWordsThatAFolderIsNoDatabase) {
  const TemporaryFolder folder;
  Household household;
  household.addAt("m1", "Ann", folder.path());
  Logger quiet(std::nullopt, Logger::Level::error, false, [] { return testNow; });

  // In SQLite's words, whatever they are, and without the name that other tools put before them.
  std::string message;
  try {
    const HealthStore store(folder.path().string(), {}, quiet);
  } catch (const ReceiverError& error) {
    message = error.what();
  }
  ASSERT_TRUE(message.starts_with("打不开库:")) << message;
  expectRefused(household, asking(), message);
}

// --- the document

/// Ann with the run, a sample with and one without all there is, and one of another source.
void addAnnsSamples(Household& household) {
  TestRecord full = sampleAfter(30, 61.1235);
  full.device = "<<HKDevice>, name:Apple\u00A0Watch/7>";
  full.end_date = "2024-03-01 08:00:35 +0000";
  full.value = "61.1235";
  TestRecord other = sampleAfter(40, 99);
  other.source_name = "Strap";
  TestRecord unreadable = sampleAfter(50);
  unreadable.unit = "count/s";
  household.add("ann-01", "Ann")
      .addWorkout(hourOfRunning())
      .addRecords({full, sampleAfter(0, 60), other, unreadable});
}

std::set<std::string> keysOf(const Json& object) {
  std::set<std::string> keys;
  for (const auto& [key, value] : object.items()) keys.insert(key);
  return keys;
}

TEST(HeartRateDocument, HasSeventeenKeys) {
  Household household;
  addAnnsSamples(household);

  Json document = samplesDocument(household);

  EXPECT_EQ(document.size(), 17U);
  for (const char* text : {"note", "coverage"}) {
    EXPECT_FALSE(document.at(text).get<std::string>().empty()) << text;
    document.erase(text);
  }
  document.erase("samples");
  Json expected = Json::parse(R"({
    "person_id": "ann-01",
    "person": "Ann",
    "workout_start": "2024-03-01 08:00:00 +0000",
    "workout_end": "2024-03-01 09:00:00 +0000",
    "source": "Watch",
    "available_sources": ["Strap", "Watch"],
    "units": {"bpm": "count/min", "elapsed_seconds": "s"},
    "association": "sample_start_in_workout_time_window_exact_source",
    "value_precision": "stored_apple_export_compatible_6_significant_digits",
    "summary": {"count": 2, "min_bpm": 60.0, "max_bpm": 61.1235, "sample_mean_bpm": 60.56175},
    "pagination": {"total_count": 2, "returned_count": 2, "limit": 1000, "offset": 0,
                   "order": "asc", "has_more": false, "next_offset": null},
    "excluded_candidate_count": 1,
    "boundary": "Returns raw measurements, not a diagnosis; a gap means not collected."
  })");
  expected["workout_id"] = identifierOf(hourOfRunning());
  EXPECT_EQ(document, expected);
}

TEST(HeartRateDocument, HasTenKeysASample) {
  Household household;
  addAnnsSamples(household);

  EXPECT_EQ(samplesDocument(household).at("samples"),
            (Json{{{"record_id", 2},
                   {"start", "2024-03-01 08:00:00 +0000"},
                   {"end", nullptr},
                   {"source", "Watch"},
                   {"device", nullptr},
                   {"raw_unit", "count/min"},
                   {"stored_value", nullptr},
                   {"elapsed_seconds", 0.0},
                   {"bpm", 60.0},
                   {"segment", 0}},
                  {{"record_id", 1},
                   {"start", "2024-03-01 08:00:30 +0000"},
                   {"end", "2024-03-01 08:00:35 +0000"},
                   {"source", "Watch"},
                   {"device", "<<HKDevice>, name:Apple\u00A0Watch/7>"},
                   {"raw_unit", "count/min"},
                   {"stored_value", "61.1235"},
                   {"elapsed_seconds", 30.0},
                   {"bpm", 61.1235},
                   {"segment", 0}}}));
}

TEST(HeartRateDocument, IsWholeWithoutSamples) {
  Household household;
  addAnnsSamples(household);

  const Json document = samplesDocument(household, asking({{"source", "iPhone"}}));

  EXPECT_EQ(keysOf(document), keysOf(samplesDocument(household)));
  EXPECT_EQ(document.at("samples"), Json::array());
  EXPECT_EQ(document.at("source"), "iPhone");
  EXPECT_EQ(document.at("available_sources"), (Json{"Strap", "Watch"}));
  EXPECT_EQ(document.at("summary"),
            Json::parse(R"({"count":0,"max_bpm":null,"min_bpm":null,"sample_mean_bpm":null})"));
}

TEST(HeartRateDocument, NamesTheNextPage) {
  Household household;
  addAnnsSamples(household);

  EXPECT_EQ(samplesDocument(household, asking({{"limit", 1}})).at("pagination"),
            Json::parse(R"({"total_count":2,"returned_count":1,"limit":1,"offset":0,)"
                        R"("order":"asc","has_more":true,"next_offset":1})"));
}

TEST(HeartRateDocument, TakesAnEmptySourceForASource) {
  Household household;
  addAnnsSamples(household);

  const Json document = samplesDocument(household, asking({{"source", ""}}));

  EXPECT_EQ(document.at("source"), "");
  EXPECT_EQ(document.at("summary").at("count"), 0);
}

TEST(HeartRateDocument, IsCompactWithSortedKeysAndEscapedSlashes) {
  Household household;
  addAnnsSamples(household);

  const std::string answer = samplesAnswer(household);

  // What is parsed has its keys in order, and in JSON a slash stands inside texts only.
  std::string plain = Json::parse(answer).dump();
  for (std::size_t at = plain.find('/'); at != std::string::npos; at = plain.find('/', at + 2)) {
    plain.insert(at, "\\");
  }
  EXPECT_EQ(answer, plain);
  EXPECT_TRUE(answer.starts_with(R"({"association":)"));
  EXPECT_TRUE(answer.ends_with(R"("workout_start":"2024-03-01 08:00:00 +0000"})"));
  EXPECT_NE(answer.find(R"("units":{"bpm":"count\/min","elapsed_seconds":"s"})"),
            std::string::npos);
}

TEST(HeartRateDocument, EndsWithTheCoverageOfEveryTool) {
  Household household;
  addAnnsSamples(household);

  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    const std::string coverage = samplesDocument(household, asking(), lang).at("coverage");
    const std::string day = ToolCaller(household, lang).of({{"date", "2024-03-01"}}, Tools::day);
    EXPECT_TRUE(day.ends_with("\n\n" + coverage)) << coverage;
  }
}

TEST(GoldenWorkoutHeartRate, IsOneDocumentInBothLanguages) {
  Household household;
  addAnnsSamples(household);

  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    const std::string file =
        "get_workout_heart_rate/two_samples." + std::string(rawValue(lang)) + ".txt";
    EXPECT_TRUE(matchesGolden(file, samplesAnswer(household, asking(), lang)));
  }
}

}  // namespace
