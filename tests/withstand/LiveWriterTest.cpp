// The server beside a writer that never rests and is killed again and again.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/Household.h"
#include "withstand/LiveConversation.h"
#include "withstand/LiveSessions.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

/// How long to go on: LARKSPUR_LIVE_SECONDS, or five seconds.
std::chrono::seconds duration() {
  const char* text = std::getenv("LARKSPUR_LIVE_SECONDS");
  return std::chrono::seconds(text == nullptr ? 5 : std::atoi(text));
}

/// The seed of all chance in the test: LARKSPUR_LIVE_SEED, or one.
unsigned seed() {
  const char* text = std::getenv("LARKSPUR_LIVE_SEED");
  return text == nullptr ? 1 : static_cast<unsigned>(std::atoi(text));
}

/// Starts writers on one file and kills them.
class Writers {
public:
  Writers(const std::filesystem::path& folder, std::string database)
      : folder(folder), database(std::move(database)) {}

  /// Kills the one that writes, if any, wherever it stands, and starts the next.
  void replace() {
    writer.reset();
    ++lives;
    writer.emplace(LARKSPUR_LIVE_WRITER,
                   std::vector<std::string>{database, diary(), std::to_string(seed() + lives)},
                   folder);
  }

  void kill() { writer.reset(); }

  unsigned started() const { return lives; }

  /// How many lines of the diary begin with `word`.
  int noted(const std::string& word) const {
    std::istringstream lines(fileContents(diary()).value_or(""));
    int count = 0;
    for (std::string line; std::getline(lines, line);) count += line.starts_with(word) ? 1 : 0;
    return count;
  }

private:
  std::string diary() const { return (folder / "diary.txt").string(); }

  std::filesystem::path folder;
  std::string database;
  std::optional<ChildProcess> writer;
  unsigned lives = 0;
};

std::string only(const Database& database, const std::string& sql) {
  Statement query = database.prepare(sql);
  return query.next()->text(0);
}

/// Holds the conversation until the time is over and enough has been asked, with the writer killed
/// every few calls: now between two of them, when the server has no file open, now under one.
void converse(LiveConversation& conversation, Writers& writers) {
  std::mt19937_64 random(seed());
  std::int64_t nextKill = 0;
  bool underACall = false;
  const auto end = std::chrono::steady_clock::now() + duration();
  const std::int64_t enough = 2000 * duration().count() / 60;
  while (std::chrono::steady_clock::now() < end || conversation.toolCalls() < enough) {
    if (testing::Test::HasFailure()) return;
    if (conversation.calls() < nextKill) {
      conversation.ask();
      continue;
    }
    nextKill = conversation.calls() + 1 + static_cast<std::int64_t>(random() % 40);
    if (underACall) {
      conversation.ask([&writers] { writers.replace(); });
    } else {
      writers.replace();
      conversation.ask();
    }
    underACall = !underACall;
  }
}

TEST(LiveWriter, NeverMakesAnAnswerImpossible) {
  const EnvironmentGuard english({{"LANGUAGE", std::nullopt}, {"LC_ALL", "C"}});
  Household household;
  const TestDatabase& ann = household.add("ann", "Ann");
  constexpr std::int64_t sessionsAtFirst = LiveSessions::days;
  {
    LiveSessions::Writer writer(ann.path());
    for (std::int64_t number = 0; number < sessionsAtFirst; ++number) writer.store(number);
  }
  Writers writers(ann.folder().path(), ann.path());
  LiveConversation conversation(household.dataRoot(), seed());

  converse(conversation, writers);
  writers.kill();
  conversation.finish();

  const Database database = ann.writer();
  EXPECT_EQ(only(database, "PRAGMA integrity_check"), "ok");
  const std::int64_t sessions = std::stoll(only(database, "SELECT COUNT(*) FROM workouts"));
  EXPECT_EQ(std::stoll(only(database, "SELECT COUNT(*) FROM records")),
            LiveSessions::recordsEach * sessions);
  const std::int64_t stored = std::stoll(only(database, "SELECT MAX(n) FROM stat_sources"));
  EXPECT_GT(sessions, sessionsAtFirst);
  EXPECT_GT(writers.started(), 2U);
  EXPECT_GT(writers.noted("begun"), 1);
  EXPECT_EQ(writers.noted("failed"), 0);
  // A reader holds the writer's lock for no longer than it takes to read half a page of shared
  // memory twice, and only when it met the writer in the middle of a word. If calls kept the lock,
  // each would refuse the writer, who never rests, as often as he got a turn beside it.
  EXPECT_LE(writers.noted("refused"), static_cast<int>(conversation.calls() / 20));
  std::cout << conversation.toolCalls() << " tool calls and "
            << conversation.calls() - conversation.toolCalls() << " others beside " << stored
            << " transactions of " << writers.started() << " writers, " << writers.noted("refused")
            << " of them refused; " << conversation.underWay()
            << " writers were killed under a call; " << sessions << " sessions at the end\n";
}

/// What is read under one call is one state of the file, whoever dies beside it in the middle of a
/// transaction and whoever comes after him.
TEST(LiveWriter, DiesAndIsReplacedUnderAQueryThatGoesOn) {
  const TestDatabase ann;
  constexpr std::int64_t sessionsAtFirst = 40;
  {
    LiveSessions::Writer writer(ann.path());
    for (std::int64_t number = 0; number < sessionsAtFirst; ++number) writer.store(number);
  }
  std::optional<ChildProcess> writer;
  const auto startWriter = [&](unsigned life) {
    writer.reset();
    const std::string diary = "/dev/stdout";
    writer.emplace(LARKSPUR_LIVE_WRITER,
                   std::vector{ann.path(), diary, std::to_string(seed() + life)},
                   ann.folder().path());
    return writer->nextLine();
  };
  ASSERT_EQ(startWriter(0), "begun");
  std::int64_t least = LiveSessions::recordsEach * sessionsAtFirst;

  for (unsigned life = 1; life <= 10; ++life) {
    const HealthStore call = ann.open();
    Statement records = call.prepare("SELECT start_day FROM records");
    ASSERT_TRUE(records.next());

    ASSERT_EQ(startWriter(life), "begun");

    std::int64_t count = 1;
    while (records.next()) ++count;
    const std::int64_t sessions = std::ssize(call.workoutDetails(std::nullopt, std::nullopt));
    EXPECT_EQ(count, LiveSessions::recordsEach * sessions);
    EXPECT_EQ(count, call.recordCount());
    EXPECT_GE(count, least);
    least = count;
  }
}

}  // namespace
