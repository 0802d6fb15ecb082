// The server writes nothing and talks to nobody: its system calls during a whole conversation.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/Household.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"
#include "withstand/SystemCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using std::filesystem::perms;
using testing::Contains;
using testing::IsSubsetOf;
using testing::UnorderedElementsAre;

constexpr perms ownerOnly = perms::owner_read | perms::owner_write;

/// So many workouts and records that SQLite's cache does not hold what is sorted of them. The long
/// texts are in columns that an answer names once.
void addTooMuchForTheCache(TestDatabase& database) {
  std::vector<TestWorkout> workouts;
  std::vector<TestRecord> records;
  const std::string much(1000, '.');
  for (int number = 0; number < 4000; ++number) {
    const std::string start = std::to_string(number);
    workouts.push_back({.source_name = much, .start_date = start, .start_day = "2024-03-16"});
    records.push_back({.type = "StepCount",
                       .source_name = much,
                       .start_date = start,
                       .start_day = "2024-03-16",
                       .value_num = 1});
  }
  database.addWorkouts(workouts).addRecords(records);
}

/// Members whose files are of every kind, and a whole conversation about them under strace.
class Traced {
public:
  Traced() {
    log.replaceFile(DamagedHousehold::wholeFile()).run("PRAGMA journal_mode=WAL");
    journal.replaceFile(DamagedHousehold::wholeFile());
    addTooMuchForTheCache(large);
    Member away;
    away.id = "away";
    away.name = "Dot";
    away.dbPath = "/nowhere/health.sqlite";
    household.add(away);
    for (const TestDatabase* database : {&log, &journal, &large}) {
      std::filesystem::permissions(database->path(), ownerOnly);
      before[database->path()] = fileContents(database->path()).value();
    }
    converse();
  }

  std::string accessLog() const { return (household.dataRoot() / "mcp-access.log").string(); }

  Household household;
  TestDatabase& log = household.add("log", "Ann");
  TestDatabase& journal = household.add("journal", "Ben");
  TestDatabase& large = household.add("large", "Cy");
  std::map<std::string, std::string> before;  ///< the files' bytes by their paths
  std::vector<SystemCall> calls;

private:
  void converse() {
    std::vector<Json> requests = generalRequests();
    for (const char* member : {"log", "journal", "large", "away"}) {
      for (const Question& question : questionsAbout(member, DamagedHousehold::workoutID())) {
        requests.push_back(question.request);
      }
    }
    requests = numbered(requests);
    // The leak finder of a sanitizer cannot work in a process that is traced already.
    const EnvironmentGuard quiet({{"ASAN_OPTIONS", "detect_leaks=0"}});
    const TemporaryFolder folder;
    ChildProcess program(LARKSPUR_STRACE,
                         {"-f",
                          "-qq",
                          "-s",
                          "4096",
                          "-e",
                          "trace=%file,%network,%process",
                          "-o",
                          folder / "trace",
                          LARKSPUR_MCP_PROGRAM,
                          "--data-root",
                          household.dataRoot()},
                         folder.path());
    program.write(asLines(requests));
    const ChildProcess::Ending ending = program.finished();
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.errors, "");
    std::istringstream lines(ending.output);
    for (const Json& request : requests) {
      if (!request.contains("id")) continue;
      std::string line;
      std::getline(lines, line);
      checkedReply(request, line + "\n");
    }
    calls = systemCallsIn(fileContents(folder / "trace").value());
  }
};

/// One conversation for all tests.
class TracedConversation : public testing::Test {
protected:
  static void SetUpTestSuite() {
    if (geteuid() == 0) traced = std::make_unique<Traced>();
  }
  static void TearDownTestSuite() { traced.reset(); }

  void SetUp() override {
    if (!traced) GTEST_SKIP() << "only root may look into a program that forbids dumps";
  }

  static inline std::unique_ptr<Traced> traced;
};

bool opens(const SystemCall& call) { return call.name.starts_with("open"); }

TEST_F(TracedConversation, IsSeen) {
  EXPECT_THAT(pathsOf(traced->calls, opens),
              testing::IsSupersetOf({traced->accessLog(),
                                     traced->household.rosterFile().string(),
                                     traced->log.path(),
                                     traced->journal.path(),
                                     traced->large.path()}));
}

TEST_F(TracedConversation, OpensNothingForWritingButTheLogs) {
  const std::string& log = traced->log.path();
  const std::string& large = traced->large.path();
  const std::vector<std::string> allowed{
      traced->accessLog(), "/dev/null", log + "-wal", log + "-shm", large + "-wal", large + "-shm"};

  const std::set<std::string> changed = pathsOf(traced->calls, changesFiles);

  EXPECT_THAT(std::vector(changed.begin(), changed.end()), IsSubsetOf(allowed));
  EXPECT_THAT(changed, Contains(traced->accessLog()));
}

TEST_F(TracedConversation, TalksToNobodyAndStartsNothing) {
  std::map<std::string, int> others;
  for (const SystemCall& call : traced->calls) {
    if (!isAboutFiles(call)) ++others[call.name];
  }

  EXPECT_THAT(others, UnorderedElementsAre(std::pair("execve", 1), std::pair("exit_group", 1)));
}

TEST_F(TracedConversation, LeavesEveryDatabaseAsItWas) {
  for (const auto& [path, bytes] : traced->before) {
    EXPECT_TRUE(fileContents(path) == bytes) << path;
  }
}

TEST_F(TracedConversation, LeavesEmptyLogsBehindForTheOwnerAlone) {
  for (const TestDatabase* database : {&traced->log, &traced->large}) {
    EXPECT_EQ(fileContents(database->path() + "-wal"), "");
    for (const char* suffix : {"-wal", "-shm"}) {
      EXPECT_EQ(std::filesystem::status(database->path() + suffix).permissions(), ownerOnly);
    }
  }
  EXPECT_EQ(std::filesystem::status(traced->accessLog()).permissions(), ownerOnly);
  for (const char* suffix : {"-wal", "-shm", "-journal"}) {
    EXPECT_FALSE(std::filesystem::exists(traced->journal.path() + suffix));
  }
}

}  // namespace
