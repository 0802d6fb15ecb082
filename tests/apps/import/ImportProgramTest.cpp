// The built program from outside: its exit statuses and what it says.

#include "apps/import/DatabaseContents.h"
#include "apps/import/ExportText.h"
#include "import/member/Lock.h"
#include "platform/Files.h"
#include "platform/Text.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <string>
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
  EnvironmentGuard english{
      {"LANGUAGE", std::nullopt}, {"LC_ALL", "en_US.UTF-8"}, {"TZ", "Asia/Shanghai"}};
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

  EXPECT_THAT(good.output, HasSubstr("  记录：3 条，其中新增 3\n"));
  EXPECT_EQ(bad.errors, "larkspur-import: 没有这个文件或文件夹：missing.xml\n");
  EXPECT_THAT(misused.errors, StartsWith("larkspur-import: 不认识的参数：--frobnicate\n"));
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
  const Lock other(folder / "root");

  const ChildProcess::Ending ending = run(importing("export.xml"));

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.errors,
            "larkspur-import: another import is running; try again when it has ended\n");
  EXPECT_FALSE(std::filesystem::exists(folder / "root/members"));
}

TEST_F(ImportProgram, LeavesEverythingAsItWasWhenAFileMayNotGrow) {
  folder.write("short.xml", exportText(100));
  folder.write("long.xml", exportText(6000));
  run(importing("short.xml"));
  const std::string before = databaseContents(database());
  const nlohmann::json rosterBefore = roster();

  // No file may grow beyond 512 blocks of 512 bytes.
  const ChildProcess::Ending ending = ChildProcess("/bin/sh",
                                                   {"-c",
                                                    "ulimit -f 512; exec \"$0\" \"$@\"",
                                                    LARKSPUR_IMPORT_PROGRAM,
                                                    "--data-root",
                                                    "root",
                                                    "--member",
                                                    "Ann",
                                                    "long.xml"},
                                                   folder.path())
                                          .finished();

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.errors,
            "larkspur-import: the database's file cannot grow: the file system or \"ulimit -f\" "
            "limits the size of a file; the whole import was undone\n");
  EXPECT_EQ(databaseContents(database()), before);
  EXPECT_EQ(roster(), rosterBefore);
}

TEST_F(ImportProgram, SaysThatItIsCompleteWhenOnlyTheReportIsLost) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "nothing here refuses every write";
  folder.write("export.xml", exportText(3));

  const ChildProcess::Ending ending =
      ChildProcess("/bin/sh",
                   {"-c",
                    "exec \"$0\" --data-root root --member Ann --id ann export.xml > /dev/full",
                    LARKSPUR_IMPORT_PROGRAM},
                   folder.path())
          .finished();

  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(ending.errors,
            "larkspur-import: the import is complete, but its report cannot be written: No space "
            "left on device\n");
  EXPECT_EQ(roster()["members"].size(), 1U);
}

TEST_F(ImportProgram, IsCompleteWhenNobodyReadsItsReport) {
  folder.write("export.xml", exportText(300));

  ChildProcess program(LARKSPUR_IMPORT_PROGRAM, importing("export.xml"), folder.path());
  program.stopReadingOutput();
  const ChildProcess::Ending ending = program.finished();

  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(ending.errors,
            "larkspur-import: the import is complete, but its report cannot be written: Broken "
            "pipe\n");
  EXPECT_EQ(roster()["members"].size(), 1U);
}

/// Something that the system or SQLite refuses, in each language.
struct RefusalCase {
  std::string name;
  std::function<void(const TemporaryFolder&)> arrange;
  std::string english;
  std::string chinese;
};

class ImportRefusal : public ImportProgram, public testing::WithParamInterface<RefusalCase> {};

TEST_P(ImportRefusal, IsToldInTheMachinesLanguage) {
  folder.write("export.xml", exportText(3));
  GetParam().arrange(folder);

  const ChildProcess::Ending inEnglish = run(importing("export.xml"));
  const EnvironmentGuard chinese{{"LC_ALL", "zh_CN.UTF-8"}};
  const ChildProcess::Ending inChinese = run(importing("export.xml"));

  const std::string root = std::filesystem::canonical(folder.path()) / "root";
  const auto expected = [&root](const std::string& pattern) {
    return "larkspur-import: " + filled(pattern, {root}) + "\n";
  };
  EXPECT_EQ(inEnglish.errors, expected(GetParam().english));
  EXPECT_EQ(inChinese.errors, expected(GetParam().chinese));
  EXPECT_EQ(inEnglish.status, 1);
  EXPECT_EQ(inChinese.status, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ImportRefusal,
    testing::Values(
        RefusalCase{"FileInPlaceOfTheDataRoot",
                    [](const TemporaryFolder& folder) { folder.write("root", "a file"); },
                    "{0} cannot be used: Not a directory",
                    "{0} 无法使用：Not a directory"},
        RefusalCase{"FileInPlaceOfTheMembers",
                    [](const TemporaryFolder& folder) { folder.write("root/members", "a file"); },
                    "{0}/members/ann cannot be used: Not a directory",
                    "{0}/members/ann 无法使用：Not a directory"},
        RefusalCase{"DatabaseThatIsNone",
                    [](const TemporaryFolder& folder) {
                      folder.write("root/members/ann/health.db", std::string(5000, 'x'));
                      folder.write("root/members/ann/import-unfinished", "Ann");
                    },
                    "the database cannot be written, the whole import was undone: file is not a "
                    "database",
                    "数据库无法写入，这次导入已全部撤销：file is not a database"},
        RefusalCase{"FolderInPlaceOfTheDatabase",
                    [](const TemporaryFolder& folder) {
                      folder.write("root/members/ann/health.db/a", "");
                      folder.write("root/members/ann/import-unfinished", "Ann");
                    },
                    "the database cannot be opened: unable to open database file",
                    "数据库无法打开：unable to open database file"}),
    [](const auto& test) { return test.param.name; });

/// SQLite would wait for the other end of a pipe for ever.
TEST_F(ImportProgram, RefusesAPipeBesideTheDatabase) {
  folder.write("export.xml", exportText(300));
  run(importing("export.xml"));
  for (const char* ending : {"-journal", "-wal"}) {
    const std::string pipe = database().string() + ending;
    std::filesystem::remove(pipe);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

    const ChildProcess::Ending refused = run(importing("export.xml"));

    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.errors,
              "larkspur-import: " + std::filesystem::canonical(folder.path()).string() +
                  "/root/members/ann/health.db" + ending +
                  " is no regular file; move it away and try again\n");
    std::filesystem::remove(pipe);
  }
}

}  // namespace
