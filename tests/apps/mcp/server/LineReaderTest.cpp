#include "mcp/server/LineReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_literals;

/// Gives out `bytes` in pieces of at most `piece`.
std::unique_ptr<ByteSource> sourceOf(const std::string& bytes, std::size_t piece) {
  return byteSource([bytes, piece, position = std::size_t{0}](std::span<char> buffer) mutable {
    const std::size_t count = bytes.copy(buffer.data(), std::min(piece, buffer.size()), position);
    position += count;
    return count;
  });
}

/// What stands in place of a line that was too long.
const std::string overlong = "(overlong)";

std::vector<std::string> linesOf(std::unique_ptr<ByteSource> source, std::size_t limit) {
  LineReader reader(std::move(source), limit);
  std::vector<std::string> lines;
  while (const std::optional<LineReader::Line> line = reader.next()) {
    lines.push_back(line->overlong ? overlong + line->text : line->text);
  }
  return lines;
}

struct InputCase {
  std::string name;
  std::string bytes;
  std::vector<std::string> lines;
};

constexpr std::size_t smallLimit = 5;

class ReadLines : public testing::TestWithParam<InputCase> {};

TEST_P(ReadLines, AreTheSameHoweverTheBytesCome) {
  for (const std::size_t piece : {1U, 2U, 3U, 4U, 7U, 1000U}) {
    EXPECT_EQ(linesOf(sourceOf(GetParam().bytes, piece), smallLimit), GetParam().lines) << piece;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Ends, ReadLines,
    testing::Values(InputCase{"Nothing", "", {}}, InputCase{"OneLine", "a\n", {"a"}},
                    InputCase{"TwoLines", "a\nbc\n", {"a", "bc"}},
                    InputCase{"LastWithoutEnd", "a\nbc", {"a", "bc"}},
                    InputCase{"EmptyLines", "\n\na\n\n", {"", "", "a", ""}},
                    InputCase{"CarriageReturns", "a\r\n\r\nb\r\n", {"a", "", "b"}},
                    InputCase{"OneCarriageReturnOfTwo", "a\r\r\n", {"a\r"}},
                    InputCase{"CarriageReturnInside", "a\rb\n", {"a\rb"}},
                    InputCase{"CarriageReturnBeforeTheEndOfInput", "a\r", {"a\r"}},
                    InputCase{"ZeroBytes", "a\0b\n\0"s, {"a\0b"s, "\0"s}},
                    InputCase{"OtherSeparators", "a\v\fb\n", {"a\v\fb"}},
                    InputCase{"BlanksStay", " a \n", {" a "}}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Limits, ReadLines,
    testing::Values(InputCase{"AtTheLimit", "12345\nb\n", {"12345", "b"}},
                    InputCase{"OneAbove", "123456\nb\n", {overlong, "b"}},
                    InputCase{"FarAbove", std::string(20000, 'x') + "\nb\n", {overlong, "b"}},
                    InputCase{"TwoInARow", "123456\n1234567\nb\n", {overlong, overlong, "b"}},
                    InputCase{"LastLine", "a\n123456", {"a", overlong}},
                    InputCase{"LastLineAtTheLimit", "a\n12345", {"a", "12345"}},
                    InputCase{"CarriageReturnAtTheLimit", "1234\r\nb\n", {"1234", "b"}}),
    [](const auto& test) { return test.param.name; });

TEST(LineReader, JoinsALineThatComesInManyBlocks) {
  const std::string line(300000, 'x');

  EXPECT_EQ(linesOf(sourceOf(line + "\n" + line, 65536), LineReader::defaultLimit),
            (std::vector<std::string>{line, line}));
}

TEST(LineReader, HoldsSixteenMebibytesByDefault) {
  constexpr std::size_t sixteenMebibytes = 16777216;
  const std::string longest(sixteenMebibytes, 'x');
  LineReader reader(sourceOf(longest + "\n" + longest + "x\nnext\n", sixteenMebibytes));

  const std::optional<LineReader::Line> kept = reader.next();
  const std::optional<LineReader::Line> dropped = reader.next();
  const std::optional<LineReader::Line> next = reader.next();

  ASSERT_TRUE(kept && dropped && next);
  EXPECT_FALSE(kept->overlong);
  EXPECT_TRUE(kept->text == longest);
  EXPECT_TRUE(dropped->overlong);
  EXPECT_EQ(dropped->text, "");
  EXPECT_FALSE(next->overlong);
  EXPECT_EQ(next->text, "next");
}

TEST(LineReader, GivesOutALineBeforeItAsksForMore) {
  std::vector<std::string> pieces{"a\nb\n", "c\n"};
  std::size_t asked = 0;
  LineReader reader(byteSource([&](std::span<char> buffer) {
    return asked == pieces.size() ? 0 : pieces[asked++].copy(buffer.data(), buffer.size());
  }));

  EXPECT_EQ(reader.next()->text, "a");
  EXPECT_EQ(reader.next()->text, "b");
  EXPECT_EQ(asked, 1U);
  EXPECT_EQ(reader.next()->text, "c");
  EXPECT_FALSE(reader.next());
}

TEST(LineReader, LetsAFailingSourcePass) {
  LineReader reader(
      byteSource([](std::span<char>) -> std::size_t { throw std::runtime_error("gone"); }));

  EXPECT_THROW(reader.next(), std::runtime_error);
}

}  // namespace
