#pragma once
// The rings that a watch fills every day: energy, exercise, hours with some standing.

#include "sample/export/ExportUnits.h"
#include "sample/life/Sample.h"

#include <cstdint>
#include <map>
#include <string>

/// Adds up the rings of the days as they appear in an export.
class ActivityRings {
public:
  /// Counts a sample of the watch; samples that fill no ring are passed over.
  void add(const Sample& sample);

  /// Appends one element a day, oldest first, with its energy in a unit of `system`.
  void append(std::string& text, UnitSystem system) const;

private:
  struct Day {
    std::int64_t energy = 0;    ///< thousandths of a kilocalorie
    std::int64_t exercise = 0;  ///< minutes
    int standHours = 0;
  };

  std::map<std::string, Day, std::less<>> days;
};
