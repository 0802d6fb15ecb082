#pragma once
// A sample household that was really written, and questions to its databases.

#include "platform/Logger.h"
#include "sample/household/Household.h"
#include "store/Database.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

/// The day on which the tests' histories end.
inline constexpr CivilDay sampleDay = std::chrono::year{2026} / 11 / 20;

/// SQL for the moment of the stamp in `column`, in seconds since 1970 UTC.
inline std::string momentSQL(const std::string& column) {
  return "unixepoch(substr(" + column + ", 1, 19) || substr(" + column +
         ", 21, 3) || ':' || substr(" + column + ", 24))";
}

/// A household in a folder of its own, as the program writes it.
class WrittenHousehold {
public:
  explicit WrittenHousehold(Options options, CivilDay day = sampleDay)
      : quiet(std::nullopt, Logger::Level::error, false, [] { return 0.0; }) {
    options.out = folder / "root";
    std::ostringstream unseen;
    Progress progress(unseen, false, [] { return 0.0; });
    writeHousehold(options, day, report, progress);
  }

  std::string database(const std::string& id) const {
    return (folder / "root/members" / id / "health.db").string();
  }

  /// The first column of the rows that `sql` finds in a member's database.
  std::vector<std::string> texts(const std::string& id, const std::string& sql) const {
    return Database(database(id), {}).prepare(sql).readAll([](const Row& row) {
      return row.text(0);
    });
  }

  TemporaryFolder folder;
  Logger quiet;
  std::ostringstream report;
};
