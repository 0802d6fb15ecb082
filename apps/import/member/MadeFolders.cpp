#include "import/member/MadeFolders.h"

#include <algorithm>
#include <system_error>

namespace {

std::filesystem::path withoutSlash(const std::filesystem::path& folder) {
  return folder.has_filename() ? folder : folder.parent_path();
}

/// `folder` and its parents, as far as they are missing, outermost first.
std::vector<std::filesystem::path> missingOf(std::filesystem::path folder) {
  std::vector<std::filesystem::path> missing;
  std::error_code unknown;
  while (folder.has_relative_path() && !std::filesystem::exists(folder, unknown) && !unknown) {
    missing.push_back(folder);
    folder = folder.parent_path();
  }
  std::ranges::reverse(missing);
  return missing;
}

}  // namespace

MadeFolders::MadeFolders(const std::filesystem::path& folder) : folder(withoutSlash(folder)) {
  // Another run may be removing the same folders, which it had created.
  constexpr int attempts = 100;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const std::error_code error = make();
    if (!error) return;
    removeEmpty();
    if (error == std::errc::no_such_file_or_directory) continue;
    throw std::filesystem::filesystem_error("folder", folder, error);
  }
  throw std::filesystem::filesystem_error(
      "folder", folder, std::make_error_code(std::errc::no_such_file_or_directory));
}

MadeFolders::~MadeFolders() { removeEmpty(); }

std::error_code MadeFolders::make() {
  const std::vector<std::filesystem::path> missing = missingOf(folder);
  made.reserve(missing.size());  // recording a created folder must not fail for lack of memory
  std::error_code error;
  for (const std::filesystem::path& each : missing) {
    if (std::filesystem::create_directory(each, error)) made.push_back(each);
    if (error) return error;
  }
  const std::filesystem::file_status status = std::filesystem::status(folder, error);
  if (std::filesystem::is_directory(status)) return {};
  return error ? error : std::make_error_code(std::errc::not_a_directory);
}

void MadeFolders::removeEmpty() {
  for (; !made.empty(); made.pop_back()) {
    std::error_code stays;  // a folder that is not empty stays
    std::filesystem::remove(made.back(), stays);
  }
}
