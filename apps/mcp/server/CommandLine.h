#pragma once
// What the program was started to do.

#include <filesystem>
#include <span>
#include <string>
#include <variant>

namespace CommandLine {

/// Serve the data under this folder.
struct Serve {
  std::filesystem::path dataRoot;
};

/// Say something and end.
struct Say {
  std::string text;  ///< with its last line feed
  bool toStderr;
  int status;
};

/// Reads the arguments that follow the program's name, from left to right; the first that is wrong,
/// or asks for help, decides. `--data-root` takes its folder as it stands, and the last one counts.
std::variant<Serve, Say> parsed(std::span<const char* const> arguments,
                                const std::filesystem::path& defaultDataRoot);

}  // namespace CommandLine
