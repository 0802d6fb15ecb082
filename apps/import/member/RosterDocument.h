#pragma once
// The roster file with everything in it, also what this system knows nothing of.

#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What an import makes of a member's entry.
struct ImportedMember {
  std::string id;
  std::string name;
  std::filesystem::path database;       ///< absolute; of a new member only
  double now = 0;                       ///< seconds since 1970
  std::optional<double> exportedAt;     ///< the moment of the export, seconds since 1970
  std::optional<std::string> firstDay;  ///< "2018-09-01", the first with data; absent: no data
};

/// "members.json", read once and written back with one member changed. The receiver application may
/// keep more in it than we read, so the document itself is changed and never made anew: every key
/// and value survives, in their order. Numbers survive as the numbers that 64 bits hold: 2.50 is
/// written back as 2.5, and a whole number of 23 digits as the nearest 1.23e+22.
class RosterDocument {
public:
  /// Reads the file at `path`; one that does not exist is a roster without members. A file that
  /// cannot be read, a link that leads nowhere, a file that the server could not read, or one that
  /// is nested more than 100 deep fails with Failure and stays.
  explicit RosterDocument(std::filesystem::path path);
  ~RosterDocument();
  RosterDocument(const RosterDocument&) = delete;
  RosterDocument& operator=(const RosterDocument&) = delete;

  const std::vector<Member>& members() const { return file.members; }

  /// Gives the member of that id a complete history up to the export, or adds the member. A sync
  /// later than the export stays, for the database still has what it brought; one later than now is
  /// a clock's mistake.
  void put(const ImportedMember& member);

  /// Replaces the file, complete or not at all and after a crash too. Fails with
  /// std::filesystem::filesystem_error.
  void write() const;

private:
  std::filesystem::path path;
  std::unique_ptr<nlohmann::ordered_json> document;
  Roster::File file;  ///< as it was read
};
