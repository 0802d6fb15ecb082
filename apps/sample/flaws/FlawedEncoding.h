#pragma once
// Exports in other encodings than that of phones.

#include "sample/flaws/Flaws.h"

#include <string>
#include <string_view>

namespace FlawedEncoding {

/// What the XML declaration says: "UTF-8" unless `flaws` choose another encoding.
std::string_view nameOf(const FlawSet& flaws);

/// `text`, whole characters of UTF-8, in the encoding that `flaws` choose; with a byte order mark
/// where they want one and `isFirst`. A character that the encoding lacks becomes "?".
std::string encoded(std::string text, const FlawSet& flaws, bool isFirst);

}  // namespace FlawedEncoding
