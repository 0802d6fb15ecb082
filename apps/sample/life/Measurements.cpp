#include "sample/life/Measurements.h"

#include <array>
#include <string_view>
#include <variant>

namespace {

/// A random quantity and its distribution.
struct Quantity {
  double mean;
  double spread;
  double drift;  ///< change of the mean over the whole history
  int places;
};

/// A measurement or an event at about the same hours.
struct Measurement {
  std::string_view type;
  std::string_view unit;
  DeviceOf device;
  double perDay;  ///< below 1: the probability per day
  int fromHour;
  int toHour;
  int minutes;  ///< duration of one sample
  std::variant<Quantity, std::string_view> value;
};

constexpr auto watch = &Devices::watch;
constexpr auto phone = &Devices::phone;
constexpr auto diary = &Devices::mealDiary;
constexpr std::string_view stood = "HKCategoryValueAppleStandHourStood";
constexpr std::string_view idle = "HKCategoryValueAppleStandHourIdle";
constexpr std::string_view notApplicable = "HKCategoryValueNotApplicable";

// Fractions have the unit "%" in Apple's data: 0.97 is 97 percent.
const std::array measurements{
    Measurement{"RestingHeartRate", "count/min", watch, 0.95, 21, 22, 0, Quantity{62, 2, -5, 0}},
    Measurement{
        "WalkingHeartRateAverage", "count/min", watch, 0.9, 20, 21, 0, Quantity{96, 5, -4, 1}},
    Measurement{"HeartRateVariabilitySDNN", "ms", watch, 4, 0, 24, 1, Quantity{42, 11, 6, 4}},
    Measurement{"RespiratoryRate", "count/min", watch, 4, 1, 6, 10, Quantity{14.4, 0.9, 0, 1}},
    Measurement{"OxygenSaturation", "%", watch, 5, 0, 24, 0, Quantity{0.97, 0.008, 0, 2}},
    Measurement{"VO2Max", "mL/min·kg", watch, 0.15, 18, 20, 0, Quantity{34.5, 0.4, 3.5, 2}},
    Measurement{
        "AppleSleepingWristTemperature", "degC", watch, 0.8, 1, 2, 240, Quantity{35.4, 0.25, 0, 3}},
    Measurement{"AppleStandHour", "", watch, 5, 8, 20, 60, stood},
    Measurement{"AppleStandHour", "", watch, 1, 20, 22, 60, idle},
    Measurement{"EnvironmentalAudioExposure", "dBASPL", watch, 5, 7, 22, 20, Quantity{63, 7, 0, 3}},
    Measurement{"HeadphoneAudioExposure", "dBASPL", phone, 1.2, 7, 22, 25, Quantity{71, 5, 0, 3}},
    Measurement{"PhysicalEffort", "kcal/hr·kg", watch, 3, 8, 21, 5, Quantity{2.4, 0.6, 0, 1}},
    Measurement{"AppleMoveTime", "min", watch, 0.1, 9, 20, 30, Quantity{24, 5, 0, 0}},
    Measurement{"WalkingSpeed", "km/hr", phone, 3, 8, 20, 2, Quantity{4.7, 0.35, 0, 2}},
    Measurement{"WalkingStepLength", "cm", phone, 3, 8, 20, 2, Quantity{69, 3, 0, 0}},
    Measurement{
        "WalkingDoubleSupportPercentage", "%", phone, 2, 8, 20, 2, Quantity{0.28, 0.01, 0, 3}},
    Measurement{"WalkingAsymmetryPercentage", "%", phone, 1, 8, 20, 2, Quantity{0.03, 0.008, 0, 2}},
    Measurement{"AppleWalkingSteadiness", "%", phone, 0.14, 6, 7, 0, Quantity{0.94, 0.015, 0, 4}},
    Measurement{"SixMinuteWalkTestDistance", "m", watch, 0.14, 6, 7, 0, Quantity{540, 14, 20, 0}},
    Measurement{"StairAscentSpeed", "m/s", watch, 0.6, 8, 20, 0, Quantity{0.42, 0.04, 0, 3}},
    Measurement{"StairDescentSpeed", "m/s", watch, 0.6, 8, 20, 0, Quantity{0.49, 0.04, 0, 3}},
    Measurement{
        "HeartRateRecoveryOneMinute", "count/min", watch, 0.1, 19, 20, 0, Quantity{27, 5, 4, 2}},
    Measurement{"HandwashingEvent", "s", watch, 1, 8, 21, 1, notApplicable},
    Measurement{"MindfulSession", "", watch, 0.2, 6, 8, 5, notApplicable},
    Measurement{"AudioExposureEvent",
                "",
                watch,
                0.01,
                18,
                22,
                3,
                "HKCategoryValueEnvironmentalAudioExposureEventMomentaryLimit"},
    Measurement{"DietaryWater", "mL", diary, 2, 8, 20, 0, Quantity{260, 55, 0, 0}},
    Measurement{"DietaryEnergyConsumed", "kcal", diary, 1.5, 7, 20, 0, Quantity{560, 130, 0, 0}},
    Measurement{"DietaryEnergyConsumed",
                "kJ",
                &Devices::kitchenScale,
                0.04,
                18,
                20,
                0,
                Quantity{2300, 400, 0, 0}},
    Measurement{"DietaryCaffeine", "mg", diary, 0.7, 8, 15, 0, Quantity{95, 18, 0, 0}},
    Measurement{"DistanceCycling", "km", watch, 0.12, 8, 19, 25, Quantity{7.5, 2, 0, 3}},
    Measurement{"DistanceSwimming", "m", watch, 0.08, 17, 20, 30, Quantity{850, 200, 0, 0}},
    Measurement{"SwimmingStrokeCount", "count", watch, 0.08, 17, 20, 30, Quantity{610, 120, 0, 0}},
    Measurement{
        "DistanceDownhillSnowSports", "m", watch, 0.02, 10, 15, 90, Quantity{6400, 1500, 0, 0}},
    Measurement{"DistanceWheelchair", "km", watch, 0.01, 10, 15, 20, Quantity{1.1, 0.3, 0, 3}},
    Measurement{"PushCount", "count", watch, 0.01, 10, 15, 20, Quantity{480, 100, 0, 0}},
    Measurement{"NikeFuel", "count", phone, 0.02, 10, 20, 30, Quantity{350, 90, 0, 0}},
    Measurement{"NumberOfTimesFallen", "count", watch, 0.01, 9, 20, 0, Quantity{1, 0, 0, 0}},
};

std::variant<Decimal, std::string_view> valueOf(const Measurement& measurement, const Day& day,
                                                Random& random) {
  if (const auto* quantity = std::get_if<Quantity>(&measurement.value)) {
    const double value = random.bell(quantity->mean + quantity->drift * day.age, quantity->spread);
    return Decimal::nearest(value, quantity->places);
  }
  return std::get<std::string_view>(measurement.value);
}

/// Each sample has its own slot of the hours, so that no two begin in the same second.
void tell(const Measurement& measurement, const Day& day, const Source& source, RecordSink& sink) {
  Random random = day.random.fork(measurement.type).fork(source.name).fork(measurement.unit);
  constexpr int hour = 3600;
  const int count = static_cast<int>(measurement.perDay * day.share() + random.uniform());
  const double slot = (measurement.toHour - measurement.fromHour) * double{hour} / count;
  for (int index = 0; index < count; ++index) {
    const double place = index + 0.5 * random.uniform();
    const Stamp start = day.at(measurement.fromHour * hour + static_cast<int>(slot * place));
    sink.add(Sample{.type = measurement.type,
                    .source = &source,
                    .unit = measurement.unit,
                    .start = start,
                    .end = start.after(measurement.minutes * 60),
                    .value = valueOf(measurement, day, random)});
  }
}

}  // namespace

void tellMeasurements(const Day& day, RecordSink& sink) {
  for (const Measurement& measurement : measurements) {
    if (const Source* source = day.source(measurement.device))
      tell(measurement, day, *source, sink);
  }
}
