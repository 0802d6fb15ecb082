#pragma once
// Elements that flawed exports have and the clean one has not.

#include "sample/flaws/Flaws.h"
#include "sample/life/Calendar.h"

#include <string>

namespace AddedElements {

/// The elements of the root that `flaws` add, each ending in a line feed. They lie in the week that
/// begins with `midnight`, a stamp at the offset of the export; `firstDay` is the day of that
/// midnight where the person lives. What each of them comes from is called "Flaws", so that nobody
/// takes them for a part of the life.
std::string of(const FlawSet& flaws, Stamp midnight, CivilDay firstDay);

}  // namespace AddedElements
