// The built program from outside: its exit statuses, what it says, and what remains when it dies.

#include "DatabaseContents.h"
#include "ExportText.h"
#include "import/ImportLock.h"
#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ImportProgram : public testing::Test {
protected:
  ChildProcess::Ending run(const std::vector<std::string>& arguments) const {
    return ChildProcess(LARKSPUR_IMPORT_PROGRAM, arguments, folder.path()).finished();
  }

  std::vector<std::string> importing(const std::string& source) const {
    return {"--data-root", "root", "--member", "Ann", "--id", "ann", source};
  }

  std::filesystem::path database() const { return folder / "root/members/ann/health.db"; }

  /// The roster; null when there is none.
  nlohmann::json roster() const {
    const std::optional<std::string> text = fileContents(folder / "root/members.json");
    return text ? nlohmann::json::parse(*text) : nlohmann::json();
  }

  TemporaryFolder folder;
  EnvironmentGuard english{{"LANGUAGE", std::nullopt}, {"LC_ALL", "en_US.UTF-8"}};
};

TEST_F(ImportProgram, ReportsOnStandardOutputAndIsQuietOtherwise) {
  folder.write("export.xml", exportText(300));

  const ChildProcess::Ending ending = run(importing("export.xml"));

  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output, StartsWith("export.xml -> Ann (new member, id ann)\n"));
  EXPECT_THAT(ending.output, HasSubstr("  records: 300, 300 of them new\n"));
  EXPECT_EQ(ending.errors, "");
}

TEST_F(ImportProgram, SaysThatNothingIsNew) {
  folder.write("export.xml", exportText(300));
  run(importing("export.xml"));

  const ChildProcess::Ending ending = run(importing("export.xml"));

  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output, testing::EndsWith("Nothing new: the data is as it was.\n"));
}

TEST_F(ImportProgram, SpeaksTheMachinesLanguage) {
  const EnvironmentGuard chinese{{"LC_ALL", "zh_CN.UTF-8"}};
  folder.write("export.xml", exportText(3));

  const ChildProcess::Ending good = run(importing("export.xml"));
  const ChildProcess::Ending bad = run(importing("missing.xml"));
  const ChildProcess::Ending misused = run({"--frobnicate"});

  EXPECT_THAT(good.output, HasSubstr("  记录:3 条,其中新增 3\n"));
  EXPECT_THAT(bad.errors, testing::ContainsRegex("larkspur-import: .*[^ -~]"));
  EXPECT_THAT(misused.errors, StartsWith("larkspur-import: 不认识的参数:--frobnicate\n"));
}

TEST_F(ImportProgram, EndsWithOneWhenItFails) {
  const ChildProcess::Ending ending = run(importing("missing.xml"));

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.output, "");
  EXPECT_THAT(ending.errors, StartsWith("larkspur-import: "));
}

TEST_F(ImportProgram, EndsWithTwoWhenMisused) {
  const ChildProcess::Ending ending = run({"export.xml"});

  EXPECT_EQ(ending.status, 2);
  EXPECT_EQ(ending.output, "");
  EXPECT_THAT(ending.errors, StartsWith("larkspur-import: --member is missing\n\n"));
}

TEST_F(ImportProgram, TakesTheServersDataRootByDefault) {
  const EnvironmentGuard home{{"HOME", folder.path().string()}};
  folder.write("export.xml", exportText(3));

  EXPECT_EQ(run({"--member", "Ann", "export.xml"}).status, 0);

  EXPECT_TRUE(
      std::filesystem::exists(folder / "Library/Application Support/Larkspur/members.json"));
}

TEST_F(ImportProgram, MakesEverythingItsOwnersAlone) {
  folder.write("export.xml", exportText(3));

  run(importing("export.xml"));

  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(folder / "root").permissions(), perms::owner_all);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder / "root")) {
    EXPECT_EQ(entry.status().permissions() & (perms::group_all | perms::others_all), perms::none)
        << entry.path();
  }
}

TEST_F(ImportProgram, WaitsForNoOtherImport) {
  folder.write("export.xml", exportText(3));
  std::filesystem::create_directory(folder / "root");
  const ImportLock other(folder / "root");

  const ChildProcess::Ending ending = run(importing("export.xml"));

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.errors,
            "larkspur-import: another import is running; try again when it has ended\n");
  EXPECT_FALSE(std::filesystem::exists(folder / "root/members"));
}

TEST_F(ImportProgram, LeavesEverythingAsItWasWhenTheDiskTakesNoMore) {
  folder.write("short.xml", exportText(100));
  folder.write("long.xml", exportText(6000));
  run(importing("short.xml"));
  const std::string before = databaseContents(database());
  const nlohmann::json rosterBefore = roster();

  // No file may grow beyond 512 blocks of 512 bytes; as on a full disk, writing fails.
  const ChildProcess::Ending ending =
      ChildProcess("/bin/sh",
                   {"-c",
                    "ulimit -f 512; trap '' XFSZ; exec \"$0\" \"$@\"",
                    LARKSPUR_IMPORT_PROGRAM,
                    "--data-root",
                    "root",
                    "--member",
                    "Ann",
                    "long.xml"},
                   folder.path())
          .finished();

  EXPECT_EQ(ending.status, 1);
  EXPECT_THAT(ending.errors, HasSubstr("the whole import was undone"));
  EXPECT_EQ(databaseContents(database()), before);
  EXPECT_EQ(roster(), rosterBefore);
}

/// Kills real runs at any moment, in a fresh copy of the data root each.
class KilledImport : public ImportProgram {
protected:
  KilledImport() {
    folder.write("short.xml", exportText(100));
    folder.write("long.xml", exportText(800, "2024-06-02 08:00:00 +0800"));
  }

  void reset(const std::string& from) const {
    std::filesystem::remove_all(folder / "root");
    if (std::filesystem::exists(folder / from)) {
      std::filesystem::copy(
          folder / from, folder / "root", std::filesystem::copy_options::recursive);
    }
  }

  /// Starts the import of the long export and kills it after a random part of `whole`.
  void kill(std::chrono::duration<double> whole) {
    const ChildProcess process(LARKSPUR_IMPORT_PROGRAM, importing("long.xml"), folder.path());
    // The moment is what this is about, and only time leads to every one of them.
    std::this_thread::sleep_for(whole * std::uniform_real_distribution(0.0, 1.1)(random));
  }

  /// How long a run takes that nobody kills, and what it leaves.
  std::chrono::duration<double> complete() const {
    const auto began = std::chrono::steady_clock::now();
    const ChildProcess::Ending ending = run(importing("long.xml"));
    EXPECT_EQ(ending.status, 0) << ending.errors;
    return std::chrono::steady_clock::now() - began;
  }

  std::mt19937 random{std::random_device{}()};
};

TEST_F(KilledImport, LeavesAMemberAsBeforeOrComplete) {
  run(importing("short.xml"));
  std::filesystem::rename(folder / "root", folder / "start");
  reset("start");
  const std::string before = databaseContents(database());
  const nlohmann::json rosterBefore = roster();
  const auto whole = complete();
  const std::string after = databaseContents(database());
  const nlohmann::json rosterAfter = roster();
  ASSERT_NE(before, after);

  for (int attempt = 0; attempt < 25; ++attempt) {
    reset("start");
    kill(whole);
    const std::string contents = databaseContents(database());
    EXPECT_TRUE(contents == before || contents == after) << "neither state, attempt " << attempt;
    EXPECT_TRUE(roster() == rosterBefore || (roster() == rosterAfter && contents == after));
    if (attempt % 5 != 0) continue;
    complete();
    EXPECT_EQ(databaseContents(database()), after);
    EXPECT_EQ(roster(), rosterAfter);
  }
}

TEST_F(KilledImport, LeavesNoNewMemberOrACompleteOne) {
  const auto whole = complete();
  const std::string after = databaseContents(database());

  for (int attempt = 0; attempt < 25; ++attempt) {
    reset("nothing");
    kill(whole);
    const std::string contents = databaseContents(database());
    EXPECT_TRUE(contents.empty() || contents == after) << "neither state, attempt " << attempt;
    EXPECT_TRUE(roster().is_null() || contents == after);
    if (attempt % 5 != 0) continue;
    complete();
    EXPECT_EQ(databaseContents(database()), after);
    EXPECT_EQ(roster()["members"].size(), 1U);
  }
}

}  // namespace
