#include "support/Golden.h"
#include "platform/Files.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

namespace {

bool updating() {
  const char* wish = std::getenv("UPDATE_GOLDEN");
  return wish != nullptr && std::string_view(wish) == "1";
}

testing::AssertionResult written(const std::filesystem::path& file, const std::string& contents) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream << contents << std::flush;
  if (stream) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "cannot write " << file;
}

/// The line of `text` with the byte at `position`.
std::string_view lineAt(std::string_view text, std::size_t position) {
  const std::size_t feed = position == 0 ? std::string_view::npos : text.rfind('\n', position - 1);
  const std::size_t start = feed == std::string_view::npos ? 0 : feed + 1;
  return text.substr(start, text.find('\n', start) - start);
}

/// Describes the first difference between `expected` and `actual`, which must not be equal.
testing::AssertionResult difference(const std::filesystem::path& file, const std::string& expected,
                                    const std::string& actual) {
  const auto [inExpected, inActual] = std::ranges::mismatch(expected, actual);
  const auto position = static_cast<std::size_t>(inExpected - expected.begin());
  const auto line = 1 + std::count(expected.begin(), inExpected, '\n');
  return testing::AssertionFailure()
         << file.string() << ":" << line << "\n  golden: " << lineAt(expected, position)
         << "\n  text:   " << lineAt(actual, position) << "\nWhole text:\n"
         << actual;
}

}  // namespace

testing::AssertionResult matchesGolden(const std::string& name, std::string_view text) {
  const std::filesystem::path file = std::filesystem::path(LARKSPUR_GOLDEN_DIR) / name;
  const std::string actual = std::string(text) + "\n";
  if (updating()) return written(file, actual);
  const std::optional<std::string> expected = fileContents(file);
  if (!expected) return testing::AssertionFailure() << "there is no " << file << " for\n" << actual;
  if (*expected == actual) return testing::AssertionSuccess();
  return difference(file, *expected, actual);
}
