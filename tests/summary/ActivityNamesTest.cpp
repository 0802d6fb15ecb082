#include "summary/ActivityNames.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ActivityCase {
  std::string code;
  std::string zh;
  std::string en;
};

void PrintTo(const ActivityCase& activity, std::ostream* stream) { *stream << activity.code; }

class ActivityName : public testing::TestWithParam<ActivityCase> {};

TEST_P(ActivityName, IsShownInBothLanguages) {
  EXPECT_EQ(activityName(GetParam().code, SummaryLang::zh), GetParam().zh);
  EXPECT_EQ(activityName(GetParam().code, SummaryLang::en), GetParam().en);
}

INSTANTIATE_TEST_SUITE_P(
    Known, ActivityName,
    testing::Values(
        ActivityCase{"Walking", "步行", "Walking"}, ActivityCase{"Running", "跑步", "Running"},
        ActivityCase{"Hiking", "徒步", "Hiking"}, ActivityCase{"Cycling", "骑行", "Cycling"},
        ActivityCase{"Swimming", "游泳", "Swimming"},
        ActivityCase{"Elliptical", "椭圆机", "Elliptical"},
        ActivityCase{"Badminton", "羽毛球", "Badminton"},
        ActivityCase{"Cooldown", "拉伸", "Cooldown"},
        ActivityCase{"TraditionalStrengthTraining", "力量训练", "Traditional Strength Training"},
        ActivityCase{"FunctionalStrengthTraining", "功能性力量", "Functional Strength Training"},
        ActivityCase{"Yoga", "瑜伽", "Yoga"},
        ActivityCase{
            "HighIntensityIntervalTraining", "高强度间歇", "High Intensity Interval Training"},
        ActivityCase{"CoreTraining", "核心训练", "Core Training"},
        ActivityCase{"StairClimbing", "爬楼", "Stair Climbing"},
        ActivityCase{"Rowing", "划船", "Rowing"},
        ActivityCase{"TableTennis", "乒乓球", "Table Tennis"},
        ActivityCase{"Tennis", "网球", "Tennis"}, ActivityCase{"Basketball", "篮球", "Basketball"},
        ActivityCase{"Soccer", "足球", "Soccer"}, ActivityCase{"Dance", "舞蹈", "Dance"},
        ActivityCase{"JumpRope", "跳绳", "Jump Rope"}, ActivityCase{"Other", "其他", "Other"}),
    [](const auto& test) { return test.param.code; });

INSTANTIATE_TEST_SUITE_P(Unknown, ActivityName,
                         testing::Values(ActivityCase{"DiscSports", "DiscSports", "Disc Sports"},
                                         ActivityCase{"walking", "walking", "walking"},
                                         ActivityCase{"myRun", "myRun", "my Run"},
                                         ActivityCase{"XCSki", "XCSki", "X C Ski"},
                                         ActivityCase{"Run 5K", "Run 5K", "Run 5 K"},
                                         ActivityCase{"?", "?", "?"}, ActivityCase{"", "", ""}));

}  // namespace
