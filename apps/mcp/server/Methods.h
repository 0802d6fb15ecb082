#pragma once
// The methods of the protocol: parameters in, result out.

#include "mcp/server/AccessLog.h"
#include "mcp/tools/Tools.h"
#include "platform/Clock.h"
#include "platform/Locale.h"
#include "platform/Logger.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"
#include "store/Database.h"

#include <nlohmann/json_fwd.hpp>

#include <string_view>

/// Answers "initialize", "tools/call" and the other methods, and writes tool calls and resource
/// reads to the access log.
class Methods {
public:
  using Json = nlohmann::ordered_json;

  struct Options {
    SummaryLang lang;
    Clock clock;
    DigitGrouping grouping = {};                           ///< of the user's locale
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< waiting time for a locked database
  };

  /// The roster and the logs must outlive this object.
  Methods(const Roster& roster, Logger& log, AccessLog& accessLog, Options options);

  /// The result of `method`. Throws MCPError (-32601) for an unknown method or tool. Errors of a
  /// tool are passed on.
  Json dispatch(std::string_view method, const nlohmann::json& params);

private:
  /// A call of a tool. `arguments` must outlive it.
  Tools::Call callWith(const nlohmann::json& arguments) const;

  Json initialize(const nlohmann::json& params);
  Json ping(const nlohmann::json& params);
  Json listTools(const nlohmann::json& params);
  Json callTool(const nlohmann::json& params);
  Json listResources(const nlohmann::json& params);
  Json readResource(const nlohmann::json& params);
  Json listPrompts(const nlohmann::json& params);
  Json getPrompt(const nlohmann::json& params);

  const Roster& roster;
  Logger& log;
  AccessLog& accessLog;
  Options options;
};
