#pragma once
// Which of the two languages the program speaks on this machine.

#include "platform/SummaryLang.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace AppLanguage {

/// The language that `tag` ("zh-Hans-CN", "en_US.UTF-8", any case) belongs to; `nullopt` for every
/// other language.
std::optional<SummaryLang> match(std::string_view tag);

/// The language to speak. A bundle that is translated into one of the two languages
/// (`bundleLocalizations`) has the word first, with its first preferred localisation
/// (`bundlePreferred`); then the first of the `system` languages that is one of the two decides;
/// then it is English.
SummaryLang resolve(std::span<const std::string> bundleLocalizations,
                    std::span<const std::string> bundlePreferred,
                    std::span<const std::string> system);

/// Whether this machine's user reads Chinese, by the languages that the system reports now.
bool isChinese();

}  // namespace AppLanguage
