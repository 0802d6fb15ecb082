#pragma once
// One resource per member: the overview as plain text.

#include "mcp/tools/Tools.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <span>
#include <string>
#include <string_view>

namespace Tools {

/// The resource records, in the order of the members.
nlohmann::ordered_json resources(std::span<const Member> members, SummaryLang lang);

/// The text of the resource `uri`. Throws MCPError (-32602), in Chinese in both languages, for an
/// unknown resource. The arguments of `call` are not used.
std::string readResource(std::string_view uri, const Call& call);

}  // namespace Tools
