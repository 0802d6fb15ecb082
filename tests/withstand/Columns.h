#pragma once
// The columns of a member's database, who reads them, and a file in which they take any value.

#include "support/TestDatabase.h"
#include "withstand/WholeConversation.h"

#include <string>
#include <vector>

/// Columns of one table that get the odd value together.
struct Place {
  std::string table;
  std::vector<std::string> columns;
  Names readers;               ///< the questions whose answer may change
  Names grouping = {};         ///< those whose answer may change as well when rows differ
  Names emptied = {};          ///< those that find nothing when no row holds what can be read
  bool holdsNumbers = false;   ///< what is no number counts as missing
  bool namesWorkouts = false;  ///< the workout is not found any more by its identifier
};

/// Every column that anything reads.
const std::vector<Place>& places();

/// The numbers of the records.
const Place& numbersOfRecords();

/// The numbers of a workout, which nothing computes with but what adds them up.
const Place& numbersOfWorkouts();

/// The columns of the table that are not among the places.
Place unreadOf(const TestDatabase& database, const std::string& table);

/// The tables of a member's database.
std::vector<std::string> tablesOf(const TestDatabase& database);

/// The statement that sets all columns of the place to `value` where `condition` holds.
std::string change(const Place& place, const std::string& value,
                   const std::string& condition = "1");

/// The file of DamagedHousehold without constraints, so that every column takes every value; a
/// table that was empty has two rows of nothing.
const std::string& looseFile();
