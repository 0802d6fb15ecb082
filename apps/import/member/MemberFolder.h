#pragma once
// The folder of a new member's database, and the traces of a killed import in it.

#include "import/member/MadeFolders.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The folder of a member who is not in the roster yet. A file in it contains the name of the
/// unfinished import. The file exists from before the creation of the database until the roster has
/// the member. After a killed import, the next import with the same name continues with this
/// folder. Otherwise a database would remain that nobody would ever find.
class MemberFolder {
public:
  /// Claims a folder under "members" in `dataRoot` (absolute) for `name`. It is the folder of `id`
  /// if given, otherwise that of an unfinished import with this name, otherwise a new one with an
  /// id from `newID`. `known` are the ids of the roster. Throws Failure for a folder with a
  /// database, unless it belongs to an unfinished import with exactly this name: data committed by
  /// a killed import belongs to that person. Throws std::filesystem::filesystem_error when the
  /// system refuses.
  MemberFolder(const std::filesystem::path& dataRoot, const std::string& name,
               const std::optional<std::string>& id, const std::vector<std::string>& known,
               const std::function<std::string()>& newID);

  /// Unless `keep` or `finish` was called, removes what is in the folder if this import made it.
  /// The folder itself and "members" go where they were made and are empty.
  ~MemberFolder();
  MemberFolder(const MemberFolder&) = delete;
  MemberFolder& operator=(const MemberFolder&) = delete;

  const std::string& id() const { return memberID; }
  std::filesystem::path database() const { return folder / "health.db"; }

  /// Call this when the data is committed. The files then stay.
  void keep() { kept = true; }

  /// Call this when the roster has the member. If the note cannot be removed, it stays until the
  /// next import.
  void finish();

private:
  void abandon() const;
  void note(const std::filesystem::path& dataRoot, const std::string& name) const;

  std::string memberID;
  std::filesystem::path folder;
  std::optional<MadeFolders> made;
  bool kept = false;
};

/// Removes the notes in the folders of members with these ids, who are in the roster. An import
/// leaves such a note when it dies between writing the roster and `MemberFolder::finish`.
void removeObsoleteNotes(const std::filesystem::path& dataRoot,
                         const std::vector<std::string>& known);

/// A random identifier, 36 characters: "3f2b8c1e-....".
std::string randomID();
