#pragma once
// Selection among workouts in a test's memory.

#include "mcp/tools/WorkoutSelection.h"

#include <cstddef>
#include <vector>

/// The selection among `workouts`, newest first, including the workouts of the page.
inline WorkoutSelection::Selection selected(const std::vector<WorkoutEntry>& workouts,
                                            const WorkoutSelection::Filters& filters,
                                            WorkoutSelection::Order order,
                                            WorkoutSelection::Page page) {
  WorkoutSelection::Selector selector(filters);
  for (std::size_t row = 0; row < workouts.size(); ++row) {
    selector.add(static_cast<std::int64_t>(row), workouts[row]);
  }
  WorkoutSelection::Selection selection = selector.selected(order, page);
  for (const std::int64_t row : selection.pageRows) {
    selection.page.push_back(workouts.at(static_cast<std::size_t>(row)));
  }
  return selection;
}
