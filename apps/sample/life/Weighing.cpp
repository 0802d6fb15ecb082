#include "sample/life/Weighing.h"

#include <string_view>

void tellWeighing(const Day& day, RecordSink& sink) {
  const Source* scale = day.source(&Devices::scale);
  const Source* oldScale = day.source(&Devices::oldScale);
  Random random = day.random.fork("weighing");
  constexpr double weighings = 0.35;  // of all mornings
  if (scale == nullptr || oldScale == nullptr || !random.chance(weighings * day.share())) return;

  constexpr double height = 1.68;
  const double weight = random.bell(67.5 - 4.2 * day.age, 0.35);
  const double fat = random.bell(0.285 - 0.03 * day.age, 0.004);
  const Stamp moment = day.at(day.wake + random.whole(300, 1200));
  const bool old = day.age < 1.0 / 3;
  const auto tell = [&](std::string_view type, std::string_view unit, double value, int places) {
    sink.add(Sample{.type = type,
                    .source = old ? oldScale : scale,
                    .unit = unit,
                    .start = moment,
                    .end = moment,
                    .value = Decimal::nearest(value, places),
                    .dated = !old || random.chance(0.5)});
  };
  tell("BodyMass", "kg", weight, 1);
  if (old) return;
  tell("BodyMassIndex", "", weight / (height * height), 1);
  tell("BodyFatPercentage", "%", fat, 3);
  tell("LeanBodyMass", "kg", weight * (1 - fat), 1);
}
