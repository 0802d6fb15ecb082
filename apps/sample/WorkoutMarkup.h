#pragma once
// A workout as an export writes it down.

#include "sample/Sample.h"

#include <string>
#include <string_view>

namespace WorkoutMarkup {

/// Appends the element of `workout`. `source` are the attributes that say what recorded it. Lengths
/// are written in kilometres and heights in centimetres, temperatures in degrees Celsius: so every
/// figure has as many digits as it was told with, and reads back as the same number.
void append(std::string& text, const Workout& workout, std::string_view source);

}  // namespace WorkoutMarkup
