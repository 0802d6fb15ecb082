#pragma once
// get_workouts as a JSON document for programs.

#include "mcp/tools/Tools.h"
#include "mcp/tools/WorkoutList.h"
#include "mcp/tools/WorkoutSelection.h"

#include <string>

namespace WorkoutListJson {

/// The answer as one document with fixed keys; an absent value is null. `coverage` is the member's
/// coverage notice.
std::string json(const WorkoutList::Query& query, const WorkoutSelection::Selection& selection,
                 const std::string& coverage, const Tools::Call& call);

}  // namespace WorkoutListJson
