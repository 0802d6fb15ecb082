#include "sample/Options.h"

#include <charconv>
#include <string>
#include <system_error>

constinit const std::string_view usage =
    "larkspur-sample --out DIR [--members N] [--years Y] [--records N] [--seed S]\n"
    "                [--today YYYY-MM-DD]\n"
    "\n"
    "Writes a data root with a household that nobody lives in.\n"
    "\n"
    "  --out DIR           the data root to make; one that exists already is left alone\n"
    "  --members N         how many people, 1 to 99 (default 3)\n"
    "  --years Y           how long Ann's history is, 1 to 30 (default 3)\n"
    "  --records N         about how many records Ann has, 1000 to 100000000 (default: as many\n"
    "                      as a life leaves behind); no device writes a type more often than\n"
    "                      every two seconds, however many are wanted\n"
    "  --seed S            which household; the same seed and day write the same records\n"
    "                      (default 1)\n"
    "  --today YYYY-MM-DD  the day on whose morning the histories end, 1971 or later\n"
    "                      (default: today)\n"
    "  --help              this text\n";

namespace {

/// A whole number from `lowest` to `highest` and nothing around it.
template <typename Number>
Number numberOf(std::string_view option, std::string_view text, Number lowest, Number highest) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end || number < lowest || number > highest) {
    throw UsageError(std::string(option) + " wants a whole number from " + std::to_string(lowest) +
                     " to " + std::to_string(highest));
  }
  return number;
}

CivilDay dayOf(std::string_view option, std::string_view text) {
  const std::optional<CivilDay> day = AppleFormat::dayParser.parse(text);
  // The longest history still begins after the calendar's first year; stamps count from 1970.
  if (!day || day->year() < std::chrono::year{1971}) {
    throw UsageError(std::string(option) + " wants a day as YYYY-MM-DD, 1971 or later");
  }
  return *day;
}

void set(Options& options, std::string_view option, std::string_view value) {
  if (option == "--out") {
    options.out = value;
    if (value.empty()) throw UsageError("--out wants a directory");
  } else if (option == "--members") {
    options.members = numberOf(option, value, 1, 99);
  } else if (option == "--years") {
    options.years = numberOf(option, value, 1, 30);
  } else if (option == "--records") {
    options.records = numberOf<std::int64_t>(option, value, 1000, 100000000);
  } else if (option == "--seed") {
    options.seed = numberOf<std::uint64_t>(option, value, 0, UINT64_MAX);
  } else {
    options.today = dayOf(option, value);
  }
}

bool takesValue(std::string_view option) {
  return option == "--out" || option == "--members" || option == "--years" ||
         option == "--records" || option == "--seed" || option == "--today";
}

}  // namespace

Options parsedOptions(std::span<const std::string_view> arguments) {
  Options options;
  while (!arguments.empty()) {
    const std::string_view option = arguments.front();
    if (option == "-h" || option == "--help") {
      options.help = true;
      return options;
    }
    if (!takesValue(option)) throw UsageError("unknown argument: " + std::string(option));
    if (arguments.size() < 2) throw UsageError(std::string(option) + " wants a value");
    set(options, option, arguments[1]);
    arguments = arguments.subspan(2);
  }
  if (options.out.empty()) throw UsageError("--out is missing");
  return options;
}
