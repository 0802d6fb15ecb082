#pragma once
// What the import says when the database fails it.

#include "import/ImportError.h"
#include "platform/ReceiverError.h"

/// Why the import ends when the store fails with `error`; a full disk is named as such. SQLite's
/// sentence about anything else is passed on as it is, without the words that the store, which has
/// one language only, puts before it.
ImportError databaseFailure(const ReceiverError& error);
