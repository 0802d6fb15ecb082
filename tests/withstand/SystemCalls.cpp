#include "withstand/SystemCalls.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace {

/// "openat(...) = 3" out of "4711  openat(...) = 3" or "[pid 4711] openat(...) = 3".
std::string_view withoutProcess(std::string_view line) {
  const std::size_t start = line.find_first_not_of("0123456789 ");
  return start == line.npos ? std::string_view() : line.substr(start);
}

std::string quotedIn(std::string_view text) {
  const std::size_t start = text.find('"');
  if (start == text.npos) return "";
  const std::size_t end = text.find('"', start + 1);
  return std::string(text.substr(start + 1, end - start - 1));
}

}  // namespace

std::vector<SystemCall> systemCallsIn(std::string_view trace) {
  std::vector<SystemCall> calls;
  while (!trace.empty()) {
    const std::string_view line = withoutProcess(trace.substr(0, trace.find('\n')));
    trace.remove_prefix(std::min(trace.size(), trace.find('\n')));
    trace.remove_prefix(trace.empty() ? 0 : 1);
    const std::size_t bracket = line.find('(');
    if (bracket == line.npos || line.starts_with("---") || line.starts_with("+++")) continue;
    const std::string arguments(line.substr(bracket + 1));
    calls.push_back({std::string(line.substr(0, bracket)), arguments, quotedIn(arguments)});
  }
  return calls;
}

namespace {

using CallNames = std::span<const std::string_view>;

constexpr auto opening = std::to_array<std::string_view>({"open", "openat", "openat2"});
constexpr auto looking = std::to_array<std::string_view>({"access",
                                                          "faccessat",
                                                          "faccessat2",
                                                          "stat",
                                                          "lstat",
                                                          "newfstatat",
                                                          "fstatat64",
                                                          "statx",
                                                          "statfs",
                                                          "readlink",
                                                          "readlinkat",
                                                          "getcwd",
                                                          "chdir"});
constexpr auto changing = std::to_array<std::string_view>(
    {"creat",     "mkdir",    "mkdirat",   "mknod",    "mknodat", "rename", "renameat",
     "renameat2", "unlink",   "unlinkat",  "rmdir",    "link",    "linkat", "symlink",
     "symlinkat", "truncate", "chmod",     "fchmodat", "chown",   "lchown", "fchownat",
     "utimensat", "setxattr", "lsetxattr", "mount"});

bool isOneOf(const SystemCall& call, CallNames names) {
  return std::ranges::find(names, call.name) != names.end();
}

}  // namespace

bool isAboutFiles(const SystemCall& call) {
  return isOneOf(call, opening) || isOneOf(call, looking) || isOneOf(call, changing);
}

bool changesFiles(const SystemCall& call) {
  if (isOneOf(call, changing)) return true;
  return isOneOf(call, opening) &&
         std::ranges::any_of(
             std::array{"O_WRONLY", "O_RDWR", "O_CREAT", "O_TRUNC", "O_TMPFILE"},
             [&call](const char* flag) { return call.arguments.find(flag) != std::string::npos; });
}
