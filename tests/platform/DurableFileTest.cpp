#include "platform/DurableFile.h"
#include "platform/Files.h"
#include "support/FileSizeGuard.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace {

using std::filesystem::perms;

perms permissionsOf(const std::filesystem::path& path) {
  return std::filesystem::status(path).permissions();
}

TEST(DurableFile, IsItsOwnersAloneWhenNew) {
  const TemporaryFolder folder;

  replaceDurably(folder / "file", "contents");

  EXPECT_EQ(fileContents(folder / "file"), "contents");
  EXPECT_EQ(permissionsOf(folder / "file"), perms::owner_read | perms::owner_write);
}

TEST(DurableFile, KeepsTheModeOfWhatItReplaces) {
  const TemporaryFolder folder;
  const perms mode = perms::owner_read | perms::owner_write | perms::group_read;
  std::filesystem::permissions(folder.write("file", "old"), mode);

  replaceDurably(folder / "file", "new");

  EXPECT_EQ(fileContents(folder / "file"), "new");
  EXPECT_EQ(permissionsOf(folder / "file"), mode);
}

TEST(DurableFile, ReplacesWhatALinkLeadsTo) {
  const TemporaryFolder folder;
  folder.write("elsewhere/file", "old");
  std::filesystem::create_symlink("elsewhere/file", folder / "link");

  replaceDurably(folder / "link", "new");

  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  EXPECT_EQ(fileContents(folder / "elsewhere/file"), "new");
}

TEST(DurableFile, RemovesWhatAKilledWriterLeft) {
  const TemporaryFolder folder;
  folder.write("file.new", "half of some");

  replaceDurably(folder / "file", "contents");

  EXPECT_EQ(fileContents(folder / "file"), "contents");
  EXPECT_FALSE(std::filesystem::exists(folder / "file.new"));
}

TEST(DurableFile, KeepsTheOldContentsOnAFullDisk) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.write("file", "old");
  std::error_code failure;
  {
    const FileSizeGuard full(512);
    try {
      replaceDurably(path, std::string(1000, 'a'));
    } catch (const std::filesystem::filesystem_error& error) {
      failure = error.code();
    }
  }

  EXPECT_EQ(failure, std::errc::file_too_large);
  EXPECT_EQ(fileContents(path), "old");
  EXPECT_FALSE(std::filesystem::exists(folder / "file.new"));
}

TEST(DurableFile, FailsWhereThereIsNoFolder) {
  const TemporaryFolder folder;

  EXPECT_THROW(replaceDurably(folder / "missing/file", ""), std::filesystem::filesystem_error);
  EXPECT_THROW(syncFolder(folder / "missing"), std::filesystem::filesystem_error);
}

}  // namespace
