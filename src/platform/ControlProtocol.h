#pragma once
// What this program shares with the receiver application: where the data lies and how it fails.

#include <filesystem>
#include <stdexcept>

/// Our own data cannot be read. `what()` is the message, complete and fit to be shown.
class ReceiverError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

namespace ControlProtocol {

/// The data root when the command line names none: "Library/Application Support/Larkspur" under the
/// home directory. Computed on first use.
const std::filesystem::path& defaultDataRoot();

}  // namespace ControlProtocol
