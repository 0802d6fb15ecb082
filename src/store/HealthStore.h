#pragma once
// One member's database: the only place that knows its tables.

#include "platform/Logger.h"
#include "store/Database.h"
#include "summary/DailySeries.h"
#include "summary/Metrics.h"
#include "summary/SummaryDataSource.h"
#include "workouts/WorkoutHeartRate.h"
#include "workouts/Workouts.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// One type of record on one day.
struct DayRow {
  std::string type;
  double value;          ///< the largest sum of a source, or the mean of all samples, by the type
  std::int64_t samples;  ///< of all sources together, >= 1
  std::string unit;      ///< as stored with the first source; "" when stored without

  bool operator==(const DayRow&) const = default;
};

/// One workout of a day, in short.
struct DayWorkout {
  std::string type;  ///< activity code; "?" when stored without
  double minutes;
  std::optional<double> km;
  std::optional<double> kcal;

  bool operator==(const DayWorkout&) const = default;
};

/// A member's open database. Days are "yyyy-MM-dd" in the person's own calendar; ranges include
/// both ends and compare as text. All values are in the units they were stored in. Failures leave
/// as ReceiverError; the connection closes with the store.
class HealthStore final : public SummaryDataSource {
public:
  struct Options {
    bool createIfMissing = false;  ///< make the directory and the file if need be
    bool readOnly = true;          ///< otherwise migrated, see store/Schema.h
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< see Database::Options
    Patience* sharedPatience = nullptr;                    ///< the same
    const std::function<bool()>* interrupted = nullptr;    ///< see Database::Options
  };

  /// Opens the file at `path`. Without `createIfMissing`, a missing directory fails with
  /// "数据目录不可用(盘没挂载?):" and the directory, a missing file with "库文件不存在:" and the
  /// path. With it, a directory that cannot be made leaves as std::filesystem::filesystem_error.
  /// All else that keeps the file from being opened fails as Database tells. A read-only store sees
  /// one state of the database, that of its first query, and writes nothing. `log` outlives the
  /// store.
  HealthStore(std::string path, Options options, Logger& log);

  HealthStore(const HealthStore&) = delete;
  HealthStore& operator=(const HealthStore&) = delete;

  /// A statement on this database; see Database::prepare. Its text goes to the log, at level debug.
  Statement prepare(const std::string& sql, std::string stepFailure = "读取失败:") const;

  /// One value a day, ascending. How a day is made of its records is the metric's Aggregation; days
  /// (nights) without data are not in it. A night may carry the day before `from`.
  std::vector<DailyValue> series(HealthMetric metric, std::string_view from,
                                 std::string_view to) const;

  /// Everything recorded on `day`, one row a type, ascending by type. Sources overlap: of a type
  /// that adds up, the source with the largest sum speaks; of any other, the mean of all samples.
  std::vector<DayRow> dayDetail(std::string_view day) const;

  /// The workouts that began on `day`, by their start.
  std::vector<DayWorkout> workouts(std::string_view day) const;

  /// The workouts whose start day lies in the range, newest first, with their humidity readings. An
  /// absent bound leaves that end open.
  std::vector<WorkoutEntry> workoutDetails(std::optional<std::string_view> from,
                                           std::optional<std::string_view> to) const;

  /// Hands each workout of the range to `take`, newest first, with the row it is stored in. Only
  /// what choosing among workouts needs is read: activity_type, source, indoor, duration_min,
  /// distance_km and the energies. A member may have tens of thousands, and an answer shows few.
  void listWorkouts(std::string_view from, std::string_view to,
                    const std::function<void(std::int64_t row, const WorkoutEntry&)>& take) const;

  /// The workouts stored in `rows`, in that order, in full with their humidity readings.
  std::vector<WorkoutEntry> workoutsAt(std::span<const std::int64_t> rows) const;

  /// The heart-rate samples that one source took during the workout of this identifier: those whose
  /// start lies in it, the end excluded. Without a `source`, that of the workout; there is no
  /// falling back to another, nothing is merged, filled in or left out silently. `limit` is 1 to
  /// 5000 samples on the page, `offset` the samples before it. Fails when no workout has the
  /// identifier, when its times cannot be read, and above 200000 samples. `person_id` stays empty.
  WorkoutHeartRate workoutHeartRate(const std::string& workoutID,
                                    const std::optional<std::string>& source, std::int64_t limit,
                                    std::int64_t offset) const;

  RecordedDays recordedDays() const override;  ///< by a few seeks a type
  std::vector<std::string> devices() const override;
  std::int64_t recordCount() const override;
  std::set<std::string> presentTypes() const override;
  RecordCounts yearlyCounts() const override;
  std::map<std::string, double> dailyTotals(std::string_view type, std::string_view from,
                                            std::string_view to) const override;
  std::vector<double> values(std::string_view type, std::string_view from,
                             std::string_view to) const override;
  std::optional<DailyValue> latestValue(std::string_view type) const override;
  std::vector<SleepSegment> sleepSegments(std::string_view from,
                                          std::string_view to) const override;
  WorkoutStats workoutStats(std::string_view from, std::string_view to) const override;

private:
  bool hasTable(std::string_view name) const;
  std::vector<DailyValue> medianSeries(std::string_view type, std::string_view from,
                                       std::string_view to) const;
  Statement selectSleep(std::string_view from, std::string_view to) const;
  std::vector<DailyValue> sleepSeries(std::string_view from, std::string_view to) const;
  WorkoutEntry workoutNamed(const std::string& workoutID) const;
  void attachHumidity(std::vector<WorkoutEntry>& workouts) const;

  Logger& log;
  std::string path;
  Database db;
};
