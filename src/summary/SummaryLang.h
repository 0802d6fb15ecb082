#pragma once
// The two languages of every text, phrases in both, and the names of activities, days and months.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

enum class SummaryLang { zh, en };

/// The language's name in JSON: "zh" or "en".
std::string_view rawValue(SummaryLang lang);

/// The language of that name; `nullopt` for every other text.
std::optional<SummaryLang> summaryLangNamed(std::string_view rawValue);

/// One phrase in both languages of the system.
struct Phrase {
  std::string_view zh;
  std::string_view en;

  constexpr std::string_view in(SummaryLang lang) const {
    return lang == SummaryLang::zh ? zh : en;
  }
};

/// Whether a phrase is complete, for the static_assert beside every table of them.
constexpr bool inBothLanguages(const Phrase& phrase) {
  return !phrase.zh.empty() && !phrase.en.empty();
}

/// Display name of a workout activity code such as "TableTennis". In Chinese by a table, else the
/// code itself; in English the code split before its capital letters, "Table Tennis".
std::string activityName(std::string_view code, SummaryLang lang);

/// Name of a weekday, 1 = Sunday to 7 = Saturday; numbers outside count as the nearest inside.
std::string_view weekdayName(int number, SummaryLang lang);

/// "2024-03" as "March 2024" or "2024 年 3 月". A month outside 1 to 12 counts as the nearest
/// inside; a text of another form comes back unchanged.
std::string monthName(std::string_view yearMonth, SummaryLang lang);

/// A duration, "7h 5m" or "7 小时 5 分"; without the hours when they are below 1.
std::string hoursMinutes(std::int64_t hours, std::int64_t minutes, SummaryLang lang);
