#pragma once
// The file or folder of a Health app export, and the bytes of its export.xml.

#include "import/Interruption.h"
#include "platform/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Counts of the files beside the export.xml. None of them is stored.
struct ExportContents {
  std::int64_t routes = 0;           ///< *.gpx
  std::int64_t ecgs = 0;             ///< *.csv
  std::int64_t clinicalRecords = 0;  ///< *.json
  std::int64_t others = 0;  ///< attachments and the like, without the export's CDA document

  bool operator==(const ExportContents&) const = default;
};

/// An export, open for reading once from its first byte to its last.
class ExportFile {
public:
  /// Opens `path`: a zip archive (recognised by its first bytes, not by its name), an unpacked
  /// folder, or an export.xml. In an archive or folder, the XML may be at the top or one folder
  /// down, in a folder of any name. It is the file named export.xml. Otherwise it is the first .xml
  /// file, of at most 32, that begins like a Health export, because the name follows the phone's
  /// language. Throws Failure. The message names the needed file when it is still in the cloud
  /// drive, or when `path` is the export's clinical document. `interrupted` can end the wait for
  /// the bytes of a pipe, with Interruption.
  explicit ExportFile(const std::filesystem::path& path,
                      Interrupted interrupted = neverInterrupted);

  /// The next bytes of the export.xml; 0 only at the end. Throws Failure when they cannot be read,
  /// or when an archive's entry has fewer or more bytes than it declares.
  std::size_t read(std::span<char> buffer) { return source->read(buffer); }

  /// Reads to the end and passes each piece, at most 128 KiB, to `take`. Throws like `read`, and
  /// throws Interruption after the piece during which `interrupted` became true.
  void readAll(const std::function<void(std::string_view)>& take);

  /// Uncompressed size of the export.xml in bytes; absent when the system does not know it, as for
  /// a pipe.
  std::optional<std::uint64_t> size() const { return bytes; }

  /// The place of the export.xml: its path, or its name inside the archive.
  const std::string& name() const { return xmlName; }

  /// The files beside it; all zero when `path` was the export.xml itself.
  const ExportContents& contents() const { return beside; }

private:
  void openFile(const std::filesystem::path& path);
  void openFolder(const std::filesystem::path& path);
  void openArchive(const std::filesystem::path& path);

  Interrupted interrupted;
  std::unique_ptr<ByteSource> source;
  std::optional<std::uint64_t> bytes;
  std::string xmlName;
  ExportContents beside;
};
