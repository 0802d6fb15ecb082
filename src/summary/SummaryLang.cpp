#include "summary/SummaryLang.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

std::string_view rawValue(SummaryLang lang) { return lang == SummaryLang::zh ? "zh" : "en"; }

std::optional<SummaryLang> summaryLangNamed(std::string_view rawValue) {
  if (rawValue == "zh") return SummaryLang::zh;
  if (rawValue == "en") return SummaryLang::en;
  return std::nullopt;
}

namespace {

struct ActivityName {
  std::string_view code;
  std::string_view zh;
};

constexpr std::array activityNames{
    ActivityName{"Walking", "步行"},
    ActivityName{"Running", "跑步"},
    ActivityName{"Hiking", "徒步"},
    ActivityName{"Cycling", "骑行"},
    ActivityName{"Swimming", "游泳"},
    ActivityName{"Elliptical", "椭圆机"},
    ActivityName{"Badminton", "羽毛球"},
    ActivityName{"Cooldown", "拉伸"},
    ActivityName{"TraditionalStrengthTraining", "力量训练"},
    ActivityName{"FunctionalStrengthTraining", "功能性力量"},
    ActivityName{"Yoga", "瑜伽"},
    ActivityName{"HighIntensityIntervalTraining", "高强度间歇"},
    ActivityName{"CoreTraining", "核心训练"},
    ActivityName{"StairClimbing", "爬楼"},
    ActivityName{"Rowing", "划船"},
    ActivityName{"TableTennis", "乒乓球"},
    ActivityName{"Tennis", "网球"},
    ActivityName{"Basketball", "篮球"},
    ActivityName{"Soccer", "足球"},
    ActivityName{"Dance", "舞蹈"},
    ActivityName{"JumpRope", "跳绳"},
    ActivityName{"Other", "其他"},
};

std::string chineseActivity(std::string_view code) {
  const auto row = std::ranges::find(activityNames, code, &ActivityName::code);
  return std::string(row == activityNames.end() ? code : row->zh);
}

/// Activity codes are ASCII identifiers, so only A to Z are capitals.
std::string splitAtCapitals(std::string_view code) {
  std::string words;
  for (const char letter : code) {
    if (letter >= 'A' && letter <= 'Z' && !words.empty()) words += ' ';
    words += letter;
  }
  return words;
}

}  // namespace

std::string activityName(std::string_view code, SummaryLang lang) {
  return lang == SummaryLang::zh ? chineseActivity(code) : splitAtCapitals(code);
}

namespace {

constexpr std::array weekdays{
    Phrase{.zh = "星期日", .en = "Sunday"},
    Phrase{.zh = "星期一", .en = "Monday"},
    Phrase{.zh = "星期二", .en = "Tuesday"},
    Phrase{.zh = "星期三", .en = "Wednesday"},
    Phrase{.zh = "星期四", .en = "Thursday"},
    Phrase{.zh = "星期五", .en = "Friday"},
    Phrase{.zh = "星期六", .en = "Saturday"},
};

}  // namespace

std::string_view weekdayName(int number, SummaryLang lang) {
  return weekdays[static_cast<std::size_t>(std::clamp(number, 1, 7) - 1)].in(lang);
}

namespace {

/// "{0}" is the year.
constexpr std::array months{
    Phrase{.zh = "{0} 年 1 月", .en = "January {0}"},
    Phrase{.zh = "{0} 年 2 月", .en = "February {0}"},
    Phrase{.zh = "{0} 年 3 月", .en = "March {0}"},
    Phrase{.zh = "{0} 年 4 月", .en = "April {0}"},
    Phrase{.zh = "{0} 年 5 月", .en = "May {0}"},
    Phrase{.zh = "{0} 年 6 月", .en = "June {0}"},
    Phrase{.zh = "{0} 年 7 月", .en = "July {0}"},
    Phrase{.zh = "{0} 年 8 月", .en = "August {0}"},
    Phrase{.zh = "{0} 年 9 月", .en = "September {0}"},
    Phrase{.zh = "{0} 年 10 月", .en = "October {0}"},
    Phrase{.zh = "{0} 年 11 月", .en = "November {0}"},
    Phrase{.zh = "{0} 年 12 月", .en = "December {0}"},
};

/// The integer that all of `text` spells.
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

constexpr Phrase minutesOnly{.zh = "{0} 分", .en = "{0}m"};
constexpr Phrase hoursAndMinutes{.zh = "{0} 小时 {1} 分", .en = "{0}h {1}m"};

}  // namespace

std::string hoursMinutes(std::int64_t hours, std::int64_t minutes, SummaryLang lang) {
  if (hours < 1) return filled(minutesOnly.in(lang), {std::to_string(minutes)});
  return filled(hoursAndMinutes.in(lang), {std::to_string(hours), std::to_string(minutes)});
}
