#include "import/export/ExportReader.h"
#include "import/Failure.h"
#include "import/export/SkipReasons.h"
#include "import/export/StoredUnit.h"
#include "import/export/TypeNames.h"
#include "import/export/Units.h"
#include "platform/AppleFormat.h"
#include "platform/Phrase.h"

#include <cstddef>
#include <utility>

namespace {

/// Exports are nested five deep.
constexpr int deepestElement = 64;

namespace phrases {
constexpr Phrase noExport{"没有 HealthData 元素：这不是「健康」App 的导出文件，或者文件缺少开头。",
                          "There is no HealthData element: this is no export of the Health "
                          "app, or one cut off at its beginning."};
constexpr Phrase clinicalDocument{
    "这是导出文件中的临床文档（export_cda.xml），不含要导入的记录；需要的是同一文件夹里的 "
    "export.xml。",
    "This is the clinical document of an export (export_cda.xml), which holds none of the "
    "records to import: the file wanted is the export.xml beside it."};
constexpr Phrase tooDeep{
    "第 {0} 行第 {1} 列的元素嵌套太深，这不是「健康」App 的导出文件。"
    "没有保存任何数据。",
    "The elements in line {0}, column {1} are nested too deeply; this is "
    "no export of the Health app. Nothing was stored."};
}  // namespace phrases

}  // namespace

ExportReader::ExportReader(ExportSink& target, TimeZone* zone)
    : sink(target), parser(*this), stamps(zone) {}

void ExportReader::feed(std::string_view bytes) { parse(text.cleaned(encoding.checked(bytes))); }

/// Processes text without forbidden characters.
void ExportReader::parse(std::string_view bytes) {
  if (!begun) {
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    begun = first != std::string_view::npos;
    // A picture or a list, given by mistake, gets a more useful message than one about broken XML.
    if (begun && bytes[first] != '<') throw Failure(phrases::noExport);
  }
  parser.parse(unrepeated.removed(prolog.passed(bytes)));
}

void ExportReader::finish() {
  parse(text.cleaned(encoding.rest()));
  parse(text.rest());
  parser.parse(unrepeated.rest());
  // Only after the parser has processed everything: it may still find that the XML is broken.
  parser.finish(phrases::noExport);
}

Irregularities ExportReader::irregularities() const {
  return {.unreadableStamps = stamps.unreadable(),
          .repeatedAttributes = unrepeated.count(),
          .droppedCharacters = text.droppedCharacters(),
          .replacedSequences = text.replacedSequences()};
}

void ExportReader::startElement(std::string_view name, const Attributes& attributes) {
  ++depth;
  if (depth > deepestElement) parser.refuse(phrases::tooDeep);
  if (ignoredDepth != 0) return;
  if (depth == 1) {
    if (name == "ClinicalDocument") throw Failure(phrases::clinicalDocument);
    if (name != "HealthData") throw Failure(phrases::noExport);
  } else if (depth == 2) {
    startTopElement(name, attributes);
  } else {
    startPart(name, attributes);
  }
}

void ExportReader::endElement() {
  if (ignoredDepth == depth) ignoredDepth = 0;
  if (depth == 2 && workout) {
    sink.add(std::move(*workout).finished());
    workout.reset();
  }
  --depth;
}

/// Starts an element of the root. The parts of an element that is not stored are ignored with it.
/// So are the records inside a Correlation, because they are also elements of the root.
void ExportReader::startTopElement(std::string_view name, const Attributes& attributes) {
  bool partsMatter = false;
  if (name == "Record") {
    partsMatter = addRecord(attributes);
  } else if (name == "Workout") {
    partsMatter = startWorkout(attributes);
  } else if (name == "ActivitySummary") {
    addDay(attributes);
  } else if (name == "ExportDate") {
    if (const auto stamp = attributes.findFilled("value")) {
      dateOfExport = AppleFormat::stampParser.stamp(*stamp);
      sink.exportedAt(*stamp);
    }
  } else {
    sink.notStored(name);
  }
  if (!partsMatter) ignoredDepth = depth;
}

/// Starts a part of a record or workout. The parts of a part are ignored: statistics of one
/// activity of a workout are not the workout's.
void ExportReader::startPart(std::string_view name, const Attributes& attributes) {
  ignoredDepth = depth;
  if (name == "MetadataEntry") {
    // A record's metadata has no column. Counting millions of entries would be of no use.
    if (workout) workout->addMetadata(attributes);
  } else if (workout && name == "WorkoutStatistics") {
    workout->addStatistics(attributes);
  } else {
    sink.notStored(name);
  }
}

/// Whether an element with this start has a day; reports it to the sink if not.
bool ExportReader::hasDay(const LocalStamp& start) {
  if (start.day()) return true;
  const bool missing = start.text().empty();
  sink.skipped((missing ? SkipReasons::noStart : SkipReasons::startIsNoDate).in(SummaryLang::en),
               parser.line());
  return false;
}

namespace {

/// Converts unit and number to the stored unit of the type.
void convert(ExportedRecord& record) {
  if (!record.number) return;
  const std::optional<std::string_view> stored = StoredUnit::of(record.type);
  if (!stored || record.unit == stored) return;
  const std::string_view unit = record.unit.value_or(std::string_view());
  const std::optional<double> number =
      Units::converted({.number = *record.number, .unit = unit}, *stored);
  if (!number) {
    record.unknownUnit = true;
    return;
  }
  record.number = number;
  record.unit = stored;
  record.converted = true;
}

}  // namespace

/// Whether the record can be stored; reports the result to the sink.
bool ExportReader::addRecord(const Attributes& attributes) {
  ExportedRecord record;
  record.type = TypeNames::ofRecord(attributes.find("type").value_or(std::string_view()));
  if (record.type.empty()) {
    sink.skipped(SkipReasons::noType.in(SummaryLang::en), parser.line());
    return false;
  }
  const LocalStamp start = stamps.local(attributes.find("startDate").value_or(std::string_view()));
  if (!hasDay(start)) return false;
  const auto localized = [&](std::string_view name) {
    const std::optional<std::string_view> stamp = attributes.find(name);
    return stamp ? std::optional(stamps.local(*stamp)) : std::nullopt;
  };
  const std::optional<LocalStamp> end = localized("endDate");
  const std::optional<LocalStamp> creation = localized("creationDate");
  record.startDate = start.text();
  record.startDay = start.day();
  if (end) record.endDate = end->text();
  if (creation) record.creationDate = creation->text();
  record.sourceName = attributes.find("sourceName");
  record.device = attributes.find("device");
  record.exportedUnit = attributes.find("unit");
  record.unit = record.exportedUnit;
  record.value = attributes.find("value");
  if (record.value) record.number = Units::number(*record.value);
  convert(record);
  sink.add(record);
  return true;
}

/// Whether the workout can be stored; reports it to the sink if not.
bool ExportReader::startWorkout(const Attributes& attributes) {
  const LocalStamp start = stamps.local(attributes.find("startDate").value_or(std::string_view()));
  if (!hasDay(start)) return false;
  workout.emplace(start, attributes, stamps);
  return true;
}

namespace {

/// Converts the energies of a day to the stored unit of all energies.
void convert(ExportedActivityDay& day) {
  constexpr std::string_view stored = "kcal";
  if (!day.activeEnergyUnit || *day.activeEnergyUnit == stored) return;
  const std::string unit = *day.activeEnergyUnit;
  // Whether a unit is known does not depend on the number.
  if (!Units::converted({.number = 0, .unit = unit}, stored)) {
    day.unknownUnit = true;
    return;
  }
  const auto bring = [&](std::optional<double>& energy) {
    if (energy) energy = Units::converted({.number = *energy, .unit = unit}, stored);
  };
  bring(day.activeEnergy);
  bring(day.activeEnergyGoal);
  day.activeEnergyUnit = stored;
  day.converted = true;
}

}  // namespace

void ExportReader::addDay(const Attributes& attributes) {
  const std::string_view date = attributes.find("dateComponents").value_or(std::string_view());
  if (date.size() != 10 || !AppleFormat::dayParser.parse(date)) {
    const bool missing = date.empty();
    sink.skipped((missing ? SkipReasons::noDay : SkipReasons::dayIsNoDate).in(SummaryLang::en),
                 parser.line());
    return;
  }
  const auto number = [&attributes](std::string_view name) {
    const std::optional<std::string_view> value = attributes.find(name);
    return value ? Units::number(*value) : std::nullopt;
  };
  // Older exports have another name for minutes of movement.
  const auto either = [&number](std::string_view name, std::string_view olderName) {
    const std::optional<double> value = number(name);
    return value ? value : number(olderName);
  };
  const std::optional<std::string_view> unit = attributes.find("activeEnergyBurnedUnit");
  ExportedActivityDay day{
      .date = std::string(date),
      .activeEnergy = number("activeEnergyBurned"),
      .activeEnergyGoal = number("activeEnergyBurnedGoal"),
      .activeEnergyUnit = unit ? std::optional<std::string>(*unit) : std::nullopt,
      .moveTime = either("appleMoveTime", "appleMoveMinutes"),
      .moveTimeGoal = either("appleMoveTimeGoal", "appleMoveMinutesGoal"),
      .exerciseTime = number("appleExerciseTime"),
      .exerciseTimeGoal = number("appleExerciseTimeGoal"),
      .standHours = number("appleStandHours"),
      .standHoursGoal = number("appleStandHoursGoal"),
  };
  convert(day);
  sink.add(day);
}
