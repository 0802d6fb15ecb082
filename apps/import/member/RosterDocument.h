#pragma once
// The roster file with all of its content, including unknown keys.

#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The changes of an import to a member's entry.
struct ImportedMember {
  std::string id;
  std::string name;
  std::filesystem::path database;       ///< absolute; used only for a new member
  double now = 0;                       ///< seconds since 1970
  std::optional<double> exportedAt;     ///< time of the export, seconds since 1970
  std::optional<std::string> firstDay;  ///< first day with data, "2018-09-01"; absent: no data
};

/// "members.json", read once and written with one member changed. The receiver application may
/// store more in it than we read. So the document itself is changed, never rebuilt: every key and
/// value survives, in its order. Numbers are preserved as 64-bit values: 2.50 is written as 2.5,
/// and a whole number of 23 digits as the nearest 1.23e+22.
class RosterDocument {
public:
  /// Reads the file at `path`; a missing file is a roster without members. Throws Failure, and
  /// leaves the file unchanged, when it cannot be read, is a broken link, is invalid for the
  /// server, or is nested more than 100 deep.
  explicit RosterDocument(std::filesystem::path path);
  ~RosterDocument();
  RosterDocument(const RosterDocument&) = delete;
  RosterDocument& operator=(const RosterDocument&) = delete;

  const std::vector<Member>& members() const { return file.members; }

  /// Gives the member with that id a complete history up to the export, or adds the member. A sync
  /// later than the export stays, because the database still has its data. A sync later than `now`
  /// comes from a wrong clock.
  void put(const ImportedMember& member);

  /// Replaces the file, completely or not at all, even after a crash. Throws
  /// std::filesystem::filesystem_error.
  void write() const;

private:
  std::filesystem::path path;
  std::unique_ptr<nlohmann::ordered_json> document;
  Roster::File file;  ///< as it was read
};
