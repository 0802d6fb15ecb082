#include "support/TemporaryFolder.h"

#include <stdlib.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

TemporaryFolder::TemporaryFolder() {
  // mkdtemp replaces the six letters.
  std::string name =
      (std::filesystem::temp_directory_path() / "larkspur-test-").string() + std::string(6, 'X');
  if (mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "mkdtemp");
  }
  folder = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

std::filesystem::path TemporaryFolder::write(const std::filesystem::path& name,
                                             std::string_view contents) const {
  const std::filesystem::path file = folder / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream << contents << std::flush;
  if (!stream) throw std::runtime_error("cannot write " + file.string());
  return file;
}
