#include "import/xml/RepeatedAttributes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace {

struct Result {
  std::string text;
  std::int64_t count;

  bool operator==(const Result&) const = default;
};

void PrintTo(const Result& result, std::ostream* out) {
  *out << result.count << ": " << result.text;
}

/// What becomes of `text`, fed in pieces of `size`.
Result passed(std::string_view text, std::size_t size = std::string_view::npos) {
  RepeatedAttributes attributes;
  std::string output;
  while (!text.empty()) {
    const std::string piece(text.substr(0, size));
    output += attributes.removed(piece);
    text.remove_prefix(piece.size());
  }
  output += attributes.rest();
  return {output, attributes.count()};
}

struct RepeatedCase {
  std::string name;
  std::string text;
  std::string expected;
  std::int64_t count;
};

void PrintTo(const RepeatedCase& value, std::ostream* out) { *out << value.name; }

class Repeated : public testing::TestWithParam<RepeatedCase> {};

TEST_P(Repeated, LeavesTheFirst) {
  EXPECT_EQ(passed(GetParam().text), (Result{GetParam().expected, GetParam().count}));
}

TEST_P(Repeated, LeavesTheFirstInPiecesOfAnySize) {
  for (std::size_t size = 1; size < GetParam().text.size(); ++size) {
    ASSERT_EQ(passed(GetParam().text, size), (Result{GetParam().expected, GetParam().count}))
        << size;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, Repeated,
    testing::Values(
        RepeatedCase{"SecondStartIsTheEnd",
                     R"(<S startDate="1" startDate="2" sum="3"/>)",
                     R"(<S startDate="1" endDate  ="2" sum="3"/>)",
                     1},
        RepeatedCase{"SecondStartBesideAnEnd",
                     R"(<S startDate="1" startDate="2" endDate="3"/>)",
                     R"(<S startDate="1"               endDate="3"/>)",
                     1},
        RepeatedCase{"ThirdStart",
                     R"(<S startDate="1" startDate="2" startDate="3">)",
                     R"(<S startDate="1" endDate  ="2"              >)",
                     2},
        RepeatedCase{"AnyOther", R"(<A b="1" c='2' b='3'>)", R"(<A b="1" c='2'      >)", 1},
        RepeatedCase{
            "BlanksAroundTheSign", "<A b = \"1\"\n\tb\t=\n\"2\"/>", "<A b = \"1\"\n\t       />", 1},
        RepeatedCase{
            "InTheSecondTag", R"(<A b="1"/><A b="1" b="2"/>)", R"(<A b="1"/><A b="1"      />)", 1},
        RepeatedCase{"BehindAGreaterSign", R"(<A b=">" b="2"/>)", R"(<A b=">"      />)", 1},
        RepeatedCase{"WithReferences",
                     R"(<A b="1" b="&lt;&#10;&#xA0;"/>)",
                     R"(<A b="1"                    />)",
                     1}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Elsewhere, Repeated,
    testing::Values(
        RepeatedCase{"BrokenValue", R"(<A b="1" b="<"/>)", R"(<A b="1" b="<"/>)", 0},
        RepeatedCase{"BrokenReference", R"(<A b="1" b="&no;"/>)", R"(<A b="1" b="&no;"/>)", 0},
        RepeatedCase{"OpenReference", R"(<A b="1" b="a&"/>)", R"(<A b="1" b="a&"/>)", 0},
        RepeatedCase{"TwoSigns", R"(<A b="1" b=="2"/>)", R"(<A b="1" b=="2"/>)", 0},
        RepeatedCase{"NoBlank", R"(<A b="1"b="2"/>)", R"(<A b="1"b="2"/>)", 0},
        RepeatedCase{"Sound", R"(<A b="1" c="2"/>)", R"(<A b="1" c="2"/>)", 0},
        RepeatedCase{
            "InDifferentTags", R"(<A b="1"><A b="1"/></A>)", R"(<A b="1"><A b="1"/></A>)", 0},
        RepeatedCase{"OneNameBeginsTheOther", R"(<A b="1" bb="2"/>)", R"(<A b="1" bb="2"/>)", 0},
        RepeatedCase{"InAComment", R"(<!-- <A b="1" b="2"> -->)", R"(<!-- <A b="1" b="2"> -->)", 0},
        RepeatedCase{
            "InASection", R"(<![CDATA[<A b="1" b="2">]]>)", R"(<![CDATA[<A b="1" b="2">]]>)", 0},
        RepeatedCase{"InAnInstruction", R"(<?A b="1" b="2"?>)", R"(<?A b="1" b="2"?>)", 0},
        RepeatedCase{"InText", R"(<A> b="1" b="2" </A>)", R"(<A> b="1" b="2" </A>)", 0},
        RepeatedCase{"TagWithoutAnEnd", R"(<A b="1" b="2)", R"(<A b="1" b="2)", 0},
        RepeatedCase{"NoTag", "<", "<", 0}),
    [](const auto& test) { return test.param.name; });

TEST(Repeated, AreLeftToTheParserInATagThatIsTooLong) {
  std::string text = "<A";
  for (int number = 0; number < 70; ++number) text += " b" + std::to_string(number) + "=\"\"";
  const std::string tag = text + " b69=\"\"/>";

  EXPECT_EQ(passed(tag), (Result{tag, 0}));
}

TEST(Repeated, HoldBackABoundedPieceOfATag) {
  const std::string start = "<A b=\"" + std::string(300000, 'x');
  RepeatedAttributes attributes;

  EXPECT_EQ(attributes.removed(start).size(), start.size());
  EXPECT_EQ(attributes.removed("<A b='1' b='2'>"), "<A b='1' b='2'>");
}

}  // namespace
