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

/// The language of the program's texts. If the application bundle is translated into either
/// language (`bundleLocalizations`), its first preferred localisation (`bundlePreferred`) decides
/// first. Otherwise, or if that is a third language, the first Chinese or English entry of `system`
/// decides. The fallback is English.
SummaryLang resolve(std::span<const std::string> bundleLocalizations,
                    std::span<const std::string> bundlePreferred,
                    std::span<const std::string> system);

/// Whether this machine's user reads Chinese, judged by the languages that the system reports now.
bool isChinese();

}  // namespace AppLanguage
