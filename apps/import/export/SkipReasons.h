#pragma once
// Why an element of an export cannot be stored, in both languages.

#include "summary/SummaryLang.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace SkipReasons {

inline constexpr Phrase noType{.zh = "缺少 type", .en = "no type"};
inline constexpr Phrase noStart{.zh = "缺少 startDate", .en = "no startDate"};
inline constexpr Phrase startIsNoDate{.zh = "startDate 不是日期", .en = "startDate is no date"};
inline constexpr Phrase noDay{.zh = "缺少 dateComponents", .en = "no dateComponents"};
inline constexpr Phrase dayIsNoDate{.zh = "dateComponents 不是日期",
                                    .en = "dateComponents is no date"};
inline constexpr std::array all{noType, noStart, startIsNoDate, noDay, dayIsNoDate};

static_assert(std::ranges::all_of(all, inBothLanguages));

/// The reason that a sink was given, in `lang`; a text that is none of them comes back unchanged.
constexpr std::string_view text(std::string_view reason, SummaryLang lang) {
  for (const Phrase& phrase : all) {
    if (phrase.en == reason) return phrase.in(lang);
  }
  return reason;
}

}  // namespace SkipReasons
