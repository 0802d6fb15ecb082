#pragma once
// The error of unreadable data of our own.

#include <stdexcept>
#include <string>

/// Our own data cannot be read. `message` is complete and can be shown to the user.
class ReceiverError : public std::runtime_error {
public:
  explicit ReceiverError(const std::string& message)
      : std::runtime_error(message), message(message) {}

  std::string message;  ///< complete, while what() ends at the first zero byte
};
