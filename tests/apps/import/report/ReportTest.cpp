#include "import/report/Report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::HasSubstr;

Report fullReport() {
  Report report;
  report.name = "Ann";
  report.id = "ann-01";
  report.newMember = true;
  report.source = "export.zip";
  report.tally.records = {.read = 900, .added = 850};
  report.tally.workouts = {.read = 12, .added = 3};
  report.tally.activityDays = {.read = 40, .added = 2};
  report.tally.converted = 77;
  report.tally.unknownUnits = 4;
  report.tally.sources = 5;
  report.timeZone = "Asia/Shanghai";
  report.machineTimeZone = "Etc/UTC";
  report.irregularities.unreadableStamps = 6;
  report.irregularities.repeatedAttributes = 2500;
  report.tally.firstDay = "2018-09-01";
  report.tally.lastDay = "2026-11-20";
  report.tally.skipped = {{"no startDate", {.count = 2, .firstLine = 1234}},
                          {"no type", {.count = 1, .firstLine = 9}}};
  report.tally.notStored = {{"ClinicalRecord", 6}, {"WorkoutRoute", 8}};
  report.tally.others = 1;
  report.irregularities.droppedCharacters = 3;
  report.irregularities.replacedSequences = 2;
  report.beside = {.routes = 8, .ecgs = 4, .clinicalRecords = 6, .others = 1};
  report.seconds = 12.34;
  return report;
}

TEST(Report, TellsEverything) {
  EXPECT_EQ(
      reportText(fullReport(), SummaryLang::en),
      "export.zip -> Ann (new member, id ann-01)\n"
      "  records: 900, 850 of them new\n"
      "  workouts: 12, 3 of them new\n"
      "  days of activity rings: 40, 2 of them new or newer\n"
      "  span: 2018-09-01 to 2026-11-20\n"
      "  time zone: Asia/Shanghai\n"
      "  this machine is in Etc/UTC, and answers tell nights and \"today\" by the machine; for "
      "those of the days above, add \"env\": {\"TZ\": \"Asia/Shanghai\"} to the client's entry\n"
      "  sources: 5 in the database\n"
      "  converted units: 77\n"
      "  unknown units: 4 (records are kept as exported, a workout's figure is left out)\n"
      "  stamps without a readable time: 6 (kept as exported)\n"
      "  attributes that stand twice: 2,500 (the first counts; a second startDate is the end "
      "where that is missing)\n"
      "  forbidden characters dropped: 3\n"
      "  invalid UTF-8 replaced by U+FFFD: 2\n"
      "  skipped 2: no startDate (the first in line 1234)\n"
      "  skipped 1: no type (the first in line 9)\n"
      "  not stored: ClinicalRecord 6, WorkoutRoute 8, other elements 1, route files 8, ECG "
      "files 4, clinical record files 6, other files 1\n"
      "  time: 12.3 s\n");
}

TEST(Report, CutsALongNameBetweenTwoCharacters) {
  Report report;
  const std::string letters(60, 'n');
  report.tally.notStored = {{letters + "abcd", 1}, {letters + "aéé", 2}};

  const std::string text = reportText(report, SummaryLang::en);

  EXPECT_THAT(text, HasSubstr("  not stored: " + letters + "abcd 1, " + letters + "a… 2\n"));
}

TEST(Report, CutsALongNameInsideACharacterBeforeIt) {
  Report report;
  report.tally.notStored = {{std::string(60, 'n') + "ééé", 1}};

  EXPECT_THAT(reportText(report, SummaryLang::en),
              HasSubstr("  not stored: " + std::string(60, 'n') + "… 1\n"));
}

TEST(Report, TellsEverythingInChinese) {
  EXPECT_EQ(
      reportText(fullReport(), SummaryLang::zh),
      "export.zip → Ann（新成员，id ann-01）\n"
      "  记录：900 条，其中新增 850\n"
      "  训练：12 次，其中新增 3\n"
      "  活动圆环：40 天，其中新增或更新 2\n"
      "  日期：2018-09-01 至 2026-11-20\n"
      "  时区：Asia/Shanghai\n"
      "  本机时区是 Etc/UTC，回答里的夜晚和「今天」按本机时区判断；要与日期一致，请在客户端的配置里"
      "加上 \"env\": {\"TZ\": \"Asia/Shanghai\"}\n"
      "  来源：数据库中现有 5 个\n"
      "  换算了单位：77\n"
      "  无法识别的单位：4（记录原样保存，训练里的该项留空）\n"
      "  无法读取时间的时间戳：6（原样保存）\n"
      "  重复的属性：2,500（以第一个为准；缺少 endDate 时，第二个 startDate 当作 endDate）\n"
      "  去掉的非法字符：3\n"
      "  替换为 U+FFFD 的非法 UTF-8：2\n"
      "  跳过 2 个：缺少 startDate（第一个在第 1234 行）\n"
      "  跳过 1 个：缺少 type（第一个在第 9 行）\n"
      "  没有保存：ClinicalRecord 6 个、WorkoutRoute 8 个、其他元素 1 个、路线文件 8 个、"
      "心电图文件 4 个、临床记录文件 6 个、其他文件 1 个\n"
      "  用时：12.3 秒\n");
}

TEST(Report, IsShortWhenThereIsLittleToTell) {
  Report report;
  report.name = "Ann";
  report.id = "ann-01";
  report.source = "export.xml";
  report.timeZone = "Asia/Shanghai";
  report.machineTimeZone = "Asia/Shanghai";

  EXPECT_EQ(reportText(report, SummaryLang::en),
            "export.xml -> Ann (id ann-01)\n"
            "  records: 0, 0 of them new\n"
            "  workouts: 0, 0 of them new\n"
            "  days of activity rings: 0, 0 of them new or newer\n"
            "  time zone: Asia/Shanghai\n"
            "  sources: 0 in the database\n"
            "  time: 0.0 s\n"
            "Nothing new: the data is as it was.\n");
}

TEST(Report, TellsThatTheMachinesZoneHasNoName) {
  Report report = fullReport();
  report.machineTimeZone.reset();

  EXPECT_THAT(reportText(report, SummaryLang::en),
              HasSubstr("  this machine's time zone has no name, and answers tell"));
  EXPECT_THAT(reportText(report, SummaryLang::zh), HasSubstr("  本机时区没有名称，"));
}

TEST(Report, CallsAnExportThatOnlyRenewsRingsNews) {
  Report report = fullReport();
  report.tally.records.added = report.tally.workouts.added = 0;

  EXPECT_THAT(reportText(report, SummaryLang::en), testing::Not(testing::HasSubstr("Nothing new")));
}

}  // namespace
