#pragma once
// What kinds of things an export holds, and how many of each.

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

/// Counts of an export that its owner may show to strangers: no value, no name of a person, source
/// or device, no day and no time. All texts are our own; see KnownNames. Of the tally, `added`,
/// `sources`, the days and `exportedAt` are not filled, and elements without a known name are
/// `others`.
struct Census {
  /// The unit in which numbers are exported and the one to which they are converted.
  struct UnitUse {
    std::string_view unit;    ///< empty without one, and `otherUnit` when it is not known
    std::string_view stored;  ///< empty when it stays

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
  std::optional<Stamp> exportedAt;         ///< absent when it cannot be read
  std::map<std::string_view, Type> types;  ///< the known ones
  Type otherTypes;
  std::int64_t withoutNumber = 0;  ///< records; of many types all are
  std::int64_t withUnitAlone = 0;  ///< of those, the ones that have a unit
  std::size_t sources = 0;         ///< of records and workouts
  bool moreSources = false;        ///< there are more, but counting them takes memory
  std::size_t years = 0;           ///< in which records and workouts start
  RunTally tally;
  Irregularities irregularities;
  ExportContents beside;
  std::uint64_t bytes = 0;  ///< of XML
  double seconds = 0;       ///< that reading took
  bool complete = false;    ///< all of the export was read

  bool operator==(const Census&) const = default;
};

/// Counts what the reader of an export finds. Its stamps may be in any zone or none; the years are
/// those that they show. Memory is bounded, however many names there are.
class CensusTaker final : public ExportSink {
public:
  void exportedAt(std::string_view stamp) override;
  void add(const ExportedRecord& exported) override;
  void add(const ExportedWorkout& workout) override;
  void add(const ExportedActivityDay& day) override;
  void notStored(std::string_view element) override;
  void skipped(std::string_view reason, long long line) override;

  /// What was counted so far; the reader's own figures are not in it.
  const Census& census() const { return counts; }

private:
  void meet(std::string_view start, std::string_view source);

  Census counts;
  FirstUnits firstUnits;
  std::set<std::string, std::less<>> sources;
  std::size_t sourcesSize = 0;  ///< of all names in `sources`
  std::set<std::string, std::less<>> years;
};
