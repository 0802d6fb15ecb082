#include "import/database/NewDatabase.h"

#include <system_error>
#include <utility>

namespace {

/// A link to a missing file counts as existing: it belongs to the user.
bool isThere(const std::filesystem::path& path) {
  std::error_code unknown;
  return std::filesystem::symlink_status(path, unknown).type() !=
         std::filesystem::file_type::not_found;
}

}  // namespace

NewDatabase::NewDatabase(std::filesystem::path path)
    : path(std::move(path)), isNew(!isThere(this->path)) {}

NewDatabase::~NewDatabase() {
  if (!isNew) return;
  for (const char* ending : {"", "-journal", "-wal", "-shm"}) {
    std::filesystem::path file = path;
    file += ending;
    std::error_code stays;
    std::filesystem::remove(file, stays);
  }
}
