#pragma once
// JSON as it travels: a line in, a line out.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace Wire {

/// The JSON object that `line` holds; `nullopt` when the line is not JSON in valid UTF-8, is nested
/// deeper than 512 levels, holds more than 100,000 values, takes more memory than there is, or
/// holds anything else than one object. Of a key that stands twice, the last counts.
std::optional<nlohmann::json> decoded(std::string_view line);

/// `message` as one line with its line feed, compact. Bytes that are no UTF-8 become U+FFFD. U+2028
/// and U+2029 are escaped, because some clients end a line there.
std::string encoded(const nlohmann::ordered_json& message);

/// The text under `key` of an object, "" when it is missing or no text.
std::string textOf(const nlohmann::json& object, const char* key);

/// The object under `key` of an object, an empty one when it is missing or no object.
const nlohmann::json& objectOf(const nlohmann::json& object, const char* key);

}  // namespace Wire
