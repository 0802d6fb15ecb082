#include "sample/flaws/Flaws.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

using enum FlawKind;

constexpr std::array table{
    FlawRow{Flaw::repeatedAttributes,
            "repeated-attributes",
            {"WorkoutStatistics 里 startDate 写了两次，第二个其实是结束时间",
             "WorkoutStatistics with startDate twice; the second is the end"},
            records,
            true},
    FlawRow{Flaw::controlCharacters,
            "control-characters",
            {"名称里有 XML 不允许的控制字符，有的直接写出，有的写成 &#11;",
             "names with control characters that XML forbids, as they are and as &#11;"},
            records,
            true},
    FlawRow{Flaw::workoutActivities,
            "workout-activities",
            {"训练里的 WorkoutActivity 把同样的统计重复一遍",
             "a WorkoutActivity inside each workout, with the same statistics once more"},
            records,
            true},
    FlawRow{
        Flaw::deviceAddresses,
        "device-addresses",
        {"device 里有内存地址，每条记录都不同", "a memory address in each device, never the same"},
        records,
        true},
    FlawRow{Flaw::eightTimes,
            "eight-times",
            {"部分记录各出现八次", "some records stand there eight times"},
            records,
            true},
    FlawRow{Flaw::mixedUnits,
            "mixed-units",
            {"同一类型有多种单位：Cal、kcal、kJ；mi、km、m；lb、st、kg；mmol<…>/L",
             "several units of one type: Cal, kcal, kJ; mi, km, m; lb, st, kg; mmol<...>/L"},
            records,
            true},
    FlawRow{Flaw::correlations,
            "correlations",
            {"Correlation 里的记录，在它外面也各有一条",
             "a Correlation whose records stand outside it as well"},
            records,
            true},
    FlawRow{Flaw::workoutTotals,
            "workout-totals",
            {"训练的合计只写在属性里、只写在子元素里、两处都写或都不写",
             "workouts with totals in attributes, in both places and in neither"},
            records,
            true},
    FlawRow{Flaw::bareNames,
            "bare-names",
            {"类型名没有通常的前缀，有的记录没有数值和单位",
             "types without the usual prefix, and records without value or unit"},
            records,
            true},
    FlawRow{Flaw::twoSleepPrograms,
            "two-sleep-programs",
            {"同一夜由两个程序记录，睡眠阶段的名称一新一旧",
             "one night told by two programs, with the old and the new names of stages"},
            records,
            true},
    FlawRow{Flaw::oldRings,
            "old-rings",
            {"活动圆环的能量以 kJ 计，并使用旧属性名 appleMoveMinutes",
             "activity rings in kJ, with the old name appleMoveMinutes"},
            records,
            true},
    FlawRow{
        Flaw::noNumbers,
        "no-numbers",
        {"数值是 NaN、1e309、空文本或「72,5」", "values that are NaN, 1e309, empty or \"72,5\""},
        records,
        true},
    FlawRow{Flaw::twelveHourStamps,
            "twelve-hour-stamps",
            {"十二小时制的时间戳，PM 前面是 U+202F",
             "stamps of twelve-hour clocks, with U+202F before PM"},
            records,
            true},
    FlawRow{Flaw::otherElements,
            "other-elements",
            {"含有 Audiogram、VisionPrescription 和 ClinicalRecord 元素",
             "Audiogram, VisionPrescription and ClinicalRecord"},
            records,
            true},
    FlawRow{Flaw::brokenDocumentType,
            "broken-document-type",
            {"文档类型里的 ATTLIST 没有写完，结尾还有多余的内容",
             "a document type with an ATTLIST that never closes and rubbish at its end"},
            document,
            true},
    FlawRow{
        Flaw::noExportDate, "no-export-date", {"没有 ExportDate", "no ExportDate"}, document, true},
    FlawRow{Flaw::noMe, "no-me", {"没有 Me", "no Me"}, document, true},
    FlawRow{
        Flaw::otherNames,
        "other-names",
        {"压缩包里的文件夹和 XML 用了别的名称", "an archive whose folder and XML have other names"},
        archive,
        true},
    FlawRow{Flaw::macTwins,
            "mac-twins",
            {"压缩包里有 __MACOSX 文件夹和以「._」开头的同名文件",
             "an archive with a folder __MACOSX and twins that begin with \"._\""},
            archive,
            true},
    FlawRow{Flaw::storedEntry,
            "stored-entry",
            {"压缩包里的 XML 没有压缩", "an archive whose XML is not compressed"},
            archive,
            true},
    FlawRow{Flaw::dataDescriptor,
            "data-descriptor",
            {"压缩包把大小和校验和写在数据之后",
             "an archive that tells sizes and checksum behind the data"},
            archive,
            true},
    FlawRow{Flaw::zip64,
            "zip64",
            {"压缩包不大，却用 ZIP64 格式", "a ZIP64 archive, although it is small"},
            archive,
            true},
    FlawRow{Flaw::cdaBeside,
            "cda-beside",
            {"压缩包里，导出的 XML 前面有一个格式错误的 export_cda.xml",
             "an archive with a malformed export_cda.xml before the export"},
            archive,
            true},
    FlawRow{Flaw::otherFiles,
            "other-files",
            {"压缩包里还有路线、心电图和临床记录文件",
             "an archive with files of routes, ECGs and clinical records"},
            archive,
            true},
    FlawRow{Flaw::entityBomb,
            "entity-bomb",
            {"实体逐层展开后有十亿个字符", "entities that expand to a thousand million characters"},
            document,
            false},
    FlawRow{
        Flaw::cdaAlone,
        "cda-alone",
        {"只有 export_cda.xml，没有 export.xml", "export_cda.xml alone, without the export.xml"},
        document,
        false},
    FlawRow{Flaw::cutOff,
            "cut-off",
            {"文件只有前一半", "a file that ends in its middle"},
            document,
            false},
    FlawRow{
        Flaw::empty, "empty", {"空的压缩包或空文件", "an empty archive or file"}, document, false},
    FlawRow{Flaw::cloudStub,
            "cloud-stub",
            {"文件还在云盘里，本地只有占位文件「.名称.icloud」",
             "a file still in a cloud drive: only \".NAME.icloud\" lies there"},
            document,
            false},
    FlawRow{Flaw::utf16,
            "utf-16",
            {"UTF-16 编码，没有字节顺序标记", "UTF-16 without a byte order mark"},
            document,
            false},
    FlawRow{Flaw::utf16Mark,
            "utf-16-mark",
            {"UTF-16 编码，有字节顺序标记", "UTF-16 with a byte order mark"},
            document,
            false},
    FlawRow{Flaw::otherEncoding,
            "other-encoding",
            {"windows-1252 编码，与文件里的声明一致", "windows-1252, as its declaration says"},
            document,
            false},
};

/// Whether each row is at the position of its flaw's number.
constexpr bool inOrder() {
  for (std::size_t index = 0; index < table.size(); ++index) {
    if (static_cast<std::size_t>(table[index].flaw) != index) return false;
  }
  return true;
}
static_assert(inOrder());
static_assert(table.back().flaw == Flaw::otherEncoding, "every flaw has its row");

}  // namespace

std::span<const FlawRow> Flaws::rows() { return table; }

const FlawRow& Flaws::rowOf(Flaw flaw) { return table.at(static_cast<std::size_t>(flaw)); }

std::optional<Flaw> Flaws::named(std::string_view name) {
  const auto found = std::ranges::find(table, name, &FlawRow::name);
  if (found == table.end()) return std::nullopt;
  return found->flaw;
}

FlawSet Flaws::readable(bool isArchive) {
  FlawSet flaws;
  for (const FlawRow& row : table) {
    if (row.readable && (isArchive || row.kind != FlawKind::archive)) flaws.insert(row.flaw);
  }
  return flaws;
}

std::string Flaws::names(const FlawSet& flaws) {
  std::string text;
  for (const Flaw flaw : flaws) {
    if (!text.empty()) text += ", ";
    text += rowOf(flaw).name;
  }
  return text;
}

std::string Flaws::list(SummaryLang lang) {
  const std::size_t width =
      std::ranges::max(table, {}, [](const FlawRow& row) { return row.name.size(); }).name.size();
  std::string text;
  for (const FlawRow& row : table) {
    text += row.name;
    text.append(width - row.name.size() + 2, ' ');
    text += row.text.in(lang);
    text += '\n';
  }
  return text;
}
