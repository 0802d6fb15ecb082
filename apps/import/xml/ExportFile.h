#pragma once
// The file or folder that the Health app's export came as, and the bytes of its export.xml.

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

/// What lies beside the export.xml, in files. None of it is stored.
struct ExportContents {
  std::int64_t routes = 0;           ///< *.gpx
  std::int64_t ecgs = 0;             ///< *.csv
  std::int64_t clinicalRecords = 0;  ///< *.json
  std::int64_t others = 0;  ///< attachments and the like; the CDA twin of the export not among them

  bool operator==(const ExportContents&) const = default;
};

/// An export, open for reading once from its first byte to its last.
class ExportFile {
public:
  /// Opens `path`: a zip archive (told by its first bytes, not by its name), a folder that one was
  /// unpacked to, or an export.xml. Archive and folder may have the XML at their top or one folder
  /// down, whatever that folder is called; it is the file named export.xml, else (the name follows
  /// the phone's language) the first .xml that begins like a Health export, of 32 at most. Throws
  /// Failure, which names what is wanted where the file lies in the cloud drive still or is the
  /// export's clinical document.
  /// `interrupted` may end the wait for the bytes of a pipe, with Interruption.
  explicit ExportFile(const std::filesystem::path& path,
                      Interrupted interrupted = neverInterrupted);

  /// The next bytes of the export.xml; 0 at the end alone. Throws Failure when they cannot be
  /// read, also when an archive's entry holds fewer or more bytes than it declares.
  std::size_t read(std::span<char> buffer) { return source->read(buffer); }

  /// Reads to the end and hands each piece, 128 KiB at most, to `take`. Throws as `read` does, and
  /// Interruption after the piece during which `interrupted` began to say so.
  void readAll(const std::function<void(std::string_view)>& take);

  /// Bytes of the export.xml, uncompressed; absent when the system cannot tell, as for a pipe.
  std::optional<std::uint64_t> size() const { return bytes; }

  /// Where the export.xml lies: its path, or its name inside the archive.
  const std::string& name() const { return xmlName; }

  /// What lies beside it; all zero when `path` was the export.xml itself.
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
