#pragma once
// The kinds of things in an export, and their counts.

#include "import/database/RunTally.h"
#include "import/export/ExportSink.h"
#include "import/export/FirstUnits.h"
#include "import/export/Irregularities.h"
#include "import/xml/ExportFile.h"
#include "platform/Stamp.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

/// Counts of an export that its owner can safely publish. They contain no value, no name of a
/// person, source or device, no day and no time. All texts are our own; see KnownNames. In the
/// tally, `added`, `sources`, the days and `exportedAt` are not set, and elements without a known
/// name are counted in `others`.
struct Census {
  /// The unit of exported numbers and the unit that they are converted to.
  struct UnitUse {
    std::string_view unit;    ///< empty without a unit; `otherUnit` when it is unknown
    std::string_view stored;  ///< empty when not converted

    std::strong_ordering operator<=>(const UnitUse&) const = default;
    bool operator==(const UnitUse&) const = default;
  };

  static constexpr std::string_view otherUnit = "?";

  /// Records of one type.
  struct Type {
    std::int64_t records = 0;
    std::map<UnitUse, std::int64_t> units;

    bool operator==(const Type&) const = default;
  };

  std::optional<int> formatVersion;
  bool hasDate = false;                    ///< there is an ExportDate
  std::optional<Stamp> exportedAt;         ///< absent when it is unreadable
  std::map<std::string_view, Type> types;  ///< the known types
  Type otherTypes;
  std::int64_t withoutNumber = 0;  ///< records; for many types all of them
  std::int64_t withUnitAlone = 0;  ///< the part of those with a unit
  std::size_t sources = 0;         ///< of records and workouts
  bool moreSources = false;        ///< there are more; counting stopped at the memory limit
  std::size_t years = 0;           ///< years with a start of a record or workout
  RunTally tally;
  Irregularities irregularities;
  ExportContents beside;
  std::uint64_t bytes = 0;  ///< size of the XML
  double seconds = 0;       ///< duration of the reading
  bool complete = false;    ///< the whole export was read

  bool operator==(const Census&) const = default;
};

/// Counts the elements of an export. Stamps may be in any zone or unreadable; a year is that of the
/// stamp's text. Memory is bounded, for any number of names.
class CensusTaker final : public ExportSink {
public:
  void exportedAt(std::string_view stamp) override;
  void add(const ExportedRecord& exported) override;
  void add(const ExportedWorkout& workout) override;
  void add(const ExportedActivityDay& day) override;
  void notStored(std::string_view element) override;
  void skipped(std::string_view reason, long long line) override;

  /// The counts so far, without the reader's own figures.
  const Census& census() const { return counts; }

private:
  void meet(std::string_view start, std::string_view source);

  Census counts;
  FirstUnits firstUnits;
  std::set<std::string, std::less<>> sources;
  std::size_t sourcesSize = 0;  ///< bytes of all names in `sources`
  std::set<std::string, std::less<>> years;
};
