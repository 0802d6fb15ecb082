#pragma once
// Database files of which a part cannot be read, as a failing disk leaves them.

#include "support/TestDatabase.h"

#include <string_view>

/// Overwrites every page of the file that holds rows, or entries of an index, with the bytes of
/// `marker`; the pages that only lead there are spared. Whoever reads an overwritten page fails
/// with "database disk image is malformed". Returns how many there were.
int ruinPages(TestDatabase& database, std::string_view marker);
