#pragma once
// A census in words.

#include "import/census/Census.h"
#include "platform/SummaryLang.h"

#include <string>

/// The census for a person to read and to pass on, in lines with their last line feed. Digits are
/// grouped by commas whatever the user's locale.
std::string censusText(const Census& census, SummaryLang lang);
