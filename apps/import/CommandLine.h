#pragma once
// The command line of the import program.

#include "platform/SummaryLang.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>

/// An import: the export and its member.
struct ImportOrder {
  std::filesystem::path dataRoot;
  std::string name;               ///< of the member; valid UTF-8, not empty, no control characters
  std::optional<std::string> id;  ///< of the member; valid as a folder name
  std::optional<std::string> timeZone = {};  ///< name of the member's zone; not checked yet
  std::filesystem::path source;              ///< a .zip, an export.xml or the unpacked folder

  bool operator==(const ImportOrder&) const = default;
};

/// A check: the export, which is not stored.
struct CheckOrder {
  std::filesystem::path source;  ///< like ImportOrder::source

  bool operator==(const CheckOrder&) const = default;
};

namespace Importer::CommandLine {

/// Print a text and exit.
struct Say {
  std::string text;  ///< including its last line feed
  bool toStderr;
  int status;

  bool operator==(const Say&) const = default;
};

/// Parses the arguments after the program's name, from left to right. The first wrong argument, or
/// request for help or the version, decides. Paths are used unchanged, and the last of a repeated
/// option counts. A check accepts no option of the import.
std::variant<ImportOrder, CheckOrder, Say> parsed(std::span<const char* const> arguments,
                                                  const std::filesystem::path& defaultDataRoot,
                                                  SummaryLang lang);

}  // namespace Importer::CommandLine
