#include "bench/process/Child.h"
#include "platform/Files.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <system_error>

extern char** environ;

namespace {

void require(int error, const char* what) {
  if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

struct Pipe {
  int reader;
  int writer;
};

/// A pipe whose ends are inherited only as a standard stream.
Pipe openPipe() {
  std::array<int, 2> ends{};
  require(pipe(ends.data()) == 0 ? 0 : errno, "pipe");
  for (const int end : ends) require(fcntl(end, F_SETFD, FD_CLOEXEC) == 0 ? 0 : errno, "fcntl");
  return {ends[0], ends[1]};
}

void closeOnce(int& descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

/// Starts a program without copying this process's memory, whose size would increase the start-up
/// time.
pid_t spawn(const std::vector<std::string>& words, int input, int output) {
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t streams{};
  require(posix_spawn_file_actions_init(&streams), "posix_spawn");
  posix_spawn_file_actions_adddup2(&streams, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&streams, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&streams, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

  pid_t process = -1;
  const int error =
      posix_spawn(&process, pointers.front(), &streams, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&streams);
  require(error, pointers.front());
  return process;
}

}  // namespace

Child::Child(const std::vector<std::string>& words) {
  Pipe toProgram = openPipe();
  Pipe fromProgram = openPipe();
  process = spawn(words, toProgram.reader, fromProgram.writer);
  closeOnce(toProgram.reader);
  closeOnce(fromProgram.writer);
  input = toProgram.writer;
  output = fromProgram.reader;
  constexpr std::size_t pipeful = 65536;
  received.resize(pipeful);
}

Child::~Child() {
  closeOnce(input);
  closeOnce(output);
  if (process < 0) return;
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

std::string_view Child::answer(std::string_view line) {
  require(writeAll(input, line) ? 0 : errno, "write");
  std::size_t size = 0;
  while (size == 0 || received[size - 1] != '\n') {
    if (size == received.size()) received.resize(2 * size);
    const std::size_t count = readSome(output, received.data() + size, received.size() - size);
    if (count == 0) throw std::runtime_error("the program ended without an answer");
    size += count;
  }
  return {received.data(), size};
}

namespace {

/// The peak resident memory of the process in bytes; `nullopt` when /proc does not have it.
std::optional<std::int64_t> highWaterMark(pid_t process) {
  constexpr std::string_view key = "VmHWM:";
  const std::string status =
      fileContents("/proc/" + std::to_string(process) + "/status").value_or("");
  const std::size_t line = status.find(key);
  if (line == std::string::npos) return std::nullopt;
  const std::size_t digits = status.find_first_of("0123456789", line + key.size());
  if (digits == std::string::npos) return std::nullopt;
  std::int64_t kibibytes = 0;
  std::from_chars(status.data() + digits, status.data() + status.size(), kibibytes);
  return kibibytes * 1024;
}

struct Ended {
  int status;
  rusage usage;
};

/// Waits for the process and clears its id.
Ended waited(pid_t& process) {
  Ended ended{};
  require(wait4(process, &ended.status, 0, &ended.usage) == process ? 0 : errno, "wait4");
  process = -1;
  return ended;
}

std::int64_t peakBytes(const rusage& usage) {
#ifdef __APPLE__
  constexpr std::int64_t bytesPerUnit = 1;
#else
  constexpr std::int64_t bytesPerUnit = 1024;
#endif
  return usage.ru_maxrss * bytesPerUnit;
}

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

std::int64_t Child::finish() {
  // For an ended child the system's figure includes the memory of this process at the start. So the
  // running child's figure is used where it is available.
  const std::optional<std::int64_t> peak = highWaterMark(process);
  closeOnce(input);
  closeOnce(output);
  const Ended ended = waited(process);
  return peak.value_or(peakBytes(ended.usage));
}

Child::Ending Child::ending() {
  closeOnce(input);
  while (readSome(output, received.data(), received.size()) > 0) {
  }
  closeOnce(output);
  const Ended ended = waited(process);
  return {.succeeded = WIFEXITED(ended.status) && WEXITSTATUS(ended.status) == 0,
          .processorSeconds = seconds(ended.usage.ru_utime) + seconds(ended.usage.ru_stime),
          .peakBytes = peakBytes(ended.usage)};
}
