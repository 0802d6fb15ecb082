// The built program with --check, from outside.

#include "apps/import/DefaultSignals.h"
#include "apps/import/ExportText.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// A home and a working folder, with an export in a third one.
class CheckProgram : public testing::Test {
protected:
  CheckProgram() { std::filesystem::create_directories(folder / "work"); }

  ChildProcess::Ending run(const std::vector<std::string>& arguments) const {
    return ChildProcess(LARKSPUR_IMPORT_PROGRAM, arguments, folder / "work").finished();
  }

  ChildProcess::Ending piped(const std::string& command) const {
    return ChildProcess("/bin/sh", {"-c", command, LARKSPUR_IMPORT_PROGRAM}, folder / "work")
        .finished();
  }

  std::string exported(const std::string& text) const {
    return folder.write("exports/export.xml", text).string();
  }

  /// Every path below the test's folder, with its size and time of change.
  std::vector<std::string> everything() const {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
      const auto changed = entry.last_write_time().time_since_epoch().count();
      const auto size = entry.is_regular_file() ? entry.file_size() : 0;
      paths.push_back(entry.path().string() + " " + std::to_string(size) + " " +
                      std::to_string(changed));
    }
    std::ranges::sort(paths);
    return paths;
  }

  TemporaryFolder folder;
  EnvironmentGuard english{{"LANGUAGE", std::nullopt},
                           {"LC_ALL", "en_US.UTF-8"},
                           {"TZ", "Asia/Shanghai"},
                           {"HOME", folder.path().string()}};
};

TEST_F(CheckProgram, PrintsACensusAndMakesNothing) {
  const std::string source = exported(exportText(300));
  const std::vector<std::string> before = everything();

  const ChildProcess::Ending ending = run({"--check", source});

  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output, StartsWith("Census of an export"));
  EXPECT_THAT(ending.output, HasSubstr("\n    HeartRate: 300 (count/min)\n"));
  EXPECT_THAT(ending.output,
              EndsWith("\nThe export can be read whole.\n"
                       "Look through the types before you pass this on.\n"));
  EXPECT_EQ(ending.errors, "");
  EXPECT_EQ(everything(), before);
}

TEST_F(CheckProgram, NeedsNoFolderThatItMayWrite) {
  const std::string source = exported(exportText(3));
  std::filesystem::permissions(folder / "work", std::filesystem::perms::owner_exec);

  const ChildProcess::Ending ending = run({"--check", source});

  std::filesystem::permissions(folder / "work", std::filesystem::perms::owner_all);
  EXPECT_EQ(ending.status, 0) << ending.errors;
}

TEST_F(CheckProgram, NeedsNoTimeZone) {
  const EnvironmentGuard nowhere{{"TZ", "Nowhere/AtAll"}, {"TZDIR", (folder / "none").string()}};

  EXPECT_EQ(run({"--check", exported(exportText(3))}).status, 0);
}

TEST_F(CheckProgram, SpeaksTheMachinesLanguage) {
  const EnvironmentGuard chinese{{"LC_ALL", "zh_CN.UTF-8"}};

  const ChildProcess::Ending ending = run({"--check", exported(exportText(3))});

  EXPECT_THAT(ending.output, StartsWith("导出文件的统计"));
  EXPECT_THAT(ending.output,
              EndsWith("\n导出文件可以完整读取。\n转发之前，请先看一遍列出的类型。\n"));
}

TEST_F(CheckProgram, TakesAPipe) {
  exported(exportText(300));

  const ChildProcess::Ending ending =
      piped("cat ../exports/export.xml | \"$0\" --check /dev/stdin");

  EXPECT_EQ(ending.status, 0) << ending.errors;
  EXPECT_THAT(ending.output, HasSubstr("\n  records: 300\n"));
}

TEST_F(CheckProgram, EndsWithOneAndAnIncompleteCensusOfBrokenXml) {
  const std::string whole = exportText(300);
  const std::string source = exported(whole.substr(0, whole.size() / 2) + "<");

  const ChildProcess::Ending ending = run({"--check", source});

  EXPECT_EQ(ending.status, 1);
  EXPECT_THAT(ending.output, StartsWith("Census of an export"));
  EXPECT_THAT(ending.output, HasSubstr("\nIncomplete: "));
  EXPECT_THAT(ending.errors, StartsWith("larkspur-import: The XML is broken in line "));
}

TEST_F(CheckProgram, EndsWithOneAndNoCensusOfWhatIsNotThere) {
  const ChildProcess::Ending ending = run({"--check", "missing.zip"});

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.output, "");
  EXPECT_EQ(ending.errors, "larkspur-import: There is no such file or folder: missing.zip\n");
}

TEST_F(CheckProgram, EndsWithOneWhenTheCensusIsLost) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "nothing here refuses every write";
  exported(exportText(3));

  const ChildProcess::Ending ending =
      piped("exec \"$0\" --check ../exports/export.xml > /dev/full");

  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.errors,
            "larkspur-import: the census cannot be written: No space left on device\n");

  const EnvironmentGuard chinese{{"LC_ALL", "zh_CN.UTF-8"}};
  EXPECT_THAT(piped("exec \"$0\" --check ../exports/export.xml > /dev/full").errors,
              StartsWith("larkspur-import: 统计结果无法写入："));
}

/// A check that is sent a signal while the export comes through a pipe, whose writer stays.
class InterruptedCheck : public CheckProgram, public testing::WithParamInterface<int> {
protected:
  DefaultSignals signals;
};

TEST_P(InterruptedCheck, EndsByTheSignalWithoutACensus) {
  mkfifo((folder / "slow.xml").c_str(), 0600);
  const std::vector<std::string> before = everything();
  ChildProcess program(
      LARKSPUR_IMPORT_PROGRAM, {"--check", (folder / "slow.xml").string()}, folder / "work");
  std::ofstream pipe(folder / "slow.xml");
  pipe << exportText(300).substr(0, 20000) << std::flush;

  program.send(GetParam());
  const ChildProcess::Ending ending = program.finished();

  EXPECT_TRUE(ending.bySignal);
  EXPECT_EQ(ending.status, 128 + GetParam());
  EXPECT_EQ(ending.output, "");
  EXPECT_EQ(ending.errors, "larkspur-import: interrupted: the export was not read whole\n");
  EXPECT_EQ(everything().size(), before.size());
}

TEST_P(InterruptedCheck, OfAFileEndsByTheSignal) {
  const std::filesystem::path source = folder.write("long.xml", "<HealthData>");
  std::filesystem::resize_file(source, 50'000'000'000);  // a hole, which takes no room

  std::string errors;
  // Until the program has taken the signals over, they are the system's business.
  for (std::chrono::milliseconds wait(50); errors.empty() && wait < std::chrono::seconds(20);
       wait *= 2) {
    ChildProcess program(LARKSPUR_IMPORT_PROGRAM, {"--check", source.string()}, folder / "work");
    std::this_thread::sleep_for(wait);
    program.send(GetParam());
    const ChildProcess::Ending ending = program.finished();
    EXPECT_EQ(ending.status, 128 + GetParam());
    EXPECT_EQ(ending.output, "");
    errors = ending.errors;
  }

  EXPECT_EQ(errors, "larkspur-import: interrupted: the export was not read whole\n");
}

INSTANTIATE_TEST_SUITE_P(Cases, InterruptedCheck, testing::Values(SIGINT, SIGTERM, SIGHUP));

}  // namespace
