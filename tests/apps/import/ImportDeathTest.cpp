// Death in the middle of the one transaction, with pages written early.

#include "apps/import/DatabaseContents.h"
#include "apps/import/WriterHarness.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {

struct DeathCase {
  std::string name;
  bool inUse;      ///< the database keeps its write-ahead log
  int lastRecord;  ///< with which the process dies; a new page every few records
};

class ImportDeath : public testing::TestWithParam<DeathCase> {};

/// Imports records until the process kills itself with the last. Never returns.
[[noreturn]] void importAndDie(const std::string& path, const DeathCase& death) {
  Database connection(path, {.create = false, .readOnly = false});
  Writer writer(connection, {.inUse = death.inUse, .cacheKibibytes = 40});
  for (int number = 0; number <= death.lastRecord; ++number) {
    // Their order scatters them over all pages, those of the old records too.
    const std::string value = std::to_string(number * 7919 % 10007) + std::string(300, '7');
    ExportedRecord record = stepRecord();
    record.value = value;
    writer.add(record);
  }
  std::raise(SIGKILL);
  _exit(1);
}

TEST_P(ImportDeath, InTheMiddleLeavesTheDatabaseAsItWas) {
  const TestDatabase database;
  imported(database, [](Writer& writer) {
    for (int number = 0; number < 500; ++number) {
      const std::string value = std::to_string(number * 20) + std::string(300, '5');
      ExportedRecord record = stepRecord();
      record.value = value;
      writer.add(record);
    }
  });
  const std::string before = databaseContents(database.path());
  const auto size = std::filesystem::file_size(database.path());

  const pid_t child = fork();
  if (child == 0) importAndDie(database.path(), GetParam());
  int state = 0;
  waitpid(child, &state, 0);

  ASSERT_TRUE(WIFSIGNALED(state) && WTERMSIG(state) == SIGKILL);
  const std::string written = database.path() + (GetParam().inUse ? "-wal" : "");
  EXPECT_GT(std::filesystem::file_size(written), size) << "nothing was written early";
  EXPECT_EQ(databaseContents(database.path()), before);
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportDeath,
                         testing::Values(DeathCase{"EarlyWithALog", true, 900},
                                         DeathCase{"LateWithALog", true, 5000},
                                         DeathCase{"EarlyWithAJournal", false, 900},
                                         DeathCase{"LateWithAJournal", false, 5000}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
