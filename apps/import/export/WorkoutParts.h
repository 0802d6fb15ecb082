#pragma once
// A workout during reading: its own attributes and the additions of its parts.

#include "import/export/ExportSink.h"
#include "import/export/LocalStamps.h"
#include "import/export/Units.h"
#include "import/xml/Attributes.h"

#include <optional>
#include <string>
#include <string_view>

/// Collects one workout. A figure with a missing or unknown unit is omitted, never guessed. The
/// first value of a repeated figure is kept; only sums are added.
class WorkoutParts {
public:
  /// Uses the attributes of a Workout element; `start` is one of them. `stamps` converts the others
  /// to the same zone.
  WorkoutParts(const LocalStamp& start, const Attributes& attributes, LocalStamps& stamps);

  /// Adds a WorkoutStatistics element of the workout itself, not of one of its activities.
  void addStatistics(const Attributes& attributes);

  /// Adds a MetadataEntry of the workout itself, not of its route or its events.
  void addMetadata(const Attributes& attributes);

  /// The whole workout, after its last part. For each figure the statistics have precedence over
  /// the totals, which only older exports have, and which are rounded.
  ExportedWorkout finished() &&;

private:
  /// A total as exported. It is converted only when it is needed. Otherwise a conversion or an
  /// unknown unit would be counted for a value that is not stored.
  struct Total {
    std::optional<std::string> number;
    std::optional<std::string> unit;
  };

  std::optional<double> converted(std::optional<std::string_view> number,
                                  std::optional<std::string_view> unit, std::string_view target);
  std::optional<double> converted(const Quantity& quantity, std::string_view target);

  ExportedWorkout workout;
  std::optional<std::string> sourceVersion;
  Total distance;
  Total energy;
};
