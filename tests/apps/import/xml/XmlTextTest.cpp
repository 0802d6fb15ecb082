#include "import/xml/XmlText.h"
#include "platform/Text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <random>
#include <string>
#include <string_view>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

struct Cleaned {
  std::string text;
  std::int64_t dropped = 0;
  std::int64_t replaced = 0;

  bool operator==(const Cleaned&) const = default;
};

void PrintTo(const Cleaned& value, std::ostream* out) {
  *out << testing::PrintToString(value.text) << " dropped " << value.dropped << " replaced "
       << value.replaced;
}

Cleaned cleanedInPieces(std::string_view bytes, std::size_t size) {
  XmlText cleaner;
  Cleaned cleaned;
  for (std::size_t position = 0; position < bytes.size(); position += size) {
    cleaned.text += cleaner.cleaned(bytes.substr(position, size));
  }
  cleaned.text += cleaner.rest();
  cleaned.dropped = cleaner.droppedCharacters();
  cleaned.replaced = cleaner.replacedSequences();
  return cleaned;
}

struct CleanCase {
  std::string name;
  std::string bytes;
  Cleaned expected;
};

void PrintTo(const CleanCase& value, std::ostream* out) { *out << value.name; }

class XmlTextOf : public testing::TestWithParam<CleanCase> {};

TEST_P(XmlTextOf, IsCleanHoweverItIsCut) {
  const std::string& bytes = GetParam().bytes;
  for (std::size_t size = 1; size <= bytes.size(); ++size) {
    EXPECT_EQ(cleanedInPieces(bytes, size), GetParam().expected) << size;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, XmlTextOf,
    testing::Values(
        CleanCase{"PlainText", "<a b='1'/>\t\r\n", {"<a b='1'/>\t\r\n"}},
        CleanCase{"AllLengthsOfCharacters", "aé中𝄞\xC2\xA0z", {"aé中𝄞\xC2\xA0z"}},
        CleanCase{"ControlCharacters", "a\vb\0c\x1F"s, {"abc", 3}},
        CleanCase{"DeleteAndC1AreAllowed", "\x7F\xC2\x80", {"\x7F\xC2\x80"}},
        CleanCase{"Noncharacters", "a\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBDz", {"a\xEF\xBF\xBDz", 2}},
        CleanCase{"ReferencesToForbiddenCharacters",
                  "a&#11;b&#x0B;c&#xFFFF;d&#0;e&#xd800;f&#99999999999;g",
                  {"abcdefg", 6}},
        CleanCase{"ReferencesToAllowedCharacters",
                  "&#10;&#x9;&#169;&#x1F600;&lt;&amp;#11;",
                  {"&#10;&#x9;&#169;&#x1F600;&lt;&amp;#11;"}},
        CleanCase{"MalformedReferencesStay", "&#;&#x;&#11&#1a;&#xg;&", {"&#;&#x;&#11&#1a;&#xg;&"}},
        CleanCase{"OverlongForm", "a\xC0\xAFz", {"a\uFFFD\uFFFDz", 0, 2}},
        CleanCase{"Surrogate", "a\xED\xA0\x80z", {"a\uFFFD\uFFFD\uFFFDz", 0, 3}},
        CleanCase{"AboveTheLastCharacter", "\xF4\x90\x80\x80", {"\uFFFD\uFFFD\uFFFD\uFFFD", 0, 4}},
        CleanCase{"CharacterCutByAnother", "\xE4\xB8z", {"\uFFFDz", 0, 1}},
        CleanCase{"CharacterCutByTheEnd", "a\xF0\x9D\x84", {"a\uFFFD", 0, 1}},
        CleanCase{"ByteOrderMarkAtTheStart", "\xEF\xBB\xBF<a/>\xEF\xBB\xBF", {"<a/>\xEF\xBB\xBF"}},
        CleanCase{"ByteOrderMarkCutByTheEnd", "\xEF\xBB", {"\uFFFD", 0, 1}}),
    [](const auto& test) { return test.param.name; });

TEST(XmlText, DoesNotCopyCleanText) {
  constexpr std::string_view text = "<Record sourceName=\"Ann’s Watch\" device=\"&lt;&lt;\"/>\n"sv;
  XmlText cleaner;

  EXPECT_EQ(cleaner.cleaned(text).data(), text.data());
}

TEST(XmlText, LeavesAReferenceWithoutEndToTheParser) {
  const std::string text = "&#" + std::string(1000, '0') + "11;";

  EXPECT_EQ(cleanedInPieces(text, 10), Cleaned{text});
}

/// Any bytes but those that are treated in other ways than in repair.
std::string randomBytes(std::mt19937& random) {
  constexpr std::string_view alphabet =
      "az\n\xC3\xA9\xE4\xB8\xAD\xF0\x9D\x84\x9E\xED\xA0\xC0\xFF\xF4\x90";
  std::uniform_int_distribution<std::size_t> length(0, 40);
  std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
  std::string bytes(length(random), '\0');
  for (char& byte : bytes) byte = alphabet[letter(random)];
  return "." + bytes;  // no byte order mark
}

TEST(XmlText, RepairsAsTheServerDoes) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; ++round) {
    const std::string bytes = randomBytes(random);
    EXPECT_EQ(cleanedInPieces(bytes, 1 + static_cast<std::size_t>(round % 9)).text, repaired(bytes))
        << testing::PrintToString(bytes);
  }
}

}  // namespace
