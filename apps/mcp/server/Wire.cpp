#include "mcp/server/Wire.h"
#include "platform/MemoryReserve.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t deepest = 512;
constexpr std::size_t mostValues = 100000;

/// An upper bound of the number of values in `line`; `nullopt` when they are too many or nested too
/// deeply. Examines only the characters outside strings; the parser checks the rest.
std::optional<std::size_t> valuesIn(std::string_view line) {
  std::size_t depth = 0;
  // A value follows the start, an opening bracket or a comma.
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

/// Whether there is enough memory to build this many values and to destroy them. Both need memory.
/// The JSON library terminates the program when memory runs out during destruction.
bool affordable(std::size_t values, std::size_t lineSize) {
  // An object with one member takes 160 bytes; destroying it takes 48 more.
  constexpr std::size_t bytesPerValue = 256;
  constexpr std::size_t negligible = 256;
  return values <= negligible || MemoryReserve::couldHave(values * bytesPerValue + lineSize);
}

}  // namespace

std::optional<nlohmann::json> Wire::decoded(std::string_view line) {
  // The parser treats a zero byte outside strings as the end of its input.
  if (line.find('\0') != std::string_view::npos) return std::nullopt;
  const std::optional<std::size_t> values = valuesIn(line);
  if (!values || !affordable(*values, line.size())) return std::nullopt;
  constexpr bool throwing = false;
  nlohmann::json message = nlohmann::json::parse(line, nullptr, throwing);
  if (!message.is_object()) return std::nullopt;
  return message;
}

namespace {

/// `json` with U+2028 and U+2029 escaped. In JSON they occur only inside strings.
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
