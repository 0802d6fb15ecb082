#pragma once
// A folder of a test's own.

#include <filesystem>
#include <string_view>

/// An empty folder where the system keeps temporary files; the destructor removes it and all it
/// holds.
class TemporaryFolder {
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return folder; }

  /// The path of `name` inside the folder, whether it exists or not.
  std::filesystem::path operator/(const std::filesystem::path& name) const { return folder / name; }

  /// Makes the file `name`, with its missing parent folders, out of `contents`; returns its path.
  std::filesystem::path write(const std::filesystem::path& name, std::string_view contents) const;

private:
  std::filesystem::path folder;
};
