// Imports from archives whose damage shows at the start, in the middle or after the last element.

#include "apps/import/DatabaseContents.h"
#include "apps/import/ImportHarness.h"
#include "apps/import/ZipFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

namespace {

using testing::HasSubstr;

/// What is done to an archive whose XML has `size` bytes, and words of the refusal.
struct DamageCase {
  std::string name;
  void (*damage)(const std::filesystem::path& archive, std::uint32_t size);
  std::string words;
};

void PrintTo(const DamageCase& value, std::ostream* out) { *out << value.name; }

void cutOff(const std::filesystem::path& archive, std::uint32_t /*size*/) {
  std::filesystem::resize_file(archive, std::filesystem::file_size(archive) / 2);
}

void exchangeBytes(const std::filesystem::path& archive, std::uint32_t /*size*/) {
  std::string bytes = contentsOf(archive);
  bytes.replace(bytes.size() / 2, 8, "damaged!");
  std::ofstream(archive, std::ios::binary) << bytes;
}

void declareMore(const std::filesystem::path& archive, std::uint32_t size) {
  declareSize(archive, size + 1);
}

// Only the line feed behind the root element is too much.
void declareLess(const std::filesystem::path& archive, std::uint32_t size) {
  declareSize(archive, size - 1);
}

void declareAnotherChecksum(const std::filesystem::path& archive, std::uint32_t /*size*/) {
  spoilChecksum(archive);
}

class DamagedArchive : public Import, public testing::WithParamInterface<DamageCase> {};

TEST_P(DamagedArchive, LeavesAnExistingMemberAsItWas) {
  writeExport(exportText(100));
  const Report first = importFor("Ann");
  const std::filesystem::path database = root() / "members" / first.id / "health.db";
  const std::string before = databaseContents(database);
  const nlohmann::json rosterBefore = roster();
  const std::string longer = exportText(300);
  // An archive is told by its bytes, whatever it is called.
  const std::filesystem::path archive = folder / "export.xml";
  std::filesystem::remove(archive);
  writeZip(archive, {{"apple_health_export/export.xml", longer}});
  GetParam().damage(archive, static_cast<std::uint32_t>(longer.size()));

  EXPECT_THAT(refusal("Ann"), HasSubstr(GetParam().words));

  EXPECT_EQ(databaseContents(database), before);
  EXPECT_EQ(roster(), rosterBefore);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DamagedArchive,
    testing::Values(
        DamageCase{"CutOff", cutOff, "is not a complete zip archive, it may be cut off"},
        // Either the archive or the XML that comes of it is the first to show it.
        DamageCase{"BytesExchanged", exchangeBytes, "othing was stored"},
        DamageCase{"MoreDeclaredThanThereIs", declareMore, "holds less than the"},
        DamageCase{"LessDeclaredThanThereIs", declareLess, "holds more than the"},
        DamageCase{"AnotherChecksum", declareAnotherChecksum, "cannot be read, nothing was"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
