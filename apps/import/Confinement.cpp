#include "import/Confinement.h"
#include "import/Failure.h"
#include "import/member/Recipient.h"
#include "import/member/RosterDocument.h"
#include "platform/System.h"

#include <unistd.h>

#include <algorithm>
#include <optional>
#include <system_error>
#include <vector>

namespace {

using std::filesystem::path;

/// The folder of the file at `place`, with all links resolved.
path folderOf(const path& place) {
  std::error_code unknown;
  return std::filesystem::weakly_canonical(place, unknown).parent_path();
}

/// `folder`, or its nearest existing parent when it is still missing.
path nearestExisting(path folder) {
  std::error_code unknown;
  while (folder.has_relative_path() && !std::filesystem::is_directory(folder, unknown)) {
    folder = folder.parent_path();
  }
  return folder;
}

/// The database of the member, if the roster has the member; otherwise `nullopt`. Errors of the
/// roster or the name are reported later by the import.
std::optional<path> databaseOf(const ImportOrder& order, const path& roster) {
  try {
    const std::optional<Member> member =
        recipient(RosterDocument(roster).members(), order.name, order.id);
    if (member) return member->dbPath;
  } catch (const Failure&) {
  }
  return std::nullopt;
}

/// SQLite's folder for temporary files: the first usable one of these.
std::optional<path> folderForTemporaryFiles() {
  std::vector<path> folders;
  for (const char* name : {"SQLITE_TMPDIR", "TMPDIR"}) {
    if (const auto folder = System::environment(name)) folders.emplace_back(*folder);
  }
  for (const char* folder : {"/var/tmp", "/usr/tmp", "/tmp"}) folders.emplace_back(folder);
  const auto usable = std::ranges::find_if(folders, [](const path& folder) {
    std::error_code unknown;
    return std::filesystem::is_directory(folder, unknown) &&
           access(folder.c_str(), W_OK | X_OK) == 0;
  });
  if (usable == folders.end()) return std::nullopt;
  return *usable;
}

}  // namespace

void confine(const ImportOrder& order) {
  System::Reach reach{
      .read = System::filesOfTheLibrary(), .databases = {}, .change = {}, .staying = {}};
  reach.read.push_back(order.source);

  const path root = std::filesystem::absolute(order.dataRoot).lexically_normal();
  const path roster = root / "members.json";
  reach.change.push_back(nearestExisting(root));
  reach.change.push_back(folderOf(roster));
  reach.change.push_back(root / "members");  // it may be a link to another drive
  if (const std::optional<path> database = databaseOf(order, roster)) {
    reach.change.push_back(folderOf(*database));
  }

  if (const std::optional<path> folder = folderForTemporaryFiles()) reach.change.push_back(*folder);

  System::confine(reach);
}

void confine(const CheckOrder& order) {
  System::confine({.read = {order.source}, .databases = {}, .change = {}, .staying = {}});
}
