#pragma once
// How long a client waits for the server itself, beside how long it waits for a program that only
// echoes.

#include "bench/process/Measurement.h"

#include <string>
#include <vector>

/// The two programs that are compared, each with its arguments.
struct Programs {
  std::vector<std::string> server;
  std::vector<std::string> echo;
};

namespace Delays {

/// From starting a program to having read its reply to `initialize`.
Measurement start(const Programs& programs);

/// From writing a ping to having read its reply, both programs being kept alive.
Measurement roundTrip(const Programs& programs);

}  // namespace Delays
