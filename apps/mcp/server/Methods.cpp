#include "mcp/server/Methods.h"
#include "mcp/server/Instructions.h"
#include "mcp/server/Wire.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/MCPError.h"
#include "mcp/tools/Prompts.h"
#include "mcp/tools/Resources.h"
#include "mcp/tools/Tools.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* protocolVersion = "2024-11-05";
constexpr const char* serverName = "larkspur";
constexpr const char* serverVersion = "0.1";

}  // namespace

Methods::Methods(const Roster& roster, Logger& log, AccessLog& accessLog, Options options)
    : roster(roster), log(log), accessLog(accessLog), options(std::move(options)) {}

Methods::Json Methods::dispatch(std::string_view method, const nlohmann::json& params) {
  struct Method {
    std::string_view name;
    Json (Methods::*answer)(const nlohmann::json& params);
  };
  static constexpr std::array methods{
      Method{"initialize", &Methods::initialize},
      Method{"ping", &Methods::ping},
      Method{"tools/list", &Methods::listTools},
      Method{"tools/call", &Methods::callTool},
      Method{"resources/list", &Methods::listResources},
      Method{"resources/read", &Methods::readResource},
      Method{"prompts/list", &Methods::listPrompts},
      Method{"prompts/get", &Methods::getPrompt},
  };
  const auto found = std::ranges::find(methods, method, &Method::name);
  if (found == methods.end()) {
    throw MCPError(MCPError::unknownName, "没有这个方法:" + std::string(method));
  }
  return (this->*found->answer)(params);
}

Tools::Call Methods::callWith(const nlohmann::json& arguments) const {
  return {.arguments = arguments,
          .roster = roster,
          .log = log,
          .lang = options.lang,
          .clock = options.clock,
          .grouping = options.grouping,
          .patienceMilliseconds = options.patienceMilliseconds};
}

Methods::Json Methods::initialize(const nlohmann::json& params) {
  const nlohmann::json& client = Wire::objectOf(params, "clientInfo");
  const auto name = client.find("name");
  const bool isNamed = name != client.end() && name->is_string();
  accessLog.connected(isNamed ? std::optional<std::string_view>(name->get_ref<const std::string&>())
                              : std::nullopt);
  const Json none = Json::object();
  return {{"protocolVersion", protocolVersion},
          {"capabilities", {{"tools", none}, {"resources", none}, {"prompts", none}}},
          {"serverInfo", {{"name", serverName}, {"version", serverVersion}}},
          {"instructions", instructions.in(options.lang)}};
}

Methods::Json Methods::ping(const nlohmann::json&) { return Json::object(); }

Methods::Json Methods::listTools(const nlohmann::json&) {
  return {{"tools", Tools::schemas(options.lang)}};
}

namespace {

/// The member in the arguments; `nullopt` when the tool will refuse them with its own message.
std::optional<Member> memberNamed(const Tools::Call& call) {
  try {
    return Tools::resolve(call);
  } catch (const MCPError&) {
    return std::nullopt;
  }
}

}  // namespace

Methods::Json Methods::callTool(const nlohmann::json& params) {
  const std::string tool = Wire::textOf(params, "name");
  const nlohmann::json& arguments = Wire::objectOf(params, "arguments");
  const Tools::Call call = callWith(arguments);

  const std::optional<Member> member = tool == "list_persons" ? std::nullopt : memberNamed(call);
  accessLog.called(tool, member, arguments);

  return {{"content", Json::array({{{"type", "text"}, {"text", Tools::answer(tool, call)}}})}};
}

Methods::Json Methods::listResources(const nlohmann::json&) {
  return {{"resources", Tools::resources(roster.members(), options.lang)}};
}

Methods::Json Methods::readResource(const nlohmann::json& params) {
  const std::string uri = Wire::textOf(params, "uri");
  const nlohmann::json none = nlohmann::json::object();
  const std::string text = Tools::readResource(uri, callWith(none));

  const std::vector<Member> members = roster.members();
  const auto member = std::ranges::find_if(members, [&uri](const Member& candidate) {
    return uri.starts_with("larkspur://" + candidate.id + "/");
  });
  accessLog.readResource(uri, member == members.end() ? "?" : member->name);
  return {{"contents", Json::array({{{"uri", uri}, {"mimeType", "text/plain"}, {"text", text}}})}};
}

Methods::Json Methods::listPrompts(const nlohmann::json&) {
  return {{"prompts", Tools::prompts(options.lang)}};
}

Methods::Json Methods::getPrompt(const nlohmann::json& params) {
  return Tools::getPrompt(Wire::textOf(params, "name"), options.lang);
}
