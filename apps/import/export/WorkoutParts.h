#pragma once
// A workout under way: its own attributes, then what its parts add.

#include "import/export/ExportSink.h"
#include "import/export/LocalStamps.h"
#include "import/export/Units.h"
#include "import/xml/Attributes.h"

#include <optional>
#include <string>
#include <string_view>

/// Collects one workout. A figure whose unit is missing or unknown is left out, never guessed. Of a
/// figure that comes more than once the first is kept; sums alone add up.
class WorkoutParts {
public:
  /// From the attributes of a Workout; `start` is one of them. `stamps` brings the others into the
  /// same zone.
  WorkoutParts(const LocalStamp& start, const Attributes& attributes, LocalStamps& stamps);

  /// A WorkoutStatistics of the workout itself, not of one of its activities.
  void addStatistics(const Attributes& attributes);

  /// A MetadataEntry of the workout itself, not of its route or its events.
  void addMetadata(const Attributes& attributes);

  /// The whole, once the last part is in. The statistics stand before the totals, figure by figure;
  /// only older exports have the totals, and they round them.
  ExportedWorkout finished() &&;

private:
  /// A total as exported. It is converted when it turns out to be needed, not to count a conversion
  /// of, or a doubt about, what is not stored.
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
