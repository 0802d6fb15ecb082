#include "import/member/Recipient.h"
#include "import/Failure.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>
#include <system_error>

namespace {

namespace phrases {

constexpr Phrase otherName{
    "id {0} 属于「{1}」，不是「{2}」；名字和 id 必须指同一位成员，否则两个人的数据会混在一起",
    "the id {0} is {1}'s, not {2}'s; name and id must mean the same person, or the data of "
    "two would mix"};
constexpr Phrase ambiguous{"名册里有 {0} 个叫「{1}」的成员，请用 --id 说明是哪一位：{2}",
                           "the roster has {0} members named {1}; say which with --id: {2}"};
constexpr Phrase paired{
    "「{0}」有配对的手机，数据由接收端写入，不能导入；可以换一个名字，导入为另一位成员",
    "{0} has a paired phone, so the receiver writes that data and an import may not; an "
    "import under another name makes a member of its own"};
constexpr Phrase idIsName{
    "id {0} 是另一位成员的名字，提问时无法区分；请换一个 --id",
    "{0} is another member's name, and a question could not tell the two apart; choose another "
    "--id"};
constexpr Phrase nameIsID{
    "「{0}」是另一位成员的 id，提问时无法区分；请换一个名字",
    "{0} is another member's id, and a question could not tell the two apart; choose another "
    "name"};
constexpr Phrase blankEnds{"新成员的名字首尾不能有空白：「{0}」",
                           "a new member's name has no white space at its ends: \"{0}\""};

}  // namespace phrases

std::optional<Member> memberOfID(const std::vector<Member>& members, const std::string& name,
                                 const std::string& id) {
  const auto found = std::ranges::find(members, id, &Member::id);
  if (found == members.end()) return std::nullopt;
  if (found->name != name) throw Failure(phrases::otherName, {id, found->name, name});
  return *found;
}

std::optional<Member> memberOfName(const std::vector<Member>& members, const std::string& name) {
  std::vector<Member> found;
  std::ranges::copy_if(members, std::back_inserter(found), [&name](const Member& member) {
    return member.name == name;
  });
  if (found.size() > 1) {
    const std::string ids = joined(found, ", ", &Member::id);
    throw Failure(phrases::ambiguous, {std::to_string(found.size()), name, ids});
  }
  if (found.empty()) return std::nullopt;
  return found.front();
}

}  // namespace

std::optional<Member> recipient(const std::vector<Member>& members, const std::string& name,
                                const std::optional<std::string>& id) {
  std::optional<Member> member = id ? memberOfID(members, name, *id) : memberOfName(members, name);
  if (!member) requireDistinct(members, name, id);
  if (member && !member->devices.empty()) throw Failure(phrases::paired, {name});
  if (member) requireUnshared(members, member->dbPath);
  return member;
}

namespace {

/// `path` without links, "." and "..", as far as it exists. A link to a missing file is followed
/// too, because SQLite would create that file.
std::filesystem::path followed(std::filesystem::path path) {
  constexpr int mostLinks = 40;  // the system's own limit
  std::error_code error;
  for (int links = 0; links < mostLinks; ++links) {
    if (!std::filesystem::is_symlink(std::filesystem::symlink_status(path, error))) break;
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  std::filesystem::path whole = std::filesystem::weakly_canonical(path, error);
  return error ? path.lexically_normal() : whole;
}

/// Whether both paths lead to one file, existing or not. If neither file exists, it is unknown
/// whether the file system is case-sensitive; then names that differ only in case count as equal.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  // A relative path does not identify a file.
  if (!one.is_absolute() || !other.is_absolute()) return false;
  std::error_code unknown;
  if (std::filesystem::equivalent(one, other, unknown)) return true;
  if (std::filesystem::exists(one, unknown) || std::filesystem::exists(other, unknown)) {
    return false;
  }
  return lowerCased(followed(one).string()) == lowerCased(followed(other).string());
}

}  // namespace

void requireUnshared(const std::vector<Member>& members, const std::filesystem::path& database) {
  for (const Member& member : members) {
    if (!member.devices.empty() && isSameFile(member.dbPath, database)) {
      throw Failure(phrases::paired, {member.name});
    }
  }
}

void requireDistinct(const std::vector<Member>& members, const std::string& name,
                     const std::optional<std::string>& id) {
  if (id && std::ranges::find(members, *id, &Member::name) != members.end()) {
    throw Failure(phrases::idIsName, {*id});
  }
  if (std::ranges::find(members, name, &Member::id) != members.end()) {
    throw Failure(phrases::nameIsID, {name});
  }
  if (trimmedWhitespace(name) != name) throw Failure(phrases::blankEnds, {name});
}
