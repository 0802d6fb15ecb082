// A process that is confined as the server of a data root is, or the import of an export into it,
// and then tries what it must not do.
//
//   larkspur-confined DATA_ROOT ATTEMPT [PATH [EXPORT]]
//
// Writes what holds, as a diagnostic log at level debug has it, to "confined.log" in the data root,
// and to standard output "done", or the system's words for its refusal.

#include "import/Confinement.h"
#include "mcp/server/Confinement.h"
#include "platform/Clock.h"
#include "roster/Roster.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <system_error>

namespace {

/// A socket that the process had before it was confined.
int inherited = -1;

long connected() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return connect(inherited, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

long optionRead() {
  int value = 0;
  socklen_t size = sizeof value;
  return getsockopt(inherited, SOL_SOCKET, SO_TYPE, &value, &size);
}

long optionSet() {
  const int value = 1;
  return setsockopt(inherited, SOL_SOCKET, SO_KEEPALIVE, &value, sizeof value);
}

long nameOf(int (*name)(int, sockaddr*, socklen_t*)) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  return name(inherited, reinterpret_cast<sockaddr*>(&address), &size);
}

long executed() {
  std::array<char*, 1> none{};
  return execve("/bin/true", none.data(), none.data());
}

long opened(const std::string& path, int flags) { return open(path.c_str(), flags, 0600); }

using Attempt = long (*)(const std::string& path);

const std::map<std::string, Attempt>& attempts() {
  static const std::map<std::string, Attempt> all{
      {"socket", [](const std::string&) -> long { return socket(AF_INET, SOCK_STREAM, 0); }},
      {"local-socket", [](const std::string&) -> long { return socket(AF_UNIX, SOCK_STREAM, 0); }},
      {"connect", [](const std::string&) { return connected(); }},
      {"accept", [](const std::string&) -> long { return accept(inherited, nullptr, nullptr); }},
      {"shutdown", [](const std::string&) -> long { return shutdown(inherited, SHUT_RDWR); }},
      {"getsockopt", [](const std::string&) { return optionRead(); }},
      {"setsockopt", [](const std::string&) { return optionSet(); }},
      {"getsockname", [](const std::string&) { return nameOf(getsockname); }},
      {"getpeername", [](const std::string&) { return nameOf(getpeername); }},
      {"execve", [](const std::string&) { return executed(); }},
      {"fork", [](const std::string&) -> long { return fork(); }},
      {"ptrace",
       [](const std::string&) -> long { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr); }},
      {"read", [](const std::string& path) { return opened(path, O_RDONLY); }},
      {"list", [](const std::string& path) { return opened(path, O_RDONLY | O_DIRECTORY); }},
      {"write", [](const std::string& path) { return opened(path, O_WRONLY); }},
      {"make", [](const std::string& path) { return opened(path, O_WRONLY | O_CREAT); }},
      {"empty", [](const std::string& path) -> long { return truncate(path.c_str(), 0); }},
      {"remove", [](const std::string& path) -> long { return unlink(path.c_str()); }},
      {"rename",
       [](const std::string& path) -> long {
         return rename(path.c_str(), (path + ".other").c_str());
       }},
      {"link",
       [](const std::string& path) -> long {
         return symlink("elsewhere", (path + ".link").c_str());
       }},
      {"make-folder",
       [](const std::string& path) -> long { return mkdir((path + ".folder").c_str(), 0700); }}};
  return all;
}

}  // namespace

int main(int count, char* words[]) {
  if (count < 3) return 2;
  const std::filesystem::path dataRoot = words[1];
  const auto attempt = attempts().find(words[2]);
  if (attempt == attempts().end()) return 2;
  inherited = socket(AF_INET, SOCK_STREAM, 0);

  Logger log(dataRoot / "confined.log", Logger::Level::debug, false, systemTime);
  Roster roster(dataRoot / "members.json", log, systemTime);
  roster.load();
  if (count > 4) {
    confine({.dataRoot = dataRoot, .name = "Dot", .id = std::nullopt, .source = words[4]});
  } else {
    confine(dataRoot, roster.members(), log);
  }

  errno = 0;
  const long result = attempt->second(count > 3 ? words[3] : "");
  const int error = errno;
  std::cout << (result < 0 ? std::generic_category().message(error) : "done") << '\n';
  return 0;
}
