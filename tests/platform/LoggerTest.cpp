#include "platform/Files.h"
#include "platform/Logger.h"
#include "support/FileSizeGuard.h"
#include "support/TemporaryFolder.h"
#include "support/ZoneGuard.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

using Level = Logger::Level;
using testing::MatchesRegex;

/// 2024-02-29 22:54:32 UTC.
double fixedClock() { return 1709247272; }

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    lines.emplace_back(line);
    text.remove_prefix(std::min(text.size(), line.size() + 1));
  }
  return lines;
}

mode_t modeOf(const std::filesystem::path& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 0777;
}

/// The file-creation mask for as long as a test needs it.
class MaskGuard {
public:
  explicit MaskGuard(mode_t mask) : before(umask(mask)) {}
  ~MaskGuard() { umask(before); }
  MaskGuard(const MaskGuard&) = delete;
  MaskGuard& operator=(const MaskGuard&) = delete;

private:
  mode_t before;
};

/// Puts another descriptor in the place of `descriptor` (standard output or error) for a while.
class Redirection {
public:
  Redirection(int descriptor, int replacement) : descriptor(descriptor), before(dup(descriptor)) {
    dup2(replacement, descriptor);
  }
  ~Redirection() {
    dup2(before, descriptor);
    close(before);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

private:
  int descriptor;
  int before;
};

/// Two connected descriptors: what is written to the far end comes out of the near end.
class Channel {
public:
  static Channel pipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    return {ends[0], ends[1]};
  }

  /// A terminal that passes every byte on as it is.
  static Channel terminal() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
      throw std::system_error(errno, std::generic_category(), "posix_openpt");
    }
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY);
    termios settings{};
    tcgetattr(slave, &settings);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    tcsetattr(slave, TCSANOW, &settings);
    return {master, slave};
  }

  ~Channel() {
    close(near);
    close(far);
  }
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  int writer() const { return far; }

  /// The next `size` bytes, or as many as come within seconds.
  std::string read(std::size_t size) const {
    std::string bytes;
    pollfd waiting{near, POLLIN, 0};
    constexpr int patienceMilliseconds = 5000;
    while (bytes.size() < size && poll(&waiting, 1, patienceMilliseconds) > 0) {
      std::array<char, 4096> buffer{};
      const ssize_t count =
          ::read(near, buffer.data(), std::min(buffer.size(), size - bytes.size()));
      if (count <= 0) break;
      bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return bytes;
  }

private:
  Channel(int near, int far) : near(near), far(far) {}

  int near;
  int far;
};

struct RecordCase {
  std::string name;
  Level minLevel;
  std::string contents;
};

class LoggerFile : public testing::TestWithParam<RecordCase> {};

TEST_P(LoggerFile, HoldsTheRecordsOfItsLevelAndAbove) {
  const TemporaryFolder folder;
  Logger log(folder / "log", GetParam().minLevel, false, fixedClock);

  log.write(Level::debug, "opened");
  log.write(Level::info, "started");
  log.write(Level::error, "failed");

  EXPECT_EQ(fileContents(folder / "log"), GetParam().contents);
}

INSTANTIATE_TEST_SUITE_P(
    Levels, LoggerFile,
    testing::Values(RecordCase{"Debug",
                               Level::debug,
                               "[2024-02-29 22:54:32] . opened\n"
                               "[2024-02-29 22:54:32] i started\n"
                               "[2024-02-29 22:54:32] ! failed\n"},
                    RecordCase{"Info",
                               Level::info,
                               "[2024-02-29 22:54:32] i started\n"
                               "[2024-02-29 22:54:32] ! failed\n"},
                    RecordCase{"Error", Level::error, "[2024-02-29 22:54:32] ! failed\n"}),
    [](const auto& test) { return test.param.name; });

TEST(Logger, WritesLocalTime) {
  const ZoneGuard zone("Asia/Shanghai");
  const TemporaryFolder folder;
  Logger log(folder / "log", Level::info, false, fixedClock);

  log.write(Level::info, "started");

  EXPECT_EQ(fileContents(folder / "log"), "[2024-03-01 06:54:32] i started\n");
}

TEST(Logger, TakesTheTimeOfEveryRecord) {
  const TemporaryFolder folder;
  double now = 59;
  Logger log(folder / "log", Level::info, false, [&now] { return now; });

  log.write(Level::info, "one");
  now += 1.75;
  log.write(Level::info, "two");

  EXPECT_EQ(fileContents(folder / "log"),
            "[1970-01-01 00:00:59] i one\n"
            "[1970-01-01 00:01:00] i two\n");
}

TEST(Logger, LeavesTheMessageAsItIs) {
  const TemporaryFolder folder;
  Logger log(folder / "log", Level::info, false, fixedClock);

  log.write(Level::info, "两行\n%s \xFF");
  log.write(Level::info, "");

  EXPECT_EQ(fileContents(folder / "log"),
            "[2024-02-29 22:54:32] i 两行\n%s \xFF\n"
            "[2024-02-29 22:54:32] i \n");
}

TEST(Logger, WritesBehindWhatTheFileHolds) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.write("log", "[2024-02-28 10:00:00] i before\n");

  {
    Logger log(path, Level::info, false, fixedClock);
    log.write(Level::info, "first");
  }
  Logger log(path, Level::info, false, fixedClock);
  log.write(Level::info, "second");

  EXPECT_EQ(fileContents(path),
            "[2024-02-28 10:00:00] i before\n"
            "[2024-02-29 22:54:32] i first\n"
            "[2024-02-29 22:54:32] i second\n");
}

TEST(Logger, CreatesAnEmptyFileForTheOwnerAlone) {
  const MaskGuard mask(077);
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "data" / "root" / "log";

  const Logger log(path, Level::info, false, fixedClock);

  EXPECT_EQ(fileContents(path), "");
  EXPECT_EQ(modeOf(path), 0600U);
  EXPECT_EQ(modeOf(path.parent_path()), 0700U);
  EXPECT_EQ(modeOf(path.parent_path().parent_path()), 0700U);
}

TEST(Logger, SharesItsFileWithAnotherProcess) {
  constexpr int recordsEach = 1000;
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "log";
  std::vector<pid_t> writers;

  for (const std::string_view name : {"first", "second"}) {
    const pid_t writer = fork();
    if (writer == 0) {
      Logger log(path, Level::info, false, fixedClock);
      for (int index = 0; index < recordsEach; ++index) {
        log.write(Level::info, std::string(name) + " " + std::to_string(index));
      }
      _exit(0);
    }
    writers.push_back(writer);
  }
  for (const pid_t writer : writers) {
    int status = -1;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    ASSERT_EQ(status, 0);
  }

  std::map<std::string, int> next;
  for (const std::string& line : linesOf(fileContents(path).value_or(""))) {
    ASSERT_THAT(line, MatchesRegex("\\[2024-02-29 22:54:32\\] i (first|second) [0-9]+"));
    const std::string message = line.substr(line.find('i') + 2);
    const std::size_t blank = message.find(' ');
    ASSERT_EQ(std::stoi(message.substr(blank + 1)), next[message.substr(0, blank)]++) << line;
  }
  EXPECT_EQ(next, (std::map<std::string, int>{{"first", recordsEach}, {"second", recordsEach}}));
}

/// Makes a place in which no log file can lie, and returns the path the log is to have there.
struct PlaceCase {
  std::string name;
  std::filesystem::path (*place)(const TemporaryFolder&);
};

class LoggerWithoutAFile : public testing::TestWithParam<PlaceCase> {};

TEST_P(LoggerWithoutAFile, DropsItsRecordsAndGoesOn) {
  const TemporaryFolder folder;
  const std::filesystem::path path = GetParam().place(folder);
  Logger log(path, Level::info, false, fixedClock);

  EXPECT_NO_THROW(log.write(Level::error, "lost"));
  std::error_code ignored;
  EXPECT_FALSE(std::filesystem::is_regular_file(path, ignored));
}

INSTANTIATE_TEST_SUITE_P(Places, LoggerWithoutAFile,
                         testing::Values(PlaceCase{"FileInTheFoldersPlace",
                                                   [](const TemporaryFolder& folder) {
                                                     return folder.write("file", "") / "log";
                                                   }},
                                         PlaceCase{"FolderThatLeadsNowhere",
                                                   [](const TemporaryFolder& folder) {
                                                     std::filesystem::create_directory_symlink(
                                                         folder / "unmounted", folder / "data");
                                                     return folder / "data" / "log";
                                                   }},
                                         PlaceCase{"FolderInTheFilesPlace",
                                                   [](const TemporaryFolder& folder) {
                                                     std::filesystem::create_directory(folder /
                                                                                       "log");
                                                     return folder / "log";
                                                   }},
                                         PlaceCase{"PipeWithoutAReaderInTheFilesPlace",
                                                   [](const TemporaryFolder& folder) {
                                                     mkfifo((folder / "log").c_str(), 0600);
                                                     return folder / "log";
                                                   }},
                                         PlaceCase{"PathThatIsTooLong",
                                                   [](const TemporaryFolder& folder) {
                                                     return folder / std::string(300, 'x');
                                                   }}),
                         [](const auto& test) { return test.param.name; });

TEST(Logger, WritesNothingToAPipeThatIsRead) {
  const TemporaryFolder folder;
  const std::string path = (folder / "log").string();
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);

  Logger log(path, Level::debug, false, fixedClock);
  log.write(Level::error, "lost");

  char byte = 0;
  EXPECT_EQ(read(reader, &byte, 1), 0);
  close(reader);
}

TEST(Logger, CreatesNothingBehindAFolderThatLeadsNowhere) {
  const TemporaryFolder folder;
  std::filesystem::create_directory_symlink(folder / "unmounted", folder / "data");

  const Logger log(folder / "data" / "log", Level::info, false, fixedClock);

  EXPECT_FALSE(std::filesystem::exists(folder / "unmounted"));
}

constexpr std::string_view infoRecord = "[2024-02-29 22:54:32] i started\n";
constexpr std::string_view errorRecord = "[2024-02-29 22:54:32] ! failed\n";

/// What a log that writes to standard error puts there, of one record of each level. The last
/// record marks the end, so that nothing has to be waited for.
std::string shownOn(const Channel& channel, Level minLevel, std::size_t size) {
  const Redirection standardError(STDERR_FILENO, channel.writer());
  Logger log(std::nullopt, minLevel, true, fixedClock);
  log.write(Level::debug, "opened");
  log.write(Level::info, "started");
  log.write(Level::error, "failed");
  return channel.read(size);
}

TEST(LoggerOnStandardError, ShowsErrorsAloneInAPipe) {
  EXPECT_EQ(shownOn(Channel::pipe(), Level::info, errorRecord.size()), errorRecord);
  EXPECT_EQ(shownOn(Channel::pipe(), Level::debug, errorRecord.size()), errorRecord);
}

TEST(LoggerOnStandardError, ShowsInformationTooOnATerminal) {
  const std::string expected = std::string(infoRecord) + std::string(errorRecord);
  EXPECT_EQ(shownOn(Channel::terminal(), Level::info, expected.size()), expected);
}

TEST(LoggerOnStandardError, ShowsEverythingOnATerminalWhenDebugging) {
  const std::string expected =
      "[2024-02-29 22:54:32] . opened\n" + std::string(infoRecord) + std::string(errorRecord);
  EXPECT_EQ(shownOn(Channel::terminal(), Level::debug, expected.size()), expected);
}

TEST(LoggerOnStandardError, GoesToTheFileAsWell) {
  const TemporaryFolder folder;
  const Channel channel = Channel::pipe();
  const Redirection standardError(STDERR_FILENO, channel.writer());
  Logger log(folder / "log", Level::info, true, fixedClock);

  log.write(Level::info, "started");
  log.write(Level::error, "failed");

  EXPECT_EQ(channel.read(errorRecord.size()), errorRecord);
  EXPECT_EQ(fileContents(folder / "log"), std::string(infoRecord) + std::string(errorRecord));
}

TEST(LoggerOnStandardError, StaysSilentWhenTheLogIsForTheFileAlone) {
  const TemporaryFolder folder;
  const Channel channel = Channel::pipe();
  const Redirection standardError(STDERR_FILENO, channel.writer());
  Logger quiet(folder / "log", Level::debug, false, fixedClock);
  Logger loud(std::nullopt, Level::debug, true, fixedClock);

  quiet.write(Level::error, "not shown");
  loud.write(Level::error, "failed");

  EXPECT_EQ(channel.read(errorRecord.size()), errorRecord);
}

TEST(LoggerOnStandardError, NeverTouchesStandardOutput) {
  const Channel output = Channel::pipe();
  const Channel error = Channel::pipe();
  const Redirection standardOutput(STDOUT_FILENO, output.writer());
  const Redirection standardError(STDERR_FILENO, error.writer());
  Logger log(std::nullopt, Level::debug, true, fixedClock);

  log.write(Level::error, "failed");
  ASSERT_TRUE(writeAll(output.writer(), "reply\n"));

  EXPECT_EQ(output.read(6), "reply\n");
}

TEST(LoggerInAFile, CutsARecordThatIsTooLong) {
  const TemporaryFolder folder;
  Logger log(folder / "log", Level::info, false, fixedClock);
  std::string message;
  while (message.size() < 2 * Logger::longestRecord) message += "步";

  log.write(Level::info, message);
  log.write(Level::info, "next");

  const std::vector<std::string> lines = linesOf(fileContents(folder / "log").value());
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_LE(lines[0].size() + 1, Logger::longestRecord);
  EXPECT_GT(lines[0].size() + 4, Logger::longestRecord);
  EXPECT_TRUE(lines[0].ends_with("步…"));
  EXPECT_THAT(lines[1], testing::EndsWith("] i next"));
}

TEST(LoggerInAFile, LeavesARecordAloneThatIsJustShortEnough) {
  const TemporaryFolder folder;
  Logger log(folder / "log", Level::info, false, fixedClock);
  const std::size_t withoutMessage = std::string("[2024-02-29 22:54:32] i \n").size();
  const std::string message(Logger::longestRecord - withoutMessage, '.');

  log.write(Level::info, message);

  const std::string contents = fileContents(folder / "log").value();
  EXPECT_EQ(contents.size(), Logger::longestRecord);
  EXPECT_TRUE(contents.ends_with("] i " + message + "\n"));
}

TEST(LoggerInAFile, BeginsALineOfItsOwnAfterARecordThatDidNotFit) {
  const TemporaryFolder folder;
  Logger log(folder / "log", Level::info, false, fixedClock);
  {
    const FileSizeGuard full(40);
    log.write(Level::info, "first");
    log.write(Level::info, "torn");
    log.write(Level::info, "lost");
  }

  log.write(Level::info, "next");
  log.write(Level::info, "last");

  const std::vector<std::string> lines = linesOf(fileContents(folder / "log").value());
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_THAT(lines[0], testing::EndsWith("] i first"));
  EXPECT_EQ(lines[1].size(), 40 - lines[0].size() - 1);
  EXPECT_THAT(lines[2], testing::EndsWith("] i next"));
  EXPECT_THAT(lines[3], testing::EndsWith("] i last"));
}

TEST(Logger, EndsTheLineThatAnEarlierProcessTore) {
  const TemporaryFolder folder;
  folder.write("log", "[2024-02-29 22:54:32] i to");

  for (const char* record : {"next", "last"}) {
    Logger(folder / "log", Level::info, false, fixedClock).write(Level::info, record);
  }

  EXPECT_EQ(fileContents(folder / "log"),
            "[2024-02-29 22:54:32] i to\n"
            "[2024-02-29 22:54:32] i next\n"
            "[2024-02-29 22:54:32] i last\n");
}

TEST(Logger, LeavesATornLineAsItIsUntilThereIsARecord) {
  const TemporaryFolder folder;
  folder.write("log", "[2024");

  Logger(folder / "log", Level::info, false, fixedClock).write(Level::debug, "dropped");

  EXPECT_EQ(fileContents(folder / "log"), "[2024");
}

}  // namespace
