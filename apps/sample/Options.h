#pragma once
// The command line of the sample household.

#include "platform/AppleFormat.h"
#include "sample/export/ExportUnits.h"
#include "sample/flaws/Flaws.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

struct Options {
  std::filesystem::path out;  ///< the new data root
  std::filesystem::path exportTo =
      {};  ///< the new export; one of the two is set unless only a text is printed
  std::optional<std::string> member = {};  ///< name or id of the exporting member; absent: Ann
  std::optional<int> offset = {};        ///< of an export, seconds east of UTC; absent: the home's
  std::optional<UnitSystem> units = {};  ///< of an export; absent: metric
  FlawSet flaws = {};                    ///< of an export; at most one unreadable flaw
  int members = 3;
  int years = 3;
  std::optional<std::int64_t> records;  ///< of Ann or the exporting member, about; absent: natural
  std::uint64_t seed = 1;
  std::optional<CivilDay> today;  ///< absent: the machine's day
  bool asImported = false;        ///< write the data root as imports of the exports would leave it
  bool help = false;              ///< only print the usage
  bool listFlaws = false;         ///< only print the list of flaws

  /// Whether the export is an archive.
  bool exportsArchive() const { return exportTo.extension() == ".zip"; }

  bool operator==(const Options&) const = default;
};

/// The command line is invalid. `what()` gives the reason in one line.
class UsageError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The options in `arguments` (without the program's name). The last of a repeated option counts,
/// except that flaws add up. Arguments after "--help" and "--flaw list" are ignored. Throws
/// UsageError for an unknown option, a missing or invalid value, incompatible options, or when both
/// "--out" and "--export" are missing.
Options parsedOptions(std::span<const std::string_view> arguments);

/// The usage of the program: several lines, the last with a line feed.
extern const std::string_view usage;
