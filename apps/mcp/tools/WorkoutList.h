#pragma once
// What get_workouts was asked for, shared by the two forms of its answer.

#include "mcp/tools/Arguments.h"
#include "mcp/tools/Tools.h"
#include "mcp/tools/WorkoutSelection.h"
#include "platform/Phrase.h"

#include <string>
#include <string_view>

namespace WorkoutList {

/// What was asked for, as the answer repeats it.
struct Query {
  Member member;
  DayRange range;
  WorkoutSelection::Filters filters;
  WorkoutSelection::Order order = WorkoutSelection::Order::desc;
  WorkoutSelection::Page page;
};

/// The order's name: "desc" or "asc".
std::string_view rawValue(WorkoutSelection::Order order);

/// What the figures are and are not; ends both forms.
extern const Phrase closingNote;

}  // namespace WorkoutList
