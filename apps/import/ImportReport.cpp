#include "import/ImportReport.h"
#include "import/SkipReasons.h"
#include "platform/Locale.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace {

namespace phrases {

constexpr Phrase into{.zh = "{0} → {1}(id {2})", .en = "{0} -> {1} (id {2})"};
constexpr Phrase intoNew{.zh = "{0} → {1}(新成员,id {2})", .en = "{0} -> {1} (new member, id {2})"};
constexpr Phrase records{.zh = "  记录:{0} 条,其中新增 {1}",
                         .en = "  records: {0}, {1} of them new"};
constexpr Phrase workouts{.zh = "  训练:{0} 次,其中新增 {1}",
                          .en = "  workouts: {0}, {1} of them new"};
constexpr Phrase days{.zh = "  圆环日:{0} 天,其中新增或更新 {1}",
                      .en = "  days of activity rings: {0}, {1} of them new or newer"};
constexpr Phrase span{.zh = "  日期:{0} 至 {1}", .en = "  span: {0} to {1}"};
constexpr Phrase sources{.zh = "  来源:库里现有 {0} 个", .en = "  sources: {0} in the database"};
constexpr Phrase zone{.zh = "  时区:{0}", .en = "  time zone: {0}"};
constexpr Phrase otherZone{
    .zh =
        "  本机时区是 {0},问答里的夜晚和「今天」按本机时区算;要与日期一致,请在客户端的配置里加上 "
        "\"env\": {\"TZ\": \"{1}\"}",
    .en =
        "  this machine is in {0}, and answers tell nights and \"today\" by the machine; for those "
        "of the days above, add \"env\": {\"TZ\": \"{1}\"} to the client's entry"};
constexpr Phrase unnamedZone{
    .zh =
        "  本机时区没有名称,问答里的夜晚和「今天」按本机时区算;要与日期一致,请在客户端的配置里加上 "
        "\"env\": {\"TZ\": \"{0}\"}",
    .en =
        "  this machine's time zone has no name, and answers tell nights and \"today\" by the "
        "machine; for those of the days above, add \"env\": {\"TZ\": \"{0}\"} to the client's "
        "entry"};
constexpr Phrase unreadable{.zh = "  读不出时间的时间戳:{0}(照原样保存)",
                            .en = "  stamps without a readable time: {0} (kept as exported)"};
constexpr Phrase repeated{
    .zh = "  重复的属性:{0}(以第一个为准;缺少 endDate 时,第二个 startDate 当作 endDate)",
    .en =
        "  attributes that stand twice: {0} (the first counts; a second startDate is the end "
        "where that is missing)"};
constexpr Phrase converted{.zh = "  换算了单位:{0}", .en = "  converted units: {0}"};
constexpr Phrase unknownUnits{.zh = "  单位不认识:{0}(记录照原样保存,训练里的该项留空)",
                              .en =
                                  "  unknown units: {0} (records are kept as exported, a "
                                  "workout's figure is left out)"};
constexpr Phrase dropped{.zh = "  去掉的非法字符:{0}", .en = "  forbidden characters dropped: {0}"};
constexpr Phrase replaced{.zh = "  替换为 U+FFFD 的非法 UTF-8:{0}",
                          .en = "  invalid UTF-8 replaced by U+FFFD: {0}"};
constexpr Phrase skipped{.zh = "  跳过 {0} 个:{1}(第一个在第 {2} 行)",
                         .en = "  skipped {0}: {1} (the first in line {2})"};
constexpr Phrase notStored{.zh = "  没有导入:{0}", .en = "  not stored: {0}"};
constexpr Phrase oneKind{.zh = "{0} {1} 个", .en = "{0} {1}"};
constexpr Phrase routeFiles{.zh = "路线文件", .en = "route files"};
constexpr Phrase ecgFiles{.zh = "心电图文件", .en = "ECG files"};
constexpr Phrase clinicalFiles{.zh = "临床记录文件", .en = "clinical record files"};
constexpr Phrase otherFiles{.zh = "其他文件", .en = "other files"};
constexpr Phrase otherElements{.zh = "其他元素", .en = "other elements"};
constexpr Phrase comma{.zh = "、", .en = ", "};
constexpr Phrase time{.zh = "  用时:{0} 秒", .en = "  time: {0} s"};
constexpr Phrase nothingNew{.zh = "没有新数据,库里原样未变。",
                            .en = "Nothing new: the data is as it was."};
constexpr std::array all{
    &into,          &intoNew,    &records,       &workouts,  &days,    &zone,       &otherZone,
    &unnamedZone,   &unreadable, &repeated,      &span,      &sources, &converted,  &unknownUnits,
    &dropped,       &replaced,   &skipped,       &notStored, &oneKind, &routeFiles, &ecgFiles,
    &clinicalFiles, &otherFiles, &otherElements, &comma,     &time,    &nothingNew};
static_assert(std::ranges::all_of(all,
                                  [](const Phrase* phrase) { return inBothLanguages(*phrase); }));

}  // namespace phrases

/// The lines of a report, in one language.
class Page {
public:
  explicit Page(SummaryLang lang) : lang(lang) {}

  void add(const Phrase& phrase, std::initializer_list<std::string_view> values) {
    lines.add(filled(phrase.in(lang), values));
  }

  void add(const Phrase& phrase, const Tally& tally) {
    add(phrase, {grouped(tally.read), grouped(tally.added)});
  }

  /// Leaves the line out when there is nothing to count.
  void addUnlessZero(const Phrase& phrase, std::int64_t count) {
    if (count != 0) add(phrase, {grouped(count)});
  }

  std::string text() const { return lines.joined() + "\n"; }

private:
  SummaryLang lang;
  Lines lines;
};

/// `name`, or as much of it as a line has room for. The names are those that the file chose.
std::string shortened(std::string_view name) {
  constexpr std::size_t most = 64;
  if (name.size() <= most) return std::string(name);
  std::size_t end = most;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
  return std::string(name.substr(0, end)) + "…";
}

/// "WorkoutRoute 12, route files 12"; empty when everything was stored.
std::string notStoredText(const ImportReport& report, SummaryLang lang) {
  std::vector<std::string> kinds;
  const auto add = [&](std::string_view kind, std::int64_t count) {
    if (count != 0) kinds.push_back(filled(phrases::oneKind.in(lang), {kind, grouped(count)}));
  };
  for (const auto& [element, count] : report.tally.notStored) add(shortened(element), count);
  add(phrases::otherElements.in(lang), report.tally.others);
  add(phrases::routeFiles.in(lang), report.beside.routes);
  add(phrases::ecgFiles.in(lang), report.beside.ecgs);
  add(phrases::clinicalFiles.in(lang), report.beside.clinicalRecords);
  add(phrases::otherFiles.in(lang), report.beside.others);
  return joined(kinds, phrases::comma.in(lang));
}

}  // namespace

std::string reportText(const ImportReport& report, SummaryLang lang) {
  const ImportTally& tally = report.tally;
  Page page(lang);
  page.add(report.newMember ? phrases::intoNew : phrases::into,
           {report.source, report.name, report.id});
  page.add(phrases::records, tally.records);
  page.add(phrases::workouts, tally.workouts);
  page.add(phrases::days, tally.activityDays);
  if (tally.firstDay && tally.lastDay) {
    page.add(phrases::span, {*tally.firstDay, *tally.lastDay});
  }
  page.add(phrases::zone, {report.timeZone});
  if (!report.machineTimeZone) {
    page.add(phrases::unnamedZone, {report.timeZone});
  } else if (*report.machineTimeZone != report.timeZone) {
    page.add(phrases::otherZone, {*report.machineTimeZone, report.timeZone});
  }
  page.add(phrases::sources, {grouped(tally.sources)});
  page.addUnlessZero(phrases::converted, tally.converted);
  page.addUnlessZero(phrases::unknownUnits, tally.unknownUnits);
  page.addUnlessZero(phrases::unreadable, report.unreadableStamps);
  page.addUnlessZero(phrases::repeated, report.repeatedAttributes);
  page.addUnlessZero(phrases::dropped, report.droppedCharacters);
  page.addUnlessZero(phrases::replaced, report.replacedSequences);
  for (const auto& [reason, skipped] : tally.skipped) {
    page.add(phrases::skipped,
             {grouped(skipped.count),
              SkipReasons::text(reason, lang),
              std::to_string(skipped.firstLine)});
  }
  const std::string notStored = notStoredText(report, lang);
  if (!notStored.empty()) page.add(phrases::notStored, {notStored});
  page.add(phrases::time, {fixedDecimals(report.seconds, 1)});
  if (tally.changedNothing()) page.add(phrases::nothingNew, {});
  return page.text();
}
