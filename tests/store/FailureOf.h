#pragma once
// The message of a failure.

#include "platform/ReceiverError.h"

#include <string>

/// What `act` fails with; "" when it does not.
template <typename Act>
std::string failureOf(Act act) {
  try {
    act();
  } catch (const ReceiverError& error) {
    return error.what();
  }
  return "";
}
