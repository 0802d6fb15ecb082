#pragma once
// A workout as XML of an export.

#include "sample/export/ExportUnits.h"
#include "sample/life/Sample.h"

#include <string>
#include <string_view>

namespace WorkoutMarkup {

/// Appends the element of `workout`. `source` contains the attributes of its source. Metric lengths
/// are in kilometres and temperatures in degrees Celsius; climbs are in centimetres in both
/// systems. So every metric figure keeps its digits and is read back as the same number.
void append(std::string& text, const Workout& workout, std::string_view source, UnitSystem units);

}  // namespace WorkoutMarkup
