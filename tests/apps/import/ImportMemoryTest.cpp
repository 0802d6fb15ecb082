// Exports far larger than the memory that their import may take.

#include "apps/import/DatabaseContents.h"
#include "apps/import/ImportHarness.h"
#include "apps/import/ZipFile.h"
#include "import/census/Check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t mebibyte = 1UL << 20;
constexpr std::size_t exportSize = 64 * mebibyte;

/// The most memory, in bytes, that this process has had so far; 0 where the system does not tell.
std::size_t peakMemory() {
  std::ifstream status("/proc/self/status");
  constexpr std::string_view label = "VmHWM:";
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(label)) return std::stoull(line.substr(label.size())) * 1024;
  }
  return 0;
}

struct LargeCase {
  std::string name;
  void (*write)(const std::filesystem::path& path);
};

void PrintTo(const LargeCase& value, std::ostream* out) { *out << value.name; }

constexpr std::string_view beginning = "<HealthData locale=\"en_GB\">\n";
constexpr std::string_view end =
    "<Record type=\"HKQuantityTypeIdentifierHeartRate\" startDate=\"2024-03-01 08:00:00 +0100\""
    " value=\"61\"/>\n</HealthData>\n";

void writeElements(const std::filesystem::path& path) {
  std::string block;
  while (block.size() < mebibyte) {
    block +=
        "<ClinicalRecord type=\"Condition\" identifier=\"01234567-89AB-CDEF-0123-456789ABCDEF\""
        " sourceName=\"Clinic\" fhirVersion=\"4.0.1\" receivedDate=\"2024-03-01 08:00:00 +0100\""
        " resourceFilePath=\"/clinical-records/Condition-01234567.json\"/>\n";
  }
  std::ofstream file(path, std::ios::binary);
  file << beginning;
  for (std::size_t size = 0; size < exportSize; size += block.size()) file << block;
  file << end;
}

/// An archive of a thousandth of what it unpacks to.
void writeBomb(const std::filesystem::path& path) {
  std::string xml(beginning);
  xml.append(exportSize, ' ').append(end);
  writeZip(path, {{"apple_health_export/export.xml", xml}});
  ASSERT_LT(std::filesystem::file_size(path), exportSize / 900);
}

/// Records whose type, unit, source and device are new and long each time.
void writeNames(const std::filesystem::path& path) {
  std::ofstream file(path, std::ios::binary);
  file << beginning;
  const std::string letters(30000, 'n');
  for (std::size_t size = 0; size < exportSize; size += 4 * letters.size()) {
    const std::string name = std::to_string(size) + letters;
    file << "<Record type=\"" << name << "\" unit=\"" << name << "\" sourceName=\"" << name
         << "\" device=\"" << name << "\" value=\"1\" startDate=\"2024-03-01 08:00:00 +0100\"/>\n";
  }
  file << end;
}

class ImportMemory : public Import, public testing::WithParamInterface<LargeCase> {
protected:
  ImportMemory() { machineZone = "Europe/Berlin"; }

  /// Imports and ends the process, whose status is how many mebibytes more it then has had.
  [[noreturn]] void importAndTell() const noexcept {
    const std::size_t before = peakMemory();
    importFor("Ann", "ann");
    const std::size_t more = (peakMemory() - before) / mebibyte;
    _exit(static_cast<int>(std::min<std::size_t>(more, 255)));
  }
};

TEST_P(ImportMemory, DoesNotGrowWithTheExport) {
  GetParam().write(folder / "export.xml");

  const pid_t child = fork();
  if (child == 0) importAndTell();
  int state = 0;
  waitpid(child, &state, 0);

  ASSERT_TRUE(WIFEXITED(state));
  RecordProperty("MebibytesMore", WEXITSTATUS(state));
  EXPECT_LT(WEXITSTATUS(state), 24);
  EXPECT_THAT(databaseContents(root() / "members/ann/health.db"),
              testing::HasSubstr("stat_types: HeartRate|1|"));
}

INSTANTIATE_TEST_SUITE_P(Cases, ImportMemory,
                         testing::Values(LargeCase{"Elements", writeElements},
                                         LargeCase{"ZipBomb", writeBomb}),
                         [](const auto& test) { return test.param.name; });

class CheckMemory : public Import, public testing::WithParamInterface<LargeCase> {
protected:
  /// Checks and ends the process, whose status is how many mebibytes more it then has had.
  [[noreturn]] void checkAndTell() const noexcept {
    const std::size_t before = peakMemory();
    std::ostringstream unseen;
    const CheckOutcome outcome = runCheck({.source = folder / "export.xml"},
                                          {.progress = unseen,
                                           .progressKind = Importer::Progress::Kind::log,
                                           .lang = SummaryLang::en,
                                           .clock = [] { return now; }});
    if (!outcome.census.complete) _exit(255);
    const std::size_t more = (peakMemory() - before) / mebibyte;
    _exit(static_cast<int>(std::min<std::size_t>(more, 254)));
  }
};

TEST_P(CheckMemory, DoesNotGrowWithTheExport) {
  GetParam().write(folder / "export.xml");

  const pid_t child = fork();
  if (child == 0) checkAndTell();
  int state = 0;
  waitpid(child, &state, 0);

  ASSERT_TRUE(WIFEXITED(state));
  RecordProperty("MebibytesMore", WEXITSTATUS(state));
  // Of names little is kept; a sanitizer puts five times as much around it.
  EXPECT_LT(WEXITSTATUS(state), 64);
}

INSTANTIATE_TEST_SUITE_P(Cases, CheckMemory,
                         testing::Values(LargeCase{"Elements", writeElements},
                                         LargeCase{"ZipBomb", writeBomb},
                                         LargeCase{"Names", writeNames}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
