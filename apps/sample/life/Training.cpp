#include "sample/life/Training.h"
#include "sample/life/Activities.h"
#include "sample/life/HumidityForms.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>

namespace {

/// The heart-rate summary of a workout.
struct HeartRates {
  int count = 0;
  double sum = 0;
  double lowest = std::numeric_limits<double>::max();
  double highest = 0;

  void add(double rate) {
    ++count;
    sum += rate;
    lowest = std::min(lowest, rate);
    highest = std::max(highest, rate);
  }
};

/// The sampling of the pulse by a device during a session.
struct Sampling {
  const Source* source;
  std::string_view unit;
  int fewestSeconds;  ///< between two samples
  int mostSeconds;
  double unitless;  ///< probability of a sample without its unit
};

HeartRates tellHeartRates(const Day& day, const Session& session, double target,
                          const Sampling& sampling, RecordSink& sink) {
  Random random = day.random.fork("training").fork(sampling.source->name);
  constexpr double warmUpSeconds = 300;
  constexpr double atRest = 82;
  const int pause = (session.from + session.to) / 2;
  const int pauseEnd = pause + random.whole(75, 200);
  HeartRates rates;
  int second = session.from + random.whole(0, sampling.fewestSeconds);
  while (second < session.to) {
    const double warmth = std::min(1.0, (second - session.from) / warmUpSeconds);
    const Decimal rate = Decimal::nearest(random.bell(atRest + (target - atRest) * warmth, 4), 0);
    const bool hasUnit = !random.chance(sampling.unitless);
    const Stamp moment = day.at(second);
    sink.add(Sample{.type = "HeartRate",
                    .source = sampling.source,
                    .unit = hasUnit ? sampling.unit : "",
                    .start = moment,
                    .end = moment,
                    .value = rate});
    if (hasUnit) rates.add(rate.number());
    const int step = random.whole(sampling.fewestSeconds, sampling.mostSeconds);
    second += static_cast<int>(step / std::max(0.01, day.share()));
    if (second >= pause && second < pauseEnd) second = pauseEnd;
  }
  return rates;
}

/// A workout with only its times and its activity.
Workout bareWorkout(const Day& day, const Session& session, const Activity& activity,
                    const Source& source) {
  Workout workout;
  workout.source = &source;
  workout.start = day.at(session.from);
  workout.end = workout.start.after(session.to - session.from);
  workout.entry.activity_type = activity.code;
  workout.entry.source = source.name;
  workout.entry.start = StampText(workout.start).text();
  workout.entry.end = StampText(workout.end).text();
  workout.entry.duration_min = Decimal::nearest((session.to - session.from) / 60.0, 2).number();
  return workout;
}

/// `value` with two decimals; absent when it is not positive.
std::optional<double> recorded(double value) {
  if (value <= 0) return std::nullopt;
  return Decimal::nearest(value, 2).number();
}

void addHeart(WorkoutEntry& entry, const HeartRates& rates) {
  if (rates.count == 0) return;
  entry.hr_avg = recorded(rates.sum / rates.count);
  entry.hr_min = rates.lowest;
  entry.hr_max = rates.highest;
}

void addFigures(WorkoutEntry& entry, const Activity& activity, Random random) {
  const double minutes = entry.duration_min.value_or(0);
  const double form = random.bell(1, 0.07);
  entry.distance_km = recorded(activity.kilometresPerHour * minutes / 60 * form);
  entry.active_energy_kcal = recorded(activity.kilocaloriesPerMinute * minutes * form);
  if (activity.basalEnergy) entry.basal_energy_kcal = recorded(minutes * 0.97);
  entry.elevation_m = recorded(activity.climbPerHour * minutes / 60 * random.between(0.3, 1.7));
  entry.avg_mets = recorded(activity.mets * form);
  entry.indoor = activity.indoor;
  if (activity.temperature) entry.temp_c = Decimal::nearest(random.between(-4, 33), 1).number();
}

void addHumidity(WorkoutEntry& entry, int number) {
  const auto forms = humidityForms();
  const HumidityForm& form = forms[static_cast<std::size_t>(number) % forms.size()];
  entry.humidity = form.reading;
  entry.humidity_pct = form.column;
}

/// The chest strap's samples and workout. They begin before the watch's and end after them.
void tellChestStrap(const Day& day, const Session& session, const Activity& activity,
                    RecordSink& sink) {
  const Source* strap = day.source(&Devices::chestStrap);
  if (strap == nullptr) return;
  const Session longer{.from = session.from - 25, .to = session.to + 40, .number = session.number};
  const Sampling sampling{strap, "bpm", 12, 18, 0};
  const HeartRates rates = tellHeartRates(day, longer, activity.heartRate, sampling, sink);
  Workout workout = bareWorkout(day, longer, activity, *strap);
  addHeart(workout.entry, rates);
  sink.add(workout);
}

}  // namespace

void tellTraining(const Day& day, RecordSink& sink) {
  if (!day.session) return;
  const Session& session = *day.session;
  const auto all = activities();
  const Activity& activity = all[static_cast<std::size_t>(session.number) % all.size()];

  const Source* watch = day.source(&Devices::watch);
  if (watch == nullptr) {
    if (const Source* app = day.source(&Devices::runningApp)) {
      sink.add(bareWorkout(day, session, activity, *app));
    }
    return;
  }

  HeartRates rates;
  if (activity.heartRate > 0) {
    const Sampling sampling{watch, "count/min", 4, 6, 0.002};
    rates = tellHeartRates(day, session, activity.heartRate, sampling, sink);
  }
  Workout workout = bareWorkout(day, session, activity, *watch);
  addHeart(workout.entry, rates);
  addFigures(workout.entry, activity, day.random.fork("figures"));
  addHumidity(workout.entry, session.number);
  sink.add(workout);
  if (activity.chestStrap) tellChestStrap(day, session, activity, sink);
}
