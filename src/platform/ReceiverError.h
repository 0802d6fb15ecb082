#pragma once
// How our own data fails us.

#include <stdexcept>
#include <string>

/// Our own data cannot be read. `message` is complete and fit to be shown.
class ReceiverError : public std::runtime_error {
public:
  explicit ReceiverError(const std::string& message)
      : std::runtime_error(message), message(message) {}

  std::string message;  ///< whole, where what() ends at the first zero byte
};
