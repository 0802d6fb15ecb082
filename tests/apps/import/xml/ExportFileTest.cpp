#include "apps/import/ZipFile.h"
#include "import/Failure.h"
#include "import/xml/ExportFile.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string xml = "<?xml version=\"1.0\"?>\n<HealthData locale=\"de_DE\"></HealthData>\n";
const std::string clinicalDocument = "<?xml version=\"1.0\"?>\n<ClinicalDocument/>\n";

/// All that is read of `file`, in pieces of `size` bytes.
std::string readAll(ExportFile& file, std::size_t size = 7) {
  std::vector<char> piece(size);
  std::string bytes;
  while (const std::size_t count = file.read(piece)) bytes.append(piece.data(), count);
  return bytes;
}

std::string readAll(const std::filesystem::path& path) {
  ExportFile file(path);
  return readAll(file);
}

/// What opening and reading `path` fails with; "" when it does not.
std::string errorOf(const std::filesystem::path& path) {
  try {
    ExportFile file(path);
    readAll(file, 1 << 16);
  } catch (const Failure& error) {
    return error.what();
  }
  return "";
}

class ExportFileTest : public testing::Test {
protected:
  std::filesystem::path zipOf(const std::vector<std::pair<std::string, std::string>>& entries) {
    const std::filesystem::path path = folder / "export.zip";
    writeZip(path, entries);
    return path;
  }

  TemporaryFolder folder;
};

TEST_F(ExportFileTest, ReadsAnExportXml) {
  const std::filesystem::path path = folder.write("export.xml", xml);

  ExportFile file(path);

  EXPECT_EQ(file.size(), xml.size());
  EXPECT_EQ(file.name(), path.string());
  EXPECT_EQ(file.contents(), ExportContents{});
  EXPECT_EQ(readAll(file), xml);
  EXPECT_EQ(readAll(file), "");
}

TEST_F(ExportFileTest, ReadsTheXmlOfAnArchiveAndCountsWhatLiesBesideIt) {
  ExportFile file(zipOf({{"apple_health_export/export_cda.xml", clinicalDocument},
                         {"apple_health_export/workout-routes/route_1.gpx", "a"},
                         {"apple_health_export/workout-routes/route_2.GPX", "b"},
                         {"apple_health_export/electrocardiograms/ecg_1.csv", "c"},
                         {"apple_health_export/clinical-records/Condition.json", "d"},
                         {"apple_health_export/attachments/scan.pdf", "e"},
                         {"apple_health_export/export.xml", xml},
                         {"__MACOSX/apple_health_export/._export.xml", "f"}}));

  EXPECT_EQ(file.name(), "apple_health_export/export.xml");
  EXPECT_EQ(file.size(), xml.size());
  EXPECT_EQ(file.contents(),
            (ExportContents{.routes = 2, .ecgs = 1, .clinicalRecords = 1, .others = 1}));
  EXPECT_EQ(readAll(file), xml);
}

TEST_F(ExportFileTest, FindsTheXmlInAFolderOfAnyName) {
  EXPECT_EQ(readAll(zipOf({{"Gesundheit ä/export.xml", xml}})), xml);
}

TEST_F(ExportFileTest, FindsTheXmlAtTheTop) {
  EXPECT_EQ(readAll(zipOf({{"older/export.xml", "other"}, {"export.xml", xml}})), xml);
}

TEST_F(ExportFileTest, DoesNotTakeAHiddenTwinForTheXml) {
  EXPECT_EQ(readAll(zipOf({{"__MACOSX/export.xml", "twin"}, {"a/export.xml", xml}})), xml);
}

TEST_F(ExportFileTest, FindsAnXmlOfAnotherNameByItsBeginning) {
  EXPECT_EQ(readAll(zipOf({{"apple_health_export/export_cda.xml", "<HealthData>"},
                           {"__MACOSX/._导出.xml", "<HealthData>"},
                           {"apple_health_export/anhang.xml", clinicalDocument},
                           {"apple_health_export/deeper/导出.xml", "<HealthData>"},
                           {"apple_health_export/导出.xml", xml}})),
            xml);
}

TEST_F(ExportFileTest, TellsAnArchiveByItsBytes) {
  const std::filesystem::path path = zipOf({{"a/export.xml", xml}});
  std::filesystem::rename(path, folder / "data");

  EXPECT_EQ(readAll(folder / "data"), xml);
}

TEST_F(ExportFileTest, ReadsAnUnpackedFolderAndTheFolderAroundIt) {
  folder.write("around/apple_health_export/export.xml", xml);
  folder.write("around/apple_health_export/export_cda.xml", clinicalDocument);
  folder.write("around/apple_health_export/workout-routes/route_1.gpx", "a");
  folder.write("around/else.csv", "b");

  for (const char* const name : {"around", "around/apple_health_export"}) {
    ExportFile file(folder / name);
    EXPECT_EQ(file.size(), xml.size()) << name;
    EXPECT_EQ(file.contents(), (ExportContents{.routes = 1})) << name;
    EXPECT_EQ(readAll(file), xml) << name;
  }
}

TEST_F(ExportFileTest, FindsAnXmlOfAnotherNameInAFolder) {
  folder.write("export_cda.xml", clinicalDocument);
  folder.write("exportieren.xml", xml);

  EXPECT_EQ(readAll(folder.path()), xml);
}

TEST_F(ExportFileTest, RefusesWhatIsNotThere) {
  EXPECT_EQ(errorOf(folder / "none.zip"),
            "There is no such file or folder: " + (folder / "none.zip").string());
}

TEST_F(ExportFileTest, TellsAFileThatLiesInTheCloudDriveStill) {
  folder.write(".export.zip.icloud", "bplist");
  folder.write("unpacked/.export.xml.icloud", "bplist");
  const std::string wanted =
      " has not been downloaded yet from the cloud drive: download it in the file manager first, "
      "then try again";

  EXPECT_EQ(errorOf(folder / "export.zip"), (folder / "export.zip").string() + wanted);
  EXPECT_EQ(errorOf(folder / "unpacked/export.xml"),
            (folder / "unpacked/export.xml").string() + wanted);
  EXPECT_EQ(errorOf(folder / "unpacked"), (folder / "unpacked/export.xml").string() + wanted);
  EXPECT_EQ(errorOf(folder / ".export.zip.icloud"), (folder / "export.zip").string() + wanted);
  EXPECT_THAT(errorOf(folder / "other.zip"), StartsWith("There is no such file or folder"));
  // Once it is there, the stub is of no interest.
  folder.write("unpacked/export.xml", xml);
  EXPECT_EQ(errorOf(folder / "unpacked"), "");
}

TEST_F(ExportFileTest, TellsAFolderThatLiesInTheCloudDriveStill) {
  folder.write(".unpacked.icloud", "bplist");
  folder.write("alone/.Health export.ZIP.icloud", "bplist");
  folder.write("around/inner/.exportieren.xml.icloud", "bplist");
  const std::string wanted = " has not been downloaded yet";

  for (const char* name : {"unpacked", "unpacked/"}) {
    EXPECT_THAT(errorOf(folder / name), StartsWith((folder / "unpacked").string() + wanted));
  }
  for (const char* name : {"alone", "alone/"}) {
    EXPECT_THAT(errorOf(folder / name),
                StartsWith((folder / "alone/Health export.ZIP").string() + wanted));
  }
  EXPECT_THAT(errorOf(folder / "around/"),
              StartsWith((folder / "around/inner/exportieren.xml").string() + wanted));
}

TEST_F(ExportFileTest, TakesNoOtherFileOfTheCloudDriveForAnExport) {
  folder.write("report/.report.pdf.icloud", "bplist");
  folder.write("clinical/.export_cda.xml.icloud", "bplist");
  folder.write("beside/.old.zip.icloud", "bplist");
  folder.write("beside/other.xml", clinicalDocument);

  for (const char* name : {"report", "clinical", "beside"}) {
    EXPECT_EQ(errorOf(folder / name),
              "There is no export.xml of the Health app in " + (folder / name).string());
  }
  // Names inside an archive are the export's own, and it lies here already.
  const std::filesystem::path archive = zipOf({{"a/.export.xml.icloud", "bplist"}});
  EXPECT_EQ(errorOf(archive), "There is no export.xml of the Health app in " + archive.string());
}

TEST_F(ExportFileTest, NamesTheFileThatIsWantedInsteadOfTheClinicalDocument) {
  const std::filesystem::path path = folder.write("export_cda.xml", "<broken");

  const std::string wanted =
      path.string() +
      " is the clinical document of an export, which holds none of the records to import: the file "
      "wanted is the export.xml beside it";
  EXPECT_EQ(errorOf(path), wanted);
  folder.write("export.xml", xml);
  EXPECT_EQ(errorOf(path), wanted);
}

TEST_F(ExportFileTest, LooksIntoTheFirst32XmlFilesAlone) {
  std::vector<std::pair<std::string, std::string>> entries;
  for (int number = 0; number < 31; ++number) {
    entries.emplace_back("a/" + std::to_string(number) + ".xml", clinicalDocument);
  }
  entries.emplace_back("a/last.xml", xml);
  EXPECT_EQ(readAll(zipOf(entries)), xml);
  std::filesystem::remove(folder / "export.zip");

  entries.insert(entries.begin(), {"a/more.xml", clinicalDocument});
  const std::filesystem::path path = zipOf(entries);
  EXPECT_EQ(errorOf(path),
            "There is no export.xml of the Health app in " + path.string() +
                "; of its other XML files only the first 32 were looked into");
  std::filesystem::remove(path);

  entries.emplace_back("a/export.xml", xml);
  EXPECT_EQ(readAll(zipOf(entries)), xml);
}

TEST_F(ExportFileTest, RefusesAnArchiveOrFolderWithoutAnExport) {
  folder.write("inner/export_cda.xml", clinicalDocument);

  EXPECT_THAT(errorOf(folder / "inner"), HasSubstr("There is no export.xml"));
  EXPECT_THAT(errorOf(zipOf({{"a/export_cda.xml", clinicalDocument}, {"a/b/export.xml", xml}})),
              HasSubstr("There is no export.xml"));
}

TEST_F(ExportFileTest, RefusesAZipThatIsNone) {
  EXPECT_THAT(errorOf(folder.write("export.zip", "no archive")), HasSubstr("is not a zip archive"));
}

TEST_F(ExportFileTest, RefusesAnArchiveThatIsCutOff) {
  const std::filesystem::path path = zipOf({{"a/export.xml", xml}});
  const std::string bytes = contentsOf(path);

  for (std::size_t size = 2; size < bytes.size(); size += 5) {
    std::filesystem::resize_file(path, size);
    EXPECT_THAT(errorOf(path), HasSubstr("is not a complete zip archive")) << size;
    std::ofstream(path, std::ios::binary) << bytes;
  }
}

/// An export that a thousandth of its size is enough to pack.
std::string longExport() { return "<HealthData>" + std::string(5000000, ' ') + "</HealthData>"; }

TEST_F(ExportFileTest, TakesNoMoreOfAnEntryThanItDeclares) {
  const std::filesystem::path path = zipOf({{"a/export.xml", longExport()}});
  declareSize(path, 1000);
  ExportFile file(path);
  std::vector<char> piece(1 << 16);

  EXPECT_EQ(file.size(), 1000U);
  EXPECT_EQ(file.read(piece), 1000U);
  EXPECT_THROW(file.read(piece), Failure);
  EXPECT_EQ(errorOf(path),
            "The export in the zip archive holds more than the 1000 bytes that it declares; "
            "nothing was stored.");
}

TEST_F(ExportFileTest, RefusesAnEntryThatHoldsLessThanItDeclares) {
  const std::filesystem::path path = zipOf({{"a/export.xml", longExport()}});
  declareSize(path, 4000000000);

  EXPECT_EQ(errorOf(path),
            "The export in the zip archive holds less than the 4000000000 bytes that it "
            "declares; nothing was stored.");
}

TEST_F(ExportFileTest, RefusesAnEntryWhoseBytesAreNotThoseThatWerePacked) {
  const std::filesystem::path path = zipOf({{"a/export.xml", longExport()}});
  spoilChecksum(path);

  EXPECT_THAT(errorOf(path),
              StartsWith("The export in the zip archive cannot be read, nothing was stored: "));
}

TEST_F(ExportFileTest, CountsBeyondFourGibibytes) {
  constexpr std::uint64_t size = 5'000'000'000;
  const std::filesystem::path path = folder.write("export.xml", "");
  std::filesystem::resize_file(path, size);  // a hole, which takes no room

  EXPECT_EQ(ExportFile(path).size(), size);
}

}  // namespace
