#pragma once
// What a caller asked that we cannot answer.

#include <stdexcept>
#include <string>

/// An error that chooses its own JSON-RPC code. `message` is complete and fit to be shown.
class MCPError : public std::runtime_error {
public:
  static constexpr int unknownName = -32601;       ///< no such method or tool
  static constexpr int invalidArguments = -32602;  ///< the arguments cannot be met
  static constexpr int internal = -32603;          ///< our own data cannot be read

  MCPError(int code, const std::string& message)
      : std::runtime_error(message), code(code), message(message) {}

  int code;
  std::string message;  ///< whole, where what() ends at the first zero byte
};
