#include "support/Conversation.h"
#include "mcp/server/MCPServer.h"
#include "platform/Files.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <stdexcept>

Conversation::Conversation(const Household& household, SummaryLang lang, double now,
                           int patienceMilliseconds)
    : dataRoot(household.dataRoot()),
      lang(lang),
      now(now),
      patienceMilliseconds(patienceMilliseconds) {}

std::vector<std::string> Conversation::writes(std::string_view input) const {
  std::vector<std::string> written;
  MCPServer server(dataRoot,
                   {.lang = lang,
                    .clock = [this] { return now; },
                    .input = byteSource([&input](std::span<char> buffer) {
                      const std::size_t count = input.copy(buffer.data(), buffer.size());
                      input.remove_prefix(count);
                      return count;
                    }),
                    .output = [&written](std::string_view line) { written.emplace_back(line); },
                    .patienceMilliseconds = patienceMilliseconds});
  server.run();
  return written;
}

std::vector<nlohmann::json> Conversation::replies(
    const std::vector<nlohmann::json>& messages) const {
  std::string input;
  for (const nlohmann::json& message : messages) input += message.dump() + "\n";
  std::vector<nlohmann::json> parsed;
  for (const std::string& line : writes(input)) parsed.push_back(nlohmann::json::parse(line));
  return parsed;
}

nlohmann::json Conversation::reply(std::string_view method, const nlohmann::json& params) const {
  return replies({{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", params}}}).at(0);
}

nlohmann::json Conversation::called(std::string_view tool, const nlohmann::json& arguments) const {
  return reply("tools/call", {{"name", tool}, {"arguments", arguments}});
}

std::string Conversation::transcript(const std::vector<std::string>& lines) const {
  std::string transcript;
  std::size_t next = 0;
  MCPServer server(dataRoot,
                   {.lang = lang,
                    .clock = [this] { return now; },
                    .input = byteSource([&](std::span<char> buffer) -> std::size_t {
                      if (next == lines.size()) return 0;
                      const std::string line = lines[next++] + "\n";
                      if (line.size() > buffer.size()) {
                        throw std::length_error("a line of the transcript");
                      }
                      transcript += "> " + line;
                      return line.copy(buffer.data(), buffer.size());
                    }),
                    .output = [&](std::string_view line) { transcript.append("< ").append(line); },
                    .patienceMilliseconds = patienceMilliseconds});
  server.run();
  return transcript;
}

std::string Conversation::accessLog() const {
  return fileContents(dataRoot / "mcp-access.log").value_or("");
}

std::vector<std::string> Conversation::accessMessages() const {
  constexpr std::string_view prefix = "[2024-03-17 12:00:00] i ";
  std::vector<std::string> messages;
  const std::string log = accessLog();
  for (std::string_view rest = log; !rest.empty();) {
    const std::string_view record = rest.substr(0, rest.find('\n'));
    if (!record.starts_with(prefix)) throw std::runtime_error("odd record: " + std::string(record));
    messages.emplace_back(record.substr(prefix.size()));
    rest.remove_prefix(std::min(rest.size(), record.size() + 1));
  }
  return messages;
}
