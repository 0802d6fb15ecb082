// Each flaw is in the bytes of the export that was asked to have it, and in no other.

#include "apps/sample/ReadArchive.h"
#include "apps/sample/ReadExport.h"
#include "apps/sample/WrittenHousehold.h"
#include "platform/Files.h"
#include "sample/export/Export.h"
#include "sample/flaws/Flaws.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_literals;

/// An export that was written, and what a reader sees of it.
struct WrittenExport {
  explicit WrittenExport(const FlawSet& flaws, std::uint64_t seed = 1,
                         const std::string& file = "e.zip") {
    const TemporaryFolder folder;
    Options options;
    options.exportTo = folder / file;
    options.flaws = flaws;
    options.years = 1;
    options.records = 2000;
    options.seed = seed;
    std::ostringstream unseen;
    Progress progress(unseen, false, [] { return 0.0; });
    writeExport(options, sampleDay, unseen, progress);
    const std::optional<std::string> contents = fileContents(options.exportTo);
    bytes = contents ? *contents : fileContents(folder / ("." + file + ".icloud")).value();
    if (!options.exportsArchive()) {
      xml = bytes;
    } else {
      for (const auto& [name, text] : entriesOf(options.exportTo)) {
        names.push_back(name);
        xml = text;
      }
    }
    const ReadExport read(xml);
    root = read.root;
    error = read.error;
  }

  bool holds(std::string_view text) const { return xml.find(text) != std::string::npos; }
  bool hasEntry(std::string_view name) const {
    return std::ranges::find(names, name) != names.end();
  }

  /// The lines of the XML, each with how often it stands there.
  std::map<std::string, int> lines() const {
    std::map<std::string, int> counted;
    std::istringstream stream(xml);
    for (std::string line; std::getline(stream, line);) ++counted[line];
    return counted;
  }

  std::string bytes;
  std::vector<std::string> names;
  std::string xml;  ///< of the last entry
  ExportElement root;
  std::string error;  ///< of a conforming parser
};

const WrittenExport& cleanExport() {
  static const WrittenExport clean({});
  return clean;
}

/// The values of an attribute in the records of a type that the flaws added.
std::set<std::string> added(const WrittenExport& made, const std::string& type,
                            const std::string& attribute) {
  std::set<std::string> values;
  for (const ExportElement& record : made.root.all("Record")) {
    const bool isAdded = record.text("sourceName").starts_with("Flaws");
    if (isAdded && record.text("type").ends_with(type)) values.insert(record.text(attribute));
  }
  return values;
}

int count(std::string_view text, std::string_view part) {
  int found = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos;
       at = text.find(part, at + part.size())) {
    ++found;
  }
  return found;
}

/// A flaw, and how it shows.
struct FlawCase {
  Flaw flaw;
  bool (*shows)(const WrittenExport& made);
};

void PrintTo(const FlawCase& value, std::ostream* out) { *out << Flaws::rowOf(value.flaw).name; }

const std::vector<FlawCase> cases{
    {Flaw::repeatedAttributes,
     [](const WrittenExport& made) {
       return std::ranges::any_of(made.lines(), [](const auto& line) {
         return line.first.starts_with("  <WorkoutStatistics") &&
                count(line.first, " startDate=\"") == 2 && count(line.first, " endDate=") == 0;
       });
     }},
    {Flaw::controlCharacters,
     [](const WrittenExport& made) {
       return made.holds(" sourceName=\"\v") && made.holds("&#11;\"") &&
              made.holds(" device=\"&#x1;") && made.holds("\x02\"");
     }},
    {Flaw::workoutActivities,
     [](const WrittenExport& made) {
       return std::ranges::any_of(made.root.all("Workout"), [](const ExportElement& workout) {
         const auto activities = workout.all("WorkoutActivity");
         return activities.size() == 1 && activities.front().all("WorkoutStatistics").size() ==
                                              workout.all("WorkoutStatistics").size();
       });
     }},
    {Flaw::deviceAddresses,
     [](const WrittenExport& made) {
       std::set<std::string> devices;
       for (const ExportElement& record : made.root.all("Record")) {
         devices.insert(record.text("device"));
       }
       return devices.size() > 1000;
     }},
    {Flaw::eightTimes,
     [](const WrittenExport& made) {
       return std::ranges::any_of(made.lines(), [](const auto& line) {
         return line.first.starts_with(" <Record") && line.second == 8;
       });
     }},
    {Flaw::mixedUnits,
     [](const WrittenExport& made) {
       return added(made, "BodyMass", "unit") == std::set<std::string>{"kg", "lb", "st"} &&
              added(made, "ActiveEnergyBurned", "unit") ==
                  std::set<std::string>{"kcal", "Cal", "kJ"};
     }},
    {Flaw::correlations,
     [](const WrittenExport& made) {
       const auto correlations = made.root.all("Correlation");
       return correlations.size() == 1 && correlations.front().all("Record").size() == 2 &&
              added(made, "Systolic", "value") == std::set<std::string>{"118"};
     }},
    {Flaw::workoutTotals,
     [](const WrittenExport& made) {
       return std::ranges::count_if(made.root.all("Workout"), [](const ExportElement& workout) {
                return workout.text("totalDistance") == "10.5";
              }) == 2;
     }},
    {Flaw::bareNames,
     [](const WrittenExport& made) {
       return made.holds(" type=\"AppleSleepingBreathingDisturbances\"") &&
              added(made, "HKDataTypeStateOfMind", "value") == std::set<std::string>{""};
     }},
    {Flaw::twoSleepPrograms,
     [](const WrittenExport& made) {
       return added(made, "SleepAnalysis", "sourceName").size() == 2 &&
              added(made, "SleepAnalysis", "value").size() == 7;
     }},
    {Flaw::oldRings,
     [](const WrittenExport& made) {
       return std::ranges::any_of(made.root.all("ActivitySummary"), [](const ExportElement& day) {
         return day.text("activeEnergyBurnedUnit") == "kJ" && day.text("appleMoveMinutes") == "35";
       });
     }},
    {Flaw::noNumbers,
     [](const WrittenExport& made) {
       return added(made, "HeartRate", "value") ==
              std::set<std::string>{"", "-inf", "1e309", "72,5", "NaN"};
     }},
    {Flaw::twelveHourStamps,
     [](const WrittenExport& made) {
       return made.holds(" startDate=\"2025-11-13 3:04:05\u202FPM +0800\"");
     }},
    {Flaw::otherElements,
     [](const WrittenExport& made) {
       return made.root.all("Audiogram").size() == 1 &&
              made.root.all("VisionPrescription").size() == 1 &&
              made.root.all("ClinicalRecord").size() == 1;
     }},
    {Flaw::brokenDocumentType,
     [](const WrittenExport& made) {
       return !made.error.empty() && made.holds("<!-- HealthKit Export Version: 12 -->") &&
              made.holds("  endDate CDATA #REQUIRED\n<!ELEMENT WorkoutEvent");
     }},
    {Flaw::noExportDate, [](const WrittenExport& made) { return !made.holds("<ExportDate "); }},
    {Flaw::noMe, [](const WrittenExport& made) { return !made.holds("<Me "); }},
    {Flaw::otherNames, [](const WrittenExport& made) { return made.hasEntry("导出/导出.xml"); }},
    {Flaw::macTwins,
     [](const WrittenExport& made) {
       return made.hasEntry("__MACOSX/apple_health_export/._export.xml") &&
              made.hasEntry("apple_health_export/._export.xml");
     }},
    {Flaw::storedEntry,
     [](const WrittenExport& made) { return made.bytes.find("<HealthData") != std::string::npos; }},
    {Flaw::dataDescriptor,
     [](const WrittenExport& made) {
       return count(made.bytes, "PK\x07\x08") == 1 && (made.bytes.at(6) & 8) != 0;
     }},
    {Flaw::zip64,
     [](const WrittenExport& made) {
       return count(made.bytes, "PK\x06\x06") == 1 && count(made.bytes, "PK\x06\x07") == 1;
     }},
    {Flaw::cdaBeside,
     [](const WrittenExport& made) {
       return made.names == std::vector<std::string>{"apple_health_export/export_cda.xml",
                                                     "apple_health_export/export.xml"};
     }},
    {Flaw::otherFiles,
     [](const WrittenExport& made) {
       return made.hasEntry("apple_health_export/workout-routes/route_1.gpx") &&
              made.hasEntry("apple_health_export/electrocardiograms/ecg_1.csv") &&
              made.hasEntry("apple_health_export/clinical-records/AllergyIntolerance-1.json");
     }},
    {Flaw::entityBomb,
     [](const WrittenExport& made) {
       return count(made.xml, "<!ENTITY ") == 10 && made.holds(" comment=\"&b9;\"");
     }},
    {Flaw::cdaAlone,
     [](const WrittenExport& made) {
       return made.names == std::vector<std::string>{"apple_health_export/export_cda.xml"} &&
              !made.error.empty();
     }},
    {Flaw::cutOff,
     [](const WrittenExport& made) {
       return made.bytes == cleanExport().bytes.substr(0, cleanExport().bytes.size() / 2);
     }},
    {Flaw::empty, [](const WrittenExport& made) { return made.bytes.size() == 22; }},
    {Flaw::cloudStub,
     [](const WrittenExport& made) {
       return made.names.empty() && made.bytes.find("<string>e.zip</string>") != std::string::npos;
     }},
    {Flaw::utf16,
     [](const WrittenExport& made) {
       return made.xml.starts_with("<\0?\0x\0"s) && made.holds("\x19\x20") && made.error.empty();
     }},
    {Flaw::utf16Mark,
     [](const WrittenExport& made) {
       return made.xml.starts_with("\xFF\xFE<\0"s) && made.error.empty();
     }},
    {Flaw::otherEncoding,
     [](const WrittenExport& made) {
       return made.holds("encoding=\"windows-1252\"") && made.holds("Ann\x92s Apple\xA0Watch");
     }},
};

class EveryFlaw : public testing::TestWithParam<FlawCase> {};

TEST_P(EveryFlaw, ShowsInItsExportAndInNoCleanOne) {
  EXPECT_TRUE(GetParam().shows(WrittenExport({GetParam().flaw})));
  EXPECT_FALSE(GetParam().shows(cleanExport()));
}

INSTANTIATE_TEST_SUITE_P(Cases, EveryFlaw, testing::ValuesIn(cases), [](const auto& test) {
  std::string name(Flaws::rowOf(test.param.flaw).name);
  std::ranges::replace(name, '-', '_');
  return name;
});

TEST(Flaws, AreAllTried) {
  FlawSet tried;
  for (const FlawCase& row : cases) tried.insert(row.flaw);

  EXPECT_EQ(tried.size(), Flaws::rows().size());
}

TEST(Flaws, ShowTogether) {
  const WrittenExport all(Flaws::readable(true));

  EXPECT_EQ(all.names.back(), "导出/导出.xml");
  EXPECT_EQ(all.names.size(), 7U);
  for (const std::string_view sign : {" <Correlation ",
                                      "<WorkoutActivity ",
                                      "Export Version: 12",
                                      " appleMoveMinutes=",
                                      "&#11;",
                                      "\u202FPM"}) {
    EXPECT_TRUE(all.holds(sign)) << sign;
  }
  EXPECT_FALSE(all.holds("<ExportDate "));
}

TEST(Flaws, LeaveEveryElementOfTheCleanExportWhereTheyOnlyAdd) {
  FlawSet adding;
  for (const FlawRow& row : Flaws::rows()) {
    if (row.flaw >= Flaw::mixedUnits && row.flaw <= Flaw::otherElements) adding.insert(row.flaw);
  }
  const WrittenExport made(adding);

  // What they add stands before the end of the root.
  const std::string clean = cleanExport().xml.substr(0, cleanExport().xml.find("</HealthData>"));
  EXPECT_EQ(made.xml.substr(0, clean.size()), clean);
  EXPECT_GT(made.xml.size(), cleanExport().xml.size() + 5000);
  EXPECT_EQ(made.error, "");
}

TEST(Flaws, AreTheSameForTheSameSeedAlone) {
  const FlawSet all = Flaws::readable(true);

  EXPECT_EQ(WrittenExport(all).bytes, WrittenExport(all).bytes);
  EXPECT_NE(WrittenExport(all).xml, WrittenExport(all, 2).xml);
}

TEST(Flaws, AreDrawnWhateverOthersThereAre) {
  const auto repeated = [](const WrittenExport& made) {
    std::set<std::string> starts;
    for (const auto& [line, times] : made.lines()) {
      const std::size_t at = line.find(" startDate=");
      if (line.starts_with(" <Record") && times == 8) starts.insert(line.substr(at));
    }
    return starts;
  };

  EXPECT_EQ(repeated(WrittenExport({Flaw::eightTimes})),
            repeated(WrittenExport({Flaw::eightTimes, Flaw::controlCharacters})));
}

TEST(Flaws, OfAnExportThatIsXMLAlone) {
  EXPECT_EQ(WrittenExport({Flaw::empty}, 1, "e.xml").bytes, "");
  EXPECT_THAT(WrittenExport({Flaw::cdaAlone}, 1, "e.xml").xml,
              testing::HasSubstr("<ClinicalDocument "));
  const WrittenExport cut({Flaw::cutOff}, 1, "e.xml");
  EXPECT_EQ(cut.xml, cleanExport().xml.substr(0, cleanExport().xml.size() / 2));
}

TEST(Flaws, HaveNamesOfTheirOwn) {
  std::set<std::string_view> names;
  for (const FlawRow& row : Flaws::rows()) {
    names.insert(row.name);
    EXPECT_EQ(Flaws::named(row.name), row.flaw);
  }

  EXPECT_EQ(names.size(), Flaws::rows().size());
  EXPECT_EQ(Flaws::named("warts"), std::nullopt);
}

TEST(Flaws, AreAllDescribedInTheirPage) {
  const std::string page = fileContents(LARKSPUR_FLAWS_PAGE).value();

  for (const FlawRow& row : Flaws::rows()) {
    EXPECT_EQ(count(page, "\n| `" + std::string(row.name) + "` | "), 1) << row.name;
  }
  EXPECT_EQ(count(page, "\n| `"), static_cast<int>(Flaws::rows().size()));
}

TEST(Flaws, AreListedOneALine) {
  for (const SummaryLang lang : {SummaryLang::zh, SummaryLang::en}) {
    std::istringstream list(Flaws::list(lang));
    for (const FlawRow& row : Flaws::rows()) {
      std::string line;
      std::getline(list, line);
      EXPECT_TRUE(line.starts_with(std::string(row.name) + "  ")) << line;
      EXPECT_TRUE(line.ends_with(row.text.in(lang))) << line;
      EXPECT_LE(line.size(), 110U);
    }
    EXPECT_EQ(list.get(), std::istringstream::traits_type::eof());
  }
}

}  // namespace
