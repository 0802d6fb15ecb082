// What the kernel refuses to the server, and that nothing it is asked for is among it.

#include "mcp/server/MCPServer.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Text.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/mount.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Json = nlohmann::json;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

/// "Ann" and "Ben", whose databases lie in the data root, as the receiver lays them.
class Confinement : public testing::Test {
protected:
  Confinement() {
    for (const char* name : {"Ann", "Ben"}) {
      Member member;
      member.id = lowerCased(name);
      member.name = name;
      member.dbPath = database(member.id);
      std::filesystem::create_directories(std::filesystem::path(member.dbPath).parent_path());
      std::ofstream(member.dbPath) << DamagedHousehold::wholeFile();
      household.add(member);
    }
  }

  /// A kernel that cannot confine leaves the server as it is, and nothing to be tested.
  void SetUp() override {
    outcome("read", "/");
    if (!diagnostics().ends_with(allHolds)) GTEST_SKIP() << "the kernel says: " << diagnostics();
  }

  std::string database(const std::string& id) const {
    return household.dataRoot() / "members" / id / "health.db";
  }

  /// What comes of an attempt of a process that is confined as the server is.
  std::string outcome(const std::string& attempt, const std::string& path = "") const {
    return outcomeWith({household.dataRoot(), attempt, path});
  }

  /// The same for one that is confined as the import of `source` is.
  std::string outcomeOfImport(const std::string& attempt, const std::string& path,
                              const std::string& source) const {
    return outcomeWith({household.dataRoot(), attempt, path, source});
  }

  std::string outcomeWith(const std::vector<std::string>& words) const {
    ChildProcess program(LARKSPUR_CONFINED, words, household.dataRoot());
    const ChildProcess::Ending ending = program.finished();
    EXPECT_EQ(ending.status, 0) << words[1] << ending.errors;
    return ending.output;
  }

  std::string diagnostics() const {
    return fileContents(household.dataRoot() / "confined.log").value_or("");
  }

  static constexpr std::string_view allHolds = "] . 内核限制:文件 是,网络 是,系统调用 是\n";

  Household household;
  TemporaryFolder outside;
};

const std::string refusedCall = "Operation not permitted\n";
const std::string refusedFile = "Permission denied\n";

TEST_F(Confinement, RefusesSocketsProgramsAndTracing) {
  for (const char* attempt : {"socket", "local-socket", "connect", "execve", "fork", "ptrace"}) {
    EXPECT_EQ(outcome(attempt), refusedCall) << attempt;
  }
}

TEST_F(Confinement, RefusesWhatIsDoneWithASocketThatWasHandedOver) {
  for (const char* attempt :
       {"accept", "shutdown", "getsockopt", "setsockopt", "getsockname", "getpeername"}) {
    EXPECT_EQ(outcome(attempt), refusedCall) << attempt;
  }
}

TEST_F(Confinement, RefusesFilesOfOthers) {
  const std::string file = outside.write("file", "contents").string();

  EXPECT_EQ(outcome("read", file), refusedFile);
  EXPECT_EQ(outcome("list", outside.path()), refusedFile);
  EXPECT_EQ(outcome("write", file), refusedFile);
  EXPECT_EQ(outcome("make", file + "2"), refusedFile);
  EXPECT_EQ(outcome("empty", file), refusedFile);
  EXPECT_EQ(outcome("remove", file), refusedFile);
  EXPECT_EQ(outcome("rename", file), refusedFile);
  EXPECT_EQ(outcome("make-folder", file), refusedFile);
  EXPECT_EQ(outcome("read", "/etc/passwd"), refusedFile);
  EXPECT_EQ(fileContents(file), "contents");
}

TEST_F(Confinement, RefusesToRemoveAndRenameWhatItReads) {
  for (const std::string& file : {database("ann"), household.rosterFile().string()}) {
    EXPECT_EQ(outcome("remove", file), refusedFile);
    EXPECT_EQ(outcome("rename", file), refusedFile);
    EXPECT_EQ(outcome("link", file), refusedFile);
    EXPECT_EQ(outcome("make-folder", file), refusedFile);
  }
}

TEST_F(Confinement, RefusesToWriteInTheDataRoot) {
  EXPECT_EQ(outcome("write", household.rosterFile()), refusedFile);
  EXPECT_EQ(outcome("empty", household.rosterFile()), refusedFile);
  EXPECT_EQ(outcome("make", household.dataRoot() / "file"), refusedFile);
}

TEST_F(Confinement, LeavesWhatCallsNeed) {
  const std::string index = database("ann") + "-shm";

  EXPECT_EQ(outcome("read", database("ann")), "done\n");
  EXPECT_EQ(outcome("make", index), "done\n");
  EXPECT_EQ(outcome("write", index), "done\n");
  EXPECT_EQ(outcome("empty", index), "done\n");
  EXPECT_EQ(outcome("read", "/usr/share/zoneinfo"), "done\n");
  EXPECT_EQ(outcome("read", "/dev/urandom"), "done\n");
}

/// Replies of the built program, which is confined, on the machine's own clock.
class ConfinedServer : public Confinement {
protected:
  ConfinedServer() {
    member.id = "cy";
    member.name = "Cy";
  }

  ChildProcess started() const {
    return {LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot()};
  }

  static Json dayRequest() {
    return numbered({toolCall("get_day", {{"person", "cy"}, {"date", "2024-03-16"}})}).front();
  }

  static Json dayReply(ChildProcess& program) {
    program.write(dayRequest().dump() + "\n");
    return checkedReply(dayRequest(), program.nextLine() + "\n");
  }

  /// Stands in the answer to that from a whole file, and in no other.
  static constexpr const char* found = "HeartRate: 124 count/min (4 samples)";

  Member member;
};

/// The replies of a server in this process, which nobody confines.
std::string freeReplies(const std::filesystem::path& dataRoot, const std::string& input) {
  std::string replies;
  std::size_t position = 0;
  MCPServer server(dataRoot,
                   {.lang = SummaryLang::en,
                    .clock = systemTime,
                    .input = byteSource([&](std::span<char> buffer) {
                      const std::size_t count = input.copy(buffer.data(), buffer.size(), position);
                      position += count;
                      return count;
                    }),
                    .output = [&](std::string_view line) { replies += line; }});
  server.run();
  return replies;
}

TEST_F(ConfinedServer, AnswersEverythingAsBefore) {
  const EnvironmentGuard english{{"LANGUAGE", std::nullopt}, {"LC_ALL", "en_US.UTF-8"}};
  std::vector<Json> requests = generalRequests();
  for (const char* person : {"ann", "ben", "nobody"}) {
    for (const Question& question : questionsAbout(person, DamagedHousehold::workoutID())) {
      requests.push_back(question.request);
    }
  }
  const std::string input = asLines(numbered(requests));

  std::string before = freeReplies(household.dataRoot(), input);
  ChildProcess program = started();
  program.write(input);
  const ChildProcess::Ending ending = program.finished();
  // Not even when the minute, or the day, has changed meanwhile.
  const std::string after = freeReplies(household.dataRoot(), input);

  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output, AnyOf(before, after));
}

TEST_F(ConfinedServer, FindsADatabaseThatIsReplaced) {
  TestDatabase& database = household.add("cy", "Cy");
  ChildProcess program = started();
  EXPECT_THAT(textOf(dayReply(program)), Not(HasSubstr(found)));

  const std::filesystem::path other =
      database.folder().write("other", DamagedHousehold::wholeFile());
  for (const char* ending : {"-wal", "-shm"}) std::filesystem::remove(database.path() + ending);
  std::filesystem::rename(other, database.path());

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

TEST_F(ConfinedServer, FindsADatabaseWhoseFolderIsReplaced) {
  TemporaryFolder place;
  place.write("folder/health.db", "");
  member.dbPath = place / "folder/health.db";
  household.add(member);
  ChildProcess program = started();
  EXPECT_NE(messageOf(dayReply(program)), "");

  std::filesystem::rename(place / "folder", place / "before");
  place.write("folder/health.db", DamagedHousehold::wholeFile());

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

TEST_F(ConfinedServer, FindsADatabaseWhoseFoldersComeLater) {
  TemporaryFolder place;
  member.dbPath = place / "drive/folder/health.db";
  household.add(member);
  ChildProcess program = started();
  EXPECT_THAT(messageOf(dayReply(program)), HasSubstr("盘没挂载"));

  place.write("drive/folder/health.db", DamagedHousehold::wholeFile());

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

TEST_F(ConfinedServer, FindsADatabaseThroughALinkThatLedNowhere) {
  TemporaryFolder place;
  std::filesystem::create_symlink(place / "drive/health.db", place / "link.db");
  member.dbPath = place / "link.db";
  household.add(member);
  ChildProcess program = started();
  EXPECT_THAT(messageOf(dayReply(program)), HasSubstr("库文件不存在"));

  place.write("drive/health.db", DamagedHousehold::wholeFile());

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

TEST_F(ConfinedServer, FindsADatabaseWhosePathCouldNotBeFollowed) {
  TemporaryFolder place;
  std::filesystem::create_symlink("link", place / "link");
  member.dbPath = place / "link/health.db";
  household.add(member);
  ChildProcess program = started();
  EXPECT_THAT(messageOf(dayReply(program)), HasSubstr("盘没挂载"));

  std::filesystem::remove(place / "link");
  place.write("link/health.db", DamagedHousehold::wholeFile());

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

/// A drive for as long as a test needs it.
class Drive {
public:
  explicit Drive(std::filesystem::path place) : place(std::move(place)) {
    there = mount("none", this->place.c_str(), "tmpfs", 0, "size=16m") == 0;
    if (!there) return;
    std::ofstream(this->place / "health.db") << DamagedHousehold::wholeFile();
  }
  ~Drive() {
    if (there) umount2(place.c_str(), MNT_DETACH);
  }
  Drive(const Drive&) = delete;
  Drive& operator=(const Drive&) = delete;

  bool isThere() const { return there; }

private:
  std::filesystem::path place;
  bool there = false;
};

TEST_F(ConfinedServer, FindsADatabaseOnADriveThatIsMountedLater) {
  TemporaryFolder place;
  std::filesystem::create_directory(place / "drive");
  member.dbPath = place / "drive/health.db";
  household.add(member);
  ChildProcess program = started();
  EXPECT_THAT(messageOf(dayReply(program)), HasSubstr("库文件不存在"));

  const Drive drive(place / "drive");
  if (!drive.isThere()) GTEST_SKIP() << "this user may not mount";

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

TEST_F(ConfinedServer, FindsADatabaseOnADriveThatGoesAndComesBack) {
  TemporaryFolder place;
  std::filesystem::create_directory(place / "drive");
  member.dbPath = place / "drive/health.db";
  household.add(member);
  auto first = std::make_unique<Drive>(place / "drive");
  if (!first->isThere()) GTEST_SKIP() << "this user may not mount";
  ChildProcess program = started();
  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));

  first.reset();
  EXPECT_THAT(messageOf(dayReply(program)), HasSubstr("库文件不存在"));
  const Drive second(place / "drive");

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

TEST_F(ConfinedServer, FindsADatabaseThroughMembersOnAnotherDrive) {
  TemporaryFolder place;
  std::filesystem::create_directory(place / "drive");
  const Drive drive(place / "drive");
  if (!drive.isThere()) GTEST_SKIP() << "this user may not mount";
  std::filesystem::create_directory_symlink(place / "drive", household.dataRoot() / "others");
  member.dbPath = household.dataRoot() / "others/health.db";
  household.add(member);

  ChildProcess program = started();

  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

/// A share that does not answer: whoever looks at anything in it waits, until the test ends.
class DeadShare {
public:
  explicit DeadShare(std::filesystem::path place)
      : place(std::move(place)), device(open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
    const std::string options =
        "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0";
    there = device >= 0 && mount("none", this->place.c_str(), "fuse", 0, options.c_str()) == 0;
  }
  ~DeadShare() {
    // Its end wakes up all that wait.
    if (device >= 0) close(device);
    if (there) umount2(place.c_str(), MNT_DETACH);
  }
  DeadShare(const DeadShare&) = delete;
  DeadShare& operator=(const DeadShare&) = delete;

  bool isThere() const { return there; }

private:
  std::filesystem::path place;
  int device;
  bool there = false;
};

TEST_F(ConfinedServer, StartsWithoutWaitingForAShareThatDoesNotAnswer) {
  TemporaryFolder place;
  std::filesystem::create_directory(place / "share");
  std::filesystem::create_directory_symlink(place / "share/deep", place / "link");
  auto share = std::make_unique<DeadShare>(place / "share");
  if (!share->isThere()) GTEST_SKIP() << "this user may not mount";
  Member other = member;
  other.id = "di";
  other.dbPath = place / "link/health.db";
  household.add(other);
  member.dbPath = place / "share/health.db";
  household.add(member);
  const Json request = numbered({Json{{"method", "ping"}}}).front();

  ChildProcess program = started();
  program.write(request.dump() + "\n");
  EXPECT_EQ(checkedReply(request, program.nextLine() + "\n").count("result"), 1U);

  share.reset();
  const Drive drive(place / "share");
  EXPECT_THAT(textOf(dayReply(program)), HasSubstr(found));
}

/// The import program, to which an export is handed from somewhere.
class ConfinedImport : public Confinement {
protected:
  ChildProcess::Ending imported(const std::filesystem::path& source,
                                const std::filesystem::path& dataRoot = "new/root") const {
    return ChildProcess(LARKSPUR_IMPORT_PROGRAM,
                        {"--data-root", household.dataRoot() / dataRoot, "--member", "Dot", source},
                        household.dataRoot())
        .finished();
  }

  const std::string exported =
      "<?xml version=\"1.0\"?><HealthData locale=\"en_GB\">"
      "<ExportDate value=\"2024-03-17 08:00:00 +0000\"/></HealthData>";
};

TEST_F(ConfinedImport, ReadsTheExportWhereverItLies) {
  EXPECT_EQ(imported(outside.write("export.xml", exported)).errors, "");
  EXPECT_EQ(imported(outside.path()).errors, "");
}

/// A link in a folder that somebody else packed does not lead to this user's files.
TEST_F(ConfinedImport, FollowsNoLinkOutOfTheExport) {
  const TemporaryFolder elsewhere;
  std::filesystem::create_symlink(elsewhere.write("file.xml", exported), outside / "export.xml");

  const ChildProcess::Ending ending = imported(outside.path());

  EXPECT_EQ(ending.status, 1);
  EXPECT_THAT(ending.errors, HasSubstr((outside / "export.xml").string()));
}

/// A pipe has no place in a file system, and no rule can be laid about it.
TEST_F(ConfinedImport, RefusesFilesOfOthersWhereTheExportComesFromAPipe) {
  const std::string file = outside.write("file", "contents").string();

  EXPECT_EQ(outcomeOfImport("read", file, "/dev/stdin"), refusedFile);
  EXPECT_EQ(outcomeOfImport("write", file, "/dev/stdin"), refusedFile);
  EXPECT_EQ(outcomeOfImport("read", file, file), "done\n");
}

TEST_F(ConfinedImport, MakesAMemberBehindALinkToAnotherDrive) {
  std::filesystem::create_directory(outside / "drive");
  const Drive drive(outside / "drive");
  if (!drive.isThere()) GTEST_SKIP() << "this user may not mount";
  std::filesystem::create_directories(household.dataRoot() / "linked");
  std::filesystem::create_directory_symlink(outside / "drive",
                                            household.dataRoot() / "linked/members");

  const ChildProcess::Ending ending = imported(outside.write("export.xml", exported), "linked");

  EXPECT_EQ(ending.errors, "");
  EXPECT_EQ(ending.status, 0);
}

TEST_F(ConfinedImport, ChecksTheExportAloneWhereverItLies) {
  const TemporaryFolder elsewhere;
  const auto checked = [this](const std::filesystem::path& source) {
    return ChildProcess(LARKSPUR_IMPORT_PROGRAM, {"--check", source}, household.dataRoot())
        .finished();
  };
  const std::filesystem::path file = outside.write("export.xml", exported);

  EXPECT_EQ(checked(file).errors, "");
  EXPECT_EQ(checked(outside.path()).errors, "");
  std::filesystem::remove(file);
  std::filesystem::create_symlink(elsewhere.write("file.xml", exported), file);
  EXPECT_EQ(checked(outside.path()).status, 1);
}

}  // namespace
