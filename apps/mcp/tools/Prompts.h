#pragma once
// Ready-made questions that a client can offer its user.

#include "platform/SummaryLang.h"

#include <nlohmann/json_fwd.hpp>

#include <string_view>

namespace Tools {

/// The prompt records, "name" and "description", in the order a client shows them.
nlohmann::ordered_json prompts(SummaryLang lang);

/// The message of the prompt called `name`, ready as a result. Throws MCPError (-32602), in Chinese
/// whatever the language, when there is none of that name.
nlohmann::ordered_json getPrompt(std::string_view name, SummaryLang lang);

}  // namespace Tools
