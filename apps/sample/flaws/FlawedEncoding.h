#pragma once
// Exports in other encodings than that of phones.

#include "sample/flaws/Flaws.h"

#include <string>
#include <string_view>

namespace FlawedEncoding {

/// The encoding in the XML declaration: "UTF-8" unless `flaws` choose another.
std::string_view nameOf(const FlawSet& flaws);

/// `text`, whole characters of UTF-8, in the encoding that `flaws` choose. A byte order mark is
/// prepended if `flaws` ask for it and `isFirst`. A character outside the encoding becomes "?".
std::string encoded(std::string text, const FlawSet& flaws, bool isFirst);

}  // namespace FlawedEncoding
