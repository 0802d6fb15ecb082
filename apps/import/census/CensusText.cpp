#include "import/census/CensusText.h"
#include "import/report/ReportPage.h"
#include "platform/Phrase.h"

#include <string_view>

namespace {

namespace phrases {

constexpr Phrase title{"导出文件的统计（不含数值，不含人、来源或设备的名称，也不含具体日期）：",
                       "Census of an export (no value, no name of a person, source or device, "
                       "no day):"};
constexpr Phrase version{"  格式版本：{0}", "  format version: {0}"};
constexpr Phrase noVersion{"  格式版本：没有写明", "  format version: not told"};
constexpr Phrase exported{"  导出时间：{0}，手机的时区偏移 {1}",
                          "  exported: {0}, the phone's clock at {1}"};
constexpr Phrase noDate{"  导出时间：没有写明", "  exported: not told"};
constexpr Phrase unreadableDate{"  导出时间：无法读取",
                                "  exported: at a date that cannot be read"};
constexpr Phrase records{"  记录：{0} 条", "  records: {0}"};
constexpr Phrase type{"    {0} {1} 条", "    {0}: {1}"};
constexpr Phrase typeInUnits{"    {0} {1} 条（{2}）", "    {0}: {1} ({2})"};
constexpr Phrase otherTypes{"其他类型", "other types"};
constexpr Phrase countedUnit{"{0} {1} 条", "{0} {1}"};
constexpr Phrase convertedUnit{"{0} → {1}", "{0} -> {1}"};
constexpr Phrase noUnit{"没有单位", "no unit"};
constexpr Phrase otherUnit{"其他单位", "other unit"};
constexpr Phrase comma{"、", ", "};
constexpr Phrase withoutNumber{"  没有数值的记录：{0} 条，其中有单位的 {1} 条",
                               "  records without a number: {0}, {1} of them with a unit"};
constexpr Phrase workouts{"  训练：{0} 次", "  workouts: {0}"};
constexpr Phrase days{"  活动圆环：{0} 天", "  days of activity rings: {0}"};
constexpr Phrase sources{"  来源：{0} 个", "  sources: {0}"};
constexpr Phrase moreSources{"  来源：超过 {0} 个", "  sources: more than {0}"};
constexpr Phrase years{"  有记录或训练的年份：{0} 个", "  years with records or workouts: {0}"};
constexpr Phrase bytes{"  已读 XML：{0} 字节", "  bytes of XML: {0}"};
constexpr Phrase complete{"导出文件可以完整读取。", "The export can be read whole."};
constexpr Phrase incomplete{
    "统计不完整：导出文件的其余部分无法读取，原因见标准错误输出。",
    "Incomplete: the export cannot be read beyond this; standard error says why."};
constexpr Phrase lookThrough{"转发之前，请先看一遍列出的类型。",
                             "Look through the types before you pass this on."};

}  // namespace phrases

/// The lines about one census.
class CensusPage {
public:
  CensusPage(const Census& census, SummaryLang lang)
      : census(census), lang(lang), page(lang, DigitGrouping{}) {}

  std::string text() {
    page.add(phrases::title);
    addOrigin();
    addRecords();
    page.add(phrases::workouts, {page.number(census.tally.workouts.read)});
    page.add(phrases::days, {page.number(census.tally.activityDays.read)});
    page.add(census.moreSources ? phrases::moreSources : phrases::sources, {count(census.sources)});
    page.add(phrases::years, {count(census.years)});
    page.addTroubles(census.tally, census.irregularities, census.beside);
    page.add(phrases::bytes, {count(census.bytes)});
    page.addTime(census.seconds);
    page.add(census.complete ? phrases::complete : phrases::incomplete);
    page.add(phrases::lookThrough);
    return page.text();
  }

private:
  void addOrigin() {
    if (census.formatVersion) {
      page.add(phrases::version, {std::to_string(*census.formatVersion)});
    } else {
      page.add(phrases::noVersion);
    }
    if (!census.exportedAt) {
      page.add(census.hasDate ? phrases::unreadableDate : phrases::noDate);
      return;
    }
    const StampText stamp(*census.exportedAt);
    constexpr std::size_t monthLength = 7;
    constexpr std::size_t offsetLength = 5;
    page.add(phrases::exported,
             {stamp.text().substr(0, monthLength),
              stamp.text().substr(StampText::length - offsetLength)});
  }

  void addRecords() {
    page.add(phrases::records, {page.number(census.tally.records.read)});
    for (const auto& [name, type] : census.types) addType(name, type);
    if (census.otherTypes.records != 0) {
      addType(phrases::otherTypes.in(lang), census.otherTypes);
    }
    if (census.withoutNumber != 0) {
      page.add(phrases::withoutNumber,
               {page.number(census.withoutNumber), page.number(census.withUnitAlone)});
    }
  }

  void addType(std::string_view name, const Census::Type& type) {
    const std::string records = page.number(type.records);
    const bool unitless = type.units.size() == 1 && type.units.begin()->first.unit.empty();
    if (unitless) {
      page.add(phrases::type, {name, records});
    } else {
      page.add(phrases::typeInUnits, {name, records, unitsOf(type)});
    }
  }

  /// "kg 2, lb -> kg 17"; a single unit has no count, because it equals the type's.
  std::string unitsOf(const Census::Type& type) const {
    const auto named = [&](const Census::UnitUse& use) {
      std::string unit(use.unit.empty()                ? phrases::noUnit.in(lang)
                       : use.unit == Census::otherUnit ? phrases::otherUnit.in(lang)
                                                       : use.unit);
      if (use.stored.empty()) return unit;
      return filled(phrases::convertedUnit.in(lang), {unit, use.stored});
    };
    if (type.units.size() == 1) return named(type.units.begin()->first);
    return joined(type.units, phrases::comma.in(lang), [&](const auto& entry) {
      return filled(phrases::countedUnit.in(lang), {named(entry.first), page.number(entry.second)});
    });
  }

  std::string count(std::uint64_t number) const {
    return page.number(static_cast<std::int64_t>(number));
  }

  const Census& census;
  SummaryLang lang;
  ReportPage page;
};

}  // namespace

std::string censusText(const Census& census, SummaryLang lang) {
  return CensusPage(census, lang).text();
}
