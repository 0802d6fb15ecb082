#pragma once
// The member who receives an export.

#include "roster/Roster.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The member with this `name`, and this `id` if given, among `members`; `nullopt` for a new
/// member. Throws Failure to refuse.
///
/// One person's data must never get into another's database, because the two could not be separated
/// again. So an id alone selects the member, and a different name is refused. Without an id, a name
/// of several members is refused. An unknown id is a new member, whose name may be that of another
/// member. A new name or id must not equal a text that selects another member, such as an id that
/// is another member's name. A new name must not have white space at its ends, because the server
/// trims it.
///
/// A member with a paired phone is refused, and so is one who shares a database with such a member:
/// the receiver writes that database.
std::optional<Member> recipient(const std::vector<Member>& members, const std::string& name,
                                const std::optional<std::string>& id);

/// Throws Failure if `database` is also that of a member with a paired phone, because the receiver
/// writes it. Other spellings of the path and links are recognised. The file and its parent folders
/// may be missing.
void requireUnshared(const std::vector<Member>& members, const std::filesystem::path& database);

/// Throws Failure if a new member of that name and id could be selected by the same text as one of
/// `members`.
void requireDistinct(const std::vector<Member>& members, const std::string& name,
                     const std::optional<std::string>& id);
