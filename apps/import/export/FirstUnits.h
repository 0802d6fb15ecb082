#pragma once
// Converts the numbers of each type without a unit in StoredUnit to the type's first unit.

#include "import/export/ExportSink.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Caches a unit for each type. The cache is bounded, because the number of types and units in a
/// file is not. When it is full, it is emptied.
class FirstUnits {
public:
  /// The unit of the stored numbers of the record's type; `nullopt` when there are none.
  using Search = std::function<std::optional<std::string>(const ExportedRecord&)>;

  /// Converts unit and number of `record`, or marks it when they cannot be converted. The unit is
  /// valid until the next call. A record without a number or unit, or with a type in StoredUnit, is
  /// unchanged. `search` is called for types outside the cache; if it finds none, the record's own
  /// unit is the first.
  void convert(ExportedRecord& record, const Search& search);

private:
  const std::string& firstOf(const ExportedRecord& record, const Search& search);

  std::map<std::string, std::string, std::less<>> units;  ///< by type
  std::size_t size = 0;                                   ///< bytes of all texts in `units`
};
