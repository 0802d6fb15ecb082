#include "mcp/tools/Resources.h"
#include "mcp/tools/MCPError.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <vector>

namespace {

constexpr std::string_view scheme = "larkspur://";
constexpr std::string_view overviewPiece = "overview";

constexpr Phrase resourceName{"{0} 的健康概览", "{0}'s health overview"};
constexpr Phrase resourceDescription{"数据概览 + 数据覆盖说明。连上先读这个,再决定问什么。",
                                     "Overview plus the data-coverage notice. Read this first."};

/// The non-empty parts of `path` between slashes.
std::vector<std::string_view> piecesOf(std::string_view path) {
  std::vector<std::string_view> pieces;
  while (!path.empty()) {
    const std::string_view piece = path.substr(0, path.find('/'));
    if (!piece.empty()) pieces.push_back(piece);
    path.remove_prefix(std::min(path.size(), piece.size() + 1));
  }
  return pieces;
}

/// The member whose id is in `uri`. The part after "overview" is ignored.
std::optional<Member> memberOf(std::string_view uri, const Roster& roster) {
  if (!uri.starts_with(scheme)) return std::nullopt;
  const std::vector<std::string_view> pieces = piecesOf(uri.substr(scheme.size()));
  if (pieces.size() < 2 || pieces[1] != overviewPiece) return std::nullopt;
  return roster.member(pieces[0]);
}

}  // namespace

nlohmann::ordered_json Tools::resources(std::span<const Member> members, SummaryLang lang) {
  nlohmann::ordered_json records = nlohmann::ordered_json::array();
  for (const Member& member : members) {
    nlohmann::ordered_json record;
    record["uri"] = filled("{0}{1}/{2}", {scheme, member.id, overviewPiece});
    record["name"] = filled(resourceName.in(lang), {member.name});
    record["mimeType"] = "text/plain";
    record["description"] = resourceDescription.in(lang);
    records.push_back(std::move(record));
  }
  return records;
}

std::string Tools::readResource(std::string_view uri, const Call& call) {
  const std::optional<Member> member = memberOf(uri, call.roster);
  if (!member) {
    throw MCPError(MCPError::invalidArguments, "不认识的 uri:" + std::string(uri));
  }
  return overviewOf(*member, call);
}
