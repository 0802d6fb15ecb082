#pragma once
// What a life leaves behind on phones and watches, before anybody decides how to write it down.

#include "sample/life/Calendar.h"
#include "workouts/Workouts.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// Where samples come from.
struct Source {
  std::string name;
  std::string device;        ///< the hardware as Apple Health spells it; "" when there is none
  std::string version = {};  ///< of its software; "" when it gives none
  int delaySeconds = 0;      ///< how long after its end a sample is filed

  bool operator==(const Source&) const = default;
};

/// A number as it is written: `digits` divided by ten to the `places`. Keeps a value's text and its
/// number the same on every machine.
struct Decimal {
  std::int64_t digits = 0;
  int places = 0;

  /// `value` to the nearest of `places` decimals.
  static Decimal nearest(double value, int places);

  double number() const;
  std::string text() const;  ///< shortest: "0.97", "72", "-1.5"

  bool operator==(const Decimal&) const = default;
};

/// One sample. Texts and the source outlive it: it is handed on, not kept.
struct Sample {
  std::string_view type;  ///< without Apple's prefix: "HeartRate"
  const Source* source = nullptr;
  std::string_view unit;  ///< "" when it has none
  Stamp start;
  Stamp end;
  std::variant<Decimal, std::string_view> value;  ///< a quantity, or a category's name
  bool dated = true;  ///< false for those that an old importer left without a calendar day
  std::optional<Stamp> filed = {};  ///< absent: the source's delay after the end, on its clocks

  /// When the phone filed the sample.
  Stamp created() const { return filed.value_or(end.after(source->delaySeconds)); }
};

/// One workout, its texts as they are to be stored. A humidity reading in `entry.humidity` is what
/// a phone reported; one in `entry.humidity_pct` is the percentage that older imports kept.
struct Workout {
  WorkoutEntry entry;
  const Source* source = nullptr;  ///< of that name; outlives the workout
  Stamp start;
  Stamp end;
  std::optional<Stamp> filed = {};  ///< absent: a minute after the end, on its clocks

  /// When the phone filed the workout.
  Stamp created() const { return filed.value_or(end.after(60)); }
};

/// Takes what happened, in the order in which it is told. How it is written down is the sink's
/// affair.
class RecordSink {
public:
  virtual ~RecordSink() = default;
  virtual void add(const Sample& sample) = 0;
  virtual void add(const Workout& workout) = 0;
};
