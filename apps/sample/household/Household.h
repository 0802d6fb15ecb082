#pragma once
// A whole data root: everybody's database, then the roster that names them.

#include "sample/Options.h"
#include "sample/Progress.h"
#include "sample/life/Person.h"

#include <cstdint>
#include <ostream>
#include <string>

/// What was written of a member, in one line: "Ann (ann-01): 3,021 records, 85 workouts".
std::string memberReport(const Person& person, std::int64_t records, std::int64_t workouts);

/// Writes the household that `options` describe, on the day `today`, and one closing line per
/// member to `report`. The roster comes last, so an interrupted run leaves no data root that looks
/// finished. A directory that holds a roster or a member's database already is refused with
/// ReceiverError before anything is written; failures to write leave as ReceiverError or
/// std::system_error.
void writeHousehold(const Options& options, CivilDay today, std::ostream& report,
                    Progress& progress);
