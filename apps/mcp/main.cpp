// Start-up: the command line, the objects, the loop.

#include "mcp/server/CommandLine.h"
#include "mcp/server/MCPServer.h"
#include "platform/AppLanguage.h"
#include "platform/Clock.h"
#include "platform/ControlProtocol.h"
#include "platform/Files.h"
#include "platform/MemoryReserve.h"
#include "platform/ReceiverError.h"
#include "platform/System.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <exception>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>

namespace {

/// Throws when the output fails: the client cannot be answered any more.
void writeLine(std::string_view line) {
  if (!writeAll(STDOUT_FILENO, line)) {
    throw std::system_error(errno, std::generic_category(), "stdout");
  }
}

int serve(const CommandLine::Serve& order) {
  MCPServer server(order.dataRoot,
                   {.lang = AppLanguage::isChinese() ? SummaryLang::zh : SummaryLang::en,
                    .clock = systemTime,
                    .grouping = System::digitGrouping(),
                    .input = byteSource([](std::span<char> buffer) {
                      return readSome(STDIN_FILENO, buffer.data(), buffer.size());
                    }),
                    .output = writeLine});
  server.confine();
  server.run();
  return 0;
}

int say(const CommandLine::Say& order) {
  const bool said = writeAll(order.toStderr ? STDERR_FILENO : STDOUT_FILENO, order.text);
  return said ? order.status : 1;
}

}  // namespace

int main(int count, char* words[]) {
  // Files of this process are accessible to its owner only.
  umask(077);
  // Writing to a closed pipe must return an error, not kill the process. The same applies to a log
  // at the system's limit of file size.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    reserveStandardStreams();
    makeTerminalOwn(STDERR_FILENO);
    System::forbidDumps();
    MemoryReserve::keep();
    const std::span arguments(words + 1, static_cast<std::size_t>(count > 0 ? count - 1 : 0));
    const auto order = CommandLine::parsed(arguments, ControlProtocol::defaultDataRoot());
    if (const auto* saying = std::get_if<CommandLine::Say>(&order)) return say(*saying);
    return serve(std::get<CommandLine::Serve>(order));
  } catch (const ReceiverError&) {
    return 1;  // The roster has already logged the error.
  } catch (const std::bad_alloc&) {
    writeWithoutWaiting(STDERR_FILENO, "larkspur-mcp: not enough memory\n");
    return 1;
  } catch (const std::exception& error) {
    // The start failed, or the client is gone and cannot be answered.
    writeWithoutWaiting(STDERR_FILENO, std::string("larkspur-mcp: ") + error.what() + "\n");
    return 1;
  }
}
