#pragma once
// What this program shares with the receiver application: where the data lies.

#include <filesystem>

namespace ControlProtocol {

/// The data root when the command line names none: "Library/Application Support/Larkspur" under the
/// home directory. Computed on first use.
const std::filesystem::path& defaultDataRoot();

}  // namespace ControlProtocol
