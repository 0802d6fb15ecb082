#pragma once
// What the import says when the system refuses it something.

#include "import/ImportError.h"

#include <system_error>

/// Names the file that `error` is about, where it knows one, and the system's reason in the
/// system's own words.
ImportError systemFailure(const std::system_error& error);
