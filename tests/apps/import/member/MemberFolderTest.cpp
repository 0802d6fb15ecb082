#include "import/Failure.h"
#include "import/member/Lock.h"
#include "import/member/MemberFolder.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>

namespace {

std::string fixedID() { return "new-id"; }

TEST(MemberFolder, IsMadeForAnIDOfItsOwn) {
  const TemporaryFolder root;

  const MemberFolder folder(root.path(), "Ann", std::nullopt, {}, fixedID);

  EXPECT_EQ(folder.id(), "new-id");
  EXPECT_EQ(folder.database(), root / "members/new-id/health.db");
  EXPECT_TRUE(std::filesystem::is_directory(root / "members/new-id"));
}

TEST(MemberFolder, IsMadeForTheIDThatIsGiven) {
  const TemporaryFolder root;

  EXPECT_EQ(MemberFolder(root.path(), "Ann", "ann", {}, fixedID).id(), "ann");
}

TEST(MemberFolder, OfAnUnfinishedImportIsTakenUpByTheNextOfThatName) {
  const TemporaryFolder root;
  const MemberFolder killed(root.path(), "Ann", "first", {}, fixedID);
  root.write("members/first/health.db", "data");

  const MemberFolder next(root.path(), "Ann", std::nullopt, {}, fixedID);
  const MemberFolder byID(root.path(), "Ann", "first", {}, fixedID);

  EXPECT_EQ(next.id(), "first");
  EXPECT_EQ(byID.id(), "first");
}

TEST(MemberFolder, OfAnUnfinishedImportIsNotForAnotherName) {
  const TemporaryFolder root;
  const MemberFolder killed(root.path(), "Ann", "first", {}, fixedID);

  EXPECT_EQ(MemberFolder(root.path(), "Ben", std::nullopt, {}, fixedID).id(), "new-id");
}

TEST(MemberFolder, WithADatabaseOfAnotherNamesUnfinishedImportIsRefused) {
  const TemporaryFolder root;
  const MemberFolder killed(root.path(), "Ann", "fam", {}, fixedID);
  root.write("members/fam/health.db", "Ann's");

  try {
    const MemberFolder next(root.path(), "Ben", "fam", {}, fixedID);
    ADD_FAILURE() << "Ben got Ann's database";
  } catch (const Failure& error) {
    EXPECT_EQ(error.text(SummaryLang::en),
              (root / "members/fam").string() +
                  " holds an unfinished import of Ann's; complete it with an import under that "
                  "name, or choose another --id for Ben, or the data of two people would mix");
  }
  EXPECT_EQ(MemberFolder(root.path(), "Ann", "fam", {}, fixedID).id(), "fam");
}

TEST(MemberFolder, WithoutADatabaseIsForAnyName) {
  const TemporaryFolder root;
  const MemberFolder killed(root.path(), "Ann", "fam", {}, fixedID);

  const MemberFolder next(root.path(), "Ben", "fam", {}, fixedID);
  root.write("members/fam/health.db", "Ben's");

  EXPECT_EQ(MemberFolder(root.path(), "Ben", std::nullopt, {}, fixedID).id(), "fam");
}

TEST(MemberFolder, LosesItsNoteOnceTheRosterNamesIt) {
  const TemporaryFolder root;
  root.write("members/ann/import-unfinished", "Ann");
  root.write("members/ben/import-unfinished", "Ben");

  removeObsoleteNotes(root.path(), {"ann", "carl", "../members/ben"});

  EXPECT_FALSE(std::filesystem::exists(root / "members/ann/import-unfinished"));
  EXPECT_TRUE(std::filesystem::exists(root / "members/ben/import-unfinished"));
}

TEST(MemberFolder, ThatTheRosterNamesIsNotTakenUp) {
  const TemporaryFolder root;
  const MemberFolder killedAfterTheRoster(root.path(), "Ann", "first", {}, fixedID);

  EXPECT_EQ(MemberFolder(root.path(), "Ann", std::nullopt, {"first"}, fixedID).id(), "new-id");
}

TEST(MemberFolder, ThatIsFinishedIsNotTakenUp) {
  const TemporaryFolder root;
  MemberFolder(root.path(), "Ann", "first", {}, fixedID).finish();

  EXPECT_EQ(MemberFolder(root.path(), "Ann", std::nullopt, {}, fixedID).id(), "new-id");
}

TEST(MemberFolder, WithADatabaseThatNobodyLeftUnfinishedIsRefused) {
  const TemporaryFolder root;
  root.write("members/old/health.db", "somebody's");

  EXPECT_THROW(MemberFolder(root.path(), "Ann", "old", {}, fixedID), Failure);
}

TEST(MemberFolder, GoesWithTheImportThatMadeItAndFailed) {
  const TemporaryFolder root;
  {
    const MemberFolder failing(root.path(), "Ann", "ann", {}, fixedID);
    root.write("members/ann/health.db", "half");
  }

  EXPECT_TRUE(std::filesystem::is_empty(root.path()));
}

TEST(MemberFolder, StaysWithItsNoteOnceItsDataIsCommitted) {
  const TemporaryFolder root;
  {
    MemberFolder folder(root.path(), "Ann", "ann", {}, fixedID);
    root.write("members/ann/health.db", "complete");
    folder.keep();
  }

  EXPECT_TRUE(std::filesystem::exists(root / "members/ann/health.db"));
  EXPECT_EQ(MemberFolder(root.path(), "Ann", std::nullopt, {}, fixedID).id(), "ann");
}

TEST(MemberFolder, StaysWhenAnImportFailsThatOnlyTookItUp) {
  const TemporaryFolder root;
  const MemberFolder killed(root.path(), "Ann", "ann", {}, fixedID);
  root.write("members/ann/health.db", "complete");
  { const MemberFolder next(root.path(), "Ann", std::nullopt, {}, fixedID); }

  EXPECT_TRUE(std::filesystem::exists(root / "members/ann/health.db"));
}

TEST(RandomID, LooksLikeItsKindAndDiffers) {
  const std::string first = randomID();

  EXPECT_THAT(first,
              testing::MatchesRegex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-"
                                    "[0-9a-f]{12}"));
  EXPECT_NE(first, randomID());
}

TEST(Lock, IsHadByOneAtATime) {
  const TemporaryFolder root;
  {
    const Lock first(root.path());
    try {
      const Lock second(root.path());
      ADD_FAILURE() << "two have it";
    } catch (const Failure& error) {
      EXPECT_EQ(error.text(SummaryLang::en),
                "another import is running; try again when it has ended");
    }
  }
  EXPECT_NO_THROW(Lock(root.path()));
}

TEST(Lock, LeavesNothingThatItMadeUnlessItIsToKeepIt) {
  const TemporaryFolder root;
  { const Lock lock(root / "a/b"); }
  EXPECT_FALSE(std::filesystem::exists(root / "a"));

  {
    Lock lock(root / "a/b");
    lock.keep();
  }
  EXPECT_TRUE(std::filesystem::exists(root / "a/b/import.lock"));

  { const Lock lock(root / "a/b"); }
  EXPECT_TRUE(std::filesystem::exists(root / "a/b/import.lock"));
}

TEST(Lock, OfAnotherImportIsLeftToIt) {
  const TemporaryFolder root;
  {
    const Lock first(root.path());
    EXPECT_THROW(Lock(root.path()), Failure);
    EXPECT_TRUE(std::filesystem::exists(root / "import.lock"));
    EXPECT_THROW(Lock(root.path()), Failure);
  }
  EXPECT_FALSE(std::filesystem::exists(root / "import.lock"));
}

/// Takes the lock and gives it up again, many times; returns how often two had it at once.
int collisions(const std::filesystem::path& root, int times) {
  int count = 0;
  for (int time = 0; time < times; ++time) {
    try {
      const Lock lock(root);
      // Whoever makes this file is alone as long as the lock is.
      if (!std::filesystem::create_directory(root / "held")) ++count;
      std::filesystem::remove(root / "held");
    } catch (const Failure&) {
    }
  }
  return count;
}

TEST(Lock, IsNeverHadByTwoThoughEachRemovesTheFile) {
  const TemporaryFolder folder;
  constexpr int times = 300;

  std::future<int> other =
      std::async(std::launch::async, [&] { return collisions(folder / "root", times); });
  const int mine = collisions(folder / "root", times);

  EXPECT_EQ(mine + other.get(), 0);
}

TEST(Lock, FailsWhereItsFileCannotBe) {
  const TemporaryFolder root;
  root.write("import.lock/occupied", "");

  EXPECT_THROW(Lock(root.path()), std::filesystem::filesystem_error);
}

}  // namespace
