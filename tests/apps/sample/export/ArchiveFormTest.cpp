#include "apps/sample/ReadArchive.h"
#include "platform/Files.h"
#include "sample/export/ExportOutput.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <zip.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;

struct FormCase {
  std::string name;
  ArchiveForm form;
  bool isStored;
  std::string firstMark;  ///< that the form leaves in the file
  std::string secondMark;
};

void PrintTo(const FormCase& value, std::ostream* out) { *out << value.name; }

class EveryArchiveForm : public testing::TestWithParam<FormCase> {};

/// An archive with the entries "a" and "b".
void write(const std::filesystem::path& path, ArchiveForm form, bool isStored) {
  ExportOutput::Archive archive{.name = "folder/b"};
  archive.before.emplace_back("folder/a", "first");
  archive.isStored = isStored;
  archive.form = form;
  ExportOutput::writeZip(path, archive, 2026y / 11 / 20, [left = 3]() mutable {
    return --left < 0 ? std::string_view() : std::string_view("text ");
  });
}

TEST_P(EveryArchiveForm, HoldsWhatThePlainOneHolds) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "e.zip";

  write(path, GetParam().form, GetParam().isStored);

  const std::vector<std::pair<std::string, std::string>> expected{{"folder/a", "first"},
                                                                  {"folder/b", "text text text "}};
  EXPECT_EQ(entriesOf(path), expected);
  const std::string bytes = fileContents(path).value();
  EXPECT_NE(bytes.find(GetParam().firstMark), std::string::npos);
  EXPECT_NE(bytes.find(GetParam().secondMark), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EveryArchiveForm,
    testing::Values(
        FormCase{"Plain", {}, false, "PK\x05\x06", "PK\x01\x02"},
        FormCase{"Descriptor", {.dataDescriptor = true}, false, "PK\x07\x08", "PK\x05\x06"},
        FormCase{"DescriptorOfStored", {.dataDescriptor = true}, true, "PK\x07\x08", "text text"},
        FormCase{"Wide", {.zip64 = true}, false, "PK\x06\x06", "PK\x06\x07"},
        FormCase{
            "Both", {.dataDescriptor = true, .zip64 = true}, false, "PK\x07\x08", "PK\x06\x06"}),
    [](const auto& test) { return test.param.name; });

TEST(ArchiveForm, MayBeGivenLater) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder / "e.zip";
  write(path, {.zip64 = true}, false);
  const auto before = entriesOf(path);

  reshapeArchive(path, {.dataDescriptor = true});

  EXPECT_EQ(entriesOf(path), before);
  EXPECT_NE(fileContents(path).value().find("PK\x07\x08"), std::string::npos);
}

/// An archive with the one entry "a", whose size was not known when its header was written.
void writeUnsized(const std::filesystem::path& path, std::string_view text) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  ASSERT_TRUE(writeAll(ends[1], text));
  close(ends[1]);
  zip_t* const archive = zip_open(path.c_str(), ZIP_CREATE, nullptr);
  constexpr zip_int64_t toItsEnd = -1;
  zip_source_t* const source = zip_source_filep(archive, fdopen(ends[0], "rb"), 0, toItsEnd);
  ASSERT_EQ(zip_file_add(archive, "a", source, 0), 0);
  ASSERT_EQ(zip_close(archive), 0);
}

/// How many bytes the descriptor has that follows the last data of the archive at `path`.
std::size_t descriptorLength(const std::filesystem::path& path) {
  const std::string bytes = fileContents(path).value();
  return bytes.find("PK\x01\x02") - bytes.find("PK\x07\x08");
}

TEST(ArchiveForm, DescribesTheDataWithSizesAsLongAsThoseOfItsHeader) {
  const TemporaryFolder folder;
  writeUnsized(folder / "long.zip", "text text ");
  write(folder / "short.zip", {.dataDescriptor = true}, false);

  reshapeArchive(folder / "long.zip", {.dataDescriptor = true});

  EXPECT_EQ(descriptorLength(folder / "short.zip"), 16U);
  EXPECT_EQ(descriptorLength(folder / "long.zip"), 24U);
  const std::vector<std::pair<std::string, std::string>> expected{{"a", "text text "}};
  EXPECT_EQ(entriesOf(folder / "long.zip"), expected);
}

TEST(ArchiveForm, IsNotGivenToWhatCannotBeRead) {
  const TemporaryFolder folder;

  EXPECT_THROW(reshapeArchive(folder / "none.zip", {.zip64 = true}), std::system_error);
}

}  // namespace
