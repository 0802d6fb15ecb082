#pragma once
// The tables of a member's database.

#include "store/Database.h"

namespace Schema {

/// Prepares `database`, open for writing, for a writer: sets WAL mode and creates every missing
/// table, column and index. Existing ones stay unchanged. Stops at the first failure and throws
/// DatabaseError; the changes before it stay.
void migrate(Database& database);

}  // namespace Schema
