#include "sample/export/ActivityRings.h"
#include "sample/export/Markup.h"

#include <functional>
#include <string_view>

namespace {

constexpr int energyPlaces = 3;

}  // namespace

void ActivityRings::add(const Sample& sample) {
  const bool isEnergy = sample.type == "ActiveEnergyBurned";
  const bool isExercise = sample.type == "AppleExerciseTime";
  const bool isStanding = sample.type == "AppleStandHour";
  if (!isEnergy && !isExercise && !isStanding) return;

  const StampText start(sample.start);
  auto found = days.find(start.day());
  if (found == days.end()) found = days.emplace(start.day(), Day{}).first;
  Day& day = found->second;
  if (isStanding) {
    const auto value = std::get<std::string_view>(sample.value);
    if (value == "HKCategoryValueAppleStandHourStood") ++day.standHours;
    return;
  }
  const double amount = std::get<Decimal>(sample.value).number();
  if (isEnergy) day.energy += Decimal::nearest(amount, energyPlaces).digits;
  if (isExercise) day.exercise += Decimal::nearest(amount, 0).digits;
}

void ActivityRings::append(std::string& text, UnitSystem system) const {
  for (const auto& [date, day] : days) {
    const ExportUnits::Quantity energy =
        ExportUnits::worded(system, "ActiveEnergyBurned", {day.energy, energyPlaces}, "kcal");
    text += " <ActivitySummary";
    Markup::appendAttribute(text, "dateComponents", date);
    Markup::appendAttribute(text, "activeEnergyBurned", energy.number);
    text += " activeEnergyBurnedGoal=\"450\"";
    Markup::appendAttribute(text, "activeEnergyBurnedUnit", energy.unit);
    text += " appleMoveTime=\"0\" appleMoveTimeGoal=\"0\"";
    Markup::appendAttribute(text, "appleExerciseTime", Decimal{day.exercise, 0}.text());
    text += " appleExerciseTimeGoal=\"30\"";
    Markup::appendAttribute(text, "appleStandHours", Decimal{day.standHours, 0}.text());
    text += " appleStandHoursGoal=\"12\"/>\n";
  }
}
