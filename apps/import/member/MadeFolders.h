#pragma once
// Folders that go again when nothing comes to lie in them.

#include <filesystem>
#include <system_error>
#include <vector>

/// A folder and those above it, made where they are missing. The destructor removes those that were
/// made and are empty, so that a run that ends early leaves no trace.
class MadeFolders {
public:
  /// Fails with std::filesystem::filesystem_error, and leaves none behind then.
  explicit MadeFolders(const std::filesystem::path& folder);
  ~MadeFolders();
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;

  /// Whether the folder itself was missing and made here.
  bool madeFolder() const { return !made.empty() && made.back() == folder; }

private:
  std::error_code make();
  void removeEmpty();

  std::filesystem::path folder;
  std::vector<std::filesystem::path> made;  ///< the outermost first
};
