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

/// Receives one whole line, including its line feed. May throw when the client has closed the
/// output.
using LineSink = std::function<void(std::string_view line)>;

/// One conversation with one client, from its first line to the end of the input. Requests are
/// answered in their order. The only state between them is the client's name.
class MCPServer {
public:
  /// The injected environment of the server. Tests inject their own.
  struct Surroundings {
    SummaryLang lang;
    Clock clock;
    DigitGrouping grouping = {};  ///< of the user's locale
    std::unique_ptr<ByteSource> input;
    LineSink output;
    int patienceMilliseconds = usualPatienceMilliseconds;  ///< waiting time for a locked database
  };

  /// Opens the access log in `dataRoot`, creating the folder if necessary, and loads the roster.
  /// Opens no database. Throws ReceiverError when the roster was invalid and has been renamed.
  MCPServer(const std::filesystem::path& dataRoot, Surroundings surroundings);

  /// Confines the whole process permanently, where the system supports it, to what answering needs;
  /// see mcp/server/Confinement.h.
  void confine();

  /// Answers every line until the input ends. Errors of the input and the output are passed on. A
  /// line that does not fit into memory gets no reply.
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
