#pragma once
// What the import program was started to do.

#include "platform/SummaryLang.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>

/// Which export goes to whom.
struct ImportOrder {
  std::filesystem::path dataRoot;
  std::string name;               ///< of the member; valid UTF-8, not empty, no control characters
  std::optional<std::string> id;  ///< of the member; fit to name a folder
  std::optional<std::string> timeZone = {};  ///< of the member, by its name; not looked up yet
  std::filesystem::path source;              ///< a .zip, an export.xml or the unpacked folder

  bool operator==(const ImportOrder&) const = default;
};

/// Which export is to be looked at and not stored.
struct CheckOrder {
  std::filesystem::path source;  ///< as that of an ImportOrder

  bool operator==(const CheckOrder&) const = default;
};

namespace Importer::CommandLine {

/// Say something and end.
struct Say {
  std::string text;  ///< with its last line feed
  bool toStderr;
  int status;

  bool operator==(const Say&) const = default;
};

/// Reads the arguments that follow the program's name, from left to right; the first that is wrong,
/// or asks for help or the version, decides. Paths are taken as they stand, and of a repeated
/// option the last one counts. A check goes with no option of the import.
std::variant<ImportOrder, CheckOrder, Say> parsed(std::span<const char* const> arguments,
                                                  const std::filesystem::path& defaultDataRoot,
                                                  SummaryLang lang);

}  // namespace Importer::CommandLine
