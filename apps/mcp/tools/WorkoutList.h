#pragma once
// The query of get_workouts, shared by the two forms of its answer.

#include "mcp/tools/Arguments.h"
#include "mcp/tools/Tools.h"
#include "mcp/tools/WorkoutSelection.h"
#include "platform/Phrase.h"

#include <string>
#include <string_view>

namespace WorkoutList {

/// The query, as the answer repeats it.
struct Query {
  Member member;
  DayRange range;
  WorkoutSelection::Filters filters;
  WorkoutSelection::Order order = WorkoutSelection::Order::desc;
  WorkoutSelection::Page page;
};

/// The order's name: "desc" or "asc".
std::string_view rawValue(WorkoutSelection::Order order);

/// The limits of the figures; ends both forms.
extern const Phrase closingNote;

}  // namespace WorkoutList
