#pragma once
// The records of a life on phones and watches, independent of the output format.

#include "sample/life/Calendar.h"
#include "workouts/Workouts.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// The source of samples.
struct Source {
  std::string name;
  std::string device;        ///< the hardware in Apple Health's form; "" when there is none
  std::string version = {};  ///< of its software; "" when it has none
  int delaySeconds = 0;      ///< from the end of a sample until it is filed

  bool operator==(const Source&) const = default;
};

/// A decimal number: `digits` divided by ten to the power of `places`. Its text and its number are
/// the same on every machine.
struct Decimal {
  std::int64_t digits = 0;
  int places = 0;

  /// `value` rounded to `places` decimals.
  static Decimal nearest(double value, int places);

  double number() const;
  std::string text() const;  ///< shortest form: "0.97", "72", "-1.5"

  bool operator==(const Decimal&) const = default;
};

/// One sample. Its texts and its source must outlive it: it is passed on, not stored.
struct Sample {
  std::string_view type;  ///< without Apple's prefix: "HeartRate"
  const Source* source = nullptr;
  std::string_view unit;  ///< "" when it has none
  Stamp start;
  Stamp end;
  std::variant<Decimal, std::string_view> value;  ///< a quantity, or the name of a category
  bool dated = true;  ///< false for samples that an old importer left without a calendar day
  std::optional<Stamp> filed = {};  ///< absent: the source's delay after the end, at its offset

  /// The time when the phone filed the sample.
  Stamp created() const { return filed.value_or(end.after(source->delaySeconds)); }
};

/// One workout; its texts are as they will be stored. `entry.humidity` is the reading of a phone.
/// `entry.humidity_pct` is the percentage of older imports.
struct Workout {
  WorkoutEntry entry;
  const Source* source = nullptr;  ///< of the same name; outlives the workout
  Stamp start;
  Stamp end;
  std::optional<Stamp> filed = {};  ///< absent: a minute after the end, at the end's offset

  /// The time when the phone filed the workout.
  Stamp created() const { return filed.value_or(end.after(60)); }
};

/// Receives the generated samples and workouts in order, and decides their output format.
class RecordSink {
public:
  virtual ~RecordSink() = default;
  virtual void add(const Sample& sample) = 0;
  virtual void add(const Workout& workout) = 0;
};
