#pragma once
// One import at a time.

#include "import/member/MadeFolders.h"
#include "platform/Descriptor.h"

#include <filesystem>
#include <optional>

/// The right to import into a data root, held until the destructor gives it back; the system gives
/// it back for a process that dies.
class Lock {
public:
  /// Takes the lock, in the file "import.lock" of `dataRoot` (absolute), without waiting. Makes the
  /// folder and the file where they are missing. Fails with Failure when another import holds
  /// the lock, and with std::filesystem::filesystem_error when the file cannot be made or opened.
  explicit Lock(const std::filesystem::path& dataRoot);

  /// Unless `keep` was called, removes the file if this import made it, and the folders that it
  /// made as far as they are empty.
  ~Lock();
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

  /// Something was imported: the file stays.
  void keep() { madeFile = false; }

private:
  bool tryToOpen();
  bool lockFile();
  bool isStillThere() const;
  void release();

  std::optional<MadeFolders> folders;  // removed when the file has gone
  std::filesystem::path path;
  Descriptor file;
  bool madeFile = false;  ///< and may remove it
};
