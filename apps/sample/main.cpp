// larkspur-sample: writes a data root for trying the server, or an export for trying the import.
// Only this file reads the clock and the command line of the process.

#include "platform/AppLanguage.h"
#include "platform/AppleFormat.h"
#include "platform/Clock.h"
#include "platform/System.h"
#include "sample/Options.h"
#include "sample/Progress.h"
#include "sample/export/Export.h"
#include "sample/flaws/Flaws.h"
#include "sample/household/Household.h"

#include <sys/stat.h>
#include <unistd.h>

#include <exception>
#include <iostream>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr int succeeded = 0;
constexpr int failed = 1;
constexpr int misused = 2;

int write(const Options& options) {
  const CivilDay today = options.today.value_or(AppleFormat::localTime(systemTime()).day);
  Progress progress(std::cerr, isatty(STDERR_FILENO) == 1, systemTime);
  if (!options.exportTo.empty()) {
    writeExport(options, today, std::cout, progress);
    return succeeded;
  }
  writeHousehold(options, today, std::cout, progress);
  return succeeded;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  // Data roots are private, even those of invented people.
  umask(077);
  try {
    System::forbidDumps();
    const Options options =
        parsedOptions(std::vector<std::string_view>(arguments + 1, arguments + argumentCount));
    if (options.listFlaws) {
      std::cout << Flaws::list(AppLanguage::isChinese() ? SummaryLang::zh : SummaryLang::en);
      return succeeded;
    }
    if (!options.help) return write(options);
    std::cout << usage;
    return succeeded;
  } catch (const UsageError& error) {
    std::cerr << "larkspur-sample: " << error.what() << "\n\n" << usage;
    return misused;
  } catch (const std::exception& error) {
    std::cerr << "larkspur-sample: " << error.what() << '\n';
    return failed;
  }
}
