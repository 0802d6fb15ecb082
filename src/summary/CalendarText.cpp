#include "summary/CalendarText.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <system_error>

namespace {

constexpr std::array weekdays{
    Phrase{"星期日", "Sunday"},
    Phrase{"星期一", "Monday"},
    Phrase{"星期二", "Tuesday"},
    Phrase{"星期三", "Wednesday"},
    Phrase{"星期四", "Thursday"},
    Phrase{"星期五", "Friday"},
    Phrase{"星期六", "Saturday"},
};

}  // namespace

std::string_view weekdayName(int number, SummaryLang lang) {
  return weekdays[static_cast<std::size_t>(std::clamp(number, 1, 7) - 1)].in(lang);
}

namespace {

/// "{0}" is the year.
constexpr std::array months{
    Phrase{"{0} 年 1 月", "January {0}"},
    Phrase{"{0} 年 2 月", "February {0}"},
    Phrase{"{0} 年 3 月", "March {0}"},
    Phrase{"{0} 年 4 月", "April {0}"},
    Phrase{"{0} 年 5 月", "May {0}"},
    Phrase{"{0} 年 6 月", "June {0}"},
    Phrase{"{0} 年 7 月", "July {0}"},
    Phrase{"{0} 年 8 月", "August {0}"},
    Phrase{"{0} 年 9 月", "September {0}"},
    Phrase{"{0} 年 10 月", "October {0}"},
    Phrase{"{0} 年 11 月", "November {0}"},
    Phrase{"{0} 年 12 月", "December {0}"},
};

/// The integer in `text`; `nullopt` when `text` has any other characters.
std::optional<std::int64_t> integer(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::string monthName(std::string_view yearMonth, SummaryLang lang) {
  const std::size_t dash = yearMonth.find('-');
  if (dash == std::string_view::npos || dash != yearMonth.rfind('-')) return std::string(yearMonth);
  const std::optional<std::int64_t> month = integer(yearMonth.substr(dash + 1));
  if (!month) return std::string(yearMonth);
  const auto row = static_cast<std::size_t>(std::clamp<std::int64_t>(*month, 1, 12) - 1);
  return filled(months[row].in(lang), {yearMonth.substr(0, dash)});
}

namespace {

constexpr Phrase minutesOnly{"{0} 分", "{0}m"};
constexpr Phrase hoursAndMinutes{"{0} 小时 {1} 分", "{0}h {1}m"};

}  // namespace

std::string hoursMinutes(std::int64_t hours, std::int64_t minutes, SummaryLang lang) {
  if (hours < 1) return filled(minutesOnly.in(lang), {std::to_string(minutes)});
  return filled(hoursAndMinutes.in(lang), {std::to_string(hours), std::to_string(minutes)});
}
