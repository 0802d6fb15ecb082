#pragma once
// A server in this process, and what must be true of its replies whatever it was fed.

#include "platform/SummaryLang.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// How a server of `repliesTo` is started and fed.
struct Session {
  std::filesystem::path dataRoot;
  SummaryLang lang = SummaryLang::en;
  std::size_t piece = 65536;  ///< bytes that the server gets at once, at least 1
};

/// What a new server writes from its start to the end of `input`, one element a write. Its clock
/// stands at noon (UTC) of the day on which the sample household's histories end.
std::vector<std::string> repliesTo(const Session& session, std::string_view input);

/// Requires that `replies` are the well-formed replies to the requests among the lines of `input`,
/// in their order, and nothing else.
void requireReplies(std::string_view input, const std::vector<std::string>& replies);

/// Sends the records of the access log in `dataRoot` nowhere: there would be gigabytes of them.
void muteAccessLog(const std::filesystem::path& dataRoot);
