#pragma once
// One member's database: the only class that knows its tables.

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

/// All records of one type on one day.
struct DayRow {
  std::string type;
  double value;          ///< by type: the largest sum of any source, or the mean of all samples
  std::int64_t samples;  ///< of all sources together; >= 1
  std::string unit;      ///< of the first source, as stored; "" when stored without one

  bool operator==(const DayRow&) const = default;
};

/// The main values of one workout of a day.
struct DayWorkout {
  std::string type;  ///< activity code; "?" when stored without one
  double minutes;
  std::optional<double> km;
  std::optional<double> kcal;

  bool operator==(const DayWorkout&) const = default;
};

/// A member's open database. Days are "yyyy-MM-dd" in the person's own calendar. Day ranges include
/// both ends and compare as text. All values are in their stored units. Failures throw
/// ReceiverError. The destructor closes the connection.
class HealthStore final : public SummaryDataSource {
public:
  struct Options {
    bool createIfMissing = false;  ///< create missing directories and the file
    bool readOnly = true;          ///< otherwise migrates the database, see store/Schema.h
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< see Database::Options
    Patience* sharedPatience = nullptr;                    ///< see Database::Options::shared
    const std::function<bool()>* interrupted = nullptr;    ///< see Database::Options
  };

  /// Opens the file at `path`. Without `createIfMissing`, a missing directory fails with
  /// "数据目录不可用(盘没挂载?):" and the directory, and a missing file with "库文件不存在:" and
  /// the path. With it, a directory that cannot be created throws
  /// std::filesystem::filesystem_error. Any other failure to open is that of Database. A read-only
  /// store writes nothing. It sees one snapshot of the database, that of its first query. `log`
  /// outlives the store.
  HealthStore(std::string path, Options options, Logger& log);

  HealthStore(const HealthStore&) = delete;
  HealthStore& operator=(const HealthStore&) = delete;

  /// A statement on this database; see Database::prepare. Its SQL is logged at level debug.
  Statement prepare(const std::string& sql, std::string stepFailure = "读取失败:") const;

  /// One value per day, ascending. The metric's Aggregation decides how a day's records become its
  /// value. Days (nights) without data are missing. A night may be listed under the day before
  /// `from`.
  std::vector<DailyValue> series(HealthMetric metric, std::string_view from,
                                 std::string_view to) const;

  /// All records of `day`, one row per type, ascending by type. Sources overlap: a cumulative type
  /// has the largest sum of any source, any other type the mean of all samples.
  std::vector<DayRow> dayDetail(std::string_view day) const;

  /// The workouts that began on `day`, ordered by start.
  std::vector<DayWorkout> workouts(std::string_view day) const;

  /// The workouts with a start day in the range, newest first, with their humidity readings. An
  /// absent bound leaves that end open.
  std::vector<WorkoutEntry> workoutDetails(std::optional<std::string_view> from,
                                           std::optional<std::string_view> to) const;

  /// Passes each workout of the range to `take`, newest first, together with its row id. Only the
  /// fields that a selection needs are read: activity_type, source, indoor, duration_min,
  /// distance_km and the energies. A member may have tens of thousands of workouts, and an answer
  /// shows few.
  void listWorkouts(std::string_view from, std::string_view to,
                    const std::function<void(std::int64_t row, const WorkoutEntry&)>& take) const;

  /// The complete workouts in `rows`, in that order, with their humidity readings.
  std::vector<WorkoutEntry> workoutsAt(std::span<const std::int64_t> rows) const;

  /// The heart-rate samples of one source during the workout with this identifier. A sample belongs
  /// to it when its start is inside the workout, the end excluded. Without a `source`, the
  /// workout's own source is used. There is no fallback to another source, and nothing is merged,
  /// interpolated or omitted silently. `limit` is the page's maximum of samples (1 to 5000),
  /// `offset` the number of samples before it. Fails when no workout has the identifier, when its
  /// times cannot be read, and above 200000 samples. `person_id` stays empty.
  WorkoutHeartRate workoutHeartRate(const std::string& workoutID,
                                    const std::optional<std::string>& source, std::int64_t limit,
                                    std::int64_t offset) const;

  RecordedDays recordedDays() const override;  ///< takes a few index seeks per type
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
