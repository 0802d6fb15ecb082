#pragma once
// New folders that are removed again if they stay empty.

#include <filesystem>
#include <system_error>
#include <vector>

/// A folder and its parents, created if they are missing. The destructor removes those that were
/// created here and are empty, so that an early end leaves no trace.
class MadeFolders {
public:
  /// Throws std::filesystem::filesystem_error, and then leaves no folder.
  explicit MadeFolders(const std::filesystem::path& folder);
  ~MadeFolders();
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;

  /// Whether the folder itself was missing and created here.
  bool madeFolder() const { return !made.empty() && made.back() == folder; }

private:
  std::error_code make();
  void removeEmpty();

  std::filesystem::path folder;
  std::vector<std::filesystem::path> made;  ///< outermost first
};
