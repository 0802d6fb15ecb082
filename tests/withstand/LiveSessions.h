#pragma once
// What the live writer stores, so regular that every answer about it can be checked.

#include "store/Database.h"

#include <cstdint>
#include <string>

/// Sessions are numbered from 0. Each is one transaction: a workout of a minute, "Running", with
/// its humidity, and ten records on the same day: six of the heart rate inside the workout (100,
/// 101, ... 105), 100 steps of the watch and 90 of the phone, a resting heart rate and a weight. So
/// whatever is counted, a true answer counts whole sessions.
namespace LiveSessions {

inline constexpr std::int64_t recordsEach = 10;
inline constexpr std::int64_t heartRatesEach = 6;
inline constexpr std::int64_t stepsEach = 100;
inline constexpr double meanHeartRate = 102.5;

/// Sessions are dealt out to this many days, one after the other; the first ones lie in another
/// year than the last ones.
inline constexpr std::int64_t days = 366;
std::string dayOf(std::int64_t number);
inline constexpr const char* firstDay = "2023-07-01";
inline constexpr const char* lastDay = "2024-06-30";

/// A connection that stores sessions.
class Writer {
public:
  /// Waits for a database that is locked like anyone else, until `becomeImpatient`.
  explicit Writer(const std::string& path);

  /// From now on a locked database is an error at once.
  void becomeImpatient();

  /// How many sessions there are.
  std::int64_t count();

  /// Stores the session, again if it is there already. Fails without a trace.
  void store(std::int64_t number);

  /// Moves what the log holds into the database, as far as readers allow.
  void checkpoint();

private:
  void addRecord(std::int64_t number, const char* type, const char* source, int second,
                 double value);
  void addWorkout(std::int64_t number);

  Database database;
  Statement records;
  Statement workouts;
  Statement humidities;
  Statement sources;
};

}  // namespace LiveSessions
