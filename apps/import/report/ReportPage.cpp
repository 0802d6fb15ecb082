#include "import/report/ReportPage.h"
#include "import/export/SkipReasons.h"
#include "platform/Phrase.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace {

namespace phrases {

constexpr Phrase unreadable{"  无法读取时间的时间戳：{0}（原样保存）",
                            "  stamps without a readable time: {0} (kept as exported)"};
constexpr Phrase repeated{
    "  重复的属性：{0}（以第一个为准；缺少 endDate 时，第二个 startDate 当作 endDate）",
    "  attributes that stand twice: {0} (the first counts; a second startDate is the end "
    "where that is missing)"};
constexpr Phrase converted{"  换算了单位：{0}", "  converted units: {0}"};
constexpr Phrase unknownUnits{"  无法识别的单位：{0}（记录原样保存，训练里的该项留空）",
                              "  unknown units: {0} (records are kept as exported, a "
                              "workout's figure is left out)"};
constexpr Phrase dropped{"  去掉的非法字符：{0}", "  forbidden characters dropped: {0}"};
constexpr Phrase replaced{"  替换为 U+FFFD 的非法 UTF-8：{0}",
                          "  invalid UTF-8 replaced by U+FFFD: {0}"};
constexpr Phrase skipped{"  跳过 {0} 个：{1}（第一个在第 {2} 行）",
                         "  skipped {0}: {1} (the first in line {2})"};
constexpr Phrase notStored{"  没有保存：{0}", "  not stored: {0}"};
constexpr Phrase oneKind{"{0} {1} 个", "{0} {1}"};
constexpr Phrase routeFiles{"路线文件", "route files"};
constexpr Phrase ecgFiles{"心电图文件", "ECG files"};
constexpr Phrase clinicalFiles{"临床记录文件", "clinical record files"};
constexpr Phrase otherFiles{"其他文件", "other files"};
constexpr Phrase otherElements{"其他元素", "other elements"};
constexpr Phrase comma{"、", ", "};
constexpr Phrase time{"  用时：{0} 秒", "  time: {0} s"};

}  // namespace phrases

/// The maximum length of an element's name in a line. The file chooses these names.
constexpr std::size_t longestName = 64;

}  // namespace

ReportPage::ReportPage(SummaryLang lang, DigitGrouping grouping)
    : lang(lang), grouping(std::move(grouping)) {}

void ReportPage::add(const Phrase& phrase, std::initializer_list<std::string_view> values) {
  lines.add(filled(phrase.in(lang), values));
}

void ReportPage::addUnlessZero(const Phrase& phrase, std::int64_t count) {
  if (count != 0) add(phrase, {number(count)});
}

void ReportPage::addTroubles(const RunTally& tally, const Irregularities& irregularities,
                             const ExportContents& beside) {
  addUnlessZero(phrases::converted, tally.converted);
  addUnlessZero(phrases::unknownUnits, tally.unknownUnits);
  addUnlessZero(phrases::unreadable, irregularities.unreadableStamps);
  addUnlessZero(phrases::repeated, irregularities.repeatedAttributes);
  addUnlessZero(phrases::dropped, irregularities.droppedCharacters);
  addUnlessZero(phrases::replaced, irregularities.replacedSequences);
  for (const auto& [reason, skipped] : tally.skipped) {
    add(phrases::skipped,
        {number(skipped.count),
         SkipReasons::text(reason, lang),
         std::to_string(skipped.firstLine)});
  }
  const std::string left = notStored(tally, beside);
  if (!left.empty()) add(phrases::notStored, {left});
}

void ReportPage::addTime(double seconds) { add(phrases::time, {fixedDecimals(seconds, 1)}); }

/// "WorkoutRoute 12, route files 12"; empty when everything was stored.
std::string ReportPage::notStored(const RunTally& tally, const ExportContents& beside) const {
  std::vector<std::string> kinds;
  const auto addKind = [&](std::string_view kind, std::int64_t count) {
    if (count != 0) kinds.push_back(filled(phrases::oneKind.in(lang), {kind, number(count)}));
  };
  for (const auto& [element, count] : tally.notStored)
    addKind(shortened(element, longestName), count);
  addKind(phrases::otherElements.in(lang), tally.others);
  addKind(phrases::routeFiles.in(lang), beside.routes);
  addKind(phrases::ecgFiles.in(lang), beside.ecgs);
  addKind(phrases::clinicalFiles.in(lang), beside.clinicalRecords);
  addKind(phrases::otherFiles.in(lang), beside.others);
  return joined(kinds, phrases::comma.in(lang));
}
