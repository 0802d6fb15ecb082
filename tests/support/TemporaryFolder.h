#pragma once
// A temporary folder for one test.

#include <filesystem>
#include <string_view>

/// An empty folder in the system's temporary folder; the destructor removes it with its contents.
class TemporaryFolder {
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return folder; }

  /// The path of `name` inside the folder; it need not exist.
  std::filesystem::path operator/(const std::filesystem::path& name) const { return folder / name; }

  /// Creates the file `name` with `contents` and its missing parent folders; returns its path.
  std::filesystem::path write(const std::filesystem::path& name, std::string_view contents) const;

private:
  std::filesystem::path folder;
};
