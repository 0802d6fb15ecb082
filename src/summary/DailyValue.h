#pragma once
// A value on a day, and a range of days.

#include <string>

/// One metric on one calendar day. A day without data has no DailyValue at all.
struct DailyValue {
  std::string day;  ///< "yyyy-MM-dd", the person's own calendar; "" for a sample without a day
  double value;     ///< in the metric's unit, see summary/Metrics.h

  bool operator==(const DailyValue&) const = default;
};

/// The days from `from` to `to`, both included. Empty when `from` is later than `to`.
struct DayRange {
  std::string from;
  std::string to;

  bool operator==(const DayRange&) const = default;
};
