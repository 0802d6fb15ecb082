#pragma once
// A workout as an export writes it down.

#include "sample/export/ExportUnits.h"
#include "sample/life/Sample.h"

#include <string>
#include <string_view>

namespace WorkoutMarkup {

/// Appends the element of `workout`. `source` are the attributes that say what recorded it. Metric
/// lengths are in kilometres and temperatures in degrees Celsius, climbs in centimetres in either
/// system: so every metric figure has as many digits as it was told with, and reads back as the
/// same number.
void append(std::string& text, const Workout& workout, std::string_view source, UnitSystem units);

}  // namespace WorkoutMarkup
