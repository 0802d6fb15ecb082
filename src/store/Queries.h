#pragma once
// Pieces of SQL that several queries share.

#include <string>

namespace Queries {

/// A condition that keeps rows with a number. Text in the numeric column is none, and SQLite's sums
/// would count it as zero.
inline const std::string hasNumber = "typeof(value_num) IN ('real', 'integer')";

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
