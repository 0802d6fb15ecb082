#pragma once
// A data root with a roster and its members' databases.

#include "roster/Roster.h"
#include "support/TemporaryFolder.h"
#include "support/TestDatabase.h"

#include <deque>
#include <filesystem>
#include <string>

/// Members in the order of their addition. Without members there is no roster file. The destructor
/// removes everything.
class Household {
public:
  /// Adds a member with an empty database, which the test fills through the reference.
  TestDatabase& add(const std::string& id, const std::string& name);

  /// Adds a member unchanged; the database need not exist.
  void add(const Member& member);

  /// Adds a member with the database at that path.
  void addAt(const std::string& id, const std::string& name, const std::filesystem::path& database);

  /// A path in the data root without a file or a folder.
  std::filesystem::path nowhere() const { return folder / "nowhere/health.sqlite"; }

  const std::filesystem::path& dataRoot() const { return folder.path(); }
  std::filesystem::path rosterFile() const { return folder / "members.json"; }

private:
  TemporaryFolder folder;
  std::deque<TestDatabase> databases;
  Roster::File roster{.version = 1, .members = {}};
};
