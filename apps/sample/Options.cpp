#include "sample/Options.h"
#include "sample/life/Person.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <string>
#include <system_error>

constinit const std::string_view usage =
    "larkspur-sample --out DIR [--members N] [--years Y] [--records N] [--seed S]\n"
    "                [--today YYYY-MM-DD] [--as-imported]\n"
    "larkspur-sample --export PATH [--member NAME] [--offset HH:MM] [--units SYSTEM]\n"
    "                [--flaw NAME]... [the same options]\n"
    "larkspur-sample --flaw list\n"
    "\n"
    "Writes a data root with a household that nobody lives in, or what one of its members\n"
    "would export from the phone's Health app.\n"
    "\n"
    "  --out DIR           the data root to make; one that exists already is left alone\n"
    "  --export PATH       the export to make: a zip when PATH ends in .zip, else the XML\n"
    "                      alone; a file that exists already is left alone\n"
    "  --member NAME       whose export, by name or identifier (default: Ann)\n"
    "  --offset HH:MM      the phone's distance from UTC at the moment of the export, which\n"
    "                      all its stamps have: +08:00 is east, as is 08:00, -05:00 is west\n"
    "                      (default: that of the member's home)\n"
    "  --units SYSTEM      what the phone measures in: metric or imperial (default: metric)\n"
    "  --flaw NAME         what is wrong with the export, once for each flaw: \"list\" tells "
    "their\n"
    "                      names, \"all\" stands for those that leave the export readable\n"
    "  --members N         how many people, 1 to 12 (default 3)\n"
    "  --years Y           how long Ann's history is, 1 to 30 (default 3)\n"
    "  --records N         about how many records Ann, or who exports, has, 1000 to 100000000\n"
    "                      (default: as many as a life leaves behind); no device writes a\n"
    "                      type more often than every two seconds, however many are wanted\n"
    "  --seed S            which household; the same seed and day write the same records\n"
    "                      (default 1)\n"
    "  --today YYYY-MM-DD  the day on whose morning the histories end, 1971 or later\n"
    "                      (default: today)\n"
    "  --as-imported       the data root as larkspur-import makes it of everybody's export\n"
    "  --help              this text\n";

namespace {

/// A whole number from `lowest` to `highest`, without other characters.
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
  // Stamps count from 1970, and even the longest history must begin after the calendar's first
  // year.
  if (!day || day->year() < std::chrono::year{1971}) {
    throw UsageError(std::string(option) + " wants a day as YYYY-MM-DD, 1971 or later");
  }
  return *day;
}

/// Seconds east of UTC. An offset without a sign is east. The colon is optional, as in stamps.
int offsetOf(std::string_view option, std::string_view text) {
  const bool hasSign = text.starts_with('+') || text.starts_with('-');
  std::string stamp = "1970-01-01 00:00:00 ";
  if (!hasSign) stamp += '+';
  stamp += text;
  const std::optional<Stamp> parsed = AppleFormat::stampParser.stamp(stamp);
  constexpr int farthest = 14 * 3600;  // the largest offset from UTC on Earth
  if (!parsed || std::abs(parsed->offset) > farthest) {
    throw UsageError(std::string(option) + " wants HH:MM with or without a sign, 14:00 at most");
  }
  return parsed->offset;
}

UnitSystem unitsOf(std::string_view option, std::string_view text) {
  if (text == "metric") return UnitSystem::metric;
  if (text == "imperial") return UnitSystem::imperial;
  throw UsageError(std::string(option) + " wants metric or imperial");
}

Flaw flawOf(std::string_view option, std::string_view text) {
  const std::optional<Flaw> flaw = Flaws::named(text);
  if (flaw) return *flaw;
  throw UsageError(std::string(option) + " knows no \"" + std::string(text) + "\"; " +
                   std::string(option) + " list tells the names");
}

void set(Options& options, std::string_view option, std::string_view value) {
  if (option == "--out") {
    options.out = value;
    if (value.empty()) throw UsageError("--out wants a directory");
  } else if (option == "--export") {
    options.exportTo = value;
    if (value.empty()) throw UsageError("--export wants a file");
  } else if (option == "--member") {
    options.member = value;
  } else if (option == "--offset") {
    options.offset = offsetOf(option, value);
  } else if (option == "--units") {
    options.units = unitsOf(option, value);
  } else if (option == "--flaw") {
    options.flaws.insert(flawOf(option, value));
  } else if (option == "--members") {
    options.members = numberOf(option, value, 1, largestHousehold);
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
  constexpr std::array<std::string_view, 11> all{"--out",
                                                 "--export",
                                                 "--member",
                                                 "--offset",
                                                 "--units",
                                                 "--flaw",
                                                 "--members",
                                                 "--years",
                                                 "--records",
                                                 "--seed",
                                                 "--today"};
  return std::ranges::find(all, option) != all.end();
}

/// Refuses flaws that do not apply to the kind of export, or that exclude each other.
void checkFlaws(const Options& options) {
  if (!options.flaws.empty() && options.exportTo.empty()) {
    throw UsageError("--flaw belongs to --export");
  }
  const FlawRow* ending = nullptr;
  for (const Flaw flaw : options.flaws) {
    const FlawRow& row = Flaws::rowOf(flaw);
    if (row.kind == FlawKind::archive && !options.exportsArchive()) {
      throw UsageError("--flaw " + std::string(row.name) +
                       " wants an archive: let the name of --export end in .zip");
    }
    if (row.readable) continue;
    if (ending != nullptr) {
      throw UsageError("--flaw " + std::string(ending->name) + " and " + std::string(row.name) +
                       " exclude each other: nobody can read either");
    }
    ending = &row;
  }
}

/// Refuses options that belong to the program's other task.
void check(const Options& options) {
  if (options.out.empty() && options.exportTo.empty()) {
    throw UsageError("--out or --export is missing");
  }
  if (!options.out.empty() && !options.exportTo.empty()) {
    throw UsageError("--out and --export exclude each other");
  }
  if (options.member && options.exportTo.empty()) {
    throw UsageError("--member belongs to --export");
  }
  if (options.offset && options.exportTo.empty()) {
    throw UsageError("--offset belongs to --export");
  }
  if (options.units && options.exportTo.empty()) {
    throw UsageError("--units belongs to --export");
  }
  if (options.asImported && options.out.empty()) {
    throw UsageError("--as-imported belongs to --out");
  }
  checkFlaws(options);
}

}  // namespace

Options parsedOptions(std::span<const std::string_view> arguments) {
  Options options;
  bool allFlaws = false;
  while (!arguments.empty()) {
    const std::string_view option = arguments.front();
    if (option == "-h" || option == "--help") {
      options.help = true;
      return options;
    }
    if (option == "--as-imported") {
      options.asImported = true;
      arguments = arguments.subspan(1);
      continue;
    }
    if (!takesValue(option)) throw UsageError("unknown argument: " + std::string(option));
    if (arguments.size() < 2) throw UsageError(std::string(option) + " wants a value");
    if (option == "--flaw" && arguments[1] == "list") {
      options.listFlaws = true;
      return options;
    }
    if (option == "--flaw" && arguments[1] == "all") {
      allFlaws = true;
    } else {
      set(options, option, arguments[1]);
    }
    arguments = arguments.subspan(2);
  }
  if (allFlaws) options.flaws.merge(Flaws::readable(options.exportsArchive()));
  check(options);
  return options;
}
