// larkspur-import: start-up. Reads the command line and the machine's language; the other work is
// done by the import.

#include "import/Confinement.h"
#include "import/Failure.h"
#include "import/Import.h"
#include "import/Interruption.h"
#include "import/StopSignals.h"
#include "import/census/CensusText.h"
#include "import/census/Check.h"
#include "platform/AppLanguage.h"
#include "platform/Clock.h"
#include "platform/ControlProtocol.h"
#include "platform/Files.h"
#include "platform/Phrase.h"
#include "platform/System.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <system_error>
#include <variant>

namespace {

constexpr Phrase reportUnwritten{"导入已经完成，但无法输出报告：{0}",
                                 "the import is complete, but its report cannot be written: {0}"};
constexpr Phrase censusUnwritten{"统计结果无法写入：{0}", "the census cannot be written: {0}"};

constexpr int succeeded = 0;
constexpr int failed = 1;

void complain(const std::string& message) {
  writeAll(STDERR_FILENO, "larkspur-import: " + message + "\n");
}

int fail(const std::string& message) {
  complain(message);
  return failed;
}

int say(const Importer::CommandLine::Say& order) {
  const bool said = writeAll(order.toStderr ? STDERR_FILENO : STDOUT_FILENO, order.text);
  return said ? order.status : failed;
}

Importer::Progress::Kind progressKind() {
  return isatty(STDERR_FILENO) == 1 ? Importer::Progress::Kind::terminal
                                    : Importer::Progress::Kind::log;
}

int bringIn(const ImportOrder& order, SummaryLang lang) {
  confine(order);
  const Report report = runImport(order,
                                  {.progress = std::cerr,
                                   .progressKind = progressKind(),
                                   .lang = lang,
                                   .clock = systemTime,
                                   .timeZone = System::timeZoneName(),
                                   .interrupted = StopSignals::noted});
  if (!writeAll(STDOUT_FILENO, reportText(report, lang))) {
    const std::string reason = std::generic_category().message(errno);
    complain(Failure(reportUnwritten, {reason}).text(lang));
  }
  return succeeded;
}

/// For durations: this clock is never set.
double steadyTime() {
  const auto sinceSomeMoment = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceSomeMoment).count();
}

int check(const CheckOrder& order, SummaryLang lang) {
  confine(order);
  const CheckOutcome outcome = runCheck(order,
                                        {.progress = std::cerr,
                                         .progressKind = progressKind(),
                                         .lang = lang,
                                         .clock = steadyTime,
                                         .interrupted = StopSignals::noted});
  const bool written = writeAll(STDOUT_FILENO, censusText(outcome.census, lang));
  const std::string reason = std::generic_category().message(errno);
  if (outcome.failure) return fail(outcome.failure->text(lang));
  return written ? succeeded : fail(Failure(censusUnwritten, {reason}).text(lang));
}

}  // namespace

int main(int count, char* words[]) {
  // Health data is accessible to its owner only, and so is every file created here.
  umask(077);
  // Writing to a closed pipe, or beyond the maximum file size, must return an error, not kill the
  // process.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  StopSignals::note();
  SummaryLang lang = SummaryLang::en;
  try {
    reserveStandardStreams();
    System::forbidDumps();
    lang = AppLanguage::isChinese() ? SummaryLang::zh : SummaryLang::en;
    const std::span arguments(words + 1, static_cast<std::size_t>(count > 0 ? count - 1 : 0));
    const auto order =
        Importer::CommandLine::parsed(arguments, ControlProtocol::defaultDataRoot(), lang);
    if (const auto* saying = std::get_if<Importer::CommandLine::Say>(&order)) return say(*saying);
    if (const auto* checking = std::get_if<CheckOrder>(&order)) return check(*checking, lang);
    return bringIn(std::get<ImportOrder>(order), lang);
  } catch (const Interruption& interruption) {
    complain(interruption.text(lang));
    StopSignals::end();
  } catch (const Failure& error) {
    return fail(error.text(lang));
  } catch (const std::system_error& error) {
    return fail(systemFailure(error).text(lang));
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
