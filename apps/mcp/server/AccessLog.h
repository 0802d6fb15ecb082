#pragma once
// The access log "mcp-access.log": who read whose data. The server writes no other file.

#include "platform/Clock.h"
#include "platform/Logger.h"
#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// One record for each connection, tool call and resource read. Records are in Chinese, whatever
/// the language.
class AccessLog {
public:
  /// Opens `file`; creates it and its folders if necessary.
  AccessLog(const std::filesystem::path& file, Clock clock);

  /// A client has initialised the connection. All later records contain its name. Without a name
  /// the previous one stays; it is "unknown" at first.
  void connected(const std::optional<std::string_view>& name);

  /// A tool is about to be called. `member` is the person of the call; absent when it is not
  /// certain.
  void called(const std::string& tool, const std::optional<Member>& member,
              const nlohmann::json& arguments);

  /// The resource `uri` was read; `member` is the display name of its person.
  void readResource(const std::string& uri, const std::string& member);

private:
  void write(const std::string& message);

  Logger log;
  std::string clientName = "unknown";
};

/// The arguments of a tool call, without "person", in one line: "key=value" in the order of the
/// keys. Texts have no quotes; other values are compact JSON.
std::string compact(const nlohmann::json& arguments);
