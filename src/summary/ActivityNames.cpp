#include "summary/ActivityNames.h"

#include <algorithm>
#include <array>

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

/// Activity codes are ASCII identifiers, so the only capitals are A to Z.
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
