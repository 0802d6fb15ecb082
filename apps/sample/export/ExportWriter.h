#pragma once
// Writes a life as the Health app exports it: "export.xml".

#include "sample/Progress.h"
#include "sample/export/ActivityRings.h"
#include "sample/export/ExportUnits.h"
#include "sample/life/Person.h"
#include "sample/life/Sample.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Makes the text of an export, piece by piece: `open` first, `close` last. Records are written in
/// the order of the calls. Workouts and the days' rings are kept and follow the records. A phone
/// writes every stamp at its offset at the time of the export, whatever the offset of the record
/// was. The days of rings and the names of time zones are those of the life.
class ExportWriter final : public RecordSink {
public:
  /// `person` owns the devices of the samples; `units` are the phone's. Person and progress must
  /// outlive the writer.
  ExportWriter(const Person& person, UnitSystem units, Progress& progress)
      : person(person), units(units), progress(progress) {}

  void open(Stamp exported);  ///< time of the export and offset of all its stamps
  void add(const Sample& sample) override;
  void add(const Workout& workout) override;
  void close();

  /// The text written since the last `clear`.
  std::string_view text() const { return written; }
  void clear() { written.clear(); }

  std::int64_t records() const { return recordCount; }
  std::int64_t workouts() const { return workoutCount; }

private:
  Stamp onPhone(Stamp stamp) const { return {stamp.moment, offset}; }
  void appendChildren(const Sample& sample);
  const std::string& attributesOf(const Source& source);

  const Person& person;
  UnitSystem units;
  Progress& progress;
  int offset = 0;  ///< the phone's, see `open`
  std::string written;
  std::string keptWorkouts;
  ActivityRings rings;
  const Source* lastSource = nullptr;  ///< owner of the attributes below: neighbours share a source
  std::string sourceAttributes;
  std::int64_t recordCount = 0;
  std::int64_t workoutCount = 0;
};
