#pragma once
// The two languages of every text.

#include <optional>
#include <string_view>

enum class SummaryLang { zh, en };

/// The language's name in JSON: "zh" or "en".
std::string_view rawValue(SummaryLang lang);

/// The language with that name; `nullopt` for any other text.
std::optional<SummaryLang> summaryLangNamed(std::string_view rawValue);
