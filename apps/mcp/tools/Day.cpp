#include "mcp/tools/AnswerText.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/Tools.h"
#include "platform/Text.h"

namespace {

constexpr Phrase dateMalformed{.zh = "date 要是 YYYY-MM-DD", .en = "date must be YYYY-MM-DD"};
constexpr Phrase dateLine{.zh = "日期:{0}", .en = "Date: {0}"};
constexpr Phrase nothingRecorded{.zh = "这一天没有任何记录。",
                                 .en = "Nothing recorded on this day."};
constexpr Phrase recordLine{.zh = "  {0}: {1} {2}({3} 个样本)",
                            .en = "  {0}: {1} {2} ({3} samples)"};
constexpr Phrase workoutsHeading{.zh = "训练:", .en = "Workouts:"};
static_assert(inBothLanguages(dateMalformed) && inBothLanguages(dateLine) &&
              inBothLanguages(nothingRecorded) && inBothLanguages(recordLine) &&
              inBothLanguages(workoutsHeading));

/// The required day of the call, unchanged.
std::string requiredDay(const Tools::Call& call) {
  if (const std::optional<std::string> day = Tools::dayArgument(call, "date")) return *day;
  throw MCPError(MCPError::invalidArguments, std::string(dateMalformed.in(call.lang)));
}

std::string dayLine(const DayRow& row, SummaryLang lang) {
  // Percentages are stored as fractions.
  const double value = row.unit == "%" ? row.value * 100 : row.value;
  return filled(recordLine.in(lang),
                {row.type, Tools::fmt(value), row.unit, std::to_string(row.samples)});
}

std::string workoutLine(const DayWorkout& workout, SummaryLang lang) {
  std::string line =
      "  " + activityName(workout.type, lang) + " " + Tools::fmt(workout.minutes) + " min";
  if (workout.km) line += ", " + Tools::fmt(*workout.km) + " km";
  if (workout.kcal) line += ", " + Tools::fmt(*workout.kcal) + " kcal";
  return line;
}

}  // namespace

std::string Tools::day(const Call& call) {
  const Member member = resolve(call);
  const std::string date = requiredDay(call);

  const HealthStore store = open(member, call);
  const std::vector<DayRow> rows = store.dayDetail(date);
  const std::vector<DayWorkout> workouts = store.workouts(date);

  Lines lines;
  lines.add(header(member, call.lang));
  lines.add(filled(dateLine.in(call.lang), {date}));
  if (rows.empty()) lines.add(nothingRecorded.in(call.lang));
  for (const DayRow& row : rows) lines.add(dayLine(row, call.lang));
  if (!workouts.empty()) lines.add(workoutsHeading.in(call.lang));
  for (const DayWorkout& workout : workouts) lines.add(workoutLine(workout, call.lang));
  lines.add("");
  lines.add(coverageOf(store, call));
  return lines.joined();
}
