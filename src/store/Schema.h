#pragma once
// The tables of a member's database.

#include "store/Database.h"

namespace Schema {

/// Makes `database`, open for writing, as a writer keeps it: in WAL mode, with every table, column
/// and index that a new or an older file lacks. What is there stays. Stops at the first failure,
/// which leaves as DatabaseError; what was made before stays.
void migrate(Database& database);

}  // namespace Schema
