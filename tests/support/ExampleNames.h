#pragma once
// How a test that asks every example call is named and printed.

#include "examples/Examples.h"

#include <algorithm>
#include <ostream>
#include <string>

/// The name of the example as the end of a test's name: "get_trend_sleep".
inline std::string suffixOf(const Example& example) {
  std::string name = example.name;
  std::ranges::replace(name, ' ', '_');
  return name;
}

inline void PrintTo(const Example& example, std::ostream* stream) { *stream << example.name; }
