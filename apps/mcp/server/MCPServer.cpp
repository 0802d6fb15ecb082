#include "mcp/server/MCPServer.h"
#include "mcp/server/Confinement.h"
#include "mcp/server/Wire.h"
#include "mcp/tools/MCPError.h"
#include "platform/MemoryReserve.h"
#include "platform/ReceiverError.h"
#include "platform/System.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <utility>

namespace {

/// A line of this size may leave enough freed memory to be worth returning.
constexpr std::size_t longLineSize = 64 * 1024;

}  // namespace

MCPServer::MCPServer(const std::filesystem::path& dataRoot, Surroundings surroundings)
    : dataRoot(dataRoot),
      log(std::nullopt, Logger::Level::info, true, surroundings.clock),
      accessLog(dataRoot / "mcp-access.log", surroundings.clock),
      roster(dataRoot / "members.json", log, surroundings.clock),
      methods(roster, log, accessLog,
              {.lang = surroundings.lang,
               .clock = surroundings.clock,
               .grouping = surroundings.grouping,
               .patienceMilliseconds = surroundings.patienceMilliseconds}),
      input(std::move(surroundings.input)),
      output(std::move(surroundings.output)) {
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
      // Not enough memory: this line gets no reply, but the next one does.
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

void MCPServer::handle(const nlohmann::json& message) {
  const std::string method = Wire::textOf(message, "method");
  // A null id is an id: only a message without the key is a notification.
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

nlohmann::ordered_json MCPServer::reply(std::string_view method, const nlohmann::json& message) {
  nlohmann::ordered_json reply{{"jsonrpc", "2.0"}, {"id", message.at("id")}};
  try {
    reply["result"] = methods.dispatch(method, Wire::objectOf(message, "params"));
  } catch (const MCPError& error) {
    reply["error"] = errorOf(error.code, error.message);
  } catch (const ReceiverError& error) {
    reply["error"] = errorOf(MCPError::internal, error.message);
  } catch (const std::exception& error) {
    reply["error"] = errorOf(MCPError::internal, error.what());
  }
  return reply;
}

void MCPServer::send(const nlohmann::ordered_json& reply) {
  std::string line;
  try {
    line = Wire::encoded(reply);
  } catch (const std::bad_alloc&) {
    return;  // Not enough memory: this line gets no reply, but the next one does.
  }
  output(line);
}
