#include "apps/sample/ReadArchive.h"
#include "platform/Files.h"
#include "platform/ReceiverError.h"
#include "sample/export/ExportOutput.h"
#include "support/FileSizeGuard.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr CivilDay day = 2026y / 11 / 20;

/// `count` pieces of a thousand letters, then the end or, where `fails`, an exception.
ExportOutput::Pieces piecesOf(int count, bool fails = false) {
  return [count, fails, piece = std::string()]() mutable -> std::string_view {
    if (count == 0 && fails) throw std::runtime_error("no more of that");
    if (count == 0) return {};
    piece.assign(1000, static_cast<char>('a' + --count % 26));
    return piece;
  };
}

std::string textOf(const ExportOutput::Pieces& pieces) {
  std::string text;
  for (std::string_view piece = pieces(); !piece.empty(); piece = pieces()) text += piece;
  return text;
}

std::size_t filesIn(const TemporaryFolder& folder) {
  const std::filesystem::directory_iterator files(folder.path());
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

TEST(ExportOutput, WritesTheTextToAFile) {
  const TemporaryFolder folder;

  ExportOutput::writeFile(folder / "export.xml", piecesOf(300));

  EXPECT_EQ(fileContents(folder / "export.xml"), textOf(piecesOf(300)));
  EXPECT_EQ(filesIn(folder), 1U);
}

TEST(ExportOutput, WritesTheTextAsTheOnlyEntryOfAZip) {
  const TemporaryFolder folder;

  ExportOutput::writeZip(folder / "e.zip", {.name = "folder/export.xml"}, day, piecesOf(300));

  EXPECT_THAT(entriesOf(folder / "e.zip"),
              testing::ElementsAre(testing::Pair("folder/export.xml", textOf(piecesOf(300)))));
  EXPECT_LT(std::filesystem::file_size(folder / "e.zip"), 30000U);
  EXPECT_EQ(filesIn(folder), 1U);
}

TEST(ExportOutput, WritesTheSameZipForTheSameText) {
  const TemporaryFolder folder;

  ExportOutput::writeZip(folder / "1.zip", {.name = "export.xml"}, day, piecesOf(30));
  ExportOutput::writeZip(folder / "2.zip", {.name = "export.xml"}, day, piecesOf(30));

  EXPECT_EQ(fileContents(folder / "1.zip"), fileContents(folder / "2.zip"));
}

TEST(ExportOutput, DatesAZipFromBeforeThereWereAnyWithItsFirstYear) {
  const TemporaryFolder folder;

  ExportOutput::writeZip(folder / "old.zip", {.name = "export.xml"}, 1971y / 11 / 20, piecesOf(1));
  ExportOutput::writeZip(
      folder / "first.zip", {.name = "export.xml"}, 1980y / 11 / 20, piecesOf(1));

  EXPECT_EQ(fileContents(folder / "old.zip"), fileContents(folder / "first.zip"));
}

using Write = void (*)(const std::filesystem::path&, const ExportOutput::Pieces&);

struct OutputCase {
  std::string name;
  Write write;
};

void PrintTo(const OutputCase& value, std::ostream* out) { *out << value.name; }

class EveryExportOutput : public testing::TestWithParam<OutputCase> {};

TEST_P(EveryExportOutput, LeavesAnExistingFileAlone) {
  const TemporaryFolder folder;
  const std::filesystem::path path = folder.write("e", "precious");

  EXPECT_THROW(GetParam().write(path, piecesOf(3)), ReceiverError);
  EXPECT_EQ(fileContents(path), "precious");
  EXPECT_EQ(filesIn(folder), 1U);
}

TEST_P(EveryExportOutput, LeavesNothingBehindWhenTheTextFails) {
  const TemporaryFolder folder;

  EXPECT_THROW(GetParam().write(folder / "e", piecesOf(300, true)), std::runtime_error);
  EXPECT_EQ(filesIn(folder), 0U);
}

TEST_P(EveryExportOutput, LeavesNothingBehindOnAFullDisk) {
  const TemporaryFolder folder;
  std::error_code failure;
  {
    const FileSizeGuard full(512);
    try {
      GetParam().write(folder / "e", piecesOf(300));
    } catch (const std::system_error& error) {
      failure = error.code();
    }
  }

  EXPECT_EQ(failure, std::errc::file_too_large);
  EXPECT_EQ(filesIn(folder), 0U);
}

TEST(ExportOutput, LeavesNothingBehindWhenTheDiskHasRoomForTheTextAlone) {
  const TemporaryFolder folder;
  std::error_code failure;
  {
    const FileSizeGuard full(3000);
    try {
      const ExportOutput::Archive archive{.name = "export.xml", .isStored = true};
      ExportOutput::writeZip(folder / "e.zip", archive, day, piecesOf(3));
    } catch (const std::system_error& error) {
      failure = error.code();
    }
  }

  EXPECT_EQ(failure, std::errc::file_too_large);
  EXPECT_EQ(filesIn(folder), 0U);
}

TEST(ExportOutput, WritesOverWhatAnInterruptedRunLeft) {
  const TemporaryFolder folder;
  folder.write("e.zip.new", "half an archive");
  folder.write("e.zip.xml.new", "a text that is longer than the one to come");

  ExportOutput::writeZip(folder / "e.zip", {.name = "export.xml"}, day, piecesOf(1));

  EXPECT_THAT(entriesOf(folder / "e.zip"),
              testing::ElementsAre(testing::Pair("export.xml", textOf(piecesOf(1)))));
  EXPECT_EQ(filesIn(folder), 1U);
}

TEST_P(EveryExportOutput, NamesThePlaceWhereItCannotWrite) {
  const TemporaryFolder folder;

  try {
    GetParam().write(folder / "missing" / "e", piecesOf(3));
    FAIL() << "written";
  } catch (const std::system_error& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("missing/e"));
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, EveryExportOutput,
                         testing::Values(OutputCase{"File",
                                                    [](const auto& path, const auto& pieces) {
                                                      ExportOutput::writeFile(path, pieces);
                                                    }},
                                         OutputCase{"Zip",
                                                    [](const auto& path, const auto& pieces) {
                                                      ExportOutput::writeZip(path,
                                                                             {.name = "export.xml"},
                                                                             day,
                                                                             pieces);
                                                    }}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
