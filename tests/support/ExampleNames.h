#pragma once
// Names of parameterised tests over all example calls.

#include "examples/Examples.h"

#include <algorithm>
#include <ostream>
#include <string>

/// The suffix of a test's name for the example: "get_trend_sleep".
inline std::string suffixOf(const Example& example) {
  std::string name = example.name;
  std::ranges::replace(name, ' ', '_');
  return name;
}

inline void PrintTo(const Example& example, std::ostream* stream) { *stream << example.name; }
