// Measures the built programs from outside:
//
//   larkspur_process_bench start|round-trip|memory <folder of the programs> <data root>
//   larkspur_process_bench import <folder of the programs> <export>
//
// Prints a JSON array of measurements. For the round trip, the caller must pin both programs and
// this one to one processor.

#include "bench/import/ImportCost.h"
#include "bench/process/Delays.h"
#include "bench/process/Memory.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::array<std::string_view, 4> subjects{"start", "round-trip", "memory", "import"};

std::vector<Measurement> measured(std::string_view subject, const std::filesystem::path& folder,
                                  const std::string& data) {
  if (subject == "import") return ImportCost::measured(folder / "larkspur-import", data);
  const Programs programs{.server = {folder / "larkspur-mcp", "--data-root", data},
                          .echo = {folder / "larkspur_echo"}};
  if (subject == "start") return {Delays::start(programs)};
  if (subject == "round-trip") return {Delays::roundTrip(programs)};
  return Memory::peaks(programs.server);
}

}  // namespace

int main(int count, char* words[]) {
  const std::string_view subject = count == 4 ? words[1] : "";
  if (std::ranges::find(subjects, subject) == subjects.end()) {
    std::fputs(
        "usage: larkspur_process_bench start|round-trip|memory <folder of the programs>"
        " <data root>\n"
        "       larkspur_process_bench import <folder of the programs> <export>\n",
        stderr);
    return 2;
  }
  // Writing to a program that has ended must return an error, not kill this process.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    std::cout << nlohmann::ordered_json(measured(subject, words[2], words[3])).dump(2) << '\n';
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "larkspur_process_bench: %s\n", error.what());
    return 1;
  }
}
