#include "mcp/server/AccessLog.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <utility>

AccessLog::AccessLog(const std::filesystem::path& file, Clock clock)
    : log(file, Logger::Level::info, false, std::move(clock)) {}

void AccessLog::connected(const std::optional<std::string_view>& name) {
  // A record cannot show more of it.
  if (name) clientName = shortened(*name, Logger::longestRecord);
  write("连接:" + clientName);
}

void AccessLog::called(const std::string& tool, const std::optional<Member>& member,
                       const nlohmann::json& arguments) {
  const std::string act = member ? " 读取 " + member->name + " · " : " 调用 ";
  write(clientName + act + tool + " " + compact(arguments));
}

void AccessLog::readResource(const std::string& uri, const std::string& member) {
  write(clientName + " 读取 " + member + " · 资源 " + uri);
}

void AccessLog::write(const std::string& message) { log.write(Logger::Level::info, message); }

std::string compact(const nlohmann::json& arguments) {
  std::string line;
  for (const auto& [key, value] : arguments.items()) {
    // The record already names the person.
    if (key == "person") continue;
    if (!line.empty()) line += ' ';
    line += key + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
  }
  return line;
}
