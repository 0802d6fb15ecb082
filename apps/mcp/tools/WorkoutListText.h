#pragma once
// get_workouts as text for people and models.

#include "mcp/tools/Tools.h"
#include "mcp/tools/WorkoutList.h"
#include "mcp/tools/WorkoutSelection.h"

#include <string>

namespace WorkoutListText {

/// The answer, line by line. `coverage` is the member's coverage notice.
std::string text(const WorkoutList::Query& query, const WorkoutSelection::Selection& selection,
                 const std::string& coverage, const Tools::Call& call);

}  // namespace WorkoutListText
