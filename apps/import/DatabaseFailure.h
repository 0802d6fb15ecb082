#pragma once
// What the import says when the database fails it.

#include "import/ImportError.h"
#include "platform/ControlProtocol.h"

/// Why the import ends when the store fails with `error`; a full disk is named as such.
ImportError databaseFailure(const ReceiverError& error);
