#include "support/ChildProcess.h"
#include "platform/Files.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace {

struct Pipe {
  int reader;
  int writer;
};

Pipe openPipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  return {ends[0], ends[1]};
}

void closeOnce(int& descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

/// Replaces the forked process with the program. Never returns.
[[noreturn]] void become(const std::vector<char*>& words, const char* folder,
                         const std::array<int, 3>& streams, const std::array<Pipe, 3>& pipes) {
  for (int stream = 0; stream < 3; ++stream)
    dup2(streams[static_cast<std::size_t>(stream)], stream);
  for (const Pipe& pipe : pipes) {
    close(pipe.reader);
    close(pipe.writer);
  }
  if (chdir(folder) == 0) execv(words.front(), words.data());
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::filesystem::path& program,
                           const std::vector<std::string>& arguments,
                           const std::filesystem::path& folder) {
  std::vector<std::string> texts{program.string()};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> words;
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);

  const std::array<Pipe, 3> pipes{openPipe(), openPipe(), openPipe()};
  process = fork();
  if (process < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process == 0) {
    become(words, folder.c_str(), {pipes[0].reader, pipes[1].writer, pipes[2].writer}, pipes);
  }
  input = pipes[0].writer;
  output = pipes[1].reader;
  errors = pipes[2].reader;
  close(pipes[0].reader);
  close(pipes[1].writer);
  close(pipes[2].writer);
}

ChildProcess::~ChildProcess() {
  for (int* descriptor : {&input, &output, &errors}) closeOnce(*descriptor);
  if (process < 0) return;
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

void ChildProcess::write(std::string_view bytes) const {
  if (!writeAll(input, bytes)) throw std::system_error(errno, std::generic_category(), "write");
}

void ChildProcess::send(int signal) const {
  if (kill(process, signal) != 0) throw std::system_error(errno, std::generic_category(), "kill");
}

std::string ChildProcess::nextLine() {
  std::size_t end = written.find('\n');
  while (end == std::string::npos) {
    const std::size_t searched = written.size();
    if (!readMore()) throw std::runtime_error("the program wrote no further line");
    end = written.find('\n', searched);
  }
  const std::string line = written.substr(0, end);
  written.erase(0, end + 1);
  return line;
}

bool ChildProcess::hasWritten() const {
  pollfd ready{output, POLLIN, 0};
  return !written.empty() || poll(&ready, 1, 0) > 0;
}

void ChildProcess::stopReadingOutput() { closeOnce(output); }

void ChildProcess::stopReading() {
  stopReadingOutput();
  closeOnce(errors);
}

std::optional<std::size_t> ChildProcess::peakMemory() const { return statusOf("VmHWM:"); }

std::optional<std::size_t> ChildProcess::memory() const { return statusOf("VmRSS:"); }

/// A size in bytes from Linux's status file. getrusage would include this process's memory at the
/// fork.
std::optional<std::size_t> ChildProcess::statusOf(std::string_view label) const {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  constexpr std::size_t kibibyte = 1024;
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(label)) return std::stoull(line.substr(label.size())) * kibibyte;
  }
  return std::nullopt;
}

ChildProcess::Ending ChildProcess::finished() {
  closeOnce(input);
  while (readMore()) {
  }
  int state = 0;
  waitpid(process, &state, 0);
  process = -1;
  const int status = WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
  return {status, written, complained, WIFSIGNALED(state)};
}

/// Reads the program's new output on either stream; false at the end of both.
bool ChildProcess::readMore() {
  constexpr int patienceMilliseconds = 60000;
  std::array<pollfd, 2> waiting{{{output, POLLIN, 0}, {errors, POLLIN, 0}}};
  if (output < 0 && errors < 0) return false;
  if (poll(waiting.data(), waiting.size(), patienceMilliseconds) <= 0) {
    throw std::runtime_error("the program does not go on");
  }
  std::array<char, 4096> buffer{};
  const auto take = [&buffer](const pollfd& ready, int& descriptor, std::string& text) {
    if (descriptor < 0 || ready.revents == 0) return;
    const std::size_t count = readSome(descriptor, buffer.data(), buffer.size());
    text.append(buffer.data(), count);
    if (count == 0) closeOnce(descriptor);
  };
  take(waiting[0], output, written);
  take(waiting[1], errors, complained);
  return true;
}
