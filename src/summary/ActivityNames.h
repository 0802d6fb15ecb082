#pragma once
// What kinds of workout are called.

#include "platform/SummaryLang.h"

#include <string>
#include <string_view>

/// Display name of a workout activity code such as "TableTennis". In Chinese by a table, else the
/// code itself; in English the code split before its capital letters, "Table Tennis".
std::string activityName(std::string_view code, SummaryLang lang);
