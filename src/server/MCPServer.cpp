#include "server/MCPServer.h"
#include "platform/ControlProtocol.h"
#include "platform/MemoryReserve.h"
#include "platform/System.h"
#include "platform/Text.h"
#include "server/Confinement.h"
#include "server/Instructions.h"
#include "server/Wire.h"
#include "tools/Arguments.h"
#include "tools/MCPError.h"
#include "tools/Prompts.h"
#include "tools/Resources.h"
#include "tools/Tools.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr const char* protocolVersion = "2024-11-05";
constexpr const char* serverName = "larkspur";
constexpr const char* serverVersion = "0.1";

/// From here on a line may leave so much freed memory behind that it is worth giving back.
constexpr std::size_t longLineSize = 64 * 1024;

}  // namespace

MCPServer::MCPServer(const std::filesystem::path& dataRoot, Surroundings surroundings)
    : clock(std::move(surroundings.clock)),
      dataRoot(dataRoot),
      log(std::nullopt, Logger::Level::info, true, clock),
      accessLog(dataRoot / "mcp-access.log", Logger::Level::info, false, clock),
      roster(dataRoot / "members.json", log, clock),
      lang(surroundings.lang),
      input(std::move(surroundings.input)),
      output(std::move(surroundings.output)),
      patienceMilliseconds(surroundings.patienceMilliseconds) {
  roster.load();
}

namespace {

std::optional<nlohmann::json> decoded(const LineReader::Line& line) {
  if (line.overlong) return std::nullopt;
  try {
    return Wire::decoded(line.text);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

}  // namespace

void MCPServer::confine() { ::confine(dataRoot, roster.members(), log); }

void MCPServer::run() {
  log.write(Logger::Level::info,
            "Larkspur MCP server 启动 · dataRoot=" + dataRoot.string() + " · 成员 " +
                std::to_string(roster.members().size()));
  while (std::optional<LineReader::Line> line = input.next()) {
    MemoryReserve::restore();
    const bool longLine = line->overlong || line->text.size() >= longLineSize;
    try {
      serve(*std::exchange(line, std::nullopt));
    } catch (const std::bad_alloc&) {
      // Too large for this machine: no reply, but the next line is served.
    }
    if (longLine) System::returnFreedMemory();
  }
  log.write(Logger::Level::info, "stdin 关闭,退出");
}

void MCPServer::serve(const LineReader::Line& line) {
  if (!line.overlong && trimmedBlanks(line.text).empty()) return;
  if (const std::optional<nlohmann::json> message = decoded(line)) {
    handle(*message);
  } else {
    log.write(Logger::Level::error, "收到解不开的一行,忽略");
  }
}

namespace {

/// The text under `key` of an object, "" when it is missing or no text.
std::string textOf(const nlohmann::json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

/// The object under `key` of an object, an empty one when it is missing or no object.
const nlohmann::json& objectOf(const nlohmann::json& object, const char* key) {
  static const nlohmann::json empty = nlohmann::json::object();
  const auto found = object.find(key);
  return found != object.end() && found->is_object() ? *found : empty;
}

}  // namespace

void MCPServer::handle(const nlohmann::json& message) {
  const std::string method = textOf(message, "method");
  // An id of null is an id: only a message without the key is a notification.
  if (message.contains("id")) {
    send(reply(method, message));
  } else {
    log.write(Logger::Level::debug, "通知:" + method);
  }
}

namespace {

nlohmann::ordered_json errorOf(int code, std::string_view message) {
  return {{"code", code}, {"message", repaired(message)}};
}

}  // namespace

MCPServer::Json MCPServer::reply(std::string_view method, const nlohmann::json& message) {
  Json reply{{"jsonrpc", "2.0"}, {"id", message.at("id")}};
  try {
    reply["result"] = dispatch(method, objectOf(message, "params"));
  } catch (const MCPError& error) {
    reply["error"] = errorOf(error.code, error.message);
  } catch (const ReceiverError& error) {
    reply["error"] = errorOf(MCPError::internal, error.message);
  } catch (const std::exception& error) {
    reply["error"] = errorOf(MCPError::internal, error.what());
  }
  return reply;
}

void MCPServer::send(const Json& reply) {
  std::string line;
  try {
    line = Wire::encoded(reply);
  } catch (const std::bad_alloc&) {
    return;  // Too large for this machine: no reply, but the next line is served.
  }
  output(line);
}

MCPServer::Json MCPServer::dispatch(std::string_view method, const nlohmann::json& params) {
  struct Method {
    std::string_view name;
    Json (MCPServer::*answer)(const nlohmann::json& params);
  };
  static constexpr std::array methods{
      Method{"initialize", &MCPServer::initialize},
      Method{"ping", &MCPServer::ping},
      Method{"tools/list", &MCPServer::listTools},
      Method{"tools/call", &MCPServer::callTool},
      Method{"resources/list", &MCPServer::listResources},
      Method{"resources/read", &MCPServer::readResource},
      Method{"prompts/list", &MCPServer::listPrompts},
      Method{"prompts/get", &MCPServer::getPrompt},
  };
  const auto found = std::ranges::find(methods, method, &Method::name);
  if (found == methods.end()) {
    throw MCPError(MCPError::unknownName, "没有这个方法:" + std::string(method));
  }
  return (this->*found->answer)(params);
}

MCPServer::Json MCPServer::initialize(const nlohmann::json& params) {
  const nlohmann::json& client = objectOf(params, "clientInfo");
  const auto name = client.find("name");
  if (name != client.end() && name->is_string()) {
    // No record of the access log could show more of it.
    clientName = shortened(name->get_ref<const std::string&>(), Logger::longestRecord);
  }
  logAccess("连接:" + clientName);
  const Json none = Json::object();
  return {{"protocolVersion", protocolVersion},
          {"capabilities", {{"tools", none}, {"resources", none}, {"prompts", none}}},
          {"serverInfo", {{"name", serverName}, {"version", serverVersion}}},
          {"instructions", instructions.in(lang)}};
}

MCPServer::Json MCPServer::ping(const nlohmann::json&) { return Json::object(); }

MCPServer::Json MCPServer::listTools(const nlohmann::json&) {
  return {{"tools", Tools::schemas(lang)}};
}

namespace {

/// The member whom the arguments name; `nullopt` where the tool will refuse them, in its own words.
std::optional<Member> memberNamed(const Tools::Call& call) {
  try {
    return Tools::resolve(call);
  } catch (const MCPError&) {
    return std::nullopt;
  }
}

}  // namespace

MCPServer::Json MCPServer::callTool(const nlohmann::json& params) {
  const std::string tool = textOf(params, "name");
  const nlohmann::json& arguments = objectOf(params, "arguments");
  const Tools::Call call{arguments, roster, log, lang, clock, patienceMilliseconds};

  const std::optional<Member> member = tool == "list_persons" ? std::nullopt : memberNamed(call);
  const std::string request = tool + " " + compact(arguments);
  logAccess(clientName + (member ? " 读取 " + member->name + " · " : " 调用 ") + request);

  return {{"content", Json::array({{{"type", "text"}, {"text", Tools::answer(tool, call)}}})}};
}

MCPServer::Json MCPServer::listResources(const nlohmann::json&) {
  return {{"resources", Tools::resources(roster.members(), lang)}};
}

MCPServer::Json MCPServer::readResource(const nlohmann::json& params) {
  const std::string uri = textOf(params, "uri");
  const nlohmann::json none = nlohmann::json::object();
  const std::string text =
      Tools::readResource(uri, {none, roster, log, lang, clock, patienceMilliseconds});

  const std::vector<Member> members = roster.members();
  const auto member = std::ranges::find_if(members, [&uri](const Member& candidate) {
    return uri.starts_with("larkspur://" + candidate.id + "/");
  });
  const std::string name = member == members.end() ? "?" : member->name;
  logAccess(clientName + " 读取 " + name + " · 资源 " + uri);
  return {{"contents", Json::array({{{"uri", uri}, {"mimeType", "text/plain"}, {"text", text}}})}};
}

MCPServer::Json MCPServer::listPrompts(const nlohmann::json&) {
  return {{"prompts", Tools::prompts(lang)}};
}

MCPServer::Json MCPServer::getPrompt(const nlohmann::json& params) {
  return Tools::getPrompt(textOf(params, "name"), lang);
}

void MCPServer::logAccess(const std::string& message) {
  accessLog.write(Logger::Level::info, message);
}

std::string compact(const nlohmann::json& arguments) {
  std::string line;
  for (const auto& [key, value] : arguments.items()) {
    // The record says already whose data is read.
    if (key == "person") continue;
    if (!line.empty()) line += ' ';
    line += key + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
  }
  return line;
}
