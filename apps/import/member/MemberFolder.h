#pragma once
// Where a new member's database comes to lie, and what is left there by an import that was killed.

#include "import/member/MadeFolders.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The folder of a member whom the roster does not name yet. A file in it says whose import is
/// unfinished, from before the database is made until the roster names it: an import that is killed
/// in between is taken up by the next of the same name, instead of leaving a database that nobody
/// would ever find.
class MemberFolder {
public:
  /// Claims a folder under "members" in `dataRoot` (absolute) for `name`: that of `id` where it is
  /// given, else the one left by an unfinished import of this name, else a new one with an id that
  /// `newID` makes. `known` are the ids of the roster. A folder that holds a database is refused
  /// with Failure unless it belongs to an unfinished import of this very name: what a killed
  /// import had committed is that person's. Fails with std::filesystem::filesystem_error.
  MemberFolder(const std::filesystem::path& dataRoot, const std::string& name,
               const std::optional<std::string>& id, const std::vector<std::string>& known,
               const std::function<std::string()>& newID);

  const std::string& id() const { return memberID; }
  std::filesystem::path database() const { return folder / "health.db"; }

  /// The roster names the member now. A note that cannot be removed stays until the next import.
  void finish() const;

  /// The import failed: removes what is in the folder if this import made it, for nothing of it is
  /// kept. The folder itself and "members" go with this object where they were made and are empty.
  void abandon() const;

private:
  void note(const std::filesystem::path& dataRoot, const std::string& name) const;

  std::string memberID;
  std::filesystem::path folder;
  std::optional<MadeFolders> made;
};

/// Removes what imports left beside the members of these ids, whom the roster names, when they died
/// between naming the member and `MemberFolder::finish`.
void removeObsoleteNotes(const std::filesystem::path& dataRoot,
                         const std::vector<std::string>& known);

/// A random identifier, 36 characters: "3f2b8c1e-....".
std::string randomID();
