// What an export cannot do to the reader, and what it leaves to others.

#include "apps/import/CollectingSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using testing::HasSubstr;

constexpr std::string_view oneRecord = "<Record type=\"a\" startDate=\"2024-03-01\"/>";

TEST(HostileExport, CannotFillTheMemoryWithOneElement) {
  const std::string letters(1 << 16, 'a');
  CollectingSink sink;
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);
  reader.feed("<HealthData>\n <Record type=\"");

  int pieces = 0;
  std::string message;
  try {
    for (; pieces < 1000; ++pieces) reader.feed(letters);
  } catch (const Failure& error) {
    message = error.what();
  }

  EXPECT_EQ(message,
            "What begins in line 2, column 2 is longer than 128 KiB; this is no export of the "
            "Health app. Nothing was stored.");
  EXPECT_EQ(pieces, 3);
}

/// A record of `size` bytes.
std::string recordOfSize(std::size_t size) {
  std::string longRecord = "<Record type=\"a\" startDate=\"2024-03-01\" device=\"\"/>";
  longRecord.insert(longRecord.size() - 3, size - longRecord.size(), 'd');
  return longRecord;
}

TEST(HostileExport, IsToldByTheSameLengthHoweverItIsCut) {
  constexpr std::size_t longest = 128UL << 10;
  std::string many;
  for (std::size_t less = 0; less < 40; ++less) many += recordOfSize(longest - 3000 * less);
  for (const std::size_t piece : {10000UL, 100000UL, 131072UL, 1UL << 20}) {
    CollectingSink sink;
    readInto(sink, exportOf(many), piece);
    EXPECT_EQ(sink.records.size(), 40U) << piece;

    CollectingSink other;
    EXPECT_THROW(readInto(other, exportOf(recordOfSize(longest + 1)), piece), Failure) << piece;
  }
}

TEST(HostileExport, CannotFillTheMemoryWithDepth) {
  std::string document = "<HealthData>";
  for (int level = 0; level < 100; ++level) document += "<a>\n";

  EXPECT_THAT(errorOf(document), HasSubstr("line 64, column 1 are nested too deeply"));
}

/// The numbers from 0 on, as names in `before` and `after`, one a line.
std::string namesBetween(std::string_view before, std::string_view after, int count) {
  std::string text;
  for (int number = 0; number < count; ++number) {
    text.append(before).append("n").append(std::to_string(number)).append(after).append("\n");
  }
  return text;
}

constexpr std::string_view tooManyNames =
    "Up to line 1001, column 1 the elements and attributes have more than 1,000 names; this is no "
    "export of the Health app. Nothing was stored.";

TEST(HostileExport, CannotFillTheMemoryWithKindsOfElements) {
  // HealthData and these.
  EXPECT_EQ(errorOf("<HealthData>\n" + namesBetween("<", "/>", 999) + "</HealthData>"), "");
  EXPECT_EQ(errorOf("<HealthData>\n" + namesBetween("<", "/>", 1000)), tooManyNames);
}

TEST(HostileExport, CannotFillTheMemoryWithKindsOfElementsThatAreSkipped) {
  EXPECT_EQ(errorOf("<HealthData><Correlation>\n" + namesBetween("<", "/>", 1000)),
            "Up to line 1000, column 1 the elements and attributes have more than 1,000 names; "
            "this is no export of the Health app. Nothing was stored.");
}

TEST(HostileExport, CannotFillTheMemoryWithKindsOfAttributes) {
  EXPECT_EQ(errorOf("<HealthData>\n" + namesBetween("<Me ", "=\"\"/>", 1500)),
            "Up to line 1000, column 1 the elements and attributes have more than 1,000 names; "
            "this is no export of the Health app. Nothing was stored.");
}

TEST(HostileExport, CannotFillTheMemoryWithALongName) {
  const std::string longest(256, 'n');
  constexpr std::string_view message =
      "A name in the tag in line 3, column 1 is longer than 256 bytes; this is no export of the "
      "Health app. Nothing was stored.";

  EXPECT_EQ(errorOf(exportOf("<" + longest + " " + longest + "=\"\"/>")), "");
  EXPECT_EQ(errorOf(exportOf("<" + longest + "n/>")), message);
  EXPECT_EQ(errorOf(exportOf("<Me " + longest + "n=\"\"/>")), message);
}

TEST(ExportReader, LetsWhatTheSinkThrowsPass) {
  class FullDisk : public CollectingSink {
  public:
    using CollectingSink::add;
    void add(const ExportedRecord& /*record*/) override { throw std::length_error("disk full"); }
  };
  FullDisk sink;
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);

  EXPECT_THROW(reader.feed(exportOf(oneRecord)), std::length_error);
}

/// Counts alone, as there may be millions of records.
class CountingSink : public CollectingSink {
public:
  using CollectingSink::add;
  void add(const ExportedRecord& /*record*/) override { ++count; }
  void skipped(std::string_view /*reason*/, long long line) override { lastLine = line; }

  std::int64_t count = 0;
  long long lastLine = 0;
};

TEST(LargeExport, IsReadInPiecesAndItsLinesAreCounted) {
  std::string piece;
  while (piece.size() < 100000) piece.append(oneRecord).append("\n");
  const auto recordsInPiece = static_cast<std::int64_t>(piece.size() / (oneRecord.size() + 1));
  CountingSink sink;
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);

  constexpr int pieces = 40;
  reader.feed("<HealthData>\n");
  for (int number = 0; number < pieces; ++number) reader.feed(piece);
  reader.feed("<Record/></HealthData>");
  reader.finish();

  EXPECT_EQ(sink.count, pieces * recordsInPiece);
  EXPECT_EQ(sink.lastLine, pieces * recordsInPiece + 2);
}

}  // namespace
