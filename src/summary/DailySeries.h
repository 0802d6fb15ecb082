#pragma once
// Values by day and by night: the arithmetic that the series of a metric and the summary share.

#include "summary/SummaryDataSource.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// One night of sleep, of at least two hours.
struct SleepNight {
  std::string day;          ///< the day on which the night begins
  double minutes;           ///< asleep, all sources added up
  std::int64_t firstStart;  ///< when the first sleep began, seconds since 1970
  std::int64_t lastEnd;     ///< when the last sleep ended, seconds since 1970

  bool operator==(const SleepNight&) const = default;
};

/// The middle of `values`, or the mean of the middle pair when their count is even; `nullopt` when
/// there are none. Any order; changes it.
std::optional<double> median(std::span<double> values);

/// Makes nights of sleep segments in any order, one at a time: all of ten years would be a lot to
/// hold at once.
class SleepNights {
public:
  /// Only a segment whose value says "Asleep" counts; one whose stamps cannot be read, or that does
  /// not end after it starts, is left out. A segment belongs to the day (machine's time zone) of
  /// the moment twelve hours before it starts, so that 23:00 and 01:00 are one night.
  void add(const SleepSegment& segment);

  /// The nights so far, ascending by day. Less than 120 minutes are no night.
  std::vector<SleepNight> inOrder() const;

private:
  std::map<std::string, SleepNight> byDay;
};

/// The nights in `segments`, see SleepNights.
std::vector<SleepNight> sleepNights(std::span<const SleepSegment> segments);
