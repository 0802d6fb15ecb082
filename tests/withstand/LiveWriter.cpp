// A writer that never rests: larkspur-live-writer <database> <diary> <seed>. Stores sessions, new
// ones and old ones once more, until it is killed. Into the diary go single words, a line each:
// "begun" after the first session, "refused" once for every session that someone else's lock kept
// from being written, however often it was tried, and what it failed of.

#include "platform/Files.h"
#include "platform/ReceiverError.h"
#include "withstand/LiveSessions.h"

#include <fcntl.h>

#include <cstdint>
#include <exception>
#include <random>
#include <string>

namespace {

class Diary {
public:
  explicit Diary(const char* path)
      : handle(open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600)) {}

  void note(const std::string& line) const { writeAll(handle, line + "\n"); }

private:
  int handle;
};

/// Stores the session, and tries again at once as long as it meets a lock of someone else.
void insist(LiveSessions::Writer& writer, std::int64_t number, const Diary& diary) {
  bool refused = false;
  while (true) {
    try {
      writer.store(number);
      return;
    } catch (const ReceiverError& error) {
      if (!error.message.ends_with("database is locked")) throw;
      if (!refused) diary.note("refused");
      refused = true;
    }
  }
}

[[noreturn]] void write(const std::string& path, const Diary& diary, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  LiveSessions::Writer writer(path);
  std::int64_t count = writer.count();
  // Whoever comes first after a kill puts the log in order, and the others wait for that.
  writer.store(count++);
  writer.becomeImpatient();
  diary.note("begun");
  while (true) {
    constexpr std::uint64_t oldOnesPerNew = 200;
    const bool isNew = random() % oldOnesPerNew == 0;
    const auto old = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(count));
    insist(writer, isNew ? count++ : old, diary);
    constexpr std::uint64_t sessionsPerCheckpoint = 150;
    if (random() % sessionsPerCheckpoint == 0) writer.checkpoint();
  }
}

}  // namespace

int main(int count, char* words[]) {
  if (count != 4) return 2;
  const Diary diary(words[2]);
  try {
    write(words[1], diary, std::stoull(words[3]));
  } catch (const std::exception& error) {
    diary.note(std::string("failed: ") + error.what());
    return 1;
  }
}
