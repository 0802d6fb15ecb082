#pragma once
// Whose data an export is.

#include "roster/Roster.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// The member that `name`, and `id` where it is given, mean among `members`; `nullopt` when it
/// would be a new one.
///
/// One person's data must never end up in another's database, where nothing could tell the two
/// apart again. So an id decides alone, and refuses a name that is not that member's; without an
/// id, a name that several members have is refused. An id that nobody has is a new member, whose
/// name may repeat; but neither may be what another member is asked for by, as an id that is
/// another's name would be. Nor may a new name have white space at its ends, which the server
/// trims. A member with a paired phone is refused too, or whose database is also such a member's:
/// the receiver writes it. Refusals are Failures.
std::optional<Member> recipient(const std::vector<Member>& members, const std::string& name,
                                const std::optional<std::string>& id);

/// Refuses a database that is also that of a member with a paired phone, by any spelling of its
/// path or link to it, with the Failure that refuses that member: the receiver writes it. The
/// file, and folders above it, may be missing.
void requireUnshared(const std::vector<Member>& members, const std::filesystem::path& database);

/// Refuses a new member of that name and id who would be asked for by the same text as one of
/// `members`, with Failure.
void requireDistinct(const std::vector<Member>& members, const std::string& name,
                     const std::optional<std::string>& id);
