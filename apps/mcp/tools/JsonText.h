#pragma once
// JSON documents that tools return as text.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace Tools {

/// The limits of every answer; ends the tool descriptions and the JSON documents.
inline constexpr Phrase boundary{
    "本工具提供原始测量数据,不构成诊断;缺失仅代表未采集。",
    "Returns raw measurements, not a diagnosis; a gap means not collected."};

/// `document` as compact text, with keys in ascending order at every level and "/" written as "\/".
/// A number that JSON cannot represent (infinite, not a number) becomes null.
std::string documentText(const nlohmann::json& document);

}  // namespace Tools
