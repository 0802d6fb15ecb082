#include "import/report/Report.h"
#include "import/report/ReportPage.h"
#include "platform/Phrase.h"
#include "platform/System.h"

#include <utility>

namespace {

namespace phrases {

constexpr Phrase into{"{0} → {1}（id {2}）", "{0} -> {1} (id {2})"};
constexpr Phrase intoNew{"{0} → {1}（新成员，id {2}）", "{0} -> {1} (new member, id {2})"};
constexpr Phrase records{"  记录：{0} 条，其中新增 {1}", "  records: {0}, {1} of them new"};
constexpr Phrase workouts{"  训练：{0} 次，其中新增 {1}", "  workouts: {0}, {1} of them new"};
constexpr Phrase days{"  活动圆环：{0} 天，其中新增或更新 {1}",
                      "  days of activity rings: {0}, {1} of them new or newer"};
constexpr Phrase span{"  日期：{0} 至 {1}", "  span: {0} to {1}"};
constexpr Phrase sources{"  来源：数据库中现有 {0} 个", "  sources: {0} in the database"};
constexpr Phrase zone{"  时区：{0}", "  time zone: {0}"};
constexpr Phrase otherZone{
    "  本机时区是 {0}，回答里的夜晚和「今天」按本机时区判断；"
    "要与日期一致，请在客户端的配置里加上 \"env\": {\"TZ\": \"{1}\"}",
    "  this machine is in {0}, and answers tell nights and \"today\" by the machine; for those "
    "of the days above, add \"env\": {\"TZ\": \"{1}\"} to the client's entry"};
constexpr Phrase unnamedZone{
    "  本机时区没有名称，回答里的夜晚和「今天」按本机时区判断；"
    "要与日期一致，请在客户端的配置里加上 \"env\": {\"TZ\": \"{0}\"}",
    "  this machine's time zone has no name, and answers tell nights and \"today\" by the "
    "machine; for those of the days above, add \"env\": {\"TZ\": \"{0}\"} to the client's "
    "entry"};
constexpr Phrase nothingNew{"没有新数据，数据库未变。", "Nothing new: the data is as it was."};

}  // namespace phrases

}  // namespace

std::string reportText(const Report& report, SummaryLang lang) {
  const RunTally& tally = report.tally;
  ReportPage page(lang, System::digitGrouping());
  page.add(report.newMember ? phrases::intoNew : phrases::into,
           {report.source, report.name, report.id});
  for (const auto& [phrase, kind] : {std::pair(&phrases::records, tally.records),
                                     std::pair(&phrases::workouts, tally.workouts),
                                     std::pair(&phrases::days, tally.activityDays)}) {
    page.add(*phrase, {page.number(kind.read), page.number(kind.added)});
  }
  if (tally.firstDay && tally.lastDay) {
    page.add(phrases::span, {*tally.firstDay, *tally.lastDay});
  }
  page.add(phrases::zone, {report.timeZone});
  if (!report.machineTimeZone) {
    page.add(phrases::unnamedZone, {report.timeZone});
  } else if (*report.machineTimeZone != report.timeZone) {
    page.add(phrases::otherZone, {*report.machineTimeZone, report.timeZone});
  }
  page.add(phrases::sources, {page.number(tally.sources)});
  page.addTroubles(tally, report.irregularities, report.beside);
  page.addTime(report.seconds);
  if (tally.changedNothing()) page.add(phrases::nothingNew);
  return page.text();
}
