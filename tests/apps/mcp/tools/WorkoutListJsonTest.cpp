// The JSON form of get_workouts.

#include "mcp/tools/Tools.h"
#include "mcp/tools/WorkoutList.h"
#include "support/ToolCaller.h"
#include "support/WorkoutSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

std::string answerOf(const Household& household, Json arguments = Json::object(),
                     SummaryLang lang = SummaryLang::en) {
  arguments["format"] = "json";
  return ToolCaller(household, lang).of(arguments, Tools::workouts);
}

Json documentOf(const Household& household, const Json& arguments = Json::object(),
                SummaryLang lang = SummaryLang::en) {
  return Json::parse(answerOf(household, arguments, lang));
}

/// A run outside with all there is to record.
TestWorkout fullRun() {
  return {.activity_type = "Running",
          .duration_min = 61.515625,
          .source_name = "Ann\u2019s Apple\u00A0Watch",
          .start_date = "2024-03-02 06:30:00 -0500",
          .start_day = "2024-03-02",
          .end_date = "2024-03-02 07:31:30 -0500",
          .distance_km = 10.5525,
          .active_energy_kcal = 1104.25,
          .basal_energy_kcal = 88.625,
          .hr_avg = 151.0625,
          .hr_min = 96,
          .hr_max = 182,
          .elevation_m = 142.5,
          .avg_mets = 9.8125,
          .indoor = 0,
          .temp_c = 7.5,
          .humidity_pct = 99};
}

/// Ann with that run, with a yoga indoors, and with a workout of which nothing was recorded.
void addAnn(Household& household) {
  household.add("ann-01", "Ann")
      .addWorkouts({{.activity_type = "Unknown",
                     .source_name = "iPhone",
                     .start_date = "2024-03-01 08:00:00 +0000",
                     .start_day = "2024-03-01",
                     .end_date = "2024-03-01 08:30:00 +0000"},
                    fullRun(),
                    {.activity_type = "Yoga",
                     .duration_min = 30,
                     .source_name = "iPhone",
                     .start_date = "2024-03-03 08:00:00 +0000",
                     .start_day = "2024-03-03",
                     .end_date = "2024-03-03 08:30:00 +0000",
                     .indoor = 1,
                     .humidity_pct = 61}})
      .addHumidity(identifierOf(fullRun()),
                   R"({"raw_value":62.5,"raw_unit":"%","encoding":"healthkit_percent",)"
                   R"("source_bundle_id":"com.apple.Workout","source_version":"13.0"})");
}

TEST(WorkoutListJson, HasAllItsParts) {
  Household household;
  addAnn(household);

  Json document = documentOf(household, {{"limit", 1}, {"offset", 1}});

  ASSERT_EQ(document.at("workouts").size(), 1U);
  document.erase("workouts");
  const Json expected = Json::parse(R"({
    "person_id": "ann-01",
    "person": "Ann",
    "filters": {"activity_type": "", "environment": "all", "source": ""},
    "available_activities": [
      {"activity_type": "Running", "label": "Running", "count": 1},
      {"activity_type": "Unknown", "label": "Unknown", "count": 1},
      {"activity_type": "Yoga", "label": "Yoga", "count": 1}],
    "pagination": {"total_count": 3, "returned_count": 1, "limit": 1, "offset": 1,
                   "order": "desc", "has_more": true, "next_offset": 2},
    "units": {"duration_min": "min", "distance_km": "km", "active_energy_kcal": "kcal",
              "basal_energy_kcal": "kcal", "hr_avg": "count/min", "hr_min": "count/min",
              "hr_max": "count/min", "elevation_m": "m", "avg_mets": "MET", "temp_c": "°C",
              "humidity_pct": "%"},
    "totals": {"count": 3,
               "duration_min": 91.515625, "duration_min_count": 2,
               "distance_km": 10.5525, "distance_km_count": 1,
               "active_energy_kcal": 1104.25, "active_energy_kcal_count": 1,
               "basal_energy_kcal": 88.625, "basal_energy_kcal_count": 1,
               "by_activity": [{"activity_type": "Running", "label": "Running", "count": 1},
                               {"activity_type": "Unknown", "label": "Unknown", "count": 1},
                               {"activity_type": "Yoga", "label": "Yoga", "count": 1}]},
    "boundary": "Returns raw measurements, not a diagnosis; a gap means not collected."
  })");
  Json withTexts = expected;
  withTexts["available_sources"] = {"Ann\u2019s Apple\u00A0Watch", "iPhone"};
  withTexts["note"] = WorkoutList::closingNote.in(SummaryLang::en);
  withTexts["coverage"] = document.at("coverage");
  EXPECT_EQ(document, withTexts);
}

TEST(WorkoutListJson, HasEveryKeyOfAWorkout) {
  Household household;
  addAnn(household);

  const Json run = documentOf(household).at("workouts").at(1);

  EXPECT_EQ(run,
            (Json{{"activity_type", "Running"},
                  {"label", "Running"},
                  {"start", "2024-03-02 06:30:00 -0500"},
                  {"end", "2024-03-02 07:31:30 -0500"},
                  {"source", "Ann\u2019s Apple\u00A0Watch"},
                  {"duration_min", 61.515625},
                  {"distance_km", 10.5525},
                  {"active_energy_kcal", 1104.25},
                  {"basal_energy_kcal", 88.625},
                  {"hr_avg", 151.0625},
                  {"hr_min", 96.0},
                  {"hr_max", 182.0},
                  {"elevation_m", 142.5},
                  {"avg_mets", 9.8125},
                  {"indoor", false},
                  {"temp_c", 7.5},
                  {"humidity_pct", 62.5},
                  {"workout_id", identifierOf(fullRun())},
                  {"humidity_status", "valid"},
                  {"humidity",
                   {{"raw_value", 62.5},
                    {"raw_unit", "%"},
                    {"raw_text", nullptr},
                    {"encoding", "healthkit_percent"},
                    {"source_bundle_id", "com.apple.Workout"},
                    {"source_version", "13.0"}}}}));
}

TEST(WorkoutListJson, HasNullForWhatWasNotRecorded) {
  Household household;
  addAnn(household);

  const Json bare = documentOf(household).at("workouts").at(2);

  EXPECT_EQ(bare.size(), 20U);
  for (const char* key : {"duration_min",
                          "distance_km",
                          "active_energy_kcal",
                          "basal_energy_kcal",
                          "hr_avg",
                          "hr_min",
                          "hr_max",
                          "elevation_m",
                          "avg_mets",
                          "indoor",
                          "temp_c",
                          "humidity_pct",
                          "humidity_status",
                          "humidity"}) {
    EXPECT_EQ(bare.at(key), Json(nullptr)) << key;
  }
}

TEST(WorkoutListJson, ShowsAReadingOfTheOldColumnButNoPercentage) {
  Household household;
  addAnn(household);

  const Json yoga = documentOf(household).at("workouts").at(0);

  EXPECT_EQ(yoga.at("indoor"), true);
  EXPECT_EQ(yoga.at("humidity_pct"), Json(nullptr));
  EXPECT_EQ(yoga.at("humidity_status"), "legacy_unverified");
  EXPECT_EQ(yoga.at("humidity"),
            Json::parse(R"({"raw_value":61.0,"raw_unit":"%","raw_text":null,)"
                        R"("encoding":"legacy_percent","source_bundle_id":null,)"
                        R"("source_version":null})"));
}

TEST(WorkoutListJson, HasNullForWhatJsonCannotCarry) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  Household household;
  household.add("m1", "Ann")
      .addWorkout({.duration_min = infinity, .hr_avg = -infinity, .humidity_pct = infinity});

  const Json document = documentOf(household);

  const Json workout = document.at("workouts").at(0);
  EXPECT_EQ(workout.at("duration_min"), Json(nullptr));
  EXPECT_EQ(workout.at("hr_avg"), Json(nullptr));
  EXPECT_EQ(workout.at("humidity_status"), "invalid_value");
  EXPECT_EQ(workout.at("humidity").at("raw_value"), Json(nullptr));
  EXPECT_EQ(workout.at("humidity").at("raw_text"), "inf");
  EXPECT_EQ(document.at("totals").at("duration_min"), Json(nullptr));
  EXPECT_EQ(document.at("totals").at("duration_min_count"), 1);
}

TEST(WorkoutListJson, RepeatsTheFilters) {
  Household household;
  addAnn(household);

  const Json document = documentOf(household,
                                   {{"activity_type", " yoga\n"},
                                    {"environment", "indoor"},
                                    {"source", "iPhone"},
                                    {"order", "asc"}});

  EXPECT_EQ(document.at("filters"),
            (Json{{"activity_type", "yoga"}, {"environment", "indoor"}, {"source", "iPhone"}}));
  EXPECT_EQ(document.at("pagination").at("order"), "asc");
  EXPECT_EQ(document.at("totals").at("count"), 1);
  EXPECT_EQ(document.at("available_activities").size(), 3U);
}

TEST(WorkoutListJson, CountsActivitiesMostFrequentFirst) {
  Household household;
  TestDatabase& database = household.add("m1", "Ann");
  for (const char* activity : {"Rowing", "Yoga", "Yoga", "Cycling"}) {
    database.addWorkout({.activity_type = activity, .end_date = std::nullopt});
  }

  const Json totals = documentOf(household, Json::object(), SummaryLang::zh).at("totals");

  EXPECT_EQ(totals.at("by_activity"),
            Json::parse(R"([{"activity_type":"Yoga","label":"瑜伽","count":2},
                            {"activity_type":"Cycling","label":"骑行","count":1},
                            {"activity_type":"Rowing","label":"划船","count":1}])"));
}

TEST(WorkoutListJson, IsWholeWithoutWorkouts) {
  Household household;
  household.add("m1", "Ann");

  const Json document = documentOf(household, {{"offset", 7}});

  EXPECT_EQ(document.at("workouts"), Json::array());
  EXPECT_EQ(document.at("available_activities"), Json::array());
  EXPECT_EQ(document.at("available_sources"), Json::array());
  EXPECT_EQ(document.at("pagination"),
            Json::parse(R"({"total_count":0,"returned_count":0,"limit":50,"offset":7,)"
                        R"("order":"desc","has_more":false,"next_offset":null})"));
  EXPECT_EQ(document.at("totals"),
            Json::parse(R"({"count":0,"duration_min":null,"duration_min_count":0,)"
                        R"("distance_km":null,"distance_km_count":0,"active_energy_kcal":null,)"
                        R"("active_energy_kcal_count":0,"basal_energy_kcal":null,)"
                        R"("basal_energy_kcal_count":0,"by_activity":[]})"));
}

TEST(WorkoutListJson, SpeaksTheLanguageOfTheProcess) {
  Household household;
  addAnn(household);

  const Json document = documentOf(household, {{"limit", 1}}, SummaryLang::zh);

  EXPECT_EQ(document.at("workouts").at(0).at("label"), "瑜伽");
  EXPECT_EQ(document.at("available_activities").at(0).at("label"), "跑步");
  EXPECT_EQ(document.at("note"), WorkoutList::closingNote.in(SummaryLang::zh));
  EXPECT_EQ(document.at("boundary"), "本工具提供原始测量数据,不构成诊断;缺失仅代表未采集。");
}

TEST(WorkoutListJson, EndsWithTheCoverageOfTheTextForm) {
  Household household;
  household.add("m1", "Ann").addRecord({.value_num = 60});

  for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
    const std::string coverage =
        documentOf(household, Json::object(), lang).at("coverage").get<std::string>();
    const std::string text = ToolCaller(household, lang).of(Json::object(), Tools::workouts);
    EXPECT_FALSE(coverage.empty());
    EXPECT_TRUE(text.ends_with("\n\n" + coverage)) << coverage;
  }
}

TEST(WorkoutListJson, IsCompactWithSortedKeysAndEscapedSlashes) {
  Household household;
  addAnn(household);

  const std::string answer = answerOf(household);

  // What is parsed has its keys in order, and in JSON a slash stands inside texts only.
  std::string plain = Json::parse(answer).dump();
  for (std::size_t at = plain.find('/'); at != std::string::npos; at = plain.find('/', at + 2)) {
    plain.insert(at, "\\");
  }
  EXPECT_EQ(answer, plain);
  EXPECT_TRUE(answer.starts_with(R"({"available_activities":[{"activity_type":"Running",)"));
  EXPECT_NE(answer.find(R"("hr_avg":"count\/min")"), std::string::npos);
}

}  // namespace
