// A database that someone else keeps for himself.

#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

constexpr int shortPatienceMilliseconds = 20;

TEST(LockedFile, IsRefusedWhenPatienceEndsAndReadAgainLater) {
  DamagedHousehold household;
  Database owner = household.ann().writer();
  owner.exec("BEGIN EXCLUSIVE");

  const DamagedHousehold::Replies meanwhile = household.asked(shortPatienceMilliseconds);
  owner.exec("COMMIT");

  expectRefused(meanwhile, "prepare 失败:database is locked");
  EXPECT_EQ(household.asked(shortPatienceMilliseconds), DamagedHousehold::wholeReplies());
}

TEST(LockedFile, IsRefusedWhileAWriterKeepsTheLogToItself) {
  DamagedHousehold household;
  DamagedHousehold::Replies meanwhile;
  {
    Database owner = household.ann().writer();
    owner.exec("PRAGMA locking_mode=EXCLUSIVE; PRAGMA journal_mode=WAL; BEGIN IMMEDIATE");
    meanwhile = household.asked(shortPatienceMilliseconds);
  }

  expectRefused(meanwhile, "prepare 失败:database is locked");
  EXPECT_EQ(household.asked(shortPatienceMilliseconds), DamagedHousehold::wholeReplies());
}

TEST(LockedFile, KeepsNoReaderOutWhileItIsWrittenToALog) {
  DamagedHousehold household;
  Database owner = household.ann().writer();
  owner.exec("PRAGMA journal_mode=WAL; BEGIN EXCLUSIVE; DELETE FROM records");

  const DamagedHousehold::Replies meanwhile = household.asked(shortPatienceMilliseconds);
  owner.exec("ROLLBACK");

  EXPECT_EQ(meanwhile, DamagedHousehold::wholeReplies());
}

/// A call that is under way holds one state of the file, and a writer goes on beside it.
TEST(LockedFile, IsNotLockedByACall) {
  DamagedHousehold household;
  household.ann().run("PRAGMA journal_mode=WAL");
  const HealthStore call = household.ann().open();
  const std::int64_t before = call.coverage().records;

  Database writer(household.ann().path(),
                  {.create = false, .readOnly = false, .patienceMilliseconds = 0});
  writer.exec("BEGIN IMMEDIATE; DELETE FROM records WHERE rowid <= 10; COMMIT");

  EXPECT_EQ(call.coverage().records, before);
  EXPECT_EQ(household.ann().open().coverage().records, before - 10);
}

}  // namespace
