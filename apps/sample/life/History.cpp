#include "sample/life/History.h"
#include "sample/life/Day.h"
#include "sample/life/Measurements.h"
#include "sample/life/Movement.h"
#include "sample/life/Pulse.h"
#include "sample/life/Sleep.h"
#include "sample/life/Training.h"
#include "sample/life/Weighing.h"

#include <algorithm>

namespace {

constexpr int hour = 3600;

/// Passes on only what had ended at the phone's last sync.
class UntilSync final : public RecordSink {
public:
  UntilSync(RecordSink& sink, Stamp sync) : sink(sink), sync(sync) {}

  void add(const Sample& sample) override {
    if (sample.end.moment <= sync.moment) sink.add(sample);
  }
  void add(const Workout& workout) override {
    if (workout.end.moment <= sync.moment) sink.add(workout);
  }

private:
  RecordSink& sink;
  Stamp sync;
};

class Counter final : public RecordSink {
public:
  void add(const Sample&) override { ++samples; }
  void add(const Workout&) override {}

  std::int64_t samples = 0;
};

/// Generates the records of `date`. `sessions` is the number of training sessions before it, and is
/// updated.
void tellDay(const Person& person, const HistoryContext& context, CivilDay date, int& sessions,
             RecordSink& sink) {
  const Day day = dayOf(person, context, date, sessions);
  tellMovement(day, sink);
  tellPulse(day, sink);
  tellMeasurements(day, sink);
  tellWeighing(day, sink);
  tellTraining(day, sink);
  tellNight(day, sink);
  if (day.session) ++sessions;
}

/// A weight that was entered with a date nine days in the future.
void tellMisdated(const Person& person, CivilDay today, RecordSink& sink) {
  if (!person.devices.byHand) return;
  const Stamp moment = midnight(person.home, AppleFormat::daysAfter(today, 9)).after(8 * hour);
  sink.add(Sample{.type = "BodyMass",
                  .source = &*person.devices.byHand,
                  .unit = "kg",
                  .start = moment,
                  .end = moment,
                  .value = Decimal::nearest(81, 0)});
}

std::int64_t samplesAt(double density, const Person& person, HistoryContext context, Stamp sync) {
  context.density = density;
  Counter counter;
  UntilSync untilSync(counter, sync);
  int sessions = 0;
  for (CivilDay date = context.first; date <= context.last;
       date = AppleFormat::daysAfter(date, 1)) {
    tellDay(person, context, date, sessions, untilSync);
  }
  return counter.samples;
}

/// The density at which the history has about `wanted` samples. Below the natural density, all
/// samples become rarer by the same factor. Above it, only the bulk becomes denser, in proportion.
double densityFor(std::int64_t wanted, const Person& person, HistoryContext context, Stamp sync) {
  const auto natural = static_cast<double>(samplesAt(1, person, context, sync));
  const auto target = static_cast<double>(wanted);
  if (target <= natural) return target / natural;
  const double bulk = static_cast<double>(samplesAt(2, person, context, sync)) - natural;
  return 1 + (target - natural) / std::max(1.0, bulk);
}

}  // namespace

CivilDay firstDay(const Person& person, const HistoryOptions& options) {
  // Short enough to count as a history that is still coming in.
  constexpr int daysOfPhone = 380;
  if (person.kind != Person::Kind::watchAndPhone) {
    return AppleFormat::daysBefore(options.today, daysOfPhone);
  }
  CivilDay day = options.today;
  for (int year = 0; year < options.years; ++year) day = AppleFormat::yearBefore(day);
  return day;
}

Stamp lastSync(CivilDay today) { return midnight(Zone::shanghai, today).after(7 * hour); }

History::History(const Person& person, const HistoryOptions& options)
    : person(person),
      context{.first = firstDay(person, options),
              .last = options.today,
              .density = 1,
              .seed = options.seed},
      sync(lastSync(options.today)),
      date(context.first),
      ended(person.kind == Person::Kind::justPaired) {
  if (options.records && !ended) {
    context.density = densityFor(*options.records, person, context, sync);
  }
}

bool History::tellNextDay(RecordSink& sink) {
  if (ended) return false;
  UntilSync untilSync(sink, sync);
  tellDay(person, context, date, sessions, untilSync);
  ended = date == context.last;
  if (ended) tellMisdated(person, context.last, sink);
  date = AppleFormat::daysAfter(date, 1);
  return true;
}

void tellHistory(const Person& person, const HistoryOptions& options, RecordSink& sink) {
  History history(person, options);
  while (history.tellNextDay(sink)) {
  }
}
