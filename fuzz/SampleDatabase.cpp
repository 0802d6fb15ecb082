#include "SampleDatabase.h"
#include "support/WorkoutSamples.h"

namespace {

const TestWorkout run{.duration_min = 60,
                      .start_date = stampAfter(0),
                      .end_date = stampAfter(3600),
                      .distance_km = 10.5,
                      .active_energy_kcal = 511,
                      .hr_avg = 140,
                      .indoor = 0,
                      .temp_c = 11.5,
                      .humidity_pct = 60};

const std::string identifier = identifierOf(run);

std::vector<TestRecord> records() {
  std::vector<TestRecord> rows;
  for (const char* day : {"2023-03-01", "2024-02-29", "2024-03-01"}) {
    rows.push_back({.type = "StepCount", .unit = "count", .start_day = day, .value_num = 8000});
    rows.push_back({.type = "BodyMass", .unit = "kg", .start_day = day, .value_num = 60.5});
    rows.push_back({.type = "RestingHeartRate", .start_day = day, .value_num = 58});
  }
  rows.push_back({.type = "SleepAnalysis",
                  .start_date = "2024-03-01 23:30:00 +0000",
                  .start_day = "2024-03-01",
                  .end_date = "2024-03-02 07:00:00 +0000",
                  .value = "HKCategoryValueSleepAnalysisAsleepCore"});
  for (const int seconds : {0, 5, 600}) rows.push_back(sampleAfter(seconds, 100 + seconds));
  return rows;
}

}  // namespace

const char* const sampleWorkout = identifier.c_str();

void fillSample(TestDatabase& database) {
  database.addRecords(records());
  database.addWorkouts({run, {.activity_type = "Yoga", .start_day = "2024-02-29", .indoor = 1}});
  database.addSources({{.source_name = "Watch", .n = 13, .last = "2024-03-01"}});
  database.addHumidity(
      identifier,
      R"({"raw_value":55,"raw_unit":"%","encoding":"healthkit_percent","source_bundle_id":"com.apple.health"})");
  database.useRollbackJournal().run("PRAGMA page_size=512; VACUUM");
}
