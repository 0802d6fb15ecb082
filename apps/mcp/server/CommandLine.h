#pragma once
// The command line of the server.

#include <filesystem>
#include <span>
#include <string>
#include <variant>

namespace CommandLine {

/// Serve the data in this folder.
struct Serve {
  std::filesystem::path dataRoot;
};

/// Print a text and exit.
struct Say {
  std::string text;  ///< including its last line feed
  bool toStderr;
  int status;
};

/// Parses the arguments after the program's name, from left to right. The first wrong argument or
/// request for help decides. `--data-root` uses its folder unchanged; the last one counts.
std::variant<Serve, Say> parsed(std::span<const char* const> arguments,
                                const std::filesystem::path& defaultDataRoot);

}  // namespace CommandLine
