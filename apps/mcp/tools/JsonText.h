#pragma once
// JSON documents that tools answer as text.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace Tools {

/// What every answer is and is not; ends the tool descriptions and the JSON documents.
inline constexpr Phrase boundary{
    "本工具提供原始测量数据,不构成诊断;缺失仅代表未采集。",
    "Returns raw measurements, not a diagnosis; a gap means not collected."};

/// `document` as compact text, keys in ascending order at every level, "/" written as "\/". A
/// number that JSON cannot carry (infinite, not a number) is null.
std::string documentText(const nlohmann::json& document);

}  // namespace Tools
