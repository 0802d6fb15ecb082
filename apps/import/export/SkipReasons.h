#pragma once
// The reasons why an element of an export cannot be stored, in both languages.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <array>
#include <string_view>

namespace SkipReasons {

inline constexpr Phrase noType{"缺少 type", "no type"};
inline constexpr Phrase noStart{"缺少 startDate", "no startDate"};
inline constexpr Phrase startIsNoDate{"startDate 不是日期", "startDate is no date"};
inline constexpr Phrase noDay{"缺少 dateComponents", "no dateComponents"};
inline constexpr Phrase dayIsNoDate{"dateComponents 不是日期", "dateComponents is no date"};
inline constexpr std::array all{noType, noStart, startIsNoDate, noDay, dayIsNoDate};

/// The reason given to a sink, in `lang`; any other text is returned unchanged.
constexpr std::string_view text(std::string_view reason, SummaryLang lang) {
  for (const Phrase& phrase : all) {
    if (phrase.in(SummaryLang::en) == reason) return phrase.in(lang);
  }
  return reason;
}

}  // namespace SkipReasons
