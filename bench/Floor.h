#pragma once
// The baseline of an answer: bare queries for its rows through the same SQLite library.

#include <string>
#include <vector>

/// A query and its texts to bind, in order. The query runs once for each binding.
struct BareQuery {
  std::string sql;
  std::vector<std::vector<std::string>> bindings;
};

namespace Floor {

/// The number of all records.
BareQuery count();

/// The first and the last day of each type, for the coverage notice.
std::vector<BareQuery> days(const std::vector<std::string>& types);

/// The number of records of each type and year, as ranges of the index on type and day.
BareQuery countsByYear(const std::vector<std::string>& types,
                       const std::vector<std::string>& years);

/// The day, source and value of every record of a type in a range of days, ordered by day.
BareQuery sourceValues(const std::string& type, const std::string& from, const std::string& to);

/// The day and value of every record of a type in a range of days, ordered by day.
BareQuery values(const std::string& type, const std::string& from, const std::string& to);

/// The records of each type on one day.
BareQuery recordsOf(const std::vector<std::string>& types, const std::string& day);

/// The workouts of a range of days, with the columns of an answer.
BareQuery workouts(const std::string& from, const std::string& to);

/// The four texts of all workouts that determine their identifiers.
BareQuery workoutKeys();

/// The heart-rate records of a range of days: row id, stamp, source, unit and value.
BareQuery heartRates(const std::string& from, const std::string& to);

/// Opens the database at `path`, steps through every row of `queries` and closes it. Returns the
/// number of rows, so that the compiler cannot remove the work.
int stepped(const std::string& path, const std::vector<BareQuery>& queries);

}  // namespace Floor
