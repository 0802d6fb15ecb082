#include "bench/process/Delays.h"
#include "bench/process/Child.h"
#include "bench/process/Requests.h"

#include <nlohmann/json.hpp>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
using Microseconds = std::chrono::duration<double, std::micro>;

double startMilliseconds(const std::vector<std::string>& words, const std::string& request) {
  const Clock::time_point begin = Clock::now();
  Child child(words);
  child.answer(request);
  const Milliseconds taken = Clock::now() - begin;
  child.finish();
  return taken.count();
}

double answerMicroseconds(Child& child, const std::string& request) {
  const Clock::time_point begin = Clock::now();
  child.answer(request);
  const Microseconds taken = Clock::now() - begin;
  return taken.count();
}

}  // namespace

Measurement Delays::start(const Programs& programs) {
  constexpr int rounds = 200;
  const std::string request = Requests::initialize();
  std::vector<double> ours;
  std::vector<double> floor;
  for (int round = 0; round < rounds; ++round) {
    ours.push_back(startMilliseconds(programs.server, request));
    floor.push_back(startMilliseconds(programs.echo, request));
  }
  return {.what = "start to initialize reply",
          .ours = middle(ours),
          .floor = middle(floor),
          .target = 3,
          .unit = "ms"};
}

Measurement Delays::roundTrip(const Programs& programs) {
  constexpr int rounds = 20000;
  const std::string request = Requests::ping();
  Child server(programs.server);
  Child echo(programs.echo);
  Requests::resultOf(server.answer(Requests::initialize()));
  echo.answer(request);
  std::vector<double> ours;
  std::vector<double> floor;
  for (int round = 0; round < rounds; ++round) {
    ours.push_back(answerMicroseconds(server, request));
    floor.push_back(answerMicroseconds(echo, request));
  }
  return {.what = "ping round trip",
          .ours = middle(ours),
          .floor = middle(floor),
          .target = 2,
          .unit = "µs"};
}
