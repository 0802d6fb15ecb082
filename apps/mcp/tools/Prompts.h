#pragma once
// Prepared questions that a client can offer its user.

#include "platform/SummaryLang.h"

#include <nlohmann/json_fwd.hpp>

#include <string_view>

namespace Tools {

/// The prompt records, "name" and "description", in display order.
nlohmann::ordered_json prompts(SummaryLang lang);

/// The result with the message of the prompt called `name`. Throws MCPError (-32602), in Chinese in
/// both languages, for an unknown name.
nlohmann::ordered_json getPrompt(std::string_view name, SummaryLang lang);

}  // namespace Tools
