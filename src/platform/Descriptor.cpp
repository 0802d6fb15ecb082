#include "platform/Descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

Descriptor Descriptor::ofFile(const std::filesystem::path& path, int flags) {
  constexpr int ownerOnly = 0600;
  int number = -1;
  do {
    number = open(path.c_str(), flags | O_CLOEXEC, ownerOnly);
  } while (number < 0 && errno == EINTR);
  return Descriptor(number);
}

Descriptor::~Descriptor() {
  if (number >= 0) close(number);
}
