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
  std::filesystem::path out;  ///< the data root to be made
  std::filesystem::path exportTo =
      {};  ///< or the export; one of the two is set unless only a text is wanted
  std::optional<std::string> member = {};  ///< who exports, by name or identifier; Ann when absent
  std::optional<int> offset = {};  ///< of an export, seconds east of UTC; the home's when absent
  std::optional<UnitSystem> units = {};  ///< of an export; metric when absent
  FlawSet flaws = {};                    ///< of an export; at most one that is not readable
  int members = 3;
  int years = 3;
  std::optional<std::int64_t> records;  ///< of Ann or who exports, about; natural when absent
  std::uint64_t seed = 1;
  std::optional<CivilDay> today;  ///< the machine's day when absent
  bool asImported = false;        ///< the data root is as imports of the exports leave it
  bool help = false;              ///< nothing but the usage is wanted
  bool listFlaws = false;         ///< nothing but the list of flaws is wanted

  /// Whether the export is to be an archive.
  bool exportsArchive() const { return exportTo.extension() == ".zip"; }

  bool operator==(const Options&) const = default;
};

/// The command line cannot be understood. `what()` says why, in one line.
class UsageError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The options that `arguments` (without the program's name) spell. The last of a repeated option
/// wins, but for flaws, which add up; arguments after "--help" and "--flaw list" are not looked at.
/// Throws UsageError for an unknown option, a missing or unusable value, options that do not go
/// together, or when both "--out" and "--export" are missing.
Options parsedOptions(std::span<const std::string_view> arguments);

/// How to call the program, several lines, ending in a line feed.
extern const std::string_view usage;
