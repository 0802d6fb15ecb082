#pragma once
// Whole conversations with a server in memory.

#include "platform/SummaryLang.h"
#include "support/Household.h"
#include "support/ToolCaller.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>
#include <vector>

/// Conversations about one household in one language, with a fixed clock. Each call starts a new
/// server and runs it to the end of its input.
class Conversation {
public:
  explicit Conversation(const Household& household, SummaryLang lang = SummaryLang::en,
                        double now = testNow, int patienceMilliseconds = usualPatienceMilliseconds);

  /// The server's output for exactly this `input`, one element per write.
  std::vector<std::string> writes(std::string_view input) const;

  /// The replies to `messages`, one line each.
  std::vector<nlohmann::json> replies(const std::vector<nlohmann::json>& messages) const;

  /// The reply to one request, id 1.
  nlohmann::json reply(std::string_view method, const nlohmann::json& params) const;

  /// The reply to one call of a tool.
  nlohmann::json called(std::string_view tool, const nlohmann::json& arguments) const;

  /// Both sides in order: "> " before a line when the server reads it, "< " before a reply.
  std::string transcript(const std::vector<std::string>& lines) const;

  /// The records of the access log so far.
  std::string accessLog() const;

  /// Only the messages of those records. Each record must be one line with the stamp and level
  /// expected at `testNow`.
  std::vector<std::string> accessMessages() const;

private:
  std::filesystem::path dataRoot;
  SummaryLang lang;
  double now;
  int patienceMilliseconds;
};
