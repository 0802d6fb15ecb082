#pragma once
// One import at a time.

#include <filesystem>

/// The right to import into a data root, held until the destructor gives it back; the system gives
/// it back for a process that dies.
class ImportLock {
public:
  /// Takes the lock, in the file "import.lock" of `dataRoot`, or fails with ImportError when
  /// another import holds it. A file that cannot be opened fails with
  /// std::filesystem::filesystem_error.
  explicit ImportLock(const std::filesystem::path& dataRoot);
  ~ImportLock();
  ImportLock(const ImportLock&) = delete;
  ImportLock& operator=(const ImportLock&) = delete;

private:
  int descriptor;
};
