#include "mcp/tools/AnswerText.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/Tools.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "summary/ActivityNames.h"

namespace {

constexpr Phrase dateMalformed{"date 要是 YYYY-MM-DD", "date must be YYYY-MM-DD"};
constexpr Phrase dateLine{"日期:{0}", "Date: {0}"};
constexpr Phrase nothingRecorded{"这一天没有任何记录。", "Nothing recorded on this day."};
constexpr Phrase recordLine{"  {0}: {1} {2}({3} 个样本)", "  {0}: {1} {2} ({3} samples)"};
constexpr Phrase workoutsHeading{"训练:", "Workouts:"};

/// The required day of the call, unchanged.
std::string requiredDay(const Tools::Call& call) {
  if (const std::optional<std::string> day = Tools::dayArgument(call, "date")) return *day;
  throw MCPError(MCPError::invalidArguments, std::string(dateMalformed.in(call.lang)));
}

std::string dayLine(const DayRow& row, const Tools::Call& call) {
  const double value = shown(row.value, row.unit);
  return filled(recordLine.in(call.lang),
                {row.type, Tools::fmt(value, call), row.unit, std::to_string(row.samples)});
}

std::string workoutLine(const DayWorkout& workout, const Tools::Call& call) {
  std::string line = "  " + activityName(workout.type, call.lang) + " " +
                     Tools::fmt(workout.minutes, call) + " min";
  if (workout.km) line += ", " + Tools::fmt(*workout.km, call) + " km";
  if (workout.kcal) line += ", " + Tools::fmt(*workout.kcal, call) + " kcal";
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
  for (const DayRow& row : rows) lines.add(dayLine(row, call));
  if (!workouts.empty()) lines.add(workoutsHeading.in(call.lang));
  for (const DayWorkout& workout : workouts) lines.add(workoutLine(workout, call));
  lines.add("");
  lines.add(coverageOf(store, call));
  return lines.joined();
}
