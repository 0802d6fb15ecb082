#pragma once
// A life as it reaches a database by way of the Health app's export.

#include "sample/Sample.h"

#include <optional>
#include <string>

/// Hands on what an import makes of an export. Nearly all comes through as it was told. What does
/// not: every record has its calendar day, lengths of the Distance types are in kilometres, and the
/// humidity of a workout is a number of the export's own form ("xml_percent"), or nothing when it
/// had no number.
class Imported final : public RecordSink {
public:
  /// `sink` outlives this.
  explicit Imported(RecordSink& sink) : sink(sink) {}

  void add(const Sample& sample) override;
  void add(const Workout& workout) override;

  /// The calendar day of the earliest record or workout, "2024-03-01"; absent before the first.
  const std::optional<std::string>& firstDay() const { return first; }

private:
  void note(Stamp start);

  RecordSink& sink;
  std::optional<std::string> first;
};
