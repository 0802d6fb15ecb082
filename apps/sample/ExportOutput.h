#pragma once
// Where an export goes: a file of its own, or the only entry of a zip archive.

#include "platform/AppleFormat.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace ExportOutput {

/// A text in pieces: each call gives the next, valid until the call after it; "" is the end.
using Pieces = std::function<std::string_view()>;

/// Writes `pieces` to a new file at `path`, complete or not at all. Throws ReceiverError when there
/// is a file already, std::system_error when it cannot write; an exception of `pieces` passes
/// through.
void writeFile(const std::filesystem::path& path, const Pieces& pieces);

/// The same as the entry `name` of a new zip archive, dated the morning of `day`. No size is known
/// beforehand, so entry and archive have the 64-bit form. Holds no more than a piece in memory.
void writeZip(const std::filesystem::path& path, const std::string& name, CivilDay day,
              const Pieces& pieces);

}  // namespace ExportOutput
