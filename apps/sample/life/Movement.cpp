#include "sample/life/Movement.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

namespace {

constexpr int hour = 3600;
constexpr int dayLength = 86400;

/// One cumulative type of one device.
struct Stream {
  std::string_view type;
  std::string_view unit;
  DeviceOf device;
  double samples;  ///< per day, at natural density
  double total;    ///< on an average day
  int places;
  bool bulk;    ///< becomes denser with the history
  bool allDay;  ///< continues during sleep, independent of the day's activity
};

constexpr auto watch = &Devices::watch;
constexpr auto phone = &Devices::phone;

constexpr std::array<Stream, 12> streams{{
    {"StepCount", "count", watch, 20, 8600, 0, true, false},
    {"StepCount", "count", phone, 12, 7300, 0, true, false},
    {"DistanceWalkingRunning", "km", watch, 20, 6.3, 5, true, false},
    {"DistanceWalkingRunning", "km", phone, 12, 5.5, 5, true, false},
    {"ActiveEnergyBurned", "kcal", watch, 32, 430, 3, true, false},
    {"ActiveEnergyBurned", "kcal", phone, 4, 210, 3, true, false},
    {"BasalEnergyBurned", "kcal", watch, 24, 1390, 3, true, true},
    {"FlightsClimbed", "count", phone, 4, 9, 0, false, false},
    {"FlightsClimbed", "count", watch, 3, 8, 0, false, false},
    {"AppleExerciseTime", "min", watch, 5, 31, 0, false, false},
    {"AppleStandTime", "min", watch, 6, 96, 0, false, false},
    {"TimeInDaylight", "min", watch, 3, 48, 0, false, false},
}};

/// The activity of each hour of a day; the mean over the waking hours is 1.
constexpr std::array<double, 24> liveliness{0.1, 0.1, 0.1, 0.1, 0.1, 0.3, 0.7, 1.3,
                                            1.5, 0.8, 0.7, 0.8, 1.3, 0.9, 0.7, 0.7,
                                            0.9, 1.4, 1.7, 1.4, 1.0, 0.7, 0.5, 0.3};

double livelinessAt(int second) {
  return liveliness[static_cast<std::size_t>(second / hour) % liveliness.size()];
}

/// Each sample has its own slot of the day and begins in the first half of it. So no two samples of
/// a stream begin in the same second.
void tell(const Stream& stream, const Day& day, const Source& source, RecordSink& sink) {
  Random random = day.random.fork(stream.type).fork(source.name);
  const int from = stream.allDay ? 0 : day.wake;
  const int to = stream.allDay ? dayLength : std::min(day.bed, dayLength);
  constexpr int shortestSlot = 2;
  const double wanted = stream.samples * (stream.bulk ? day.density : day.share());
  const int count =
      std::min(static_cast<int>(wanted + random.uniform()), (to - from) / shortestSlot);
  if (count < 1) return;

  const double slot = static_cast<double>(to - from) / count;
  const double mean = stream.total * (stream.allDay ? 1 : day.activity) / count;
  const double smallest = stream.places == 0 ? 1 : 0.001;
  for (int index = 0; index < count; ++index) {
    const int start = from + static_cast<int>(slot * (index + 0.5 * random.uniform()));
    const int seconds = std::max(1, static_cast<int>(slot * random.between(0.1, 0.45)));
    const double rhythm = stream.allDay ? 1 : livelinessAt(start);
    const double amount = std::max(smallest, mean * rhythm * random.between(0.5, 1.5));
    const Stamp begin = day.at(start);
    sink.add(Sample{.type = stream.type,
                    .source = &source,
                    .unit = stream.unit,
                    .start = begin,
                    .end = begin.after(seconds),
                    .value = Decimal::nearest(amount, stream.places)});
  }
}

}  // namespace

void tellMovement(const Day& day, RecordSink& sink) {
  for (const Stream& stream : streams) {
    if (const Source* source = day.source(stream.device)) tell(stream, day, *source, sink);
  }
}
