#pragma once
// Moments as tests write them.

#include "platform/AppleFormat.h"

#include <string_view>

/// The moment that a stamp names, "2024-03-17 12:00:00 +0000", in seconds since 1970. Throws
/// std::bad_optional_access for any other text.
inline double moment(std::string_view stamp) {
  return static_cast<double>(AppleFormat::stampParser.parse(stamp).value());
}
