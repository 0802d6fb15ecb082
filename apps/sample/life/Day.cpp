#include "sample/life/Day.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace {

constexpr int minute = 60;
constexpr int hour = 3600;
constexpr int dayLength = 86400;

using std::chrono::month;
using std::chrono::month_day;

month_day monthAndDay(CivilDay date) { return {date.month(), date.day()}; }

bool isBetween(CivilDay date, month_day first, month_day last) {
  const month_day day = monthAndDay(date);
  return day >= first && day <= last;
}

constexpr month_day on(unsigned monthNumber, unsigned day) {
  return {month{monthNumber}, std::chrono::day{day}};
}

// These two weeks contain the end of New York's summer time, so the journey has both offsets.
constexpr month_day departure = on(10, 27);
constexpr month_day homecoming = on(11, 10);

/// The day of the flight home overlaps the day before. All devices are off, so that no moment is
/// recorded twice.
bool isFlightHome(const Person& person, CivilDay date) {
  return person.journeys && monthAndDay(date) == homecoming;
}

/// A week without the watch, which is in repair.
bool isInRepair(CivilDay date) { return isBetween(date, on(2, 10), on(2, 16)); }

bool isWeekend(CivilDay date) {
  const std::chrono::weekday weekday{std::chrono::sys_days{date}};
  return weekday == std::chrono::Saturday || weekday == std::chrono::Sunday;
}

Random randomOf(const Person& person, const HistoryContext& context, CivilDay date) {
  const auto number = std::chrono::sys_days{date}.time_since_epoch().count();
  return Random(context.seed).fork(person.id).fork(static_cast<std::uint64_t>(number));
}

int wakeOn(Random random, CivilDay date) {
  const int usual = isWeekend(date) ? 7 * hour + 40 * minute : 6 * hour + 25 * minute;
  return static_cast<int>(random.fork("wake").bell(usual, 18 * minute));
}

/// 1.15 at midsummer, 0.85 at midwinter.
double season(CivilDay date) {
  const auto dayOfYear =
      std::chrono::sys_days{date} - std::chrono::sys_days{date.year() / std::chrono::January / 1};
  return 1.15 - 0.3 * std::abs(static_cast<double>(dayOfYear.count()) - 183) / 183;
}

double activityOn(Random random, CivilDay date) {
  const std::chrono::weekday weekday{std::chrono::sys_days{date}};
  const double routine = weekday == std::chrono::Saturday ? 1.25
                         : weekday == std::chrono::Sunday ? 0.8
                                                          : 1.0;
  return std::max(0.2, random.fork("activity").bell(1, 0.2) * routine * season(date));
}

std::optional<Session> sessionOn(Random random, CivilDay date, int number) {
  Random chance = random.fork("session");
  if (!chance.chance(isWeekend(date) ? 0.35 : 0.2)) return std::nullopt;
  const int from = isWeekend(date) ? chance.whole(10 * hour, 15 * hour)
                                   : chance.whole(17 * hour + 30 * minute, 19 * hour);
  return Session{
      .from = from, .to = from + chance.whole(15 * minute, 45 * minute), .number = number};
}

}  // namespace

const Source* Day::source(DeviceOf device) const {
  const std::optional<Source>& owned = person.devices.*device;
  if (!owned) return nullptr;
  if (device == &Devices::watch && !watchWorn) return nullptr;
  if (device == &Devices::phone && !phoneCarried) return nullptr;
  return &*owned;
}

namespace {

Zone zoneOn(const Person& person, CivilDay date) {
  const bool away = monthAndDay(date) >= departure && monthAndDay(date) < homecoming;
  return away ? person.journeys.value_or(person.home) : person.home;
}

}  // namespace

Day dayOf(const Person& person, const HistoryContext& context, CivilDay date, int sessionsBefore) {
  const Random random = randomOf(person, context, date);
  const CivilDay tomorrow = AppleFormat::daysAfter(date, 1);
  const Zone zone = zoneOn(person, date);
  const bool inFlight = isFlightHome(person, date);
  const double span = std::max(1, AppleFormat::daysBetween(context.first, context.last));
  return {.person = person,
          .date = date,
          .zone = zone,
          .midnight = midnight(zone, date),
          .random = random,
          .age = AppleFormat::daysBetween(context.first, date) / span,
          .density = context.density,
          .activity = activityOn(random, date),
          .wake = wakeOn(random, date),
          .bed = static_cast<int>(random.fork("bed").bell(person.usualBedtime, 25 * minute)),
          .nextWake = dayLength + wakeOn(randomOf(person, context, tomorrow), tomorrow),
          .watchWorn = !inFlight && !isInRepair(date) && !random.fork("forgotten").chance(0.03),
          .phoneCarried = !inFlight && !random.fork("battery").chance(0.02),
          .session = inFlight ? std::nullopt : sessionOn(random, date, sessionsBefore)};
}
