#pragma once
// The protocol: JSON-RPC requests in, replies out, one line each.

#include "mcp/server/AccessLog.h"
#include "mcp/server/LineReader.h"
#include "mcp/server/Methods.h"
#include "platform/ByteSource.h"
#include "platform/Clock.h"
#include "platform/Locale.h"
#include "platform/Logger.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"
#include "store/Database.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// Takes one whole line, its line feed included. May throw when the reader is gone.
using LineSink = std::function<void(std::string_view line)>;

/// One conversation with one client, from its first line to the end of the input. Answers requests
/// in the order in which they come; remembers nothing between them but the client's name.
class MCPServer {
public:
  /// The world the server runs in. Tests bring their own.
  struct Surroundings {
    SummaryLang lang;
    Clock clock;
    DigitGrouping grouping = {};  ///< of the user's locale
    std::unique_ptr<ByteSource> input;
    LineSink output;
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< with a database that is locked
  };

  /// Opens the access log in `dataRoot`, creating the folder if need be, and loads the roster.
  /// Opens no database. Throws ReceiverError when the roster was unreadable and has been moved
  /// aside.
  MCPServer(const std::filesystem::path& dataRoot, Surroundings surroundings);

  /// Gives up, for the whole process and for good, what no line can need, where the system has the
  /// means; see mcp/server/Confinement.h.
  void confine();

  /// Answers every line until the input ends. What the input or the output throws passes. A line
  /// that memory does not suffice for is left without a reply.
  void run();

private:
  void serve(const LineReader::Line& line);
  void handle(const nlohmann::json& message);
  nlohmann::ordered_json reply(std::string_view method, const nlohmann::json& message);
  void send(const nlohmann::ordered_json& reply);

  std::filesystem::path dataRoot;
  Logger log;
  AccessLog accessLog;
  Roster roster;
  Methods methods;
  LineReader input;
  LineSink output;
};
