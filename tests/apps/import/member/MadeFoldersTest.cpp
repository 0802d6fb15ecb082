#include "import/member/MadeFolders.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(MadeFolders, GoAgainWhenNothingLiesInThem) {
  const TemporaryFolder root;
  {
    const MadeFolders folders(root / "a/b/c");

    EXPECT_TRUE(folders.madeFolder());
    EXPECT_TRUE(std::filesystem::is_directory(root / "a/b/c"));
  }
  EXPECT_FALSE(std::filesystem::exists(root / "a"));
  EXPECT_TRUE(std::filesystem::exists(root.path()));
}

TEST(MadeFolders, StayWithWhatLiesInThem) {
  const TemporaryFolder root;
  {
    const MadeFolders folders(root / "a/b/c");
    root.write("a/b/file", "");
  }
  EXPECT_TRUE(std::filesystem::exists(root / "a/b/file"));
  EXPECT_FALSE(std::filesystem::exists(root / "a/b/c"));
}

TEST(MadeFolders, StayWhenTheyWereThereBefore) {
  const TemporaryFolder root;
  std::filesystem::create_directory(root / "a");
  {
    const MadeFolders folders(root / "a/");

    EXPECT_FALSE(folders.madeFolder());
  }
  EXPECT_TRUE(std::filesystem::exists(root / "a"));
}

TEST(MadeFolders, AreNotMadeWhereAFileStands) {
  const TemporaryFolder root;
  root.write("a/file", "");

  EXPECT_THROW(MadeFolders(root / "a/file"), std::filesystem::filesystem_error);
  EXPECT_THROW(MadeFolders(root / "a/file/b/c"), std::filesystem::filesystem_error);

  EXPECT_TRUE(std::filesystem::is_regular_file(root / "a/file"));
}

}  // namespace
