#pragma once
// Brings each type that has no unit of our choice to the unit that came first.

#include "import/export/ExportSink.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Remembers a unit for each type. What it remembers is bounded, because the types and units of an
/// export may be endless: beyond that it starts afresh.
class FirstUnits {
public:
  /// The unit in which numbers of the record's type are kept so far; `nullopt` when there are none.
  using Search = std::function<std::optional<std::string>(const ExportedRecord&)>;

  /// Converts unit and number of `record`, or marks it when they cannot be converted; its unit is
  /// valid until the next call. A record without a number or unit, and one of a type for which
  /// StoredUnit has a unit, stays. `search` is asked about types that are not remembered; without
  /// an answer the record's own unit is the first.
  void convert(ExportedRecord& record, const Search& search);

private:
  const std::string& firstOf(const ExportedRecord& record, const Search& search);

  std::map<std::string, std::string, std::less<>> units;  ///< by type
  std::size_t size = 0;                                   ///< of all texts in `units`
};
