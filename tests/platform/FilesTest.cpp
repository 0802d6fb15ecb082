#include "platform/Files.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <system_error>
#include <thread>

namespace {

using namespace std::string_literals;

/// A pipe whose ends close with the test.
class Pipe {
public:
  explicit Pipe(int flags = 0) {
    if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : ends) fcntl(end, F_SETFL, fcntl(end, F_GETFL) | flags);
  }
  ~Pipe() {
    closeReader();
    closeWriter();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends[0]; }
  int writer() const { return ends[1]; }
  void closeReader() { closeEnd(ends[0]); }
  void closeWriter() { closeEnd(ends[1]); }

private:
  static void closeEnd(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }

  std::array<int, 2> ends{};
};

/// Everything that comes out of `descriptor` until its end.
std::string readToEnd(int descriptor) {
  std::string all;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = readSome(descriptor, buffer.data(), buffer.size())) {
    all.append(buffer.data(), count);
  }
  return all;
}

/// More than a pipe holds.
std::string manyBytes() {
  std::string bytes;
  for (int index = 0; index < 300000; ++index) bytes += static_cast<char>(index % 251);
  return bytes;
}

TEST(FileContents, AreAllBytesOfTheFile) {
  const TemporaryFolder folder;
  const std::string bytes = "a\0\xFF\r\n"s + manyBytes();
  EXPECT_EQ(fileContents(folder.write("file", bytes)), bytes);
}

TEST(FileContents, OfAnEmptyFileAreEmpty) {
  const TemporaryFolder folder;
  EXPECT_EQ(fileContents(folder.write("file", "")), "");
}

TEST(FileContents, AreAbsentWithoutAFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(fileContents(folder / "missing"), std::nullopt);
  EXPECT_EQ(fileContents(folder / "missing" / "file"), std::nullopt);
}

TEST(FileContents, AreAbsentForADirectory) {
  const TemporaryFolder folder;
  EXPECT_EQ(fileContents(folder.path()), std::nullopt);
}

TEST(WriteAll, WritesEveryByte) {
  const TemporaryFolder folder;
  const std::string path = (folder / "file").string();
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT, 0600);

  EXPECT_TRUE(writeAll(descriptor, "a\0b"s));
  EXPECT_TRUE(writeAll(descriptor, ""));
  close(descriptor);

  EXPECT_EQ(fileContents(path), "a\0b"s);
}

TEST(WriteAll, WaitsForAReaderWhereTheDescriptorDoesNotBlock) {
  Pipe pipe(O_NONBLOCK);
  const std::string bytes = manyBytes();
  std::string received;
  std::thread reading([&] { received = readToEnd(pipe.reader()); });

  const bool written = writeAll(pipe.writer(), bytes);
  pipe.closeWriter();
  reading.join();

  EXPECT_TRUE(written);
  EXPECT_EQ(received, bytes);
}

TEST(WriteAll, SaysWhenTheDescriptorIsClosed) {
  errno = 0;
  EXPECT_FALSE(writeAll(-1, "text"));
  EXPECT_EQ(errno, EBADF);
}

TEST(WriteAll, SaysWhenNobodyReadsAnyMore) {
  const auto before = signal(SIGPIPE, SIG_IGN);
  Pipe pipe;
  pipe.closeReader();

  const bool written = writeAll(pipe.writer(), "text");
  const int error = errno;
  signal(SIGPIPE, before);

  EXPECT_FALSE(written);
  EXPECT_EQ(error, EPIPE);
}

TEST(WriteWithoutWaiting, GivesUpOnAPipeThatNobodyReads) {
  Pipe pipe;
  const std::string bytes = manyBytes();
  writeWithoutWaiting(pipe.writer(), bytes);
  writeWithoutWaiting(pipe.writer(), "one more");
  pipe.closeWriter();

  const std::string received = readToEnd(pipe.reader());
  EXPECT_FALSE(received.empty());
  EXPECT_LT(received.size(), bytes.size());
  EXPECT_EQ(received, bytes.substr(0, received.size()));
}

TEST(WriteWithoutWaiting, WritesEverythingToAFile) {
  const TemporaryFolder folder;
  const std::string path = (folder / "file").string();
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
  writeWithoutWaiting(descriptor, manyBytes());
  close(descriptor);

  EXPECT_EQ(fileContents(path), manyBytes());
}

TEST(WriteWithoutWaiting, EndsWhenTheSystemRefuses) {
  writeWithoutWaiting(-1, "text");
  const auto before = signal(SIGPIPE, SIG_IGN);
  Pipe pipe;
  pipe.closeReader();
  writeWithoutWaiting(pipe.writer(), "text");
  signal(SIGPIPE, before);
  EXPECT_EQ(errno, EPIPE);
}

TEST(ReadSome, ReturnsWhatIsThere) {
  const Pipe pipe;
  ASSERT_TRUE(writeAll(pipe.writer(), "line\nrest"));
  std::array<char, 64> buffer{};

  const std::size_t count = readSome(pipe.reader(), buffer.data(), buffer.size());

  EXPECT_EQ(std::string(buffer.data(), count), "line\nrest");
}

TEST(ReadSome, NeverReadsMoreThanItsSize) {
  const Pipe pipe;
  ASSERT_TRUE(writeAll(pipe.writer(), "abc"));
  std::array<char, 3> buffer{'-', '-', '-'};

  EXPECT_EQ(readSome(pipe.reader(), buffer.data(), 2), 2U);
  EXPECT_EQ(std::string(buffer.data(), 3), "ab-");
}

TEST(ReadSome, ReturnsNothingAtTheEnd) {
  Pipe pipe;
  pipe.closeWriter();
  char byte = 0;
  EXPECT_EQ(readSome(pipe.reader(), &byte, 1), 0U);
}

TEST(ReadSome, WaitsForTheFirstByteWhereTheDescriptorDoesNotBlock) {
  const Pipe pipe(O_NONBLOCK);
  std::thread writing([&] { writeAll(pipe.writer(), "x"); });
  char byte = 0;

  const std::size_t count = readSome(pipe.reader(), &byte, 1);
  writing.join();

  EXPECT_EQ(count, 1U);
  EXPECT_EQ(byte, 'x');
}

TEST(ReadSome, ThrowsWhatTheSystemSays) {
  char byte = 0;
  try {
    readSome(-1, &byte, 1);
    FAIL() << "a closed descriptor can be read";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code(), std::errc::bad_file_descriptor);
  }
}

/// Which of the three standard streams are closed: bit 0 for input, bit 1 for output, bit 2 for
/// error.
class ClosedStreams : public testing::TestWithParam<unsigned> {
protected:
  static bool isClosed(int stream) { return (GetParam() >> stream & 1U) != 0; }

  /// In a process that has lost its streams: which requirement is not met, 0 for none.
  static int unmetRequirement(dev_t sentinelDevice, ino_t sentinelNode) {
    struct stat nothing {};
    if (stat("/dev/null", &nothing) != 0) return 1;
    for (int stream = 0; stream <= 2; ++stream) {
      struct stat status {};
      if (fstat(stream, &status) != 0) return 10 + stream;
      const bool isNothing = status.st_rdev == nothing.st_rdev && S_ISCHR(status.st_mode);
      const bool isSentinel = status.st_dev == sentinelDevice && status.st_ino == sentinelNode;
      if (isClosed(stream) ? !isNothing : !isSentinel) return 20 + stream;
    }
    return open("/dev/null", O_RDONLY) > 2 ? 0 : 30;
  }
};

TEST_P(ClosedStreams, AreReservedAndTheOthersStay) {
  const TemporaryFolder folder;
  const std::string path = folder.write("sentinel", "").string();
  struct stat sentinel {};
  ASSERT_EQ(stat(path.c_str(), &sentinel), 0);

  const pid_t child = fork();
  if (child == 0) {
    const int descriptor = open(path.c_str(), O_RDWR);
    for (int stream = 0; stream <= 2; ++stream) {
      dup2(descriptor, stream);
      if (isClosed(stream)) close(stream);
    }
    close(descriptor);
    reserveStandardStreams();
    _exit(unmetRequirement(sentinel.st_dev, sentinel.st_ino));
  }
  int state = 0;
  ASSERT_EQ(waitpid(child, &state, 0), child);

  EXPECT_TRUE(WIFEXITED(state));
  EXPECT_EQ(WEXITSTATUS(state), 0);
}

INSTANTIATE_TEST_SUITE_P(Streams, ClosedStreams, testing::Range(0U, 8U));

/// A terminal of which nobody has read anything yet.
class Terminal {
public:
  Terminal() : reader(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (reader < 0 || grantpt(reader) != 0 || unlockpt(reader) != 0) fail();
    writer = open(ptsname(reader), O_RDWR | O_NOCTTY);
    if (writer < 0) fail();
  }
  ~Terminal() {
    hangUp();
    close(writer);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int descriptor() const { return writer; }

  /// What it shows of what was written to it, which is something.
  std::string shown() const {
    std::array<char, 256> text{};
    const ssize_t count = read(reader, text.data(), text.size());
    return {text.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  void hangUp() {
    if (reader >= 0) close(reader);
    reader = -1;
  }

private:
  [[noreturn]] static void fail() {
    throw std::system_error(errno, std::generic_category(), "terminal");
  }

  int reader;
  int writer = -1;
};

TEST(TerminalOfItsOwn, KeepsNobodyWaiting) {
  const Terminal terminal;
  // What would hang is ended by the system.
  constexpr unsigned patienceSeconds = 60;
  alarm(patienceSeconds);
  makeTerminalOwn(terminal.descriptor());

  for (int times = 0; times < 100; ++times) {
    writeWithoutWaiting(terminal.descriptor(), std::string(4000, '.') + "\n");
  }

  alarm(0);
}

TEST(TerminalOfItsOwn, BlocksOtherProgramsAsEver) {
  const Terminal terminal;
  const int shared = dup(terminal.descriptor());
  const int before = fcntl(shared, F_GETFL);
  ASSERT_EQ(before & O_NONBLOCK, 0);

  makeTerminalOwn(terminal.descriptor());
  writeWithoutWaiting(terminal.descriptor(), "complaint\n");

  EXPECT_NE(fcntl(terminal.descriptor(), F_GETFL) & O_NONBLOCK, 0);
  EXPECT_EQ(fcntl(shared, F_GETFL), before);
  EXPECT_EQ(terminal.shown(), "complaint\r\n");
  close(shared);
}

TEST(WriteWithoutWaiting, WaitsForNoTerminalOfOthers) {
  const Terminal terminal;
  const int before = fcntl(terminal.descriptor(), F_GETFL);
  constexpr unsigned patienceSeconds = 60;
  alarm(patienceSeconds);

  for (int times = 0; times < 100; ++times) {
    writeWithoutWaiting(terminal.descriptor(), std::string(4000, '.') + "\n");
  }

  alarm(0);
  EXPECT_EQ(fcntl(terminal.descriptor(), F_GETFL), before);
}

TEST(TerminalOfItsOwn, IsNotMadeOfAnythingElse) {
  const Pipe pipe;
  const int before = fcntl(pipe.writer(), F_GETFL);

  makeTerminalOwn(pipe.writer());
  makeTerminalOwn(-1);

  EXPECT_EQ(fcntl(pipe.writer(), F_GETFL), before);
}

TEST(ReadSome, TakesAHangUpForTheEnd) {
  Terminal terminal;
  terminal.hangUp();
  std::array<char, 16> buffer{};

  EXPECT_EQ(readSome(terminal.descriptor(), buffer.data(), buffer.size()), 0U);
}

TEST(WriteWhatFits, TellsHowMuchThatWas) {
  const TemporaryFolder folder;
  const int file = open((folder / "file").c_str(), O_WRONLY | O_CREAT, 0600);
  EXPECT_EQ(writeWhatFits(file, "all of it"), 9U);
  close(file);

  EXPECT_EQ(writeWhatFits(file, "none of it"), 0U);
}

}  // namespace
