#pragma once
// What the program asks of the system it runs on. One contract; SystemPosix.cpp keeps what all
// systems have in common, SystemLinux.cpp or SystemMac.cpp the rest.

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

}  // namespace System
