#pragma once
// The lock that allows only one import at a time.

#include "import/member/MadeFolders.h"
#include "platform/Descriptor.h"

#include <filesystem>
#include <optional>

/// The exclusive right to import into a data root. The destructor releases it; the system releases
/// it when the process dies.
class Lock {
public:
  /// Takes the lock without waiting, in the file "import.lock" of `dataRoot` (absolute). Creates
  /// the folder and the file if they are missing. Throws Failure when another import has the lock,
  /// and std::filesystem::filesystem_error when the file cannot be created or opened.
  explicit Lock(const std::filesystem::path& dataRoot);

  /// Unless `keep` was called, removes the file if this import created it, and the folders that it
  /// created, if they are empty.
  ~Lock();
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  /// Call this after an import: the file stays.
  void keep() { madeFile = false; }

private:
  bool tryToOpen();
  bool lockFile();
  bool isStillThere() const;
  void release();

  std::optional<MadeFolders> folders;  // removed after the file
  std::filesystem::path path;
  Descriptor file;
  bool madeFile = false;  ///< and may remove it
};
