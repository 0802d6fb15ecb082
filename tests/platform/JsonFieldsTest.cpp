#include "platform/JsonFields.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

TEST(ParsedText, IsTheValueThatItHolds) {
  EXPECT_EQ(JsonFields::parsed(R"( {"a":[1,2.5,null]} )"), (json{{"a", {1, 2.5, nullptr}}}));
  EXPECT_EQ(JsonFields::parsed("7"), 7);
}

struct WholeCase {
  std::string name;
  std::string text;
  std::optional<std::int64_t> number;
};

class WholeNumber : public testing::TestWithParam<WholeCase> {};

TEST_P(WholeNumber, IsAnyNumberWithoutAFraction) {
  EXPECT_EQ(JsonFields::wholeNumber(json::parse(GetParam().text)), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WholeNumber,
    testing::Values(WholeCase{"Positive", "7", 7}, WholeCase{"Negative", "-7", -7},
                    WholeCase{"WithAPoint", "7.0", 7}, WholeCase{"WithAnExponent", "1e3", 1000},
                    WholeCase{"NegativeZero", "-0.0", 0},
                    WholeCase{"Largest", "9223372036854775807", INT64_MAX},
                    WholeCase{"Smallest", "-9223372036854775808", INT64_MIN},
                    WholeCase{"SmallestWithAPoint", "-9223372036854775808.0", INT64_MIN},
                    WholeCase{"OneBeyondTheLargest", "9223372036854775808", {}},
                    WholeCase{"BeyondTheLargestWithAPoint", "9223372036854775808.0", {}},
                    WholeCase{"BeyondTheSmallest", "-9223372036854777856.0", {}},
                    WholeCase{"LargestWithoutASign", "18446744073709551615", {}},
                    WholeCase{"Huge", "1e300", {}}, WholeCase{"Fraction", "7.5", {}},
                    WholeCase{"Text", "\"7\"", {}}, WholeCase{"Boolean", "true", {}},
                    WholeCase{"Null", "null", {}}, WholeCase{"Array", "[7]", {}}),
    [](const auto& test) { return test.param.name; });

/// The message with which `read` fails; "" when it does not.
template <typename Read>
std::string messageOf(Read read) {
  try {
    read();
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "";
}

TEST(ParsedText, MustBeJson) {
  const std::vector<std::string> texts{"", " ", "{", "{} {}", "nul", R"({"a":})", "\"\xFF\""};
  for (const std::string& text : texts) {
    EXPECT_EQ(messageOf([&text] { JsonFields::parsed(text); }), "not JSON, line 1") << text;
  }
}

TEST(ParsedText, MayBeNoNumberTooLargeToHold) {
  EXPECT_EQ(messageOf([] { JsonFields::parsed("[1,\n1e999]"); }).substr(0, 9), "not JSON,");
}

TEST(ParsedText, IsNotQuotedWhenItIsWrong) {
  EXPECT_EQ(messageOf([] { JsonFields::parsed("{\"name\":\n\n\"secret\",\n secret}"); }),
            "not JSON, line 4");
}

TEST(ParsedText, HoldsNoZeroByte) {
  using namespace std::string_literals;
  for (const std::string& text : {"{}\0"s, "{}\0{"s, "\0"s, "\0{}"s, "\"a\0b\""s}) {
    EXPECT_EQ(messageOf([&text] { JsonFields::parsed(text); }), "not JSON, line 1") << text;
  }
  EXPECT_EQ(messageOf([] { JsonFields::parsed("{}\n\n\0"s); }), "not JSON, line 3");
  EXPECT_EQ(JsonFields::parsed("\"a\\u0000b\""), "a\0b"s);
}

/// A record with a required and an optional field, and one of its own kind inside.
struct Box {
  std::string label;
  std::optional<double> weight;
  std::vector<Box> inner;
};

void from_json(const json& value, Box& box) {
  box.label = JsonFields::required<std::string>(value, "label");
  box.weight = JsonFields::optional<double>(value, "weight");
  if (value.contains("inner")) box.inner = JsonFields::required<std::vector<Box>>(value, "inner");
}

TEST(RequiredField, IsReadByItsType) {
  const json object{{"text", "x"}, {"flag", true}, {"real", 7}, {"whole", 7.0}, {"list", {1, 2}}};

  EXPECT_EQ(JsonFields::required<std::string>(object, "text"), "x");
  EXPECT_EQ(JsonFields::required<bool>(object, "flag"), true);
  EXPECT_EQ(JsonFields::required<double>(object, "real"), 7.0);
  EXPECT_EQ(JsonFields::required<std::int64_t>(object, "whole"), 7);
  EXPECT_EQ(JsonFields::required<std::vector<double>>(object, "list"), (std::vector<double>{1, 2}));
}

TEST(RequiredField, MustBeThere) {
  EXPECT_EQ(messageOf([] { JsonFields::required<bool>(json::object(), "done"); }),
            "done is missing");
}

TEST(RequiredField, IsWantedOfAnObject) {
  for (const char* text : {"[]", "\"text\"", "7", "null"}) {
    EXPECT_EQ(messageOf([&] { JsonFields::required<bool>(json::parse(text), "done"); }),
              "done is wanted of what is not an object");
    EXPECT_EQ(messageOf([&] { JsonFields::optional<bool>(json::parse(text), "done"); }),
              "done is wanted of what is not an object");
  }
}

TEST(RequiredField, MustNotBeNull) {
  EXPECT_EQ(messageOf([] {
              JsonFields::required<bool>({{"done", nullptr}}, "done");
            }),
            "done is not a boolean");
}

template <typename T>
std::string messageFor(const json& value) {
  return messageOf([&] { JsonFields::decoded<T>(value, "key"); });
}

TEST(DecodedField, NamesTheTypeItShouldHave) {
  EXPECT_EQ(messageFor<std::string>(7), "key is not a string");
  EXPECT_EQ(messageFor<bool>(1), "key is not a boolean");
  EXPECT_EQ(messageFor<double>("7"), "key is not a number");
  EXPECT_EQ(messageFor<double>(true), "key is not a number");
  EXPECT_EQ(messageFor<std::int64_t>(7.5), "key is not an integer");
  EXPECT_EQ(messageFor<std::vector<double>>(json::object()), "key is not an array");
  EXPECT_EQ(messageFor<Box>(json::array()), "key.label is wanted of what is not an object");
}

TEST(DecodedField, NamesThePlaceOfAnElement) {
  const json boxes = json::parse(R"([{"label": "a"},
                                     {"label": "b", "inner": [{"label": 7}]}])");
  EXPECT_EQ(messageFor<std::vector<Box>>(boxes), "key[1].inner[0].label is not a string");
  EXPECT_EQ(messageFor<std::vector<double>>({1, 2, "x"}), "key[2] is not a number");
}

TEST(DecodedField, NeverTellsTheValue) {
  EXPECT_EQ(messageFor<double>("secret").find("secret"), std::string::npos);
}

TEST(OptionalField, IsAbsentWhenMissingOrNull) {
  EXPECT_EQ(JsonFields::optional<double>(json::object(), "weight"), std::nullopt);
  EXPECT_EQ(JsonFields::optional<double>({{"weight", nullptr}}, "weight"), std::nullopt);
  EXPECT_EQ(JsonFields::optional<double>({{"weight", 0}}, "weight"), 0);
}

TEST(OptionalField, HasToBeOfItsTypeWhenThere) {
  EXPECT_EQ(messageOf([] {
              JsonFields::optional<double>({{"weight", "7"}}, "weight");
            }),
            "weight is not a number");
}

TEST(SetIfPresent, WritesNoNull) {
  json object = json::object();
  JsonFields::setIfPresent(object, "weight", std::optional<double>());
  EXPECT_EQ(object.dump(), "{}");
  JsonFields::setIfPresent(object, "weight", std::optional<double>(0));
  EXPECT_EQ(object.dump(), R"({"weight":0.0})");
}

}  // namespace
