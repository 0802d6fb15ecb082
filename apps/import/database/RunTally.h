#pragma once
// The counts of an import, for the closing report.

#include "import/export/ExportSink.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Counts of one kind of elements.
struct Tally {
  std::int64_t read = 0;   ///< in the export and storable
  std::int64_t added = 0;  ///< of those, new in the database

  bool operator==(const Tally&) const = default;
};

/// Elements that were not stored, for one reason.
struct Skipped {
  std::int64_t count = 0;
  long long firstLine = 0;  ///< line of the first of them, from 1

  bool operator==(const Skipped&) const = default;
};

/// The counts of one run. Its size depends on the kinds of things in the export, not on their
/// number.
struct RunTally {
  Tally records;
  Tally workouts;
  Tally activityDays;                   ///< `added`: new, or with newer values
  std::int64_t converted = 0;           ///< records and workouts with figures converted to our unit
  std::int64_t unknownUnits = 0;        ///< records and workouts in a unit without a conversion
  std::int64_t sources = 0;             ///< in the database after the run
  std::optional<std::string> firstDay;  ///< of the export's records and workouts
  std::optional<std::string> lastDay;   ///< the same
  std::optional<std::string> exportedAt;                       ///< stamp
  std::map<std::string, Skipped, std::less<>> skipped;         ///< by reason
  std::map<std::string, std::int64_t, std::less<>> notStored;  ///< by element; see `others`
  std::int64_t others = 0;  ///< elements with further names, if an export has very many names

  bool changedNothing() const {
    return records.added == 0 && workouts.added == 0 && activityDays.added == 0;
  }

  /// Counts a record, a workout or a day as read; `kind` is the tally of its kind.
  template <typename Element>
  void read(Tally& kind, const Element& element) {
    ++kind.read;
    if (element.converted) ++converted;
    if (element.unknownUnit) ++unknownUnits;
  }

  /// Extends the range of days.
  void met(std::string_view day);

  void count(std::string_view element);
  void skip(std::string_view reason, long long line);

  bool operator==(const RunTally&) const = default;
};
