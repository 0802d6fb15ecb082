#pragma once
// The agreement with the receiver application on the place of the data.

#include <filesystem>

namespace ControlProtocol {

/// The data root when the command line gives none: "Library/Application Support/Larkspur" under the
/// home directory. Computed on first use.
const std::filesystem::path& defaultDataRoot();

}  // namespace ControlProtocol
