// What macOS shares with Linux and its kin: the environment and the password database.

#include "platform/System.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

std::optional<std::string> System::environment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value == '\0') return std::nullopt;
  return value;
}

std::vector<std::string> System::languageTags(std::string_view list) {
  std::vector<std::string> tags;
  while (!list.empty()) {
    const std::string_view tag = list.substr(0, list.find(':'));
    if (!tag.empty()) tags.emplace_back(tag);
    list.remove_prefix(std::min(list.size(), tag.size() + 1));
  }
  return tags;
}

std::filesystem::path System::homeDirectory() {
  if (const std::optional<std::string> home = environment("HOME")) {
    if (home->front() == '/') return *home;
  }
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(2 * buffer.size());
  }
  return found != nullptr && *found->pw_dir == '/' ? found->pw_dir : "/";
}
