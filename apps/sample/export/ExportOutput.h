#pragma once
// The output of an export: a plain file, or an entry of a zip archive.

#include "platform/AppleFormat.h"
#include "sample/export/ArchiveForm.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ExportOutput {

/// A text in pieces: each call returns the next piece, valid until the next call; "" is the end.
using Pieces = std::function<std::string_view()>;

/// Writes `pieces` to a new file at `path`, completely or not at all. Throws ReceiverError when the
/// file already exists, and std::system_error when writing fails. Exceptions of `pieces` are passed
/// on.
void writeFile(const std::filesystem::path& path, const Pieces& pieces);

/// The other contents of an archive, and its form.
struct Archive {
  std::string name;  ///< of the entry with the text, which is the last
  std::vector<std::pair<std::string, std::string>> before =
      {};                 ///< names and contents of other entries
  bool isStored = false;  ///< the text is not compressed
  ArchiveForm form = {};  ///< the form of its sizes
};

/// The same for an entry of a new zip archive. All entries have the time of the morning of `day`.
/// Memory contains only one piece at a time. The whole text is in a file beside the archive until
/// the archive is written.
void writeZip(const std::filesystem::path& path, const Archive& archive, CivilDay day,
              const Pieces& pieces);

}  // namespace ExportOutput
