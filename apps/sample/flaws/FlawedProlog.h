#pragma once
// How flawed exports begin.

#include "sample/flaws/Flaws.h"

#include <string>

namespace FlawedProlog {

/// The XML declaration and the document type with what `flaws` make of them; ends in a line feed.
std::string of(const FlawSet& flaws);

/// The attributes that `flaws` add to the root, " name=\"value\"" each; "" when there are none.
std::string rootAttributes(const FlawSet& flaws);

}  // namespace FlawedProlog
