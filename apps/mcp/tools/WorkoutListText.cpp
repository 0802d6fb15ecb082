#include "mcp/tools/WorkoutListText.h"
#include "mcp/tools/AnswerText.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "summary/ActivityNames.h"

#include <array>
#include <charconv>
#include <system_error>

namespace {

constexpr Phrase countLine{"全部匹配记录汇总: {0} 次", "All matching records: {0} workouts"};
constexpr Phrase totalLine{"  {0}: {1} {2},{3}/{4} 次有记录",
                           "  {0}: {1} {2}, recorded in {3}/{4} workouts"};
constexpr Phrase notRecordedLine{"  {0}: 未记录", "  {0}: not recorded"};
constexpr Phrase byActivity{"按运动类型: ", "By activity: "};
constexpr Phrase indoorWord{"室内", "indoor"};
constexpr Phrase outdoorWord{"室外", "outdoor"};
constexpr Phrase unverifiedScale{"尺度待核实", "scale needs verification"};
constexpr Phrase invalidReading{"数值或单位异常", "invalid value or representation"};
constexpr Phrase nothingMatches{"这个区间与筛选条件下没有训练记录。",
                                "No workouts match this range and filters."};
constexpr Phrase emptyPage{"此页没有记录,请减小 offset。",
                           "No records on this page; use a smaller offset."};

using Tools::Call;
using WorkoutList::Query;
using WorkoutSelection::Selection;

/// The range, then the active filters.
std::string rangeAndFilters(const Query& query, SummaryLang lang) {
  std::string line = Tools::rangeLine(query.range.from, query.range.to, lang);
  const WorkoutSelection::Filters& filters = query.filters;
  if (!filters.activityType.empty()) line += ", activity_type=" + filters.activityType;
  if (filters.environment != WorkoutEnvironment::all) {
    line += ", environment=" + std::string(rawValue(filters.environment));
  }
  if (!filters.source.empty()) line += ", source=" + filters.source;
  return line;
}

void addTotals(Lines& lines, const Selection& selection, const Call& call) {
  const std::string count = std::to_string(selection.totalCount);
  lines.add(filled(countLine.in(call.lang), {count}));
  for (std::size_t index = 0; index < selection.totals.size(); ++index) {
    const WorkoutSelection::Measure& measure = WorkoutSelection::measures[index];
    const WorkoutSelection::Total& total = selection.totals[index];
    const std::string_view label = measure.label.in(call.lang);
    if (total.count == 0) {
      lines.add(filled(notRecordedLine.in(call.lang), {label}));
    } else {
      lines.add(filled(
          totalLine.in(call.lang),
          {label, Tools::fmt(total.sum, call), measure.unit, std::to_string(total.count), count}));
    }
  }
}

void addLists(Lines& lines, const Selection& selection, SummaryLang lang) {
  const auto counted = [lang](const WorkoutSelection::ActivityCount& activity) {
    return activityName(activity.first, lang) + "×" + std::to_string(activity.second);
  };
  const auto named = [lang](const auto& activity) {
    return activity.first + " (" + activityName(activity.first, lang) + ")";
  };
  lines.add(byActivity.in(lang), joined(selection.byActivity, ", ", counted));
  lines.add("available_activities: ", joined(selection.availableActivities, ", ", named));
  lines.add("available_sources: ", joined(selection.availableSources, ", "));
}

void addPagination(Lines& lines, const Query& query, const Selection& selection) {
  const std::string next =
      selection.nextOffset ? ", next_offset=" + std::to_string(*selection.nextOffset) : "";
  lines.add("offset=",
            std::to_string(query.page.offset),
            ", returned_count=",
            std::to_string(selection.page.size()),
            ", total_count=",
            std::to_string(selection.totalCount),
            ", order=",
            WorkoutList::rawValue(query.order),
            ", has_more=",
            selection.nextOffset ? "true" : "false",
            next);
}

/// The meaning of a status, in brackets after it; "" when the status is self-explanatory.
std::string explanation(std::string_view status, SummaryLang lang) {
  if (status == "valid" || status == "legacy_unverified") return "";
  const Phrase& meaning = status == "unverified_scale" ? unverifiedScale : invalidReading;
  return " (" + std::string(meaning.in(lang)) + ")";
}

/// The shortest decimal that parses back to `value`, without an exponent.
std::string shortest(double value) {
  std::array<char, 512> text{};  // the smallest numbers have some 330 digits
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  return error == std::errc() ? std::string(text.data(), end) : std::string();
}

void addHumidity(Lines& lines, const WorkoutHumidity& reading, SummaryLang lang) {
  const std::string status(reading.status());
  constexpr const char* absent = "null";
  lines.add("    humidity_status=",
            status,
            explanation(status, lang),
            ", raw_value=",
            reading.raw_value ? shortest(*reading.raw_value) : absent,
            ", raw_text=",
            reading.raw_text.value_or(absent),
            ", encoding=",
            reading.encoding,
            ", source_bundle_id=",
            reading.source_bundle_id.value_or(absent),
            ", source_version=",
            reading.source_version.value_or(absent));
}

void addWorkout(Lines& lines, const WorkoutEntry& workout, const Call& call) {
  std::string heading = "· " + activityName(workout.activity_type, call.lang);
  if (workout.indoor) {
    heading += " · " + std::string((*workout.indoor ? indoorWord : outdoorWord).in(call.lang));
  }
  lines.add(heading);
  lines.add("    start=", workout.start, ", end=", workout.end, ", source=", workout.source);
  for (const WorkoutSelection::Measure& measure : WorkoutSelection::measures) {
    const std::optional<double> value = measure.read(workout);
    if (value) {
      lines.add(
          "    ", measure.label.in(call.lang), ": ", Tools::fmt(*value, call), " ", measure.unit);
    }
  }
  lines.add("    workout_id=", workout.workout_id());
  if (const auto reading = workout.humidityReading()) addHumidity(lines, *reading, call.lang);
}

}  // namespace

std::string WorkoutListText::text(const Query& query, const Selection& selection,
                                  const std::string& coverage, const Call& call) {
  Lines lines;
  lines.add(Tools::header(query.member, call.lang));
  lines.add(rangeAndFilters(query, call.lang));
  addTotals(lines, selection, call);
  addLists(lines, selection, call.lang);
  addPagination(lines, query, selection);
  if (selection.totalCount == 0) {
    lines.add(nothingMatches.in(call.lang));
  } else if (selection.page.empty()) {
    lines.add(emptyPage.in(call.lang));
  }
  for (const WorkoutEntry& workout : selection.page) addWorkout(lines, workout, call);
  lines.add("");
  lines.add(WorkoutList::closingNote.in(call.lang));
  lines.add("");
  lines.add(coverage);
  return lines.joined();
}
