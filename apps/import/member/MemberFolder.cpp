#include "import/member/MemberFolder.h"
#include "import/Failure.h"
#include "platform/DurableFile.h"
#include "platform/Files.h"
#include "platform/Phrase.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace {

namespace phrases {

constexpr Phrase occupied{
    "{0} 里已经有一个数据库，名册里却没有这位成员；请移走这个数据库，或换一个 --id",
    "{0} holds a database already, but the roster names no such member; move it away, or "
    "choose another --id"};
constexpr Phrase otherPersons{
    "{0} 里有「{1}」尚未完成的导入；请用这个名字再导入一次，或给「{2}」换一个 --id，否则"
    "两个人的数据会混在一起",
    "{0} holds an unfinished import of {1}'s; complete it with an import under that name, or "
    "choose another --id for {2}, or the data of two people would mix"};

}  // namespace phrases

std::filesystem::path noteIn(const std::filesystem::path& folder) {
  return folder / "import-unfinished";
}

/// Checks that a database in `folder` may become that of `name`. Some file systems treat "Ann" and
/// "ann" as one folder, so the check is about the database, not only about the id.
void requireOwn(const std::filesystem::path& folder, const std::filesystem::path& database,
                const std::string& name) {
  if (!std::filesystem::exists(database)) return;
  const std::optional<std::string> owner = fileContents(noteIn(folder));
  if (!owner) throw Failure(phrases::occupied, {folder.string()});
  if (*owner != name) throw Failure(phrases::otherPersons, {folder.string(), *owner, name});
}

/// The id of the unfinished import with that name; `nullopt` when there is none.
std::optional<std::string> unfinishedID(const std::filesystem::path& members,
                                        const std::string& name,
                                        const std::vector<std::string>& known) {
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(members, missing)) {
    const std::string id = entry.path().filename().string();
    if (std::ranges::find(known, id) == known.end() && fileContents(noteIn(entry.path())) == name) {
      return id;
    }
  }
  return std::nullopt;
}

}  // namespace

MemberFolder::MemberFolder(const std::filesystem::path& dataRoot, const std::string& name,
                           const std::optional<std::string>& id,
                           const std::vector<std::string>& known,
                           const std::function<std::string()>& newID) {
  const std::filesystem::path members = dataRoot / "members";
  const std::optional<std::string> chosen = id ? id : unfinishedID(members, name, known);
  memberID = chosen ? *chosen : newID();
  folder = members / memberID;
  requireOwn(folder, database(), name);
  made.emplace(folder);
  try {
    note(dataRoot, name);
  } catch (...) {
    abandon();
    throw;
  }
}

void MemberFolder::note(const std::filesystem::path& dataRoot, const std::string& name) const {
  replaceDurably(noteIn(folder), name);
  // After a power failure the roster must not refer to a folder that is lost.
  syncFolder(folder.parent_path());
  syncFolder(dataRoot);
}

MemberFolder::~MemberFolder() {
  if (!kept) abandon();
}

void MemberFolder::finish() {
  keep();
  std::error_code ignored;
  std::filesystem::remove(noteIn(folder), ignored);
}

/// Nothing of what lies in a folder that was made here is worth keeping.
void MemberFolder::abandon() const {
  if (!made->madeFolder()) return;
  std::error_code stays;
  std::filesystem::remove_all(folder, stays);
}

void removeObsoleteNotes(const std::filesystem::path& dataRoot,
                         const std::vector<std::string>& known) {
  // Searches the existing folders: an id in the roster may not be valid in a path.
  std::error_code ignored;
  std::filesystem::directory_iterator entry(dataRoot / "members", ignored);
  for (; entry != std::filesystem::directory_iterator(); entry.increment(ignored)) {
    const std::filesystem::path& folder = entry->path();
    if (std::ranges::find(known, folder.filename().string()) == known.end()) continue;
    std::error_code kept;
    std::filesystem::remove(noteIn(folder), kept);
  }
}

std::string randomID() {
  std::array<std::uint32_t, 4> words{};
  randombytes_buf(words.data(), sizeof words);
  // Version 4, variant 1: the format of a random identifier.
  words[1] = (words[1] & 0xffff0fffU) | 0x00004000U;
  words[2] = (words[2] & 0x3fffffffU) | 0x80000000U;
  char text[40];
  std::snprintf(text,
                sizeof text,
                "%08x-%04x-%04x-%04x-%04x%08x",
                words[0],
                words[1] >> 16U,
                words[1] & 0xffffU,
                words[2] >> 16U,
                words[2] & 0xffffU,
                words[3]);
  return text;
}
