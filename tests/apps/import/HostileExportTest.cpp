// What an export cannot do to the reader, and what it leaves to others.

#include "CollectingSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using testing::HasSubstr;

constexpr std::string_view record = "<Record type=\"a\" startDate=\"2024-03-01\"/>";

TEST(HostileExport, CannotFillTheMemoryWithOneElement) {
  CollectingSink sink;
  ExportReader reader(sink);
  reader.feed("<HealthData>\n<Record type=\"");
  const std::string piece(1 << 16, 'a');

  int pieces = 0;
  std::string message;
  try {
    for (; pieces < 1000; ++pieces) reader.feed(piece);
  } catch (const ImportError& error) {
    message = error.what();
  }

  EXPECT_EQ(message,
            "An element in line 2 is longer than 4 MiB; this is no export of the Health app.");
  EXPECT_LE(pieces, 65);
}

TEST(HostileExport, CannotFillTheMemoryWithDepth) {
  std::string document = "<HealthData>";
  for (int level = 0; level < 100; ++level) document += "<a>\n";

  EXPECT_THAT(errorOf(document), HasSubstr("line 64 are nested too deeply"));
}

TEST(HostileExport, CannotFillTheMemoryWithNames) {
  std::string document = "<HealthData>";
  for (int number = 0; number < 2000; ++number) document += "<a" + std::to_string(number) + "/>\n";

  EXPECT_THAT(errorOf(document), HasSubstr("too many kinds of elements"));
}

TEST(ExportReader, LetsWhatTheSinkThrowsPass) {
  class FullDisk : public CollectingSink {
  public:
    using CollectingSink::add;
    void add(const ExportedRecord& /*record*/) override { throw std::length_error("disk full"); }
  };
  FullDisk sink;
  ExportReader reader(sink);

  EXPECT_THROW(reader.feed(exportOf(record)), std::length_error);
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
  while (piece.size() < 100000) piece.append(record).append("\n");
  const auto recordsInPiece = static_cast<std::int64_t>(piece.size() / (record.size() + 1));
  CountingSink sink;
  ExportReader reader(sink);

  constexpr int pieces = 40;
  reader.feed("<HealthData>\n");
  for (int number = 0; number < pieces; ++number) reader.feed(piece);
  reader.feed("<Record/></HealthData>");
  reader.finish();

  EXPECT_EQ(sink.count, pieces * recordsInPiece);
  EXPECT_EQ(sink.lastLine, pieces * recordsInPiece + 2);
}

}  // namespace
