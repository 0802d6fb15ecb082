#pragma once
// The baseline of an answer: the rows that it is made of, stepped bare through the same library.

#include <string>
#include <vector>

/// A query and the texts to bind, in order; it is stepped once for each of the bindings.
struct BareQuery {
  std::string sql;
  std::vector<std::vector<std::string>> bindings;
};

namespace Floor {

/// The number of all records.
BareQuery count();

/// The first and the last day of each type, which the coverage notice tells.
std::vector<BareQuery> days(const std::vector<std::string>& types);

/// The numbers of records of each type and year, as ranges of the index on type and day.
BareQuery countsByYear(const std::vector<std::string>& types,
                       const std::vector<std::string>& years);

/// The day, source and value of every record of a type in a range of days, by day.
BareQuery sourceValues(const std::string& type, const std::string& from, const std::string& to);

/// The day and value of every record of a type in a range of days, by day.
BareQuery values(const std::string& type, const std::string& from, const std::string& to);

/// The records of each type on one day.
BareQuery recordsOf(const std::vector<std::string>& types, const std::string& day);

/// The workouts of a range of days: the columns that an answer shows.
BareQuery workouts(const std::string& from, const std::string& to);

/// The four texts that a workout's identifier is made of, of all workouts.
BareQuery workoutKeys();

/// The heart-rate records of a range of days: their row, stamp, source, unit and number.
BareQuery heartRates(const std::string& from, const std::string& to);

/// Opens the database at `path`, steps through every row of `queries`, closes it. Returns the
/// number of rows, so that nothing can be left out as unused.
int stepped(const std::string& path, const std::vector<BareQuery>& queries);

}  // namespace Floor
