#include "sample/life/Pulse.h"

#include <algorithm>

namespace {

constexpr int hour = 3600;
constexpr int dayLength = 86400;

/// The watch charges for one hour in the evening.
bool isCharging(int second) { return second >= 21 * hour && second < 22 * hour; }

double usualRate(const Day& day, int second) {
  const double fitness = -5 * day.age;  // training lowers the pulse over the years
  if (second < day.wake || second >= day.bed) return 58 + fitness;
  return (second < 11 * hour ? 74 : 79) + fitness;
}

}  // namespace

void tellPulse(const Day& day, RecordSink& sink) {
  const Source* watch = day.source(&Devices::watch);
  if (watch == nullptr) return;

  Random random = day.random.fork("pulse");
  constexpr double naturalCount = 130;
  constexpr int shortestSlot = 2;
  const int count = std::min(static_cast<int>(naturalCount * day.density + random.uniform()),
                             dayLength / shortestSlot);
  const double slot = count == 0 ? 0 : static_cast<double>(dayLength) / count;

  for (int index = 0; index < count; ++index) {
    const int second = static_cast<int>(slot * (index + 0.5 * random.uniform()));
    const double rate = random.bell(usualRate(day, second), 7);
    if (isCharging(second) || (day.session && day.session->contains(second))) continue;
    const Stamp moment = day.at(second);
    sink.add(Sample{.type = "HeartRate",
                    .source = watch,
                    .unit = "count/min",
                    .start = moment,
                    .end = moment,
                    .value = Decimal::nearest(rate, 0)});
  }
}
