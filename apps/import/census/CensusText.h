#pragma once
// A census as text.

#include "import/census/Census.h"
#include "platform/SummaryLang.h"

#include <string>

/// The census as text for people to read and to pass on, in lines including the last line feed.
/// Digits are grouped by commas in every locale.
std::string censusText(const Census& census, SummaryLang lang);
