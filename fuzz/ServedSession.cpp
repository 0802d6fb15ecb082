#include "ServedSession.h"
#include "Target.h"
#include "mcp/server/MCPServer.h"
#include "support/Moment.h"
#include "support/WellFormed.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

using Json = nlohmann::json;

/// The nesting depth of arrays and objects.
std::size_t depthOf(const Json& value) {
  std::size_t deepest = 0;
  std::vector<std::pair<const Json*, std::size_t>> open{{&value, 1}};
  while (!open.empty()) {
    const auto [next, depth] = open.back();
    open.pop_back();
    if (!next->is_structured()) continue;
    deepest = std::max(deepest, depth);
    for (const Json& element : *next) open.emplace_back(&element, depth + 1);
  }
  return deepest;
}

/// The request in `line`; `nullopt` for any other message.
std::optional<Json> requestIn(std::string_view line) {
  constexpr bool throwing = false;
  constexpr std::size_t deepest = 512;
  if (line.find('\0') != std::string_view::npos) return std::nullopt;
  Json message = Json::parse(line, nullptr, throwing);
  if (!message.is_object() || !message.contains("id") || depthOf(message) > deepest) {
    return std::nullopt;
  }
  return message;
}

std::vector<Json> requestsIn(std::string_view input) {
  std::vector<Json> requests;
  while (!input.empty()) {
    const std::string_view line = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(input.size(), line.size() + 1));
    if (std::optional<Json> request = requestIn(line)) requests.push_back(std::move(*request));
  }
  return requests;
}

}  // namespace

std::vector<std::string> repliesTo(const ServedSession& session, std::string_view input) {
  std::vector<std::string> replies;
  MCPServer server(session.dataRoot,
                   {.lang = session.lang,
                    .clock = [] { return moment("2026-11-20 12:00:00 +0000"); },
                    .input = byteSource([&](std::span<char> buffer) {
                      const std::size_t count =
                          input.copy(buffer.data(), std::min(buffer.size(), session.piece));
                      input.remove_prefix(count);
                      return count;
                    }),
                    .output = [&](std::string_view line) { replies.emplace_back(line); },
                    .patienceMilliseconds = 0});
  server.run();
  return replies;
}

void requireReplies(std::string_view input, const std::vector<std::string>& replies) {
  const std::vector<Json> requests = requestsIn(input);
  require(replies.size() == requests.size(), "every request is answered, and nothing else");
  for (std::size_t index = 0; index < requests.size(); ++index) {
    const std::string fault = faultOfAnswer(requests[index], replies[index]);
    require(fault.empty(), "every answer is well formed: " + fault);
    for (const char* separator : {"\u2028", "\u2029"}) {
      require(replies[index].find(separator) == std::string::npos,
              "no line separator of Unicode stands in a reply");
    }
  }
}

void muteAccessLog(const std::filesystem::path& dataRoot) {
  std::filesystem::create_symlink("/dev/null", dataRoot / "mcp-access.log");
}
