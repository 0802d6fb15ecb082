// Imports that are killed at any moment: the database is as before or complete, and the next import
// completes what is not.

#include "apps/import/DatabaseContents.h"
#include "apps/import/ImportHarness.h"
#include "support/TestDatabase.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <thread>

namespace {

using nlohmann::json;

/// In a fresh copy of the data root each. The cache is so small that pages are on the disk long
/// before the commit, as they are when an export is larger than the usual cache.
class KilledImport : public Import {
protected:
  KilledImport() {
    folder.write("short.xml", exportText(100));
    folder.write("long.xml", exportText(records, "2024-06-02 08:00:00 +0800"));
  }

  std::filesystem::path database() const { return root() / "members/ann/health.db"; }

  /// The roster; null when there is none.
  json rosterOrNull() const {
    return std::filesystem::exists(root() / "members.json") ? roster() : json();
  }

  void reset(const std::string& from) const {
    std::filesystem::remove_all(root());
    if (std::filesystem::exists(folder / from)) {
      std::filesystem::copy(folder / from, root(), std::filesystem::copy_options::recursive);
    }
  }

  void bringIn(const std::string& source) const {
    std::ostringstream unseen;
    runImport({.dataRoot = root(), .name = "Ann", .id = "ann", .source = folder / source},
              {.progress = unseen,
               .progressKind = Importer::Progress::Kind::log,
               .lang = SummaryLang::en,
               .clock = [] { return now; },
               .timeZone = "Asia/Shanghai",
               .cacheKibibytes = 40});
  }

  /// Imports the long export to its end and takes the time.
  void complete() {
    const auto began = std::chrono::steady_clock::now();
    bringIn("long.xml");
    whole = std::chrono::steady_clock::now() - began;
  }

  /// Lets a process import the long export and kills it after a random part of the usual time;
  /// whether it was still at work.
  bool killed() {
    const pid_t child = fork();
    if (child == 0) {
      bringIn("long.xml");
      _exit(0);
    }
    // The moment is what this is about, and only time leads to every one of them.
    std::this_thread::sleep_for(whole * std::uniform_real_distribution(0.0, 1.1)(random));
    kill(child, SIGKILL);
    int state = 0;
    waitpid(child, &state, 0);
    return WIFSIGNALED(state);
  }

  /// Whether a killed writer left something beside the database, in the file of that suffix, which
  /// SQLite has to undo or forget.
  bool hasLeftovers(const std::string& suffix) const {
    std::error_code missing;
    const auto size = std::filesystem::file_size(database().string() + suffix, missing);
    return !missing && size > 0;
  }

  /// Counts the attempt, whose database held `leftovers` and now holds the data of before or after.
  void count(bool wasKilled, bool leftovers, bool complete) {
    if (wasKilled && !complete) ++beforeCommit;
    if (wasKilled && !complete && leftovers) ++inTransaction;
    if (complete) ++afterCommit;
  }

  /// The moments must have been the ones that matter.
  void expectMomentsThatMatter() const {
    std::cout << attempts << " kills: " << beforeCommit << " before the commit, " << inTransaction
              << " of them with pages on the disk, " << afterCommit << " after it\n";
    EXPECT_GT(beforeCommit, 0);
    EXPECT_GT(inTransaction, 0);
  }

  static constexpr int records = 2500;
  static constexpr int attempts = 25;
  std::chrono::duration<double> whole{};
  std::mt19937 random{std::random_device{}()};
  int beforeCommit = 0;
  int inTransaction = 0;
  int afterCommit = 0;
};

TEST_F(KilledImport, LeavesAMemberAsBeforeOrComplete) {
  bringIn("short.xml");
  std::filesystem::rename(root(), folder / "start");
  json start = json::parse(fileContents(folder / "start/members.json").value());
  // The roster names the copy that is imported into, which lies where the first did.
  ASSERT_EQ(start["members"][0]["dbPath"], database().string());
  reset("start");
  const std::string before = databaseContents(database());
  complete();
  const std::string after = databaseContents(database());
  const json rosterAfter = roster();
  ASSERT_NE(before, after);

  for (int attempt = 0; attempt < attempts; ++attempt) {
    reset("start");
    const bool wasKilled = killed();
    const bool leftovers = hasLeftovers("-wal");
    const std::string contents = databaseContents(database());
    EXPECT_TRUE(contents == before || contents == after) << "neither state, attempt " << attempt;
    EXPECT_TRUE(roster() == start || (roster() == rosterAfter && contents == after));
    count(wasKilled, leftovers, contents == after);
    if (attempt % 5 != 0) continue;
    complete();
    EXPECT_EQ(databaseContents(database()), after);
    EXPECT_EQ(roster(), rosterAfter);
  }
  expectMomentsThatMatter();
}

TEST_F(KilledImport, LeavesNoNewMemberOrACompleteOne) {
  const std::string empty = databaseContents(TestDatabase().path());
  complete();
  const std::string after = databaseContents(database());

  for (int attempt = 0; attempt < attempts; ++attempt) {
    reset("nothing");
    const bool wasKilled = killed();
    const bool leftovers = hasLeftovers("-journal");
    const std::string contents = databaseContents(database());
    EXPECT_TRUE(contents.empty() || contents == empty || contents == after)
        << "neither state, attempt " << attempt;
    EXPECT_TRUE(rosterOrNull().is_null() || contents == after);
    count(wasKilled, leftovers, contents == after);
    if (attempt % 5 != 0) continue;
    complete();
    EXPECT_EQ(databaseContents(database()), after);
    EXPECT_EQ(roster()["members"].size(), 1U);
  }
  expectMomentsThatMatter();
}

}  // namespace
