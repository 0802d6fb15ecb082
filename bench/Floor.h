#pragma once
// What an answer cannot do without: the rows it is made of, stepped bare through the same library.

#include <string>
#include <vector>

/// A query and its texts to bind, in order.
struct BareQuery {
  std::string sql;
  std::vector<std::string> texts;
};

namespace Floor {

/// The number of all records, which every coverage notice tells.
BareQuery count();

/// The rows of a type in a range of days, grouped by day and source.
BareQuery sums(const std::string& type, const std::string& from, const std::string& to);

/// The day and value of every record of a type in a range of days, by day.
BareQuery values(const std::string& type, const std::string& from, const std::string& to);

/// The counts of all records by type and day, out of the index alone.
BareQuery countsByDay();

/// The records of one type on one day.
BareQuery dayOf(const std::string& type, const std::string& day);

/// The workouts of a range of days in full.
BareQuery workouts(const std::string& from, const std::string& to);

/// The four texts that a workout's identifier is made of, of all workouts.
BareQuery workoutKeys();

/// The heart-rate records of a range of days, in full.
BareQuery heartRates(const std::string& from, const std::string& to);

/// Opens the database at `path`, steps through every row of `queries`, closes it. Returns the
/// number of rows, so that nothing can be left out as unused.
int stepped(const std::string& path, const std::vector<BareQuery>& queries);

}  // namespace Floor
