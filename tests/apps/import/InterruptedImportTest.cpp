// Imports that are asked to stop: nothing is left of them, or everything is there.

#include "apps/import/DatabaseContents.h"
#include "apps/import/DefaultSignals.h"
#include "apps/import/ImportHarness.h"
#include "import/Interruption.h"
#include "platform/System.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <thread>

namespace {

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

/// Every path under `root` that is there, without the data root's own: empty when there is no root.
std::vector<std::string> pathsUnder(const std::filesystem::path& root) {
  std::vector<std::string> paths;
  if (!std::filesystem::exists(root)) return paths;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    paths.push_back(entry.path().lexically_relative(root).string());
  }
  std::ranges::sort(paths);
  return paths;
}

class InterruptedImport : public Import {
protected:
  /// Imports until the import asks whether to stop for the time after `asks` times.
  void importInterruptedAfter(int asks) const {
    std::ostringstream unseen;
    int left = asks;
    runImport({.dataRoot = root(), .name = "Ann", .id = "ann", .source = folder / "export.xml"},
              {.progress = unseen,
               .progressKind = Importer::Progress::Kind::log,
               .lang = SummaryLang::en,
               .clock = [] { return now; },
               .timeZone = "Asia/Shanghai",
               .interrupted = [&left] { return left == 0 || left-- == 0; }});
  }

  /// Imports, interrupted at the first question, then at the second and so on, until one is
  /// complete; calls `expectNothing` after each of the others, and returns their count.
  int interruptedEverywhere(const std::function<void()>& expectNothing) const {
    int interruptions = 0;
    for (;; ++interruptions) {
      try {
        importInterruptedAfter(interruptions);
        return interruptions;
      } catch (const Interruption& interruption) {
        EXPECT_EQ(interruption.text(SummaryLang::en), "interrupted: nothing was changed");
        EXPECT_EQ(interruption.text(SummaryLang::zh), "已中断：没有改动任何数据");
      }
      expectNothing();
      if (testing::Test::HasFailure()) return interruptions;
    }
  }
};

TEST_F(InterruptedImport, LeavesNothingOfANewMemberWhereverItIs) {
  writeExport(exportText(3000));

  const int interruptions =
      interruptedEverywhere([this] { EXPECT_FALSE(std::filesystem::exists(root())); });

  EXPECT_GT(interruptions, 5);
  EXPECT_EQ(roster()["members"].size(), 1U);
  EXPECT_THAT(databaseContents(root() / "members/ann/health.db"), HasSubstr("HeartRate|3000|"));
}

TEST_F(InterruptedImport, LeavesAnExistingMemberAsItWasWhereverItIs) {
  writeExport(exportText(300));
  importFor("Ann", "ann");
  const std::filesystem::path database = root() / "members/ann/health.db";
  const std::string before = databaseContents(database);
  const json rosterBefore = roster();
  const std::vector<std::string> filesBefore = files();
  writeExport(exportText(3000));

  const int interruptions = interruptedEverywhere([&] {
    EXPECT_EQ(files(), filesBefore);
    EXPECT_EQ(databaseContents(database), before);
    EXPECT_EQ(roster(), rosterBefore);
  });

  EXPECT_GT(interruptions, 5);
  EXPECT_THAT(databaseContents(database), HasSubstr("HeartRate|3000|"));
}

TEST_F(InterruptedImport, LeavesNoDatabaseOfAMemberWhoHadNone) {
  writeRoster({{"version", 1},
               {"members", {memberWithout("ann", (folder / "root/data/ann.db").string())}}});
  std::filesystem::create_directory(root() / "data");
  writeExport(exportText(3000));
  const std::vector<std::string> filesBefore = files();

  interruptedEverywhere([&] { EXPECT_EQ(files(), filesBefore); });

  EXPECT_THAT(databaseContents(root() / "data/ann.db"), HasSubstr("HeartRate|3000|"));
}

TEST_F(InterruptedImport, DoesNotWaitForADatabaseThatIsLocked) {
  writeExport(exportText(300));
  importFor("Ann", "ann");
  Database other((root() / "members/ann/health.db").string(), {.create = false, .readOnly = false});
  other.prepare("PRAGMA journal_mode=WAL").run();
  other.exec("BEGIN IMMEDIATE");
  writeExport(exportText(400));

  const auto began = std::chrono::steady_clock::now();
  EXPECT_THROW(importInterruptedAfter(10), Interruption);

  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20));
}

/// The built program, with signals.
class Signalled : public InterruptedImport {
protected:
  std::vector<std::string> importing(const std::string& source) const {
    return {"--data-root", root().string(), "--member", "Ann", "--id", "ann", source};
  }

  ChildProcess started(const std::string& source) const {
    return {LARKSPUR_IMPORT_PROGRAM, importing(source), folder.path()};
  }

  std::filesystem::path database() const { return root() / "members/ann/health.db"; }

  /// Puts the data root back to what `from` holds; nothing at all when that is not there.
  void reset(const std::string& from) const {
    std::filesystem::remove_all(root());
    if (std::filesystem::exists(folder / from)) {
      std::filesystem::copy(folder / from, root(), std::filesystem::copy_options::recursive);
    }
  }

  DefaultSignals signals;
  EnvironmentGuard english{
      {"LANGUAGE", std::nullopt}, {"LC_ALL", "en_US.UTF-8"}, {"TZ", "Asia/Shanghai"}};
};

struct SignalCase {
  std::string name;
  int number;
};

class EverySignal : public Signalled, public testing::WithParamInterface<SignalCase> {
protected:
  EverySignal() {
    folder.write("short.xml", exportText(100));
    folder.write("long.xml", exportText(records, "2024-06-02 08:00:00 +0800"));
  }

  /// What is there: every path, and what database and roster say.
  struct State {
    std::vector<std::string> paths;
    std::string contents;
    std::optional<std::string> roster;

    bool operator==(const State&) const = default;
  };

  State state() const {
    const bool there = std::filesystem::exists(database());
    return {pathsUnder(root()),
            there ? databaseContents(database()) : "",
            fileContents(root() / "members.json")};
  }

  /// The roster without the one thing in it that depends on when the import ran.
  json rosterWithoutTime() const {
    json document = roster();
    for (json& member : document["members"]) member.erase("createdAt");
    return document;
  }

  /// What an import that nobody interrupts comes to.
  struct Complete {
    std::vector<std::string> paths;
    std::string contents;
    json roster;
  };

  Complete complete() const {
    const State all = state();
    EXPECT_THAT(all.paths, Not(Contains(HasSubstr("import-unfinished"))));
    return {.paths = all.paths, .contents = all.contents, .roster = rosterWithoutTime()};
  }

  /// No state between commit and roster is allowed: an import that has committed completes.
  void expectComplete(const State& found, const Complete& wanted) const {
    EXPECT_EQ(found.contents, wanted.contents);
    EXPECT_EQ(found.paths, wanted.paths);
    ASSERT_TRUE(found.roster);
    EXPECT_EQ(rosterWithoutTime(), wanted.roster);
  }

  /// Sends the signal, at times twice, after a random part of the usual time; whether the program
  /// said that it was interrupted.
  bool interrupted() {
    ChildProcess program = started("long.xml");
    // The moment is what this is about, and only time leads to every one of them.
    std::this_thread::sleep_for(whole * std::uniform_real_distribution(0.0, 1.1)(random));
    program.send(GetParam().number);
    if (random() % 2 == 0) program.send(GetParam().number);
    const ChildProcess::Ending ending = program.finished();
    if (!ending.bySignal) {
      EXPECT_EQ(ending.status, 0);
      return false;
    }
    EXPECT_EQ(ending.status, 128 + GetParam().number);
    // Until the program has taken the signals over, they are the system's business.
    const bool told = !ending.errors.empty();
    if (told) {
      EXPECT_EQ(ending.errors, "larkspur-import: interrupted: nothing was changed\n");
    }
    return told;
  }

  /// Interrupts imports into what `from` holds. Each must leave what was there or the whole.
  void interruptMany(const std::string& from) {
    reset(from);
    const State before = state();
    const auto began = std::chrono::steady_clock::now();
    ASSERT_EQ(started("long.xml").finished().status, 0);
    whole = std::chrono::steady_clock::now() - began;
    const Complete after = complete();
    ASSERT_NE(before.contents, after.contents);
    ASSERT_EQ(after.roster["members"].size(), 1U);
    ASSERT_EQ(after.roster["members"][0]["id"], "ann");

    int told = 0;
    int completed = 0;
    int tried = 0;
    // On a busy machine the usual time may be another by now: then all are too late.
    for (; tried < moments() || (told == 0 && tried < 10 * moments()); ++tried) {
      reset(from);
      const bool toldNow = interrupted();
      if (toldNow) ++told;
      const State left = state();
      if (left.contents == after.contents) {
        EXPECT_FALSE(toldNow);
        expectComplete(left, after);
        ++completed;
        whole *= 0.9;
      } else {
        EXPECT_EQ(left.paths, before.paths);
        EXPECT_EQ(left, before);
      }
      if (tried % 5 != 0) continue;
      ASSERT_EQ(started("long.xml").finished().status, 0);
      expectComplete(state(), after);
    }
    std::cout << tried << " signals: " << told << " told, " << completed << " complete, "
              << tried - told - completed << " before the program began\n";
    EXPECT_GT(told, 0);
  }

  static int moments() {
    return std::stoi(System::environment("LARKSPUR_SIGNAL_MOMENTS").value_or("6"));
  }

  static constexpr int records = 4000;
  std::chrono::duration<double> whole{};
  std::mt19937 random{std::random_device{}()};
};

TEST_P(EverySignal, LeavesNoNewMemberOrACompleteOne) { interruptMany("nothing"); }

TEST_P(EverySignal, LeavesAMemberAsBeforeOrComplete) {
  ASSERT_EQ(started("short.xml").finished().status, 0);
  std::filesystem::rename(root(), folder / "start");

  interruptMany("start");
}

INSTANTIATE_TEST_SUITE_P(Cases, EverySignal,
                         testing::Values(SignalCase{"Interrupt", SIGINT},
                                         SignalCase{"Terminate", SIGTERM},
                                         SignalCase{"HangUp", SIGHUP}),
                         [](const auto& test) { return test.param.name; });

/// An export that comes through a pipe, as slowly as a test wants.
class SlowExport : public Signalled {
protected:
  SlowExport() { mkfifo((folder / "slow.xml").c_str(), 0600); }

  const std::string text = exportText(300);
  const std::string_view firstHalf = std::string_view(text).substr(0, text.size() / 2);
  const std::string_view secondHalf = std::string_view(text).substr(text.size() / 2);
};

TEST_F(SlowExport, IsNotWaitedForAfterASignal) {
  ChildProcess program = started("slow.xml");
  std::ofstream pipe(folder / "slow.xml");
  pipe << firstHalf << std::flush;

  program.send(SIGINT);
  const ChildProcess::Ending ending = program.finished();

  EXPECT_TRUE(ending.bySignal);
  EXPECT_EQ(ending.status, 130);
  EXPECT_EQ(ending.errors, "larkspur-import: interrupted: nothing was changed\n");
  EXPECT_FALSE(std::filesystem::exists(root()));
}

TEST_F(SlowExport, IsReadToItsEndWhenTheSignalWasIgnoredFromTheStart) {
  std::vector<std::string> words{"-c", "trap '' HUP; exec \"$0\" \"$@\"", LARKSPUR_IMPORT_PROGRAM};
  std::ranges::copy(importing("slow.xml"), std::back_inserter(words));
  ChildProcess program("/bin/sh", words, folder.path());
  std::ofstream pipe(folder / "slow.xml");
  pipe << firstHalf << std::flush;

  program.send(SIGHUP);
  pipe << secondHalf << std::flush;
  pipe.close();

  EXPECT_EQ(program.finished().status, 0);
  EXPECT_EQ(roster()["members"].size(), 1U);
}

}  // namespace
