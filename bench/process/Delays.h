#pragma once
// A client's waiting time for the server itself, compared with that for a program that only echoes.

#include "bench/process/Measurement.h"

#include <string>
#include <vector>

/// The two compared programs, each with its arguments.
struct Programs {
  std::vector<std::string> server;
  std::vector<std::string> echo;
};

namespace Delays {

/// The time from starting a program to reading its reply to `initialize`.
Measurement start(const Programs& programs);

/// The time from writing a ping to reading its reply, while both programs keep running.
Measurement roundTrip(const Programs& programs);

}  // namespace Delays
