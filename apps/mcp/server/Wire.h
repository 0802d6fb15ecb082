#pragma once
// The encoding of messages: one line of JSON each.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace Wire {

/// The JSON object in `line`. `nullopt` when the line is not JSON in valid UTF-8, is nested deeper
/// than 512 levels, contains more than 100,000 values, needs more memory than there is, or is not a
/// single object. If a key is repeated, the last one counts.
std::optional<nlohmann::json> decoded(std::string_view line);

/// `message` as one compact line with its line feed. Invalid UTF-8 becomes U+FFFD. U+2028 and
/// U+2029 are escaped, because some clients end a line there.
std::string encoded(const nlohmann::ordered_json& message);

/// The text under `key` of an object; "" when it is missing or not a text.
std::string textOf(const nlohmann::json& object, const char* key);

/// The object under `key` of an object; an empty object when it is missing or not an object.
const nlohmann::json& objectOf(const nlohmann::json& object, const char* key);

}  // namespace Wire
