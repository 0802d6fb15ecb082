#pragma once
// The activity rings of a watch for each day: energy, exercise, hours with standing.

#include "sample/export/ExportUnits.h"
#include "sample/life/Sample.h"

#include <cstdint>
#include <map>
#include <string>

/// Computes the rings of each day as an export lists them.
class ActivityRings {
public:
  /// Adds a sample of the watch; ignores samples that do not count for a ring.
  void add(const Sample& sample);

  /// Appends one element per day, oldest first, with its energy in a unit of `system`.
  void append(std::string& text, UnitSystem system) const;

private:
  struct Day {
    std::int64_t energy = 0;    ///< thousandths of a kilocalorie
    std::int64_t exercise = 0;  ///< minutes
    int standHours = 0;
  };

  std::map<std::string, Day, std::less<>> days;
};
