// Common to macOS, Linux and similar systems: the environment, the password database, time zones.

#include "platform/System.h"
#include "platform/TimeZone.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <system_error>

std::optional<std::string> System::variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> System::environment(const char* name) {
  std::optional<std::string> value = variable(name);
  return value && !value->empty() ? value : std::nullopt;
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

std::filesystem::path System::zoneFolder() {
  return environment("TZDIR").value_or("/usr/share/zoneinfo");
}

namespace {

/// The zone's name in the path of its file, ".../zoneinfo/Asia/Shanghai"; `path` itself when it has
/// none.
std::string nameInPath(const std::string& path) {
  constexpr std::string_view folder = "/zoneinfo/";
  const std::size_t place = path.find(folder);
  return place == std::string::npos ? path : path.substr(place + folder.size());
}

/// The zone name that `link` leads to, through further links. A machine without the link is in UTC.
std::optional<std::string> linkedZone(std::filesystem::path link) {
  constexpr int mostLinks = 40;  // the system's own limit
  std::error_code error;
  if (!std::filesystem::exists(std::filesystem::symlink_status(link, error))) return "UTC";
  for (int count = 0; count < mostLinks; ++count) {
    const std::filesystem::path target = std::filesystem::read_symlink(link, error);
    if (error) return std::nullopt;
    link = (link.parent_path() / target).lexically_normal();
    const std::string name = nameInPath(link.string());
    if (name != link.string()) return name;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> System::timeZoneName(const std::filesystem::path& etc) {
  std::optional<std::string> name = variable("TZ");
  if (name) {
    if (name->starts_with(':')) name->erase(0, 1);
    name = name->empty() ? "UTC" : nameInPath(*name);
  } else {
    name = linkedZone(etc / "localtime");
  }
  return name && TimeZone::named(*name) ? name : std::nullopt;
}
