#pragma once
// The marks of an XML text.

#include "sample/life/Calendar.h"

#include <string>
#include <string_view>

namespace Markup {

/// Appends ` name="value"`, with what would end or open something inside a value escaped.
void appendAttribute(std::string& text, std::string_view name, std::string_view value);

/// The same for a stamp, which needs no escapes.
void appendAttribute(std::string& text, std::string_view name, Stamp stamp);

/// Appends a record's or a workout's line of metadata, a whole element.
void appendEntry(std::string& text, std::string_view key, std::string_view value);

}  // namespace Markup
