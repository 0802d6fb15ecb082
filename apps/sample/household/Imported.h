#pragma once
// A life as it reaches a database by way of the Health app's export.

#include "sample/life/Calendar.h"
#include "sample/life/Sample.h"

#include <optional>
#include <string>

/// Hands on what an import makes of an export. Nearly all comes through as it was told. What does
/// not: every stamp shows its moment on the clocks of the member's home, journeys included, and
/// every record has its calendar day there; each quantity has one unit, so lengths of the Distance
/// types are in kilometres and all energy in kilocalories; and the humidity of a workout is a
/// number of the export's own form ("xml_percent"), or nothing when it had no number.
class Imported final : public RecordSink {
public:
  /// `home` is the member's time zone. `sink` outlives this.
  Imported(RecordSink& sink, Zone home) : sink(sink), home(home) {}

  void add(const Sample& sample) override;
  void add(const Workout& workout) override;

  /// The calendar day of the earliest record or workout, "2024-03-01"; absent before the first.
  const std::optional<std::string>& firstDay() const { return first; }

private:
  Stamp atHome(Stamp stamp) const { return stampIn(home, stamp.moment); }
  void note(Stamp start);

  RecordSink& sink;
  Zone home;
  std::optional<std::string> first;
};
