#pragma once
// A data root with a roster and the databases of its members.

#include "roster/Roster.h"
#include "support/TemporaryFolder.h"
#include "support/TestDatabase.h"

#include <deque>
#include <filesystem>
#include <string>

/// Members in the order in which they were added. Without any there is no roster file. The
/// destructor removes everything.
class Household {
public:
  /// A member with an empty database, to be filled through the reference.
  TestDatabase& add(const std::string& id, const std::string& name);

  /// A member as it stands; its database need not exist.
  void add(const Member& member);

  /// A member whose database is what stands at that path.
  void addAt(const std::string& id, const std::string& name, const std::filesystem::path& database);

  /// A path in the data root where nothing is, not even the folder.
  std::filesystem::path nowhere() const { return folder / "nowhere/health.sqlite"; }

  const std::filesystem::path& dataRoot() const { return folder.path(); }
  std::filesystem::path rosterFile() const { return folder / "members.json"; }

private:
  TemporaryFolder folder;
  std::deque<TestDatabase> databases;
  Roster::File roster{.version = 1, .members = {}};
};
