#pragma once
// A life as an import of the Health app's export stores it.

#include "sample/life/Calendar.h"
#include "sample/life/Sample.h"

#include <optional>
#include <string>

/// Passes a life on with the changes of an export and its import. Most data is unchanged, with
/// three exceptions. Every stamp is at the offset of the member's home, also during journeys, and
/// every record has its calendar day there. Each quantity has one unit: lengths of the Distance
/// types are in kilometres and all energy is in kilocalories. The humidity of a workout is a number
/// in the export's form ("xml_percent"), or absent when there was no number.
class Imported final : public RecordSink {
public:
  /// `home` is the member's time zone. `sink` must outlive this object.
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
