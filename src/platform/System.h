#pragma once
// What the program asks of the system it runs on. One source file per system; this one contract.

#include "platform/Locale.h"

#include <filesystem>
#include <string>
#include <vector>

namespace System {

/// The home directory of the user, absolute.
std::filesystem::path homeDirectory();

/// The languages the user prefers, best first, as tags ("zh-Hans-CN", "en_US.UTF-8"). May be empty.
/// `etc` is where the machine-wide settings lie.
std::vector<std::string> preferredLanguages(const std::filesystem::path& etc = "/etc");

/// The localisations of the application bundle this program lies in; empty without a bundle.
std::vector<std::string> bundleLocalizations();

/// Those of the bundle's localisations that the user prefers, best first; empty without a bundle.
std::vector<std::string> bundlePreferredLocalizations();

/// How the user's numeric locale groups digits; by commas every three digits when the user has
/// none.
DigitGrouping digitGrouping();

}  // namespace System
