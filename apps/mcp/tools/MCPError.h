#pragma once
// The error of a request that cannot be answered.

#include <stdexcept>
#include <string>

/// An error with its own JSON-RPC code. `message` is complete and can be shown to the user.
class MCPError : public std::runtime_error {
public:
  static constexpr int unknownName = -32601;       ///< no such method or tool
  static constexpr int invalidArguments = -32602;  ///< the arguments are invalid
  static constexpr int internal = -32603;          ///< our own data cannot be read

  MCPError(int code, const std::string& message)
      : std::runtime_error(message), code(code), message(message) {}

  int code;
  std::string message;  ///< complete, while what() ends at the first zero byte
};
