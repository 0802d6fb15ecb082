#pragma once
// The computation of one member's summary from a data source.

#include "platform/AppleFormat.h"
#include "platform/Locale.h"
#include "platform/SummaryLang.h"
#include "roster/IngestPayload.h"
#include "summary/SummaryDataSource.h"
#include "summary/SummaryModel.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A figure and the number of samples behind it.
struct Figure {
  double value;
  std::int64_t samples;  ///< days or values, >= 1

  bool operator==(const Figure&) const = default;
};

/// One night's sleep, in clock minutes that sort correctly across midnight.
struct Night {
  double minutes;      ///< asleep
  double bedMinutes;   ///< falling asleep, minutes after 18:00
  double wakeMinutes;  ///< waking, minutes after midnight

  bool operator==(const Night&) const = default;
};

/// Computes summaries. Days are those of the machine's time zone. "The last N days" are today, the
/// day N days ago, and all days between. An unreadable figure counts as missing.
class SummaryEngine {
public:
  /// `today` (seconds since 1970) is the end of every period. `source` outlives the engine.
  SummaryEngine(const SummaryDataSource& source, double today, SummaryLang lang,
                DigitGrouping grouping);

  /// The whole summary. `lastSyncAt` is in seconds since 1970. Throws the source's error when its
  /// coverage or its types cannot be read.
  HealthSummary build(std::string_view personID, std::string_view person,
                      std::optional<double> lastSyncAt,
                      const std::optional<BackfillState>& backfill) const;

  SummaryLang language() const { return lang; }
  const DigitGrouping& digitGrouping() const { return grouping; }
  const SummaryDataSource& data() const { return source; }

  /// The range from the day `daysBack` days ago to today.
  DayRange lastDays(int daysBack) const;

  /// The range that ends one calendar year before today and begins `days` days earlier.
  DayRange lastYearWindow(int days) const;

  /// Mean daily total of a cumulative type over the days with data.
  std::optional<Figure> averageDaily(std::string_view type, const DayRange& window) const;

  /// Median of all values of a type.
  std::optional<Figure> medianValue(std::string_view type, const DayRange& window) const;

  /// The newest value of a type.
  std::optional<DailyValue> latestValue(std::string_view type) const;

  /// The workouts of a window; absent only when they cannot be read.
  std::optional<WorkoutStats> workoutStats(const DayRange& window) const;

  /// The nights of the last `daysBack` days, in order.
  std::vector<Night> nights(int daysBack) const;

private:
  const SummaryDataSource& source;
  double today;
  SummaryLang lang;
  DigitGrouping grouping;
};

/// The result of `read`; absent when it throws. One unreadable figure must not remove the others.
template <typename Read>
auto orNothing(Read read) -> std::optional<decltype(read())> {
  try {
    return read();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

/// The number with `digits` decimals, and a "+" when it is positive: "+2", "-3", "0".
std::string signedText(double value, int digits);

/// The clock time, "23:05", `minutes` after 18:00.
std::string clockFromEvening(double minutes);

/// The clock time, "07:05", `minutes` after midnight.
std::string clockFromMidnight(double minutes);
