#pragma once
// What this program shares with the receiver application: where the data lies and how it fails.

#include <filesystem>
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

namespace ControlProtocol {

/// The data root when the command line names none: "Library/Application Support/Larkspur" under the
/// home directory. Computed on first use.
const std::filesystem::path& defaultDataRoot();

}  // namespace ControlProtocol
