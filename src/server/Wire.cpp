#include "server/Wire.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace {

/// Whether arrays and objects in `line` stand at most `limit` deep in each other. Looks at brackets
/// outside strings alone; the parser judges the rest.
bool nestedWithin(std::string_view line, std::size_t limit) {
  std::size_t depth = 0;
  bool inString = false;
  for (std::size_t index = 0; index < line.size(); ++index) {
    const char character = line[index];
    if (inString) {
      if (character == '\\') ++index;
      if (character == '"') inString = false;
    } else if (character == '"') {
      inString = true;
    } else if (character == '[' || character == '{') {
      if (++depth > limit) return false;
    } else if ((character == ']' || character == '}') && depth > 0) {
      --depth;
    }
  }
  return true;
}

}  // namespace

std::optional<nlohmann::json> Wire::decoded(std::string_view line) {
  constexpr std::size_t deepest = 512;
  // The parser takes a zero byte outside texts for the end of its input.
  if (line.find('\0') != std::string_view::npos) return std::nullopt;
  if (!nestedWithin(line, deepest)) return std::nullopt;
  constexpr bool throwing = false;
  nlohmann::json message = nlohmann::json::parse(line, nullptr, throwing);
  if (!message.is_object()) return std::nullopt;
  return message;
}

namespace {

/// `json` with the two line separators of Unicode escaped. In JSON they stand inside texts only.
std::string withoutLineSeparators(std::string json) {
  constexpr std::string_view common = "\xE2\x80";
  std::size_t at = json.find(common);
  if (at == std::string::npos) return json;
  std::string escaped;
  std::size_t copied = 0;
  for (; at != std::string::npos; at = json.find(common, at + common.size())) {
    const char last = json[at + common.size()];
    if (last != '\xA8' && last != '\xA9') continue;
    escaped.append(json, copied, at - copied).append(last == '\xA8' ? "\\u2028" : "\\u2029");
    copied = at + common.size() + 1;
  }
  return escaped.append(json, copied);
}

}  // namespace

std::string Wire::encoded(const nlohmann::ordered_json& message) {
  constexpr int compact = -1;
  constexpr bool onlyASCII = false;
  std::string line =
      message.dump(compact, ' ', onlyASCII, nlohmann::ordered_json::error_handler_t::replace);
  line += '\n';
  return withoutLineSeparators(std::move(line));
}
