// Writes the databases that the fuzzing of a member's database begins with into the folder that its
// one argument names.

#include "SampleDatabase.h"

#include <exception>
#include <filesystem>
#include <iostream>

namespace {

void write(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  constexpr auto overwriting = std::filesystem::copy_options::overwrite_existing;

  TestDatabase whole;
  fillSample(whole);
  std::filesystem::copy_file(whole.path(), folder / "whole.db", overwriting);

  // What the receiver application left before it kept humidity, and statistics of its own.
  whole.run(
      "DROP TABLE workout_humidity; DROP TABLE stat_sources; DELETE FROM records WHERE rowid % 2;"
      "VACUUM");
  std::filesystem::copy_file(whole.path(), folder / "older.db", overwriting);

  TestDatabase logging;
  fillSample(logging);
  logging.run("PRAGMA journal_mode=WAL");
  std::filesystem::copy_file(logging.path(), folder / "logging.db", overwriting);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) {
    std::cerr << "usage: larkspur_fuzz_seeds FOLDER\n";
    return 2;
  }
  try {
    write(arguments[1]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "larkspur_fuzz_seeds: " << error.what() << '\n';
    return 1;
  }
}
