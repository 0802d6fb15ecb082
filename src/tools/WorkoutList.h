#pragma once
// The two forms of get_workouts' answer: text for reading, JSON for programs.

#include "tools/Arguments.h"
#include "tools/Tools.h"
#include "tools/WorkoutSelection.h"

#include <string>
#include <string_view>

namespace WorkoutList {

/// What was asked for, as the answer repeats it.
struct Query {
  Member member;
  Tools::DayRange range;
  WorkoutSelection::Filters filters;
  WorkoutSelection::Order order = WorkoutSelection::Order::desc;
  WorkoutSelection::Page page;
};

/// The order's name: "desc" or "asc".
std::string_view rawValue(WorkoutSelection::Order order);

/// What the figures are and are not; ends both forms.
extern const Phrase closingNote;

/// The answer as text. `coverage` is the member's coverage notice.
std::string text(const Query& query, const WorkoutSelection::Selection& selection,
                 const std::string& coverage, SummaryLang lang);

/// The answer as one JSON document with fixed keys; what is absent is null.
std::string json(const Query& query, const WorkoutSelection::Selection& selection,
                 const std::string& coverage, SummaryLang lang);

}  // namespace WorkoutList
