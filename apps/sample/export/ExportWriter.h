#pragma once
// Writes a life down as the Health app does when it exports everything: "export.xml".

#include "sample/Progress.h"
#include "sample/export/ActivityRings.h"
#include "sample/export/ExportUnits.h"
#include "sample/life/Person.h"
#include "sample/life/Sample.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Makes the text of an export, piece by piece: `open` first, `close` last. Records come in the
/// order in which they are told; workouts and the days' rings follow them, and are kept until then.
/// A phone words every moment on its clocks of the moment of the export, whatever the offset was
/// then and there. Days of rings and names of time zones are those of the life.
class ExportWriter final : public RecordSink {
public:
  /// `person` owns the devices that the samples come from, and the phone measures in `units`.
  /// Person and progress outlive the writer.
  ExportWriter(const Person& person, UnitSystem units, Progress& progress)
      : person(person), units(units), progress(progress) {}

  void open(Stamp exported);  ///< when the export is made, at the offset of all its stamps
  void add(const Sample& sample) override;
  void add(const Workout& workout) override;
  void close();

  /// What was written since the last `clear`.
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
  const Source* lastSource = nullptr;  ///< whose attributes follow: neighbours share a source
  std::string sourceAttributes;
  std::int64_t recordCount = 0;
  std::int64_t workoutCount = 0;
};
