#pragma once
// Parts that several queries share: pieces of SQL, and the definition of a record's value.

#include "store/Database.h"

#include <cmath>
#include <optional>
#include <string>

namespace Queries {

/// The number in `column`, which is value_num. A damaged file may have a text, a blob or an
/// infinity there; each counts as NULL.
inline std::optional<double> valueIn(const Row& row, int column) {
  const std::optional<double> number = row.find<double>(column);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

/// The same as an SQL condition: SQLite sorts text and blobs after all numbers. The plus sign
/// removes the column's affinity. With a text affinity, SQLite would compare the bounds as texts.
inline const std::string hasValue = "+value_num > -9e999 AND +value_num < 9e999";

/// A table "present" of all record types. Each type is found by one index seek: a member has some
/// forty types but millions of records. UNION instead of UNION ALL lets the recursion end even when
/// a damaged index contains a cycle.
inline const std::string presentTypes = R"sql(
WITH RECURSIVE walk(type) AS (
  SELECT MIN(type) FROM records
  UNION
  SELECT (SELECT MIN(records.type) FROM records WHERE records.type > walk.type)
  FROM walk WHERE walk.type IS NOT NULL),
present AS (SELECT type FROM walk WHERE type IS NOT NULL)
)sql";

}  // namespace Queries
