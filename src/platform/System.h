#pragma once
// Services of the operating system. SystemPosix.cpp has the common part, SystemLinux.cpp or
// SystemMac.cpp the rest, and SandboxLinux.cpp or SandboxNone.cpp the confinement.

#include "platform/Locale.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace System {

/// The value of an environment variable, possibly empty; absent when it is not set.
std::optional<std::string> variable(const char* name);

/// The same; an empty value counts as not set.
std::optional<std::string> environment(const char* name);

/// The tags of a LANGUAGE value, "zh_CN:en", in its order; empty ones are left out.
std::vector<std::string> languageTags(std::string_view list);

/// The home directory of the user, absolute.
std::filesystem::path homeDirectory();

/// The user's preferred languages, best first, as tags ("zh-Hans-CN", "en_US.UTF-8"). May be empty.
/// `etc` is the folder of the machine-wide settings, on systems that keep them in files.
std::vector<std::string> preferredLanguages(const std::filesystem::path& etc = "/etc");

/// The localisations of this program's application bundle; empty without a bundle.
std::vector<std::string> bundleLocalizations();

/// The bundle's localisations that the user prefers, best first; empty without a bundle.
std::vector<std::string> bundlePreferredLocalizations();

/// The digit grouping of the user's numeric locale; commas every three digits when the user has no
/// locale.
DigitGrouping digitGrouping();

/// The folder of the system's time zones, one file per name. TZDIR overrides it.
std::filesystem::path zoneFolder();

/// The name of the process's time zone, from TZ or the machine's setting. TimeZone knows every
/// returned name. Absent when the zone has no name: TZ is a rule ("CST-8"), or the machine's zone
/// in `etc` is a copied file instead of a link.
std::optional<std::string> timeZoneName(const std::filesystem::path& etc = "/etc");

/// Keeps this process's memory out of core files and unreadable for other processes of the same
/// user: it contains health values and the roster's keys. Throws std::system_error when the system
/// refuses.
void forbidDumps();

/// Returns freed memory to the system; the C library would keep it.
void returnFreedMemory();

/// The file access that a confined program keeps. Missing paths are skipped.
struct Reach {
  /// Files to read, and folders to read with everything below them.
  std::vector<std::filesystem::path> read;

  /// Databases to read while another process writes them. Files beside them may be created and
  /// written, but not removed. The database, its folder and its drive may be missing now, and may
  /// appear, vanish or be replaced later.
  std::vector<std::filesystem::path> databases;

  /// Folders below which files may be created, written, renamed and removed.
  std::vector<std::filesystem::path> change;

  /// A file or folder whose drive stays mounted, because the running program has a file open there.
  std::filesystem::path staying;
};

/// The accesses that the kernel refuses to a confined program.
struct Confinement {
  bool files = false;    ///< every file and folder outside its reach
  bool network = false;  ///< network addresses, even on sockets passed to the program
  bool calls = false;    ///< sockets, new processes and programs, tracing of other processes

  bool operator==(const Confinement&) const = default;
};

/// Confines this process to `reach` permanently, as far as the running kernel can. Returns what is
/// in force. Open descriptors stay open. All paths, also relative ones, are resolved now.
Confinement confine(const Reach& reach);

/// The files that the C library may read at any time: time zones, locales and character sets, from
/// the environment's or the system's folders.
std::vector<std::filesystem::path> filesOfTheLibrary();

}  // namespace System
