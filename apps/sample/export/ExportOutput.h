#pragma once
// Where an export goes: a file of its own, or an entry of a zip archive.

#include "platform/AppleFormat.h"
#include "sample/export/ArchiveForm.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ExportOutput {

/// A text in pieces: each call gives the next, valid until the call after it; "" is the end.
using Pieces = std::function<std::string_view()>;

/// Writes `pieces` to a new file at `path`, complete or not at all. Throws ReceiverError when there
/// is a file already, std::system_error when it cannot write; an exception of `pieces` passes
/// through.
void writeFile(const std::filesystem::path& path, const Pieces& pieces);

/// What an archive is made of beside the text, and in which form.
struct Archive {
  std::string name;  ///< of the entry with the text, which is the last
  std::vector<std::pair<std::string, std::string>> before = {};  ///< names and contents of others
  bool isStored = false;                                         ///< the text is not compressed
  ArchiveForm form = {};                                         ///< how its sizes are told
};

/// The same as an entry of a new zip archive, all of whose entries are dated the morning of `day`.
/// Memory holds no more than a piece: the whole text lies in a file beside the archive until that
/// is written.
void writeZip(const std::filesystem::path& path, const Archive& archive, CivilDay day,
              const Pieces& pieces);

}  // namespace ExportOutput
