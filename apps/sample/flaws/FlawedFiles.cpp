#include "sample/flaws/FlawedFiles.h"

#include <string_view>

namespace {

using namespace std::string_literals;

const std::string cdaName = "export_cda.xml";

/// A document that ends inside an element.
constexpr std::string_view cda =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<ClinicalDocument xmlns=\"urn:hl7-org:v3\">\n"
    " <title>Health Data Export</title>\n"
    " <entry>\n"
    "  <observation><code code=\"8867-4\"/><value value=\"62\" unit=\"/min\"></observation>\n"
    " </entry>\n";

/// The file that macOS adds beside another for attributes that the archive format does not support.
const std::string twin = "\x00\x05\x16\x07\x00\x02\x00\x00Mac OS X        \x00\x00"s;

void addOtherFiles(ExportOutput::Archive& archive, const std::string& folder) {
  archive.before.emplace_back(
      folder + "workout-routes/route_1.gpx",
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\"><trk><trkseg>"
      "<trkpt lon=\"0\" lat=\"0\"/></trkseg></trk></gpx>\n");
  archive.before.emplace_back(folder + "electrocardiograms/ecg_1.csv",
                              "Classification,Sinus Rhythm\nUnit,\u00b5V\n\n12.5\n13.1\n");
  archive.before.emplace_back(folder + "clinical-records/AllergyIntolerance-1.json",
                              "{\"resourceType\": \"AllergyIntolerance\", \"id\": \"1\"}\n");
}

}  // namespace

ExportOutput::Archive FlawedFiles::archive(const FlawSet& flaws) {
  const bool isRenamed = flaws.contains(Flaw::otherNames);
  const std::string folder = isRenamed ? "导出/" : "apple_health_export/";
  const std::string xml = isRenamed ? "导出.xml" : "export.xml";
  ExportOutput::Archive archive{.name = folder + xml};
  if (flaws.contains(Flaw::cdaBeside)) archive.before.emplace_back(folder + cdaName, cda);
  if (flaws.contains(Flaw::cdaAlone)) archive.name = folder + cdaName;
  if (flaws.contains(Flaw::otherFiles)) addOtherFiles(archive, folder);
  if (flaws.contains(Flaw::macTwins)) {
    archive.before.emplace_back("__MACOSX/" + folder + "._" + xml, twin);
    archive.before.emplace_back(folder + "._" + xml, twin);
  }
  archive.isStored = flaws.contains(Flaw::storedEntry);
  archive.form = {.dataDescriptor = flaws.contains(Flaw::dataDescriptor),
                  .zip64 = flaws.contains(Flaw::zip64)};
  return archive;
}

bool FlawedFiles::isBare(const FlawSet& flaws) {
  return flaws.contains(Flaw::empty) || flaws.contains(Flaw::cloudStub);
}

std::optional<std::string> FlawedFiles::inPlaceOf(const FlawSet& flaws,
                                                  const std::filesystem::path& path,
                                                  bool isArchive) {
  if (flaws.contains(Flaw::cdaAlone)) return std::string(cda);
  if (flaws.contains(Flaw::cloudStub)) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>NSURLNameKey</key><string>" +
           path.filename().string() + "</string></dict></plist>\n";
  }
  if (!flaws.contains(Flaw::empty)) return std::nullopt;
  // An archive without entries consists only of its end record.
  return isArchive ? "PK\x05\x06" + std::string(18, '\0') : "";
}

std::filesystem::path FlawedFiles::placeOf(const FlawSet& flaws,
                                           const std::filesystem::path& path) {
  if (!flaws.contains(Flaw::cloudStub)) return path;
  return path.parent_path() / ("." + path.filename().string() + ".icloud");
}

void FlawedFiles::cutOff(const std::filesystem::path& path) {
  std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
}
