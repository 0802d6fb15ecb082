#pragma once
// XML attributes and elements as text.

#include "sample/life/Calendar.h"

#include <string>
#include <string_view>

namespace Markup {

/// Appends ` name="value"`; special characters in the value are escaped.
void appendAttribute(std::string& text, std::string_view name, std::string_view value);

/// The same for a stamp, which needs no escapes.
void appendAttribute(std::string& text, std::string_view name, Stamp stamp);

/// Appends one metadata element of a record or workout.
void appendEntry(std::string& text, std::string_view key, std::string_view value);

}  // namespace Markup
