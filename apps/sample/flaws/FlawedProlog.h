#pragma once
// The beginning of flawed exports.

#include "sample/flaws/Flaws.h"

#include <string>

namespace FlawedProlog {

/// The XML declaration and the document type with `flaws`; ends with a line feed.
std::string of(const FlawSet& flaws);

/// The attributes that `flaws` add to the root, each as " name=\"value\""; "" when there are none.
std::string rootAttributes(const FlawSet& flaws);

}  // namespace FlawedProlog
