#include "mcp/server/Wire.h"
#include "platform/MemoryReserve.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t deepest = 512;
constexpr std::size_t mostValues = 100000;

/// How many values `line` may hold, none fewer than it does; `nullopt` when they are too many or
/// stand too deep in each other. Looks at what stands outside strings alone; the parser judges the
/// rest.
std::optional<std::size_t> valuesIn(std::string_view line) {
  std::size_t depth = 0;
  // Each value stands at the start, behind an opening bracket or behind a comma.
  std::size_t values = 1;
  bool inString = false;
  for (std::size_t index = 0; index < line.size(); ++index) {
    const char character = line[index];
    if (inString) {
      if (character == '\\') ++index;
      if (character == '"') inString = false;
      continue;
    }
    const bool opens = character == '[' || character == '{';
    if (opens && ++depth > deepest) return std::nullopt;
    if ((opens || character == ',') && ++values > mostValues) return std::nullopt;
    if (character == '"') inString = true;
    if ((character == ']' || character == '}') && depth > 0) --depth;
  }
  return values;
}

/// Whether there is memory to build so many values and to take them down again. The JSON library
/// needs some for either, and ends the program where it finds none for the second.
bool affordable(std::size_t values, std::size_t lineSize) {
  // An object with one member takes 160 bytes, and to take it down takes 48.
  constexpr std::size_t bytesPerValue = 256;
  constexpr std::size_t negligible = 256;
  return values <= negligible || MemoryReserve::couldHave(values * bytesPerValue + lineSize);
}

}  // namespace

std::optional<nlohmann::json> Wire::decoded(std::string_view line) {
  // The parser takes a zero byte outside texts for the end of its input.
  if (line.find('\0') != std::string_view::npos) return std::nullopt;
  const std::optional<std::size_t> values = valuesIn(line);
  if (!values || !affordable(*values, line.size())) return std::nullopt;
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

std::string Wire::textOf(const nlohmann::json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

const nlohmann::json& Wire::objectOf(const nlohmann::json& object, const char* key) {
  static const nlohmann::json empty = nlohmann::json::object();
  const auto found = object.find(key);
  return found != object.end() && found->is_object() ? *found : empty;
}
