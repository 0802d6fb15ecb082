// Writes the generated seeds into the folder in its only argument: the members' databases, and a
// conversation of all example calls.

#include "SampleDatabase.h"
#include "examples/Examples.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace {

void writeDatabases(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  constexpr auto overwriting = std::filesystem::copy_options::overwrite_existing;

  TestDatabase whole;
  fillSample(whole);
  std::filesystem::copy_file(whole.path(), folder / "whole.db", overwriting);

  // A file from an older receiver application, without humidity and without statistics.
  whole.run(
      "DROP TABLE workout_humidity; DROP TABLE stat_sources; DELETE FROM records WHERE rowid % 2;"
      "VACUUM");
  std::filesystem::copy_file(whole.path(), folder / "older.db", overwriting);

  TestDatabase logging;
  fillSample(logging);
  logging.run("PRAGMA journal_mode=WAL");
  std::filesystem::copy_file(logging.path(), folder / "logging.db", overwriting);
}

void writeConversation(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  std::ofstream file(folder / "examples.txt");
  file.exceptions(std::ios::badbit | std::ios::failbit);
  for (const Example& example : Examples::all()) {
    nlohmann::ordered_json request{{"id", example.name}, {"method", "tools/call"}};
    request["params"] = {{"name", example.tool}, {"arguments", example.arguments}};
    file << request.dump() << '\n';
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::cerr << "usage: larkspur_fuzz_seeds FOLDER\n";
    return 2;
  }
  try {
    const std::filesystem::path folder = arguments[1];
    writeDatabases(folder / "database");
    writeConversation(folder / "conversation");
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "larkspur_fuzz_seeds: " << error.what() << '\n';
    return 1;
  }
}
