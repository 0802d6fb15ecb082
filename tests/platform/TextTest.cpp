#include "platform/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_literals;

/// `count` replacement characters.
std::string replacements(int count) {
  std::string text;
  for (int index = 0; index < count; ++index) text += "\xEF\xBF\xBD";
  return text;
}

/// Whether another library takes `text` for UTF-8: it refuses to write a text that is not.
bool isUTF8(const std::string& text) {
  try {
    return !nlohmann::json(text).dump().empty();
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

struct RepairCase {
  std::string name;
  std::string bytes;
  std::string text;
};

class Repaired : public testing::TestWithParam<RepairCase> {};

TEST_P(Repaired, ReplacesEachLongestIllFormedRunOnce) {
  EXPECT_EQ(repaired(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    WellFormed, Repaired,
    testing::Values(RepairCase{"Empty", "", ""},
                    RepairCase{"ASCII", "Kim's Watch\t\n", "Kim's Watch\t\n"},
                    RepairCase{"ZeroByte", "a\0b"s, "a\0b"s},
                    RepairCase{"LowestOfTwoBytes", "\xC2\x80", "\xC2\x80"},
                    RepairCase{"HighestOfTwoBytes", "\xDF\xBF", "\xDF\xBF"},
                    RepairCase{"LowestOfThreeBytes", "\xE0\xA0\x80", "\xE0\xA0\x80"},
                    RepairCase{"LastBeforeTheSurrogates", "\xED\x9F\xBF", "\xED\x9F\xBF"},
                    RepairCase{"FirstAfterTheSurrogates", "\xEE\x80\x80", "\xEE\x80\x80"},
                    RepairCase{"HighestOfThreeBytes", "\xEF\xBF\xBF", "\xEF\xBF\xBF"},
                    RepairCase{"LowestOfFourBytes", "\xF0\x90\x80\x80", "\xF0\x90\x80\x80"},
                    RepairCase{"Emoji", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
                    RepairCase{"HighestOfFourBytes", "\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
                    RepairCase{"Chinese", "步数 · 近 30 天", "步数 · 近 30 天"}),
    [](const auto& test) { return test.param.name; });

// The four longer rows are the Unicode standard's own examples of how many replacement characters
// each kind of damage makes.
INSTANTIATE_TEST_SUITE_P(
    IllFormed, Repaired,
    testing::Values(
        RepairCase{"OverlongForms", "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", replacements(8) + "A"},
        RepairCase{"Surrogates", "\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", replacements(8) + "A"},
        RepairCase{"AboveTheLastCodePoint",
                   "\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42",
                   replacements(5) + "A" + replacements(2) + "B"},
        RepairCase{
            "TruncatedSequences", "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", replacements(4) + "A"},
        RepairCase{"LoneContinuation", "\x80", replacements(1)},
        RepairCase{"ThreeContinuations",
                   "a\x80\x81\xBF"
                   "b",
                   "a" + replacements(3) + "b"},
        RepairCase{"OverlongC1", "\xC1\xBF", replacements(2)},
        RepairCase{"LeadBytesThatNeverAre", "\xF5\xF8\xFE\xFF", replacements(4)},
        RepairCase{"TwoByteLeadAtTheEnd", "a\xC3", "a" + replacements(1)},
        RepairCase{"ThreeByteFormCutAfterOne", "\xE6", replacements(1)},
        RepairCase{"ThreeByteFormCutAfterTwo", "\xE6\xAD", replacements(1)},
        RepairCase{"FourByteFormCutAfterThree", "\xF0\x9F\x98", replacements(1)},
        RepairCase{"LeadBeforeACharacter", "\xE6\xE6\xAD\xA5", replacements(1) + "步"},
        RepairCase{"LeadBeforeASCII",
                   "\xF0\x9F"
                   "a",
                   replacements(1) + "a"},
        RepairCase{"DamageBetweenCharacters", "步\xFF数", "步" + replacements(1) + "数"},
        RepairCase{"ReplacementCharacterStays", "\xEF\xBF\xBD\xFF", replacements(2)}),
    [](const auto& test) { return test.param.name; });

TEST(RepairedPairs, AreValidAndStayAsTheyAre) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
      const std::string text = repaired(bytes);
      ASSERT_TRUE(isUTF8(text)) << first << " " << second;
      ASSERT_EQ(repaired(text), text) << first << " " << second;
      ASSERT_EQ(text == bytes, isUTF8(bytes)) << first << " " << second;
    }
  }
}

struct CodePointCase {
  std::string name;
  char32_t codePoint;
  std::string text;
};

class CodePointText : public testing::TestWithParam<CodePointCase> {};

TEST_P(CodePointText, EncodesACodePoint) { EXPECT_EQ(utf8(GetParam().codePoint), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(
    Cases, CodePointText,
    testing::Values(CodePointCase{"Zero", 0, "\0"s}, CodePointCase{"LastOfOneByte", 0x7F, "\x7F"},
                    CodePointCase{"FirstOfTwoBytes", 0x80, "\xC2\x80"},
                    CodePointCase{"NoBreakSpace", 0xA0, "\xC2\xA0"},
                    CodePointCase{"LastOfTwoBytes", 0x7FF, "\xDF\xBF"},
                    CodePointCase{"FirstOfThreeBytes", 0x800, "\xE0\xA0\x80"},
                    CodePointCase{"NarrowNoBreakSpace", 0x202F, "\xE2\x80\xAF"},
                    CodePointCase{"LastBeforeTheSurrogates", 0xD7FF, "\xED\x9F\xBF"},
                    CodePointCase{"FirstSurrogate", 0xD800, replacements(1)},
                    CodePointCase{"LastSurrogate", 0xDFFF, replacements(1)},
                    CodePointCase{"FirstAfterTheSurrogates", 0xE000, "\xEE\x80\x80"},
                    CodePointCase{"LastOfThreeBytes", 0xFFFF, "\xEF\xBF\xBF"},
                    CodePointCase{"FirstOfFourBytes", 0x10000, "\xF0\x90\x80\x80"},
                    CodePointCase{"Last", 0x10FFFF, "\xF4\x8F\xBF\xBF"},
                    CodePointCase{"OneBeyondTheLast", 0x110000, replacements(1)},
                    CodePointCase{"FarBeyond", 0xFFFFFFFF, replacements(1)}),
    [](const auto& test) { return test.param.name; });

TEST(CodePointText, MakesOfEveryCodePointATextThatNeedsNoRepair) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    const std::string text = utf8(codePoint);
    ASSERT_EQ(repaired(text), text) << static_cast<std::uint32_t>(codePoint);
  }
}

TEST(TrimmedBlanks, TakesSpacesAndTabsOffBothEnds) {
  EXPECT_EQ(trimmedBlanks(" \t Kim Lee\t "), "Kim Lee");
  EXPECT_EQ(trimmedBlanks("Kim"), "Kim");
}

TEST(TrimmedBlanks, LeavesOtherWhiteSpace) {
  EXPECT_EQ(trimmedBlanks("\nKim\r"), "\nKim\r");
  EXPECT_EQ(trimmedBlanks("\xC2\xA0Kim"), "\xC2\xA0Kim");
}

TEST(TrimmedBlanks, MakesNothingOutOfNothingButBlanks) {
  EXPECT_EQ(trimmedBlanks(""), "");
  EXPECT_EQ(trimmedBlanks(" \t "), "");
}

struct SpaceCase {
  std::string name;
  char32_t codePoint;
};

class WhiteSpace : public testing::TestWithParam<SpaceCase> {};

TEST_P(WhiteSpace, IsTrimmedOffBothEndsAlone) {
  const std::string space = utf8(GetParam().codePoint);
  EXPECT_EQ(trimmedWhitespace(space + space + "Table" + space + "Tennis" + space),
            "Table" + space + "Tennis");
  EXPECT_EQ(trimmedWhitespace(space), "");
}

INSTANTIATE_TEST_SUITE_P(
    CodePoints, WhiteSpace,
    testing::Values(SpaceCase{"Tab", 0x09}, SpaceCase{"LineFeed", 0x0A},
                    SpaceCase{"VerticalTab", 0x0B}, SpaceCase{"FormFeed", 0x0C},
                    SpaceCase{"CarriageReturn", 0x0D}, SpaceCase{"Space", 0x20},
                    SpaceCase{"NextLine", 0x85}, SpaceCase{"NoBreak", 0xA0},
                    SpaceCase{"OghamMark", 0x1680}, SpaceCase{"EnQuad", 0x2000},
                    SpaceCase{"EmQuad", 0x2001}, SpaceCase{"En", 0x2002}, SpaceCase{"Em", 0x2003},
                    SpaceCase{"ThirdOfAnEm", 0x2004}, SpaceCase{"QuarterOfAnEm", 0x2005},
                    SpaceCase{"SixthOfAnEm", 0x2006}, SpaceCase{"Figure", 0x2007},
                    SpaceCase{"Punctuation", 0x2008}, SpaceCase{"Thin", 0x2009},
                    SpaceCase{"Hair", 0x200A}, SpaceCase{"LineSeparator", 0x2028},
                    SpaceCase{"ParagraphSeparator", 0x2029}, SpaceCase{"NarrowNoBreak", 0x202F},
                    SpaceCase{"MediumMathematical", 0x205F}, SpaceCase{"Ideographic", 0x3000}),
    [](const auto& test) { return test.param.name; });

TEST(TrimmedWhitespace, TakesAMixtureOff) {
  EXPECT_EQ(trimmedWhitespace(" \u3000\n\u00A0瑜伽\r\n\t\u2009 "), "瑜伽");
  EXPECT_EQ(trimmedWhitespace(" \u3000\n"), "");
  EXPECT_EQ(trimmedWhitespace(""), "");
}

TEST(TrimmedWhitespace, LeavesWhatMerelyLooksLikeIt) {
  // Zero-width space and joiner, the byte-order mark, a blank Braille cell, the Mongolian vowel
  // separator, two control characters.
  for (const char32_t codePoint :
       {U'\u200B', U'\u200D', U'\uFEFF', U'\u2800', U'\u180E', U'\x1F', U'\0'}) {
    const std::string text = utf8(codePoint) + "x" + utf8(codePoint);
    EXPECT_EQ(trimmedWhitespace(text), text) << std::hex << static_cast<int>(codePoint);
  }
}

TEST(TrimmedWhitespace, LeavesCharactersThatShareBytesWithIt) {
  // "à" ends in the byte of a no-break space, "…" begins as the spaces of typographers do.
  EXPECT_EQ(trimmedWhitespace("à"), "à");
  EXPECT_EQ(trimmedWhitespace("…x…"), "…x…");
}

TEST(Filled, PutsEveryValueInItsPlace) {
  EXPECT_EQ(filled("{1} of {0}, {0}", {"a", "b"}), "b of a, a");
  EXPECT_EQ(filled("plain", {}), "plain");
  EXPECT_EQ(filled("", {"a"}), "");
}

TEST(Filled, NeverLooksForMarksInsideValues) {
  EXPECT_EQ(filled("{0}{1}", {"{1}", "{0}"}), "{1}{0}");
}

TEST(Filled, LeavesAMarkWithoutAValue) { EXPECT_EQ(filled("{0} {1}", {"a"}), "a {1}"); }

TEST(Filled, LeavesBracesThatAreNoMark) {
  EXPECT_EQ(filled("{} {a} {/} {0 {00} 0} {", {"x"}), "{} {a} {/} {0 {00} 0} {");
  EXPECT_EQ(filled("{{0}}", {"x"}), "{x}");
}

TEST(Filled, CopiesValuesOfAnyBytes) { EXPECT_EQ(filled("[{0}]", {"a\0b"s}), "[a\0b]"s); }

struct DecimalsCase {
  std::string name;
  double value;
  int digits;
  std::string text;
};

class FixedDecimals : public testing::TestWithParam<DecimalsCase> {};

TEST_P(FixedDecimals, WritesTheNumberAsPrintfDoes) {
  EXPECT_EQ(fixedDecimals(GetParam().value, GetParam().digits), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FixedDecimals,
    testing::Values(DecimalsCase{"NoDigits", 62.4, 0, "62"},
                    DecimalsCase{"OneDigit", 62.25, 1, "62.2"},
                    DecimalsCase{"HalfGoesToEven", 2.5, 0, "2"},
                    DecimalsCase{"HalfAboveOddGoesUp", 3.5, 0, "4"},
                    DecimalsCase{"FillsWithZeros", 7, 2, "7.00"},
                    DecimalsCase{"Negative", -1.26, 1, "-1.3"},
                    DecimalsCase{"SmallNegativeKeepsItsSign", -0.04, 1, "-0.0"},
                    DecimalsCase{"Large", 1e20, 0, "100000000000000000000"},
                    DecimalsCase{"Infinite", std::numeric_limits<double>::infinity(), 1, "inf"}),
    [](const auto& test) { return test.param.name; });

TEST(FixedDecimals, HasRoomForTheLargestNumber) {
  EXPECT_EQ(fixedDecimals(std::numeric_limits<double>::max(), 1).size(), 311U);
}

TEST(LowerCased, ChangesTheLettersFromAToZAlone) {
  EXPECT_EQ(lowerCased("AZaz"), "azaz");
  EXPECT_EQ(lowerCased("@[`{09-_ "), "@[`{09-_ ");
  EXPECT_EQ(lowerCased("ÄÉΩЖİ中文"), "ÄÉΩЖİ中文");
  EXPECT_EQ(lowerCased(std::string_view("A\0B", 3)), std::string("a\0b", 3));
  EXPECT_EQ(lowerCased(""), "");
}

using Texts = std::vector<std::string>;

TEST(Joined, PutsTheSeparatorBetweenTwo) {
  EXPECT_EQ(joined(Texts{"a", "b", "c"}, ", "), "a, b, c");
  EXPECT_EQ(joined(Texts{"a"}, ", "), "a");
  EXPECT_EQ(joined(Texts{}, ", "), "");
}

TEST(Joined, KeepsTheSeparatorsOfEmptyElements) {
  EXPECT_EQ(joined(Texts{"", "a", "b"}, ", "), ", a, b");
  EXPECT_EQ(joined(Texts{"a", "", "b"}, ", "), "a, , b");
  EXPECT_EQ(joined(Texts{"a", ""}, ", "), "a, ");
  EXPECT_EQ(joined(Texts{"", ""}, ", "), ", ");
  EXPECT_EQ(joined(Texts{""}, ", "), "");
}

TEST(Joined, AsksForAPartOfEachElement) {
  const auto digits = [](int number) { return std::to_string(number); };
  EXPECT_EQ(joined(std::vector{10, 20}, "/", digits), "10/20");
  EXPECT_EQ(joined(std::map<std::string, int>{{"b", 1}, {"a", 2}},
                   " ",
                   &std::map<std::string, int>::value_type::first),
            "a b");
}

TEST(Lines, JoinsLinesWithoutAFeedAtTheEnd) {
  Lines lines;
  lines.add("one");
  lines.add("");
  lines.add("th", std::string("re"), std::string_view("e"));
  EXPECT_EQ(lines.joined(), "one\n\nthree");
}

TEST(Lines, StartsWithAnEmptyLineWhenThatWasAddedFirst) {
  Lines lines;
  lines.add("");
  lines.add("two");
  EXPECT_EQ(lines.joined(), "\ntwo");
}

TEST(Lines, AreNothingAtFirst) { EXPECT_EQ(Lines().joined(), ""); }

TEST(Shortened, LeavesAloneWhatIsShortEnough) {
  EXPECT_EQ(shortened("", 3), "");
  EXPECT_EQ(shortened("abcdef", 6), "abcdef");
  EXPECT_EQ(shortened("步数", 6), "步数");
}

TEST(Shortened, EndsBetweenTwoCharacters) {
  EXPECT_EQ(shortened("abcdef", 5), "ab…");
  EXPECT_EQ(shortened("步数步数", 11), "步数…");
  EXPECT_EQ(shortened("步数步数", 10), "步数…");
  EXPECT_EQ(shortened("步数步数", 9), "步数…");
  EXPECT_EQ(shortened("步数步数", 8), "步…");
  EXPECT_EQ(shortened("😀😀", 7), "😀…");
  EXPECT_EQ(shortened("😀😀", 6), "…");
  EXPECT_EQ(shortened("abcdef", 3), "…");
}

}  // namespace
