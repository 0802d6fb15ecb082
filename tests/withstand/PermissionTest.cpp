// Files that the server's user may not touch. Root may touch everything, so another user runs the
// server here.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using std::filesystem::perms;

constexpr perms readable = perms::owner_all | perms::group_read | perms::group_exec |
                           perms::others_read | perms::others_exec;
constexpr perms writable = perms::all;
constexpr perms closed = perms::owner_all;

/// A household of "Ann" that everybody may see, and a copy of the program that everybody may run.
class AnotherUser : public testing::Test {
protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
    ann = &household.add("ann", "Ann");
    ann->replaceFile(DamagedHousehold::wholeFile());
    std::filesystem::permissions(household.dataRoot(), writable);
    std::filesystem::permissions(ann->folder().path(), readable);
    std::filesystem::permissions(programs.path(), readable);
    std::filesystem::copy_file(LARKSPUR_MCP_PROGRAM, program());
  }

  std::string program() const { return (programs / "larkspur-mcp").string(); }

  /// The reply to the call of get_day, by a server of the user "nobody".
  Json dayReply() const {
    constexpr const char* nobody = "65534";
    const Json request =
        numbered({toolCall("get_day", {{"person", "ann"}, {"date", "2024-03-16"}})}).front();
    const std::string id = std::string("=") + nobody;
    ChildProcess server(LARKSPUR_SETPRIV,
                        {"--reuid" + id,
                         "--regid" + id,
                         "--clear-groups",
                         program(),
                         "--data-root",
                         household.dataRoot()},
                        household.dataRoot());
    server.write(request.dump() + "\n");
    const ChildProcess::Ending ending = server.finished();
    EXPECT_EQ(ending.status, 0);
    EXPECT_EQ(ending.errors, "");
    return checkedReply(request, ending.output);
  }

  void expectRightAnswer() const {
    EXPECT_EQ(textOf(dayReply()), textOf(DamagedHousehold::wholeReplies().at("get_day")));
  }

  Household household;
  TestDatabase* ann = nullptr;
  TemporaryFolder programs;
};

TEST_F(AnotherUser, IsAnsweredAndKeepsItsLogToItself) {
  expectRightAnswer();
  const std::filesystem::path log = household.dataRoot() / "mcp-access.log";
  EXPECT_EQ(std::filesystem::status(log).permissions(), perms::owner_read | perms::owner_write);
}

TEST_F(AnotherUser, IsAnsweredWhereNoAccessLogCanBeMade) {
  std::filesystem::permissions(household.dataRoot(), readable);

  expectRightAnswer();
  EXPECT_FALSE(std::filesystem::exists(household.dataRoot() / "mcp-access.log"));
}

TEST_F(AnotherUser, IsAnsweredWhereTheAccessLogBelongsToSomeoneElse) {
  const std::filesystem::path log = household.dataRoot() / "mcp-access.log";
  std::filesystem::copy_file(household.rosterFile(), log);
  std::filesystem::permissions(log, perms::owner_read);
  const auto before = fileContents(log);

  expectRightAnswer();
  EXPECT_EQ(fileContents(log), before);
}

TEST_F(AnotherUser, SeesNoMembersInARosterThatItMayNotRead) {
  std::filesystem::permissions(household.rosterFile(), perms::owner_read);

  EXPECT_THAT(messageOf(dayReply()), testing::StartsWith("No members on this Mac yet"));
  EXPECT_TRUE(std::filesystem::exists(household.rosterFile()));
}

TEST_F(AnotherUser, IsToldThatADatabaseDoesNotOpen) {
  std::filesystem::permissions(ann->path(), perms::owner_read);

  EXPECT_EQ(messageOf(dayReply()), "打不开 Ann 的数据:打不开库:unable to open database file");
}

TEST_F(AnotherUser, IsToldThatADatabaseIsOutOfReach) {
  std::filesystem::permissions(ann->folder().path(), closed);

  EXPECT_EQ(messageOf(dayReply()), "打不开 Ann 的数据:库文件不存在:" + ann->path());
}

TEST_F(AnotherUser, IsAnsweredFromAReadOnlyFolder) {
  std::filesystem::permissions(ann->path(), perms::owner_read | perms::others_read);

  expectRightAnswer();
}

/// SQLite has no place for the log's index then, and does not guess what the log holds.
TEST_F(AnotherUser, IsToldThatALogCannotBeReadInAReadOnlyFolder) {
  ann->run("PRAGMA journal_mode=WAL");
  std::string log;
  {
    Database writer = ann->writer();
    writer.exec("DELETE FROM records WHERE rowid = 1");
    log = fileContents(ann->path() + "-wal").value();
  }
  ann->folder().write("health.sqlite-wal", log);

  EXPECT_EQ(messageOf(dayReply()), "prepare 失败:unable to open database file");
  EXPECT_EQ(fileContents(ann->path() + "-wal"), log);
  EXPECT_FALSE(std::filesystem::exists(ann->path() + "-shm"));
}

TEST_F(AnotherUser, IsAnsweredBesideAWriterWhoseFilesItMayOnlyRead) {
  ann->run("PRAGMA journal_mode=WAL");
  Database writer = ann->writer();
  writer.exec("DELETE FROM ecg");

  expectRightAnswer();
}

}  // namespace
