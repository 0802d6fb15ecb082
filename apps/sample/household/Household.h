#pragma once
// A whole data root: the database of every member, then the roster.

#include "sample/Options.h"
#include "sample/Progress.h"
#include "sample/life/Person.h"

#include <cstdint>
#include <ostream>
#include <string>

/// The summary of a written member in one line: "Ann (ann-01): 3,021 records, 85 workouts".
std::string memberReport(const Person& person, std::int64_t records, std::int64_t workouts);

/// Writes the household of `options`, on the day `today`, and one closing line per member to
/// `report`. The roster is written last, so an interrupted run leaves no data root that looks
/// complete. Throws ReceiverError before writing anything when the directory already contains a
/// roster or a member's database. Failures to write throw ReceiverError or std::system_error.
void writeHousehold(const Options& options, CivilDay today, std::ostream& report,
                    Progress& progress);
