#pragma once
// What the program asks of the system it runs on. One contract; SystemPosix.cpp keeps what all
// systems have in common, SystemLinux.cpp or SystemMac.cpp the rest, and SandboxLinux.cpp or
// SandboxNone.cpp what a program gives up.

#include "platform/Locale.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace System {

/// The value of an environment variable, which may be empty; absent when it is not set.
std::optional<std::string> variable(const char* name);

/// The same; an empty value counts as not set.
std::optional<std::string> environment(const char* name);

/// The tags of a LANGUAGE value, "zh_CN:en", in its order; empty ones are left out.
std::vector<std::string> languageTags(std::string_view list);

/// The home directory of the user, absolute.
std::filesystem::path homeDirectory();

/// The languages the user prefers, best first, as tags ("zh-Hans-CN", "en_US.UTF-8"). May be empty.
/// `etc` is where the machine-wide settings lie, on systems that keep them in files.
std::vector<std::string> preferredLanguages(const std::filesystem::path& etc = "/etc");

/// The localisations of the application bundle this program lies in; empty without a bundle.
std::vector<std::string> bundleLocalizations();

/// Those of the bundle's localisations that the user prefers, best first; empty without a bundle.
std::vector<std::string> bundlePreferredLocalizations();

/// How the user's numeric locale groups digits; by commas every three digits when the user has
/// none.
DigitGrouping digitGrouping();

/// Where the system keeps its time zones, a file each under its name; TZDIR moves it.
std::filesystem::path zoneFolder();

/// The name of the time zone that the machine is in, or that TZ puts the process in: one that
/// TimeZone knows. Absent when the zone has no name: TZ is a rule ("CST-8"), or the machine's zone
/// in `etc` is a copy of a file instead of a link to it.
std::optional<std::string> timeZoneName(const std::filesystem::path& etc = "/etc");

/// Keeps this process's memory, which holds health values and the roster's keys, out of core files,
/// and other processes of the same user from reading it. Throws std::system_error when the system
/// refuses.
void forbidDumps();

/// Gives the memory that was freed back to the system, where the C library would keep it.
void returnFreedMemory();

/// What a confined program still needs of the file system. Whatever is not there is left out.
struct Reach {
  /// Files, and folders with all that lies below them, that are read.
  std::vector<std::filesystem::path> read;

  /// Databases that are read while somebody else writes them: files are made and written beside
  /// them, none removed. Each may be missing, and it, its folder or the drive that it lies on may
  /// come, go or be replaced later.
  std::vector<std::filesystem::path> databases;

  /// Folders below which everything may be made, written, renamed and removed.
  std::vector<std::filesystem::path> change;

  /// A file or folder whose drive stays mounted while the program runs, because it holds a file
  /// open there.
  std::filesystem::path staying;
};

/// What the kernel refuses to a confined program.
struct Confinement {
  bool files = false;    ///< every file and folder beyond its reach
  bool network = false;  ///< addresses of the network, even on sockets that it was given
  bool calls = false;    ///< sockets, new processes and programs, tracing others

  bool operator==(const Confinement&) const = default;
};

/// Confines this process to `reach`, for good, as far as the running kernel can; tells what holds.
/// What is open already stays open. Any path, also a relative one, is as it is at this moment.
Confinement confine(const Reach& reach);

/// What the C library reads whenever it pleases: time zones, locales and character sets, where the
/// environment or the system keeps them.
std::vector<std::filesystem::path> filesOfTheLibrary();

}  // namespace System
