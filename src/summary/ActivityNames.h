#pragma once
// Display names of workout activities.

#include "platform/SummaryLang.h"

#include <string>
#include <string_view>

/// Display name of a workout activity code such as "TableTennis". Chinese names come from a table;
/// an unknown code is returned unchanged. In English the code is split before its capital letters:
/// "Table Tennis".
std::string activityName(std::string_view code, SummaryLang lang);
