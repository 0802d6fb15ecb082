#pragma once
// How our own data fails us.

#include <stdexcept>
#include <string>

/// Our own data cannot be read. `message` is complete and fit to be shown.
class ReceiverError : public std::runtime_error {
public:
  explicit ReceiverError(const std::string& message, int systemError = 0)
      : std::runtime_error(message), message(message), systemError(systemError) {}

  std::string message;  ///< whole, where what() ends at the first zero byte
  int systemError;      ///< the errno of the system's own refusal; 0 when it is not known
};
