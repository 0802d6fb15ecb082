#include "withstand/LiveSessions.h"
#include "platform/AppleFormat.h"
#include "platform/Text.h"
#include "workouts/Workouts.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace {

constexpr const char* watch = "Ann's Watch";
constexpr const char* phone = "Ann's iPhone";
constexpr const char* activity = "Running";

/// The stamp of a second of the session. The sessions of a day follow each other minute by minute.
std::string stampOf(std::int64_t number, int second) {
  const auto minute = static_cast<int>(number / LiveSessions::days);
  std::array<char, 32> time{};
  std::snprintf(
      time.data(), time.size(), " %02d:%02d:%02d +0000", minute / 60, minute % 60, second);
  return LiveSessions::dayOf(number) + time.data();
}

constexpr int lastSecond = 59;

}  // namespace

std::string LiveSessions::dayOf(std::int64_t number) {
  static const CivilDay first = AppleFormat::dayParser.parse(firstDay).value();
  return AppleFormat::dayText(AppleFormat::daysAfter(first, static_cast<int>(number % days)));
}

LiveSessions::Writer::Writer(const std::string& path)
    : database(path, {.create = false, .readOnly = false}),
      records(database.prepare(
          "INSERT OR REPLACE INTO records (type, source_name, unit, start_date, start_day,\n"
          "  end_date, value, value_num) VALUES (?, ?, ?, ?, ?, ?, ?, ?)")),
      workouts(database.prepare(
          "INSERT OR REPLACE INTO workouts (activity_type, duration_min, source_name,\n"
          "  start_date, start_day, end_date, distance_km) VALUES (?, 1, ?, ?, ?, ?, 0.25)")),
      humidities(database.prepare("INSERT OR REPLACE INTO workout_humidity VALUES (?, ?)")),
      sources(database.prepare(
          "INSERT INTO stat_sources VALUES (?, 1, ?)\n"
          "ON CONFLICT (source_name) DO UPDATE SET n = n + 1, last = excluded.last")) {
  database.exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL");
}

void LiveSessions::Writer::becomeImpatient() { database.exec("PRAGMA busy_timeout=0"); }

std::int64_t LiveSessions::Writer::count() {
  Statement query = database.prepare("SELECT COUNT(*) FROM workouts");
  return query.next()->find<std::int64_t>(0).value();
}

void LiveSessions::Writer::store(std::int64_t number) {
  database.exec("BEGIN IMMEDIATE");
  addWorkout(number);
  for (int sample = 0; sample < heartRatesEach; ++sample) {
    addRecord(number, "HeartRate", watch, 10 * sample, 100 + sample);
  }
  addRecord(number, "StepCount", watch, 0, stepsEach);
  addRecord(number, "StepCount", phone, 0, 90);
  addRecord(number, "RestingHeartRate", watch, 0, 55);
  addRecord(number, "BodyMass", phone, 0, 64.5);
  for (const char* name : {watch, phone}) {
    sources.bind(1, std::string_view(name)).bind(2, stampOf(number, lastSecond)).run();
  }
  database.exec("COMMIT");
}

void LiveSessions::Writer::addRecord(std::int64_t number, const char* type, const char* source,
                                     int second, double value) {
  records.bind(1, std::string_view(type))
      .bind(2, std::string_view(source))
      .bind(3, std::string_view("count/min"))
      .bind(4, stampOf(number, second))
      .bind(5, dayOf(number))
      .bind(6, stampOf(number, lastSecond))
      .bind(7, fixedDecimals(value, 1))
      .bind(8, value)
      .run();
}

void LiveSessions::Writer::addWorkout(std::int64_t number) {
  WorkoutEntry entry;
  entry.activity_type = activity;
  entry.source = watch;
  entry.start = stampOf(number, 0);
  entry.end = stampOf(number, lastSecond);
  workouts.bind(1, entry.activity_type)
      .bind(2, entry.source)
      .bind(3, entry.start)
      .bind(4, dayOf(number))
      .bind(5, entry.end)
      .run();
  humidities.bind(1, entry.workout_id())
      .bind(2,
            std::string_view(R"({"raw_value":55,"raw_unit":"%","encoding":"healthkit_percent",)"
                             R"("source_bundle_id":"com.apple.Workout"})"))
      .run();
}

void LiveSessions::Writer::checkpoint() {
  database.prepare("PRAGMA wal_checkpoint(TRUNCATE)").run();
}
