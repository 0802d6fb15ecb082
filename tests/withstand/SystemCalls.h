#pragma once
// What a program asked of the system, as strace saw it.

#include <set>
#include <string>
#include <string_view>
#include <vector>

/// One call of the system: openat(AT_FDCWD, "/a/b", O_RDONLY) = 3.
struct SystemCall {
  std::string name;       ///< "openat"
  std::string arguments;  ///< between the outer brackets, and the result
  std::string path;       ///< the first text in quotes, "" without one
};

/// The calls in a trace of several processes, in their order, without signals and endings.
std::vector<SystemCall> systemCallsIn(std::string_view trace);

/// Whether the call is one of those known to be about files by their names: that open them, look at
/// them, rename them...
bool isAboutFiles(const SystemCall& call);

/// Whether such a call asks for a file to be made or changed: opened for more than reading,
/// renamed, removed, given other rights...
bool changesFiles(const SystemCall& call);

/// The paths of the calls that succeeded and for which `wanted` holds.
template <typename Condition>
std::set<std::string> pathsOf(const std::vector<SystemCall>& calls, Condition wanted) {
  std::set<std::string> paths;
  for (const SystemCall& call : calls) {
    if (call.arguments.find(") = -1 ") == std::string::npos && wanted(call)) {
      paths.insert(call.path);
    }
  }
  return paths;
}
