#include "support/WellFormed.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <initializer_list>

namespace {

using Json = nlohmann::json;

bool hasExactly(const Json& object, std::initializer_list<const char*> keys) {
  return object.is_object() && object.size() == keys.size() &&
         std::ranges::all_of(keys, [&object](const char* key) { return object.contains(key); });
}

bool isError(const Json& error) {
  static const std::array<Json, 3> codes{-32601, -32602, -32603};
  return hasExactly(error, {"code", "message"}) &&
         std::ranges::find(codes, error["code"]) != codes.end() && error["message"].is_string() &&
         error["message"] != "";
}

bool isContent(const Json& result) {
  if (!hasExactly(result, {"content"}) || !result["content"].is_array()) return false;
  const Json& content = result["content"];
  return content.size() == 1 && hasExactly(content[0], {"type", "text"}) &&
         content[0]["type"] == "text" && content[0]["text"].is_string();
}

bool isResource(const Json& result, const Json& request) {
  if (!hasExactly(result, {"contents"}) || !result["contents"].is_array()) return false;
  const Json& contents = result["contents"];
  return contents.size() == 1 && hasExactly(contents[0], {"uri", "mimeType", "text"}) &&
         contents[0]["uri"] == request["params"]["uri"] &&
         contents[0]["mimeType"] == "text/plain" && contents[0]["text"].is_string();
}

/// Whether the result has the method's shape.
bool isResultOf(const Json& result, const Json& request) {
  if (request["method"] == "tools/call") return isContent(result);
  if (request["method"] == "resources/read") return isResource(result, request);
  return result.is_object();
}

/// The first fault of `reply`, decoded from `line`; "" when there is none.
std::string faultOf(const Json& request, std::string_view line, const Json& reply) {
  if (line.empty() || line.find('\n') != line.size() - 1) return "not one line";
  if (!reply.is_object()) return "not a JSON object in UTF-8";
  const bool failed = reply.contains("error");
  if (!hasExactly(reply, {"jsonrpc", "id", failed ? "error" : "result"})) return "not a reply";
  if (reply["jsonrpc"] != "2.0") return "another protocol";
  if (reply["id"] != request["id"]) return "another id";
  if (failed) return isError(reply["error"]) ? "" : "not an error";
  return isResultOf(reply["result"], request) ? "" : "not the method's result";
}

/// Discarded when the line is not JSON; the parser rejects invalid UTF-8.
Json parsed(std::string_view line) {
  constexpr bool throwing = false;
  return Json::parse(line, nullptr, throwing);
}

}  // namespace

std::string faultOfAnswer(const nlohmann::json& request, std::string_view line) {
  return faultOf(request, line, parsed(line));
}

nlohmann::json checkedReply(const nlohmann::json& request, std::string_view line) {
  Json reply = parsed(line);
  constexpr std::size_t shown = 2000;
  EXPECT_EQ(faultOf(request, line, reply), "")
      << "the answer to " << request << " is " << line.substr(0, shown);
  return reply;
}

std::string textOf(const nlohmann::json& reply) {
  if (!reply.is_object() || !reply.contains("result")) return "";
  const Json& result = reply["result"];
  return (result.contains("content") ? result["content"] : result["contents"])[0]["text"];
}

std::string messageOf(const nlohmann::json& reply) {
  const bool failed = reply.is_object() && reply.contains("error");
  return failed ? reply["error"]["message"].get<std::string>() : "";
}
