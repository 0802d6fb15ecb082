#pragma once
// An import or a check that was asked to stop.

#include "import/Failure.h"
#include "platform/Phrase.h"

#include <functional>

/// Ends an import that was asked to stop before its commit, or a check.
class Interruption : public Failure {
public:
  Interruption();  ///< says that nothing was changed

  /// Says `phrase` instead.
  explicit Interruption(const Phrase& phrase);
};

/// Whether somebody has asked the run to stop. Asked often, so it must be cheap; once true, it
/// stays true.
using Interrupted = std::function<bool()>;

/// Throws Interruption when `interrupted` says so.
void heed(const Interrupted& interrupted);

/// The answer of a run that nobody can interrupt.
inline bool neverInterrupted() { return false; }
