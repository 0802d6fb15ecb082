// What a check counts, and that it tells nothing else.

#include "apps/import/CheckHarness.h"
#include "apps/import/CollectingSink.h"
#include "apps/import/ExportText.h"
#include "apps/import/ImportHarness.h"
#include "apps/import/ZipFile.h"
#include "import/report/ReportPage.h"
#include "support/ChildProcess.h"
#include "support/Golden.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::Not;

/// The export of somebody who does not exist, with every unit the other way round.
std::filesystem::path sampleExport(const TemporaryFolder& folder) {
  const ChildProcess::Ending ending = ChildProcess(LARKSPUR_SAMPLE_PROGRAM,
                                                   {"--export",
                                                    "sample.xml",
                                                    "--years",
                                                    "2",
                                                    "--records",
                                                    "20000",
                                                    "--seed",
                                                    "7",
                                                    "--today",
                                                    "2026-11-20",
                                                    "--units",
                                                    "imperial"},
                                                   folder.path())
                                          .finished();
  EXPECT_EQ(ending.status, 0) << ending.errors;
  return folder / "sample.xml";
}

class GoldenCensus : public Check {};

TEST_F(GoldenCensus, OfTheSampleHousehold) {
  const CheckOutcome outcome = checked(sampleExport(folder));

  EXPECT_TRUE(matchesGolden("census/sample.en.txt", censusText(outcome.census, SummaryLang::en)));
  EXPECT_TRUE(matchesGolden("census/sample.zh.txt", censusText(outcome.census, SummaryLang::zh)));
}

/// An export with something of everything that a census tells.
std::string everyTrouble() {
  const auto record = [](const std::string& type, const std::string& rest) {
    return "<Record type=\"" + type + "\" startDate=\"2024-03-01 08:00:00 +0100\" " + rest + "/>\n";
  };
  return "<?xml version=\"1.0\"?>\n<!DOCTYPE HealthData [\n<!-- HealthKit Export Version: 14 -->\n"
         "]>\n<HealthData locale=\"en_GB\">\n"
         "<ExportDate value=\"2024-06-01 08:00:00 -0330\"/>\n<Me/>\n" +
         record("HKQuantityTypeIdentifierBodyMass", "unit=\"lb\" value=\"154\" sourceName=\"A\"") +
         record("HKQuantityTypeIdentifierBodyMass", "unit=\"kg\" value=\"70\" sourceName=\"B\"") +
         record("HKQuantityTypeIdentifierBodyMass", "unit=\"hogshead\" value=\"1\"") +
         record("HKQuantityTypeIdentifierBloodGlucose",
                "unit=\"mmol<180.1558800000541>/L\" value=\"5\"") +
         record("HKQuantityTypeIdentifierHeartRate", "unit=\"count/min\" value=\"NaN\"") +
         record("HKCategoryTypeIdentifierSleepAnalysis", "value=\"Asleep\" sourceName=\"A\"") +
         record("Mood", "unit=\"points\" value=\"3\"") + record("", "") +
         "<Record type=\"HKQuantityTypeIdentifierStepCount\" unit=\"count\" value=\"7\""
         " startDate=\"2023-03-01 8:00:00\u202FPM +0100\" unit=\"count\"/>\n"
         "<Correlation type=\"x\"/>\n<Surprise/>\n" +
         workoutText(0) + ringsText("2024-03-01") + "<!-- \x01 -->\n</HealthData>\n";
}

TEST_F(GoldenCensus, OfEveryTrouble) {
  std::string text = everyTrouble();
  // Written with "<" in an attribute for the reader of this test; XML wants a reference.
  text.replace(text.find("mmol<"), 5, "mmol&lt;");
  writeZip(folder / "export.zip",
           {{"a/export.xml", text},
            {"a/workout-routes/route.gpx", ""},
            {"a/electrocardiograms/ecg.csv", ""},
            {"a/clinical-records/record.json", ""},
            {"a/photo.jpg", ""}});

  const CheckOutcome outcome = checked(folder / "export.zip");

  EXPECT_FALSE(outcome.failure);
  EXPECT_TRUE(
      matchesGolden("census/every_trouble.en.txt", censusText(outcome.census, SummaryLang::en)));
  EXPECT_TRUE(
      matchesGolden("census/every_trouble.zh.txt", censusText(outcome.census, SummaryLang::zh)));
}

/// The lines that a report about an import and a census have in common.
std::string troublesOf(const RunTally& tally, const Irregularities& irregularities,
                       const ExportContents& beside) {
  ReportPage page(SummaryLang::en, DigitGrouping{});
  page.addTroubles(tally, irregularities, beside);
  return page.text();
}

class CensusAndImport : public Import {};

TEST_F(CensusAndImport, CountAlike) {
  std::filesystem::rename(sampleExport(folder), folder / "export.xml");
  const Report report = importFor("Ann", "ann");

  std::ostringstream unseen;
  const Census census = runCheck({.source = folder / "export.xml"},
                                 {.progress = unseen,
                                  .progressKind = Importer::Progress::Kind::log,
                                  .lang = SummaryLang::en,
                                  .clock = [] { return now; }})
                            .census;

  EXPECT_EQ(census.tally.records.read, report.tally.records.read);
  EXPECT_EQ(census.tally.workouts.read, report.tally.workouts.read);
  EXPECT_EQ(census.tally.activityDays.read, report.tally.activityDays.read);
  EXPECT_EQ(static_cast<std::int64_t>(census.sources), report.tally.sources);
  EXPECT_GT(census.tally.converted, 0);
  EXPECT_EQ(troublesOf(census.tally, census.irregularities, census.beside),
            troublesOf(report.tally, report.irregularities, report.beside));
}

/// Every place of an export where somebody's text may stand, with "Secret" in it, and days and
/// numbers that stand nowhere else. An export that declares another encoding than UTF-8 is refused.
std::string secrets(const std::string& encoding = "UTF-8") {
  const std::string names =
      " sourceName=\"SecretPhone\" sourceVersion=\"SecretVersion\" device=\"SecretDevice\""
      " creationDate=\"2019-09-19 19:19:19 +0930\"";
  const std::string stamps =
      " startDate=\"2019-09-17 17:17:17 +0930\" endDate=\"2019-09-18 18:18:18 +0930\"";
  return "<?xml version=\"1.0\" encoding=\"" + encoding +
         "\"?>\n<!-- SecretComment -->\n<?SecretInstruction SecretData?>\n"
         "<!DOCTYPE HealthData [\n<!-- HealthKit Export Version: Secret -->\n"
         "<!ENTITY SecretEntity \"SecretText\">\n]>\n"
         "<HealthData locale=\"SecretLocale\" SecretAttribute=\"SecretValue\">\n"
         "<ExportDate value=\"2019-09-16 16:16:16 +0930\"/>\n"
         "<Me HKCharacteristicTypeIdentifierDateOfBirth=\"1987-08-14\" name=\"SecretName\"/>\n"
         "<Record type=\"HKQuantityTypeIdentifierSecretType\" unit=\"SecretUnit\" value=\"77.77\"" +
         names + stamps +
         "><MetadataEntry key=\"SecretKey\" value=\"SecretValue\"/><SecretPart/></Record>\n"
         "<Record type=\"SecretType2\" value=\"SecretValue\"" +
         names + stamps +
         "/>\n"
         "<Record type=\"HKQuantityTypeIdentifierBodyMass\" unit=\"Secret kg\" value=\"77.77\"" +
         names + stamps +
         "/>\n"
         "<Record type=\"HKQuantityTypeIdentifierDistanceSecret\" unit=\"mi\" value=\"77.77\"" +
         names + stamps +
         "/>\n"
         "<Record type=\"HKQuantityTypeIdentifierStepCount\" unit=\"count\" value=\"7777\"" +
         names +
         " startDate=\"2019-09-17 Secret\" endDate=\"Secret\"/>\n"
         "<Record type=\"HKQuantityTypeIdentifierStepCount\" value=\"7777\" "
         "startDate=\"Secret\"/>\n"
         "<Workout workoutActivityType=\"SecretActivity\" duration=\"77.77\""
         " durationUnit=\"SecretUnit\" totalDistance=\"77.77\" totalDistanceUnit=\"mi\"" +
         names + stamps +
         "><WorkoutEvent type=\"SecretEvent\"/><SecretElement/>"
         "<MetadataEntry key=\"SecretKey\" value=\"SecretValue\"/></Workout>\n"
         "<ActivitySummary dateComponents=\"2019-09-17\" activeEnergyBurned=\"77.77\""
         " activeEnergyBurnedUnit=\"SecretUnit\"/>\n"
         "<ActivitySummary dateComponents=\"Secret\"/>\n"
         "<SecretElement SecretAttribute=\"SecretValue\">SecretText</SecretElement>\n"
         "<ClinicalRecord type=\"SecretCondition\" resourceFilePath=\"/SecretPath.json\"/>\n"
         "</HealthData>\n";
}

/// No text, day, time or value of `secrets` in it, in whatever case.
void expectNoSecret(const std::string& text) {
  EXPECT_THAT(lowerCased(text), Not(HasSubstr("secret"))) << text;
  for (const char* part : {"2019-09-1", "1987", "77", "7,777", ":16", ":17", ":18", ":19"}) {
    EXPECT_THAT(text, Not(HasSubstr(part)));
  }
}

class SecretExport : public Check {
protected:
  std::filesystem::path archiveOf(const std::string& text) const {
    writeZip(folder / "e.zip",
             {{"SecretFolder/Secret.xml", text},
              {"SecretFolder/SecretRoute.gpx", "secret"},
              {"SecretFolder/Secret.doc", "secret"}});
    return folder / "e.zip";
  }
};

TEST_F(SecretExport, LeavesNoTextInTheCensus) {
  const CheckOutcome outcome = checked(archiveOf(secrets()));

  EXPECT_FALSE(outcome.failure);
  EXPECT_EQ(outcome.census.tally.records.read, 5);
  EXPECT_EQ(outcome.census.otherTypes.records, 3);
  EXPECT_EQ(outcome.census.tally.others, 3);
  expectNoSecret(censusText(outcome.census, SummaryLang::en));
  expectNoSecret(censusText(outcome.census, SummaryLang::zh));
  EXPECT_THAT(censusText(outcome.census, SummaryLang::en),
              HasSubstr("  exported: 2019-09, the phone's clock at +0930\n"));
}

TEST_F(SecretExport, LeavesNoTextInTheReasonWhereverItBreaks) {
  const std::string whole = secrets();
  int broken = 0;
  // The last line feed may be missing.
  for (std::size_t size = 1; size + 1 < whole.size(); size += 3) {
    for (const char* end : {"", "<Secret&Secret;", "</Secret>"}) {
      const CheckOutcome outcome = checkedText(whole.substr(0, size) + end);
      ASSERT_TRUE(outcome.failure) << size << end;
      ++broken;
      EXPECT_FALSE(outcome.census.complete);
      for (const SummaryLang lang : {SummaryLang::en, SummaryLang::zh}) {
        EXPECT_THAT(lowerCased(outcome.failure->text(lang)), Not(HasSubstr("secret")));
        EXPECT_THAT(outcome.failure->text(lang),
                    Not(testing::AnyOf(HasSubstr("imported"), HasSubstr("没有导入"))));
        EXPECT_THAT(lowerCased(censusText(outcome.census, lang)), Not(HasSubstr("secret")));
      }
    }
  }
  EXPECT_GT(broken, 1000);
}

TEST_F(SecretExport, LeavesNoNameOfAnEncodingInTheReason) {
  const CheckOutcome outcome = checked(archiveOf(secrets("Secret-8")));

  ASSERT_TRUE(outcome.failure);
  EXPECT_THAT(outcome.failure->text(SummaryLang::en),
              testing::StartsWith("The file is in another encoding instead of UTF-8"));
  expectNoSecret(outcome.failure->text(SummaryLang::en));
  expectNoSecret(outcome.failure->text(SummaryLang::zh));
}

TEST_F(SecretExport, LeavesNoNameOfAnEntryInTheReason) {
  // Without the document type, which names the root, the beginning still tells the entry.
  writeZip(folder / "e.zip", {{"SecretFolder/Secret.xml", secrets()}});
  spoilChecksum(folder / "e.zip");

  const CheckOutcome outcome = checked(folder / "e.zip");

  ASSERT_TRUE(outcome.failure);
  EXPECT_THAT(outcome.failure->text(SummaryLang::en),
              testing::StartsWith("The export in the zip archive cannot be read"));
  expectNoSecret(outcome.failure->text(SummaryLang::en));
  expectNoSecret(censusText(outcome.census, SummaryLang::en));
}

TEST_F(Check, TellsWhatWasReadOfACutExport) {
  const std::string whole = exportText(300);

  const CheckOutcome outcome = checkedText(whole.substr(0, whole.find("<Workout")));

  ASSERT_TRUE(outcome.failure);
  EXPECT_THAT(outcome.failure->text(SummaryLang::en), HasSubstr("the file ends too early"));
  EXPECT_EQ(outcome.census.tally.records.read, 300);
  EXPECT_EQ(outcome.census.tally.workouts.read, 0);
  EXPECT_EQ(outcome.census.bytes, whole.find("<Workout"));
  EXPECT_THAT(censusText(outcome.census, SummaryLang::en),
              testing::EndsWith(
                  "Incomplete: the export cannot be read beyond this; standard error says why.\n"
                  "Look through the types before you pass this on.\n"));
  EXPECT_THAT(censusText(outcome.census, SummaryLang::zh),
              testing::EndsWith("统计不完整：导出文件的其余部分无法读取，原因见标准错误输出。\n"
                                "转发之前，请先看一遍列出的类型。\n"));
}

TEST_F(Check, EndsWhereverItIsInterrupted) {
  const std::filesystem::path source = folder.write("export.xml", exportText(3000));
  int interruptions = 0;
  for (bool whole = false; !whole && interruptions < 1000; ++interruptions) {
    int left = interruptions;
    try {
      whole = checked(source, [&left] { return left == 0 || left-- == 0; }).census.complete;
      EXPECT_TRUE(whole);
    } catch (const Interruption& interruption) {
      EXPECT_EQ(interruption.text(SummaryLang::en), "interrupted: the export was not read whole");
      EXPECT_EQ(interruption.text(SummaryLang::zh), "已中断：导出文件没有读完");
    }
  }
  EXPECT_GT(interruptions, 5);
}

TEST_F(Check, OfABrokenExportThatIsInterruptedTellsTheInterruption) {
  int asked = 0;
  EXPECT_THROW(
      checked(folder.write("export.xml", "<HealthData><"), [&asked] { return ++asked > 3; }),
      Interruption);
}

TEST_F(Check, RefusesWhatCannotBeOpened) {
  EXPECT_THROW(checked(folder / "missing.zip"), Failure);
  EXPECT_THROW(checked(folder.write("empty.zip", "")), Failure);
}

TEST_F(Check, TakesAFolder) {
  folder.write("unpacked/apple_health_export/export.xml", exportText(3));
  folder.write("unpacked/apple_health_export/workout-routes/r.gpx", "");

  const CheckOutcome outcome = checked(folder / "unpacked");

  EXPECT_TRUE(outcome.census.complete);
  EXPECT_EQ(outcome.census.tally.records.read, 3);
  EXPECT_EQ(outcome.census.beside.routes, 1);
}

TEST_F(Check, TellsWhatTheExportLeavesOut) {
  EXPECT_EQ(textOf("<HealthData/>"),
            "Census of an export (no value, no name of a person, source or device, no day):\n"
            "  format version: not told\n"
            "  exported: not told\n"
            "  records: 0\n"
            "  workouts: 0\n"
            "  days of activity rings: 0\n"
            "  sources: 0\n"
            "  years with records or workouts: 0\n"
            "  bytes of XML: 13\n"
            "  time: 2.0 s\n"
            "The export can be read whole.\n"
            "Look through the types before you pass this on.\n");
  EXPECT_THAT(textOf(exportOf("<ExportDate value=\"yesterday\"/>")),
              HasSubstr("  exported: at a date that cannot be read\n"));
}

TEST_F(Check, TakesNoNegativeTimeWhenTheClockIsSetBack) {
  const std::filesystem::path source = folder.write("export.xml", "<HealthData/>");
  std::ostringstream unseen;
  double moment = 1717300000;

  const CheckOutcome outcome = runCheck({.source = source},
                                        {.progress = unseen,
                                         .progressKind = Importer::Progress::Kind::log,
                                         .lang = SummaryLang::en,
                                         .clock = [&moment] { return moment -= 3600; }});

  EXPECT_EQ(outcome.census.seconds, 0);
}

TEST_F(Check, CountsYearsByTheClocksOfTheExport) {
  const auto at = [](const std::string& stamp) {
    return "<Record type=\"a\" startDate=\"" + stamp + "\"/>\n";
  };

  const CheckOutcome outcome =
      checkedText(exportOf(at("2024-12-31 23:30:00 -0500") + at("2024-01-01 00:30:00 +0800") +
                           at("2022-06-01 00:30:00 +0800")));

  EXPECT_EQ(outcome.census.years, 2U);
}

TEST(Census, StopsCountingSourcesBeforeTheyTakeAllMemory) {
  CensusTaker taker;
  ExportedRecord record;
  record.type = "StepCount";
  record.startDate = "2024-03-01 08:00:00 +0100";
  for (int number = 0; number < 200; ++number) {
    const std::string name = std::to_string(number) + std::string(100000, 'n');
    record.sourceName = name;
    taker.add(record);
  }

  EXPECT_EQ(taker.census().sources, 42U);
  EXPECT_TRUE(taker.census().moreSources);
  EXPECT_THAT(censusText(taker.census(), SummaryLang::en), HasSubstr("  sources: more than 42\n"));
}

}  // namespace
