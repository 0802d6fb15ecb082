#pragma once
// The error of an import or a check that was asked to stop.

#include "import/Failure.h"
#include "platform/Phrase.h"

#include <functional>

/// Ends a check, or an import before its commit, that was asked to stop.
class Interruption : public Failure {
public:
  Interruption();  ///< with the message that nothing was changed

  /// With `phrase` as the message.
  explicit Interruption(const Phrase& phrase);
};

/// Whether the run was asked to stop. It is called often, so it must be cheap. Once true, it stays
/// true.
using Interrupted = std::function<bool()>;

/// Throws Interruption when `interrupted` returns true.
void heed(const Interrupted& interrupted);

/// For a run that cannot be interrupted.
inline bool neverInterrupted() { return false; }
