// Pipes where SQLite opens a file, when no check beforehand can find them.

#include "platform/ReceiverError.h"
#include "store/Database.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace {

using namespace std::string_literals;

/// A database in rollback-journal mode, two pages long. What would hang is ended by the system.
class PipeForSQLite : public testing::Test {
protected:
  PipeForSQLite() {
    constexpr unsigned patienceSeconds = 60;
    alarm(patienceSeconds);
    Database database(path, {.create = true, .readOnly = false});
    database.exec("PRAGMA page_size=4096; CREATE TABLE t (x); INSERT INTO t VALUES (1)");
  }
  ~PipeForSQLite() override { alarm(0); }

  static void makePipe(const std::string& place) {
    ASSERT_EQ(mkfifo(place.c_str(), 0600), 0) << place;
  }

  /// What a query of `database` fails with; "" when it does not.
  static std::string failureOf(const Database& database) {
    try {
      database.prepare("SELECT x FROM t").run();
    } catch (const ReceiverError& error) {
      return error.what();
    }
    return "";
  }

  TemporaryFolder folder;
  std::string path = (folder / "file.sqlite").string();
};

TEST_F(PipeForSQLite, IsRefusedWhenItComesAfterTheOpening) {
  for (const char* ending : {"-journal", "-wal"}) {
    for (const bool readOnly : {true, false}) {
      const Database database(path, {.create = false, .readOnly = readOnly});
      makePipe(path + ending);
      EXPECT_NE(failureOf(database), "") << ending;
      std::filesystem::remove(path + ending);
      EXPECT_EQ(failureOf(database), "") << ending;
    }
  }
}

/// `number` as a journal has it.
std::string fourBytes(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
  return bytes;
}

/// The journal of a writer that was killed in a transaction over several databases before it had
/// changed anything: `superJournal` is the path of the file that they share.
std::string abandonedJournal(const std::string& superJournal) {
  const std::string magic = "\xD9\xD5\x05\xF9\x20\xA1\x63\xD7"s;
  constexpr std::uint32_t sectorSize = 512;
  std::string journal =
      magic + fourBytes(0) + fourBytes(1) + fourBytes(2) + fourBytes(sectorSize) + fourBytes(4096);
  journal.resize(sectorSize);
  std::uint32_t sum = 0;
  for (const char character : superJournal) sum += static_cast<unsigned char>(character);
  return journal + fourBytes(262145) + superJournal +
         fourBytes(static_cast<std::uint32_t>(superJournal.size())) + fourBytes(sum) + magic;
}

TEST_F(PipeForSQLite, IsRefusedWhereAJournalNamesIt) {
  const std::string pipe = (folder / "pipe").string();
  makePipe(pipe);
  folder.write("file.sqlite-journal", abandonedJournal(pipe));
  const Database database(path, {.create = false, .readOnly = false});

  EXPECT_EQ(failureOf(database), "prepare 失败:unable to open database file");
  EXPECT_EQ(failureOf(database), "");
}

#ifdef F_SETLEASE
/// A file server leases a file to a client of its own; the system asks for it back when somebody
/// opens the file.
TEST_F(PipeForSQLite, IsNotWhatALeasedFileIsTakenFor) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t holder = fork();
  if (holder == 0) {
    const int file = open(path.c_str(), O_RDWR);
    const char leased = fcntl(file, F_SETLEASE, F_WRLCK) == 0 ? 'y' : 'n';
    if (write(ready[1], &leased, 1) != 1) _exit(1);
    while (true) pause();  // until the system's signal ends the process, and the lease
  }
  char leased = 'n';
  EXPECT_EQ(read(ready[0], &leased, 1), 1);
  close(ready[0]);
  close(ready[1]);

  std::string failure;
  if (leased == 'y') failure = failureOf(Database(path, {}));
  kill(holder, SIGKILL);
  waitpid(holder, nullptr, 0);

  if (leased == 'n') GTEST_SKIP() << "the file system leases no files";
  EXPECT_EQ(failure, "");
}
#endif

}  // namespace
