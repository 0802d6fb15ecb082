// A write-ahead log that lost its end, its memory or its mind.

#include "platform/Files.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <random>
#include <string>

namespace {

/// A database and its log as a writer leaves them that is killed after `commits` changes, each of
/// which took the ten oldest records away.
struct KilledWriter {
  std::string database;
  std::string log;
  std::string sharedMemory;
};

constexpr int commits = 8;
constexpr int recordsAtFirst = 180;

const KilledWriter& killedWriter() {
  static const KilledWriter killed = [] {
    DamagedHousehold household;
    const std::string path = household.ann().path();
    Database writer = household.ann().writer();
    writer.exec("PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0");
    for (int commit = 1; commit <= commits; ++commit) {
      writer.exec("DELETE FROM records WHERE rowid <= " + std::to_string(10 * commit));
    }
    return KilledWriter{fileContents(path).value(),
                        fileContents(path + "-wal").value(),
                        fileContents(path + "-shm").value()};
  }();
  return killed;
}

/// Puts the killed writer's files in Ann's place, the log with these bytes.
void leave(DamagedHousehold& household, const std::string& log) {
  household.replaceAnn(killedWriter().database);
  household.ann().folder().write("health.sqlite-wal", log);
}

/// The number of commits that the answers show, from 0 to all; fails the test when it is none such.
int commitsShown(const DamagedHousehold::Replies& replies) {
  const std::string persons = textOf(replies.at("list_persons"));
  for (int commit = 0; commit <= commits; ++commit) {
    const std::string count = std::to_string(recordsAtFirst - 10 * commit);
    if (persons.starts_with("· Ann (person=ann): " + count + " records,")) return commit;
  }
  ADD_FAILURE() << "no state that ever was: " << persons;
  return -1;
}

TEST(DamagedWal, IsReadToItsEndWithoutItsSharedMemory) {
  DamagedHousehold household;
  leave(household, killedWriter().log);

  EXPECT_EQ(commitsShown(household.askedInShort()), commits);
}

/// What is in the log stays there until a writer moves it into the database.
TEST(DamagedWal, StaysAsItIsBesideItsDatabase) {
  DamagedHousehold household;
  leave(household, killedWriter().log);

  household.asked();

  const std::string path = household.ann().path();
  EXPECT_TRUE(fileContents(path) == killedWriter().database);
  EXPECT_TRUE(fileContents(path + "-wal") == killedWriter().log);
}

TEST(DamagedWal, IsReadAsFarAsItIsWhole) {
  DamagedHousehold household;
  const std::string& log = killedWriter().log;
  int last = 0;
  constexpr std::size_t cuts = 40;
  for (std::size_t size = 0; size < log.size(); size += log.size() / cuts) {
    SCOPED_TRACE(std::to_string(size) + " bytes are left");
    leave(household, log.substr(0, size));

    const int shown = commitsShown(household.askedInShort());

    EXPECT_GE(shown, last);
    last = shown;
  }
  EXPECT_GE(last, commits - 1);
}

TEST(DamagedWal, IsReadAsFarAsItIsCredible) {
  DamagedHousehold household;
  int total = 0;
  for (unsigned seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    std::string log = killedWriter().log;
    char& byte = log[random() % log.size()];
    byte = static_cast<char>(byte ^ (1 << random() % 8));
    leave(household, log);

    total += commitsShown(household.askedInShort());
  }
  EXPECT_GT(total, 0);
  EXPECT_LT(total, 40 * commits);
}

TEST(DamagedWal, MayHaveSharedMemoryThatIsNone) {
  DamagedHousehold household;
  for (unsigned seed = 0; seed < 10; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(seed);
    std::string memory(32768, '\0');
    for (char& byte : memory) byte = static_cast<char>(random());
    leave(household, killedWriter().log);
    household.ann().folder().write("health.sqlite-shm", memory);

    EXPECT_EQ(commitsShown(household.askedInShort()), commits);
  }
}

TEST(DamagedWal, MayHaveSharedMemoryThatIsCutShort) {
  DamagedHousehold household;
  const std::string& memory = killedWriter().sharedMemory;
  for (const std::size_t size : {0U, 1U, 100U, 136U, 4096U, 32000U, 32767U}) {
    SCOPED_TRACE(std::to_string(size) + " bytes are left");
    ASSERT_LT(size, memory.size());
    leave(household, killedWriter().log);
    household.ann().folder().write("health.sqlite-shm", memory.substr(0, size));

    EXPECT_EQ(commitsShown(household.askedInShort()), commits);
  }
}

}  // namespace
