#pragma once
// Moments in the notation of tests.

#include "platform/AppleFormat.h"

#include <string_view>

/// The moment of a stamp, "2024-03-17 12:00:00 +0000", in seconds since 1970. Throws
/// std::bad_optional_access for any other text.
inline double moment(std::string_view stamp) {
  return static_cast<double>(AppleFormat::stampParser.parse(stamp).value());
}
