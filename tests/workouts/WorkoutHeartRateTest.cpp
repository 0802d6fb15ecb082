#include "platform/JsonFields.h"
#include "workouts/WorkoutHeartRate.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

WorkoutHeartRatePoint barePoint() {
  WorkoutHeartRatePoint point;
  point.record_id = 9007199254740993;  // no double holds it
  point.start = "2024-03-01 08:00:00 +0800";
  point.source = "Ann\u2019s Apple\u00A0Watch";
  point.raw_unit = "count/min";
  point.elapsed_seconds = 12.5;
  point.bpm = 61.1235;
  point.segment = 3;
  return point;
}

WorkoutHeartRatePoint fullPoint() {
  WorkoutHeartRatePoint point = barePoint();
  point.end = "2024-03-01 08:00:05 +0800";
  point.device = "<<HKDevice>>";
  point.stored_value = "61.1235";
  return point;
}

WorkoutHeartRate fullHeartRate() {
  WorkoutHeartRate heartRate;
  heartRate.person_id = "ann-01";
  heartRate.workout.activity_type = "Running";
  heartRate.workout.start = "2024-03-01 08:00:00 +0800";
  heartRate.workout.end = "2024-03-01 09:00:00 +0800";
  heartRate.workout.source = "Watch";
  heartRate.workout.hr_avg = 140;
  heartRate.source = "Strap";
  heartRate.available_sources = {"Strap", "Watch"};
  heartRate.summary = {.count = 3, .min_bpm = 60, .max_bpm = 62.5, .sample_mean_bpm = 61};
  heartRate.samples = {barePoint(), fullPoint()};
  heartRate.pagination = {.total_count = 3,
                          .returned_count = 2,
                          .limit = 2,
                          .offset = 0,
                          .has_more = true,
                          .next_offset = 2};
  heartRate.excluded_candidate_count = 4;
  return heartRate;
}

/// The record that is read from what was written of `record`.
template <typename Record>
Record reread(const Record& record) {
  return json::parse(ordered_json(record).dump()).get<Record>();
}

TEST(HeartRateEncoding, KeepsTheOrderOfTheFields) {
  EXPECT_EQ(ordered_json(fullHeartRate()).dump(),
            R"({"person_id":"ann-01",)"
            R"("workout":{"activity_type":"Running","start":"2024-03-01 08:00:00 +0800",)"
            R"("end":"2024-03-01 09:00:00 +0800","source":"Watch","hr_avg":140.0},)"
            R"("source":"Strap","available_sources":["Strap","Watch"],)"
            R"("summary":{"count":3,"min_bpm":60.0,"max_bpm":62.5,"sample_mean_bpm":61.0},)"
            R"("samples":[)"
            R"({"record_id":9007199254740993,"start":"2024-03-01 08:00:00 +0800",)"
            "\"source\":\"Ann\u2019s Apple\u00A0Watch\","
            R"("raw_unit":"count/min","elapsed_seconds":12.5,"bpm":61.1235,"segment":3},)"
            R"({"record_id":9007199254740993,"start":"2024-03-01 08:00:00 +0800",)"
            R"("end":"2024-03-01 08:00:05 +0800",)"
            "\"source\":\"Ann\u2019s Apple\u00A0Watch\","
            R"("device":"<<HKDevice>>","raw_unit":"count/min","stored_value":"61.1235",)"
            R"("elapsed_seconds":12.5,"bpm":61.1235,"segment":3}],)"
            R"("pagination":{"total_count":3,"returned_count":2,"limit":2,"offset":0,)"
            R"("has_more":true,"next_offset":2},"excluded_candidate_count":4})");
}

TEST(HeartRateEncoding, LeavesOutWhatIsAbsent) {
  EXPECT_EQ(ordered_json(WorkoutHeartRateSummary()).dump(), R"({"count":0})");
  EXPECT_EQ(ordered_json(WorkoutHeartRatePagination()).dump(),
            R"({"total_count":0,"returned_count":0,"limit":0,"offset":0,"has_more":false})");
  EXPECT_EQ(ordered_json(WorkoutHeartRatePoint()).dump(),
            R"({"record_id":0,"start":"","source":"","raw_unit":"","elapsed_seconds":0.0,)"
            R"("bpm":0.0,"segment":0})");
}

TEST(HeartRateDecoding, ReadsWhatWasWritten) {
  EXPECT_EQ(reread(fullHeartRate()), fullHeartRate());
  EXPECT_EQ(reread(fullHeartRate().summary), fullHeartRate().summary);
  EXPECT_EQ(reread(fullHeartRate().pagination), fullHeartRate().pagination);
  EXPECT_EQ(reread(fullPoint()), fullPoint());
}

TEST(HeartRateDecoding, ReadsWhatWasWrittenOfEmptyRecords) {
  EXPECT_EQ(reread(WorkoutHeartRate()), WorkoutHeartRate());
  EXPECT_EQ(reread(WorkoutHeartRateSummary()), WorkoutHeartRateSummary());
  EXPECT_EQ(reread(WorkoutHeartRatePagination()), WorkoutHeartRatePagination());
  EXPECT_EQ(reread(barePoint()), barePoint());
}

/// The message with which `value` fails to be a Record; "" when it is one.
template <typename Record>
std::string messageFor(const json& value) {
  try {
    value.get<Record>();
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "";
}

/// Expects that each key of `record` is needed unless it is one of `optional`, which may also be
/// null, and that none takes a value of another type.
template <typename Record>
void expectStrictKeys(const Record& record, const std::string& optional) {
  const json full = json::parse(ordered_json(record).dump());
  for (const auto& [key, value] : full.items()) {
    const bool mayMiss = optional.find(" " + key + " ") != std::string::npos;
    json without = full;
    without.erase(key);
    EXPECT_EQ(messageFor<Record>(without), mayMiss ? "" : key + " is missing");

    json null = full;
    null[key] = nullptr;
    EXPECT_EQ(messageFor<Record>(null).empty(), mayMiss) << key;

    json wrong = full;
    wrong[key] = json::array({json::array()});
    EXPECT_TRUE(messageFor<Record>(wrong).starts_with(key)) << messageFor<Record>(wrong);
  }
}

TEST(HeartRateDecoding, NeedsEveryFieldButTheOptionalOnes) {
  expectStrictKeys(fullPoint(), " end device stored_value ");
  expectStrictKeys(fullHeartRate().summary, " min_bpm max_bpm sample_mean_bpm ");
  expectStrictKeys(fullHeartRate().pagination, " next_offset ");
  expectStrictKeys(fullHeartRate(), "");
}

TEST(HeartRateDecoding, NamesThePlaceOfABrokenSample) {
  json broken = json::parse(ordered_json(fullHeartRate()).dump());
  broken["samples"][1].erase("bpm");

  EXPECT_EQ(messageFor<WorkoutHeartRate>(broken), "samples[1].bpm is missing");
}

TEST(HeartRateDecoding, IgnoresUnknownKeys) {
  json more = json::parse(ordered_json(fullPoint()).dump());
  more["quality"] = "good";

  EXPECT_EQ(more.get<WorkoutHeartRatePoint>(), fullPoint());
}

}  // namespace
