#pragma once
// A server in this process, and the properties that its replies must have for any input.

#include "platform/SummaryLang.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// The parameters of a server for `repliesTo`.
struct ServedSession {
  std::filesystem::path dataRoot;
  SummaryLang lang = SummaryLang::en;
  std::size_t piece = 65536;  ///< maximum bytes per read, at least 1
};

/// The output of a new server from its start to the end of `input`, one element per write. Its
/// clock is fixed at noon (UTC) on the last day of the sample household's histories.
std::vector<std::string> repliesTo(const ServedSession& session, std::string_view input);

/// Requires that `replies` are exactly the well-formed replies to the requests among the lines of
/// `input`, in their order.
void requireReplies(std::string_view input, const std::vector<std::string>& replies);

/// Discards the records of the access log in `dataRoot`: there would be gigabytes of them.
void muteAccessLog(const std::filesystem::path& dataRoot);
