#pragma once
// Elements that only flawed exports have.

#include "sample/flaws/Flaws.h"
#include "sample/life/Calendar.h"

#include <string>

namespace AddedElements {

/// The root's elements that `flaws` add, each ending in a line feed. They lie in the week that
/// begins with `midnight`, a stamp at the offset of the export. `firstDay` is the day of that
/// midnight at the person's home. Their sources are called "Flaws", so that nobody mistakes them
/// for a part of the life.
std::string of(const FlawSet& flaws, Stamp midnight, CivilDay firstDay);

}  // namespace AddedElements
