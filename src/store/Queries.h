#pragma once
// What several queries share: pieces of SQL, and what counts as a record's value.

#include "store/Database.h"

#include <cmath>
#include <optional>
#include <string>

namespace Queries {

/// The number in `column`, which is value_num. Anything else that a damaged file holds there, text,
/// blobs and infinities, counts as NULL.
inline std::optional<double> valueIn(const Row& row, int column) {
  const std::optional<double> number = row.find<double>(column);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

/// The same as a condition: SQLite sorts text and blobs behind all numbers. The plus sign removes
/// the column's affinity; beside a column of texts SQLite would compare the bounds as texts.
inline const std::string hasValue = "+value_num > -9e999 AND +value_num < 9e999";

/// A table "present" of every record type, each found by one seek into an index: a member has some
/// forty types but millions of records. UNION instead of UNION ALL, so that the walk ends even
/// where a damaged index leads in a circle.
inline const std::string presentTypes = R"sql(
WITH RECURSIVE walk(type) AS (
  SELECT MIN(type) FROM records
  UNION
  SELECT (SELECT MIN(records.type) FROM records WHERE records.type > walk.type)
  FROM walk WHERE walk.type IS NOT NULL),
present AS (SELECT type FROM walk WHERE type IS NOT NULL)
)sql";

}  // namespace Queries
