// The text form of get_workouts.

#include "mcp/tools/Tools.h"
#include "support/Golden.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::HasSubstr;
using testing::Not;

std::string textOf(const Household& household, const Json& arguments = Json::object(),
                   SummaryLang lang = SummaryLang::en) {
  return ToolCaller(household, lang).of(arguments, Tools::workouts);
}

/// What an answer says before the closing note.
std::string firstBlock(const std::string& answer) { return answer.substr(0, answer.find("\n\n")); }

/// The line of `text` that begins with `start`, without it; "none" when there is no such line.
std::string lineAfter(const std::string& text, const std::string& start) {
  const std::size_t found = ("\n" + text).find("\n" + start);
  if (found == std::string::npos) return "none";
  const std::size_t begin = found + start.size();
  return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(WorkoutListText, NamesRangeAndTheFiltersThatAreSet) {
  Household household;
  household.add("m1", "Ann");
  const Json all{{"from", "2024-03-01"},
                 {"to", "2024-03-02"},
                 {"activity_type", " running "},
                 {"environment", "unspecified"},
                 {"source", "Apple\u00A0Watch"}};

  EXPECT_EQ(lineAfter(textOf(household, all), "Range: "),
            "2024-03-01 ~ 2024-03-02, activity_type=running, environment=unspecified, "
            "source=Apple\u00A0Watch");
  EXPECT_EQ(lineAfter(textOf(household, all, SummaryLang::zh), "区间:"),
            "2024-03-01 ~ 2024-03-02, activity_type=running, environment=unspecified, "
            "source=Apple\u00A0Watch");
  EXPECT_EQ(lineAfter(textOf(household, {{"environment", "all"}, {"source", ""}}), "Range: "),
            "2023-12-18 ~ 2024-03-17");
}

TEST(WorkoutListText, FormatsEveryMeasureOfAWorkout) {
  const TestWorkout workout{.duration_min = 1234.5,
                            .start_date = stampAfter(0),
                            .end_date = stampAfter(60),
                            .distance_km = 0,
                            .active_energy_kcal = 123.44,
                            .basal_energy_kcal = 12.0,
                            .hr_avg = 92.916,
                            .hr_min = 0.1234,
                            .hr_max = 180,
                            .elevation_m = -8.5,
                            .avg_mets = 6,
                            .indoor = 0,
                            .temp_c = -0.0001};
  Household household;
  household.add("m1", "Ann").addWorkout(workout);

  EXPECT_THAT(firstBlock(textOf(household)),
              testing::EndsWith("· Running · outdoor\n"
                                "    start=2024-03-01 08:00:00 +0000, end=2024-03-01 08:01:00 "
                                "+0000, source=Watch\n"
                                "    Duration: 1,235 min\n"
                                "    Distance: 0 km\n"
                                "    Active energy: 123.4 kcal\n"
                                "    Basal energy: 12 kcal\n"
                                "    Average heart rate: 92.92 count/min\n"
                                "    Minimum heart rate: 0.123 count/min\n"
                                "    Maximum heart rate: 180 count/min\n"
                                "    Elevation: -8.5 m\n"
                                "    Average MET: 6 MET\n"
                                "    Temperature: 0 °C\n"
                                "    workout_id=" +
                                identifierOf(workout)));
}

TEST(WorkoutListText, ShowsNothingOfAWorkoutThatRecordedNothing) {
  TestWorkout workout = hourOfRunning();
  workout.duration_min = std::nullopt;
  Household household;
  household.add("m1", "Ann").addWorkout(workout);

  EXPECT_THAT(firstBlock(textOf(household)),
              testing::EndsWith("has_more=false\n"
                                "· Running\n"
                                "    start=2024-03-01 08:00:00 +0000, end=2024-03-01 09:00:00 "
                                "+0000, source=Watch\n"
                                "    workout_id=" +
                                identifierOf(workout)));
}

struct HumidityCase {
  std::string name;
  std::string reading;  ///< as JSON
  std::string en;
  std::string zh;
};

class HumidityLine : public testing::TestWithParam<HumidityCase> {};

TEST_P(HumidityLine, TellsTheStatusAndTheRawReading) {
  Household household;
  household.add("m1", "Ann")
      .addWorkout(hourOfRunning())
      .addHumidity(identifierOf(hourOfRunning()), GetParam().reading);

  EXPECT_EQ(lineAfter(textOf(household), "    humidity_status="), GetParam().en);
  EXPECT_EQ(lineAfter(textOf(household, Json::object(), SummaryLang::zh), "    humidity_status="),
            GetParam().zh);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, HumidityLine,
    testing::Values(
        HumidityCase{"Valid",
                     R"({"raw_value":55.5,"raw_unit":"%","encoding":"healthkit_value",)"
                     R"("source_bundle_id":"com.apple.Workout","source_version":"10.1"})",
                     "valid, raw_value=55.5, raw_text=null, encoding=healthkit_value, "
                     "source_bundle_id=com.apple.Workout, source_version=10.1",
                     "valid, raw_value=55.5, raw_text=null, encoding=healthkit_value, "
                     "source_bundle_id=com.apple.Workout, source_version=10.1"},
        HumidityCase{"UnverifiedScale",
                     R"({"raw_value":5500,"raw_unit":"%","encoding":"xml_percent"})",
                     "unverified_scale (scale needs verification), raw_value=5500, raw_text=null, "
                     "encoding=xml_percent, source_bundle_id=null, source_version=null",
                     "unverified_scale (尺度待核实), raw_value=5500, raw_text=null, "
                     "encoding=xml_percent, source_bundle_id=null, source_version=null"},
        HumidityCase{"InvalidValue",
                     R"({"raw_unit":"%","raw_text":"n/a","encoding":"healthkit_value"})",
                     "invalid_value (invalid value or representation), raw_value=null, "
                     "raw_text=n/a, encoding=healthkit_value, source_bundle_id=null, "
                     "source_version=null",
                     "invalid_value (数值或单位异常), raw_value=null, raw_text=n/a, "
                     "encoding=healthkit_value, source_bundle_id=null, source_version=null"},
        HumidityCase{"OutOfRange",
                     R"({"raw_value":-0.1,"raw_unit":"%","encoding":"healthkit_value"})",
                     "out_of_range (invalid value or representation), raw_value=-0.1, "
                     "raw_text=null, encoding=healthkit_value, source_bundle_id=null, "
                     "source_version=null",
                     "out_of_range (数值或单位异常), raw_value=-0.1, raw_text=null, "
                     "encoding=healthkit_value, source_bundle_id=null, source_version=null"},
        HumidityCase{"Unrecognized",
                     R"({"raw_value":0.1,"raw_unit":"percent","encoding":"healthkit_value"})",
                     "unrecognized_representation (invalid value or representation), "
                     "raw_value=0.1, raw_text=null, encoding=healthkit_value, "
                     "source_bundle_id=null, source_version=null",
                     "unrecognized_representation (数值或单位异常), raw_value=0.1, raw_text=null, "
                     "encoding=healthkit_value, source_bundle_id=null, source_version=null"}),
    [](const auto& test) { return test.param.name; });

TEST(HumidityLines, MarkAReadingOfTheOldColumn) {
  TestWorkout workout = hourOfRunning();
  workout.humidity_pct = 60.25;
  Household household;
  household.add("m1", "Ann").addWorkout(workout);

  const std::string answer = textOf(household);

  EXPECT_EQ(lineAfter(answer, "    humidity_status="),
            "legacy_unverified, raw_value=60.25, raw_text=null, encoding=legacy_percent, "
            "source_bundle_id=null, source_version=null");
  EXPECT_EQ(lineAfter(answer, "    Humidity: "), "none");
}

TEST(HumidityLines, StandBelowAPercentageOnlyWhereItIsBelieved) {
  Household household;
  household.add("m1", "Ann")
      .addWorkout(hourOfRunning())
      .addHumidity(identifierOf(hourOfRunning()),
                   R"({"raw_value":55.555,"raw_unit":"%","encoding":"healthkit_percent",)"
                   R"("source_bundle_id":"com.apple.health"})");

  EXPECT_EQ(lineAfter(textOf(household), "    Humidity: "), "55.55 %");
  EXPECT_EQ(lineAfter(textOf(household, Json::object(), SummaryLang::zh), "    湿度: "), "55.55 %");
}

TEST(HumidityLines, ShowTheShortestNumberThatReadsBackTheSame) {
  const std::vector<std::pair<std::string, std::string>> numbers{
      {"0.1", "0.1"},
      {"5500.0", "5500"},
      {"1e22", "10000000000000000000000"},
      {"33.333333333333336", "33.333333333333336"}};
  for (const auto& [stored, shown] : numbers) {
    Household household;
    household.add("m1", "Ann")
        .addWorkout(hourOfRunning())
        .addHumidity(identifierOf(hourOfRunning()),
                     R"({"encoding":"xml_percent","raw_unit":"%","raw_value":)" + stored + "}");

    EXPECT_THAT(textOf(household), HasSubstr(", raw_value=" + shown + ", raw_text="));
  }
}

TEST(WorkoutListText, HasNoTotalOfWhatNobodyRecorded) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  database.addWorkouts({{.duration_min = 0.5, .start_date = "1", .distance_km = 1234.5},
                        {.duration_min = 999.75, .start_date = "2"},
                        {.start_date = "3"}});

  EXPECT_THAT(textOf(household),
              HasSubstr("All matching records: 3 workouts\n"
                        "  Duration: 1,000 min, recorded in 2/3 workouts\n"
                        "  Distance: 1,235 km, recorded in 1/3 workouts\n"
                        "  Active energy: not recorded\n"
                        "  Basal energy: not recorded\n"
                        "By activity: Running×3\n"));
  EXPECT_THAT(textOf(household, Json::object(), SummaryLang::zh),
              HasSubstr("全部匹配记录汇总: 3 次\n"
                        "  时长: 1,000 min,2/3 次有记录\n"
                        "  距离: 1,235 km,1/3 次有记录\n"
                        "  活动能量: 未记录\n"
                        "  基础能量: 未记录\n"
                        "按运动类型: 跑步×3\n"));
}

TEST(WorkoutListText, NamesTheNextPageOnlyWhereThereIsOne) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  for (const char* start : {"1", "2", "3"}) database.addWorkout({.start_date = start});

  EXPECT_EQ(lineAfter(textOf(household, {{"limit", 2}}), "offset="),
            "0, returned_count=2, total_count=3, order=desc, has_more=true, next_offset=2");
  EXPECT_EQ(
      lineAfter(textOf(household, {{"limit", 2}, {"offset", 2}, {"order", "asc"}}), "offset="),
      "2, returned_count=1, total_count=3, order=asc, has_more=false");
  EXPECT_EQ(lineAfter(textOf(household, {{"offset", 3}}), "offset="),
            "3, returned_count=0, total_count=3, order=desc, has_more=false");
}

TEST(WorkoutListText, SaysWhyItListsNothing) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  EXPECT_THAT(firstBlock(textOf(household, {{"source", "iPhone"}})),
              testing::EndsWith("By activity: \n"
                                "available_activities: Running (Running)\n"
                                "available_sources: Watch\n"
                                "offset=0, returned_count=0, total_count=0, order=desc, "
                                "has_more=false\n"
                                "No workouts match this range and filters."));
  EXPECT_THAT(firstBlock(textOf(household, {{"source", "iPhone"}, {"offset", 9}})),
              testing::EndsWith("\nNo workouts match this range and filters."));
  EXPECT_THAT(firstBlock(textOf(household, {{"offset", 1}})),
              testing::EndsWith("\nNo records on this page; use a smaller offset."));
  EXPECT_THAT(firstBlock(textOf(household, {{"source", "iPhone"}}, SummaryLang::zh)),
              testing::EndsWith("\n这个区间与筛选条件下没有训练记录。"));
  EXPECT_THAT(firstBlock(textOf(household, {{"offset", 1}}, SummaryLang::zh)),
              testing::EndsWith("\n此页没有记录,请减小 offset。"));
}

TEST(WorkoutListText, SaysNeitherWhereThereAreRecords) {
  Household household;
  household.add("m1", "Ann").addWorkout(hourOfRunning());

  EXPECT_THAT(textOf(household), Not(HasSubstr("No workouts match")));
  EXPECT_THAT(textOf(household), Not(HasSubstr("No records on this page")));
}

TEST(WorkoutListText, CopiesTextsThatLookLikeMarks) {
  TestWorkout workout = hourOfRunning();
  workout.source_name = "{0}";
  Household household;
  household.add("m1", "{1}").addWorkout(workout);

  const std::string answer = textOf(household, {{"source", "{0}"}});

  EXPECT_EQ(lineAfter(answer, "Member: "), "{1} (person=m1)");
  EXPECT_EQ(lineAfter(answer, "available_sources: "), "{0}");
}

TEST(WorkoutListText, KeepsThePlaceOfASourceWithoutAName) {
  Household household;
  household.add("m1", "Ann").addWorkouts({{.source_name = std::nullopt}, {}});

  EXPECT_EQ(lineAfter(textOf(household), "available_sources: "), ", Watch");
}

// --- whole answers

const std::string watch = "Ann\u2019s Apple\u00A0Watch";

/// Three workouts indoors, of which the newest has a humidity whose scale nobody knows; one outside
/// with all there is to record, and one of which next to nothing was recorded.
void fillDatabase(TestDatabase& database) {
  const TestWorkout yoga{.activity_type = "Yoga",
                         .duration_min = 64.54,
                         .source_name = "iPhone",
                         .start_date = "2026-11-12 06:54:32 +0000",
                         .start_day = "2026-11-12",
                         .end_date = "2026-11-12 07:59:04 +0000",
                         .active_energy_kcal = 700.3,
                         .hr_avg = 92.92,
                         .indoor = 1};
  const TestWorkout tennis{.activity_type = "TableTennis",
                           .duration_min = 49.06,
                           .source_name = watch,
                           .start_date = "2026-10-30 19:02:11 +0800",
                           .start_day = "2026-10-30",
                           .end_date = "2026-10-30 19:51:15 +0800",
                           .basal_energy_kcal = 120.1,
                           .indoor = 1};
  const TestWorkout oldYoga{.activity_type = "Yoga",
                            .source_name = watch,
                            .start_date = "2026-09-02 07:00:00 +0800",
                            .start_day = "2026-09-02",
                            .end_date = "2026-09-02 07:30:00 +0800",
                            .basal_energy_kcal = 99.3,
                            .indoor = 1,
                            .humidity_pct = 61};
  const TestWorkout run{.activity_type = "Running",
                        .duration_min = 61.5,
                        .source_name = watch,
                        .start_date = "2026-10-04 06:30:00 -0500",
                        .start_day = "2026-10-04",
                        .end_date = "2026-10-04 07:31:30 -0500",
                        .distance_km = 10.55,
                        .active_energy_kcal = 1104.2,
                        .basal_energy_kcal = 88.6,
                        .hr_avg = 151.125,
                        .hr_min = 96,
                        .hr_max = 182,
                        .elevation_m = 142.5,
                        .avg_mets = 9.81,
                        .indoor = 0,
                        .temp_c = 7.5};
  const TestWorkout odd{.activity_type = "UnknownSport",
                        .source_name = "iPhone",
                        .start_date = "2026-09-20 12:00:00 +0000",
                        .start_day = "2026-09-20"};
  database.addWorkouts({oldYoga, odd, run, tennis, yoga})
      .addHumidity(identifierOf(yoga),
                   R"({"raw_value":5500,"raw_unit":"%","encoding":"xml_percent",)"
                   R"("source_version":"10.1"})")
      .addHumidity(identifierOf(run),
                   R"({"raw_value":62.5,"raw_unit":"%","encoding":"healthkit_percent",)"
                   R"("source_bundle_id":"com.apple.Workout","source_version":"13.0"})")
      .addRecord({.start_day = "2026-11-19", .value_num = 60});
}

struct GoldenCase {
  std::string name;
  Json arguments;
};

class GoldenWorkoutList : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenWorkoutList, ReadsWellInBothLanguages) {
  Household household;
  fillDatabase(household.add("ann-01", "Ann"));
  Json arguments = GetParam().arguments;
  arguments["from"] = "2026-09-01";
  arguments["to"] = "2026-11-20";

  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    const std::string file =
        "get_workouts/" + GetParam().name + "." + std::string(rawValue(lang)) + ".txt";
    EXPECT_TRUE(matchesGolden(file, textOf(household, arguments, lang)));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GoldenWorkoutList,
    testing::Values(GoldenCase{"everything", Json::object()},
                    GoldenCase{"page_of_two", {{"environment", "indoor"}, {"limit", 2}}},
                    GoldenCase{"last_page_oldest_first",
                               {{"order", "asc"},
                                {"limit", 2},
                                {"offset", 2},
                                {"source", watch},
                                {"environment", "all"}}},
                    GoldenCase{"beyond_the_last_page", {{"activity_type", "瑜伽"}, {"offset", 2}}},
                    GoldenCase{"nothing_matches",
                               {{"activity_type", "Rowing"}, {"environment", "outdoor"}}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
