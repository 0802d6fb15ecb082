#pragma once
// Database files with unreadable parts, as after a disk failure.

#include "support/TestDatabase.h"

#include <string_view>

/// Overwrites every leaf page of the file, with rows or index entries, with the bytes of `marker`.
/// Interior pages are not changed. Reading an overwritten page fails with "database disk image is
/// malformed". Returns the number of overwritten pages.
int ruinPages(TestDatabase& database, std::string_view marker);
