#pragma once
// An import that was asked to stop.

#include "import/ImportError.h"

#include <functional>

/// Ends an import that was asked to stop before its commit.
class Interruption : public ImportError {
public:
  Interruption();
};

/// Whether somebody has asked the import to stop. Asked often, so it must be cheap; once true, it
/// stays true.
using Interrupted = std::function<bool()>;

/// Throws Interruption when `interrupted` says so.
void heed(const Interrupted& interrupted);

/// The answer of an import that nobody can interrupt.
inline bool neverInterrupted() { return false; }
