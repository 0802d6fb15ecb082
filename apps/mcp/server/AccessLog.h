#pragma once
// Who read whose data: the file "mcp-access.log", the only one that the server writes.

#include "platform/Clock.h"
#include "platform/Logger.h"
#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// One record for each connection, tool call and resource read, in Chinese whatever the language.
class AccessLog {
public:
  /// Opens or makes `file`, with its folders.
  AccessLog(const std::filesystem::path& file, Clock clock);

  /// A client has said hello. Records name it from now on; one without a name stays who it was,
  /// "unknown" at first.
  void connected(const std::optional<std::string_view>& name);

  /// A tool is about to be called; `member` is whom it is about, absent when nobody certain is.
  void called(const std::string& tool, const std::optional<Member>& member,
              const nlohmann::json& arguments);

  /// The resource `uri` was read; `member` is the name of whom it is about.
  void readResource(const std::string& uri, const std::string& member);

private:
  void write(const std::string& message);

  Logger log;
  std::string clientName = "unknown";
};

/// The arguments of a tool call, but not "person", in one line for the access log: "key=value" in
/// the order of the keys, texts without quotes, all else as compact JSON.
std::string compact(const nlohmann::json& arguments);
