#pragma once
// Values by day and by night, for the series of a metric and for the summary.

#include "summary/SummaryDataSource.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// One night of sleep, at least two hours long.
struct SleepNight {
  std::string day;          ///< the day on which the night begins
  double minutes;           ///< time asleep, summed over all sources
  std::int64_t firstStart;  ///< start of the first sleep, seconds since 1970
  std::int64_t lastEnd;     ///< end of the last sleep, seconds since 1970

  bool operator==(const SleepNight&) const = default;
};

/// The median of `values`: the middle value, or the mean of the middle pair when their count is
/// even. `nullopt` when there are none. The order may be any; the call changes it.
std::optional<double> median(std::span<double> values);

/// Combines sleep segments, in any order, into nights. Takes one segment at a time, because ten
/// years of segments need much memory.
class SleepNights {
public:
  /// Only a segment with "Asleep" in its value counts. A segment with an unreadable stamp, or
  /// without a positive duration, is ignored. A segment belongs to the day (machine's time zone)
  /// twelve hours before its start, so that 23:00 and 01:00 are the same night.
  void add(const SleepSegment& segment);

  /// The nights so far, ascending by day. Less than 120 minutes is not a night.
  std::vector<SleepNight> inOrder() const;

private:
  std::map<std::string, SleepNight> byDay;
};

/// The nights of `segments`; see SleepNights.
std::vector<SleepNight> sleepNights(std::span<const SleepSegment> segments);
