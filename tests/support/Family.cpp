#include "support/Family.h"
#include "support/MemorySource.h"
#include "support/Moment.h"

#include <string>
#include <string_view>
#include <vector>

namespace {

const std::string watch = "Ann's Apple\u00A0Watch";
const std::string phone = "Ann's iPhone";

/// Adds steps and resting heart rate for `count` days, with small differences between days.
void addDays(std::vector<TestRecord>& records, std::string_view first, int count, double steps,
             double bpm) {
  int number = 0;
  for (const std::string& day : daysFrom(first, count)) {
    const double variation = (number * 37) % 11;
    records.push_back({.type = "StepCount",
                       .source_name = watch,
                       .unit = "count",
                       .start_day = day,
                       .value_num = steps + 250 * variation});
    records.push_back({.type = "StepCount",
                       .source_name = phone,
                       .unit = "count",
                       .start_day = day,
                       .value_num = steps / 2 + 100 * variation});
    records.push_back({.type = "RestingHeartRate",
                       .source_name = watch,
                       .unit = "count/min",
                       .start_day = day,
                       .value_num = bpm + number % 3});
    ++number;
  }
}

void addSleep(std::vector<TestRecord>& records, const std::string& start, const std::string& end,
              const std::string& stage) {
  records.push_back({.type = "SleepAnalysis",
                     .source_name = watch,
                     .start_date = start,
                     .start_day = start.substr(0, 10),
                     .end_date = end,
                     .value = "HKCategoryValueSleepAnalysis" + stage});
}

void addOneFullDay(std::vector<TestRecord>& records) {
  const std::string day = "2024-03-16";
  for (const double bpm : {52.0, 61.0, 148.0}) {
    records.push_back({.type = "HeartRate",
                       .source_name = watch,
                       .unit = "count/min",
                       .start_day = day,
                       .value_num = bpm});
  }
  for (const double fraction : {0.96, 0.985}) {
    records.push_back({.type = "OxygenSaturation",
                       .source_name = watch,
                       .unit = "%",
                       .start_day = day,
                       .value_num = fraction});
  }
  records.push_back({.type = "DistanceWalkingRunning",
                     .source_name = watch,
                     .unit = "km",
                     .start_day = day,
                     .value_num = 7.125});
  records.push_back({.type = "BodyMass",
                     .source_name = "Scale",
                     .unit = "kg",
                     .start_day = day,
                     .value_num = 64.35});
  records.push_back({.type = "BodyMassIndex",
                     .source_name = "Scale",
                     .unit = std::nullopt,
                     .start_day = day,
                     .value_num = 22.1});
}

void fillAnn(TestDatabase& ann) {
  std::vector<TestRecord> records;
  addDays(records, "2022-12-17", 91, 5500, 58);
  addDays(records, "2023-12-18", 91, 6000, 55);
  addSleep(records, "2024-03-14 23:30:00 +0000", "2024-03-15 07:00:00 +0000", "AsleepCore");
  addSleep(records, "2024-03-16 00:30:00 +0000", "2024-03-16 03:00:00 +0000", "AsleepDeep");
  addSleep(records, "2024-03-16 03:00:00 +0000", "2024-03-16 03:20:00 +0000", "Awake");
  addSleep(records, "2024-03-16 03:20:00 +0000", "2024-03-16 07:10:00 +0000", "AsleepREM");
  addOneFullDay(records);
  ann.addRecords(records);
  ann.addSources({{.source_name = watch, .n = 370, .last = "2024-03-17"},
                  {.source_name = phone, .n = 182, .last = "2024-03-16"},
                  {.source_name = "Scale", .n = 2, .last = "2024-03-15"}});
  ann.addWorkouts({{.activity_type = "Running",
                    .duration_min = 42.5,
                    .start_date = "2024-03-16 07:30:00 +0000",
                    .start_day = "2024-03-16",
                    .distance_km = 7.125,
                    .active_energy_kcal = 511},
                   {.activity_type = "HighIntensityIntervalTraining",
                    .duration_min = 20,
                    .start_date = "2024-03-16 18:00:00 +0000",
                    .start_day = "2024-03-16"},
                   {.activity_type = "Running",
                    .duration_min = 35,
                    .start_date = "2024-02-20 07:30:00 +0000",
                    .start_day = "2024-02-20",
                    .distance_km = 6}});
}

void fillBen(TestDatabase& ben) {
  double steps = 3000;
  for (const std::string& day : daysFrom("2024-03-03", 14)) {
    ben.addRecord({.type = "StepCount",
                   .source_name = "本的 iPhone",
                   .unit = "count",
                   .start_day = day,
                   .value_num = steps});
    steps += 100;
  }
}

Member memberOf(const std::string& id, const std::string& name, const std::string& file) {
  Member member;
  member.id = id;
  member.name = name;
  member.dbPath = file;
  return member;
}

}  // namespace

Family::Family() {
  fillAnn(ann);
  fillBen(ben);

  Member first = memberOf("ann", "Ann", ann.path());
  first.lastSyncAt = moment("2024-03-17 11:30:00 +0000");
  first.backfill = {.frontier = "2022-12-17",
                    .earliest = "2022-12-17",
                    .done = true,
                    .completeFrom = std::nullopt};
  members.add(first);

  Member second = memberOf("ben", "本", ben.path());
  second.lastSyncAt = moment("2024-03-10 20:00:00 +0000");
  second.backfill = {.frontier = "2024-03-03",
                     .earliest = "2021-06-01",
                     .done = false,
                     .completeFrom = "2024-03-03"};
  members.add(second);

  members.add(memberOf("cleo", "Cleo", cleo.path()));

  Member fourth = memberOf("dot", "Dot", cleo.folder().path().string() + "/lost.sqlite");
  fourth.lastSyncAt = moment("2024-01-01 00:00:00 +0000");
  members.add(fourth);
}
