#include "platform/JsonFields.h"
#include "workouts/WorkoutHumidity.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <optional>
#include <string>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A reading; as it stands, one of 55 percent that can be believed.
struct StatusCase {
  std::string name;
  std::string status;
  std::optional<double> value = 55;
  std::optional<std::string> unit = "%";
  std::string encoding = "healthkit_percent";
  std::optional<std::string> bundle = "com.apple.Workout";
};

class HumidityStatus : public testing::TestWithParam<StatusCase> {};

TEST_P(HumidityStatus, TellsWhatAReadingIsWorth) {
  WorkoutHumidity humidity;
  humidity.raw_value = GetParam().value;
  humidity.raw_unit = GetParam().unit;
  humidity.encoding = GetParam().encoding;
  humidity.source_bundle_id = GetParam().bundle;

  EXPECT_EQ(humidity.status(), GetParam().status);
}

const auto named = [](const auto& test) { return test.param.name; };

INSTANTIATE_TEST_SUITE_P(
    Values, HumidityStatus,
    testing::Values(
        StatusCase{.name = "Usual", .status = "valid"},
        StatusCase{.name = "Zero", .status = "valid", .value = 0},
        StatusCase{.name = "NegativeZero", .status = "valid", .value = -0.0},
        StatusCase{.name = "Hundred", .status = "valid", .value = 100.0},
        StatusCase{.name = "AboveHundred", .status = "out_of_range", .value = 100.5},
        StatusCase{.name = "BelowZero", .status = "out_of_range", .value = -1},
        StatusCase{.name = "Absent", .status = "invalid_value", .value = std::nullopt},
        StatusCase{.name = "Infinite", .status = "invalid_value", .value = infinity},
        StatusCase{.name = "MinusInfinite", .status = "invalid_value", .value = -infinity},
        StatusCase{.name = "NotANumber", .status = "invalid_value", .value = notANumber}),
    named);

INSTANTIATE_TEST_SUITE_P(
    Representations, HumidityStatus,
    testing::Values(
        StatusCase{.name = "Value", .status = "valid", .encoding = "healthkit_value"},
        StatusCase{.name = "Fraction", .status = "valid", .encoding = "healthkit_fraction"},
        StatusCase{.name = "FractionIsNotScaled",
                   .status = "valid",
                   .value = 0.55,
                   .encoding = "healthkit_fraction"},
        StatusCase{.name = "Xml", .status = "unverified_scale", .encoding = "xml_percent"},
        StatusCase{.name = "XmlBelowZero",
                   .status = "out_of_range",
                   .value = -1,
                   .encoding = "xml_percent"},
        StatusCase{.name = "XmlAboveHundred",
                   .status = "unverified_scale",
                   .value = 5500,
                   .encoding = "xml_percent"},
        StatusCase{.name = "Legacy", .status = "legacy_unverified", .encoding = "legacy_percent"},
        StatusCase{.name = "LegacyBelowZero",
                   .status = "out_of_range",
                   .value = -1,
                   .encoding = "legacy_percent"},
        StatusCase{.name = "LegacyWithoutAValue",
                   .status = "invalid_value",
                   .value = std::nullopt,
                   .encoding = "legacy_percent"},
        StatusCase{.name = "UnknownEncoding",
                   .status = "unrecognized_representation",
                   .encoding = "percent"},
        StatusCase{.name = "EncodingInCapitals",
                   .status = "unrecognized_representation",
                   .encoding = "XML_PERCENT"},
        StatusCase{
            .name = "EmptyEncoding", .status = "unrecognized_representation", .encoding = ""},
        StatusCase{.name = "UnknownEncodingWithoutAValue",
                   .status = "unrecognized_representation",
                   .value = std::nullopt,
                   .encoding = "percent"},
        StatusCase{
            .name = "UnitInWords", .status = "unrecognized_representation", .unit = "percent"},
        StatusCase{.name = "UnitWithABlank", .status = "unrecognized_representation", .unit = "% "},
        StatusCase{.name = "NoUnit", .status = "unrecognized_representation", .unit = std::nullopt},
        StatusCase{.name = "NoUnitAndBelowZero",
                   .status = "unrecognized_representation",
                   .value = -1,
                   .unit = std::nullopt}),
    named);

INSTANTIATE_TEST_SUITE_P(
    Sources, HumidityStatus,
    testing::Values(
        StatusCase{.name = "Health", .status = "valid", .bundle = "com.apple.health"},
        StatusCase{.name = "HealthOnADevice",
                   .status = "valid",
                   .bundle = "com.apple.health.0F7C3B5A-1D2E-4F60-8A9B-0C1D2E3F4A5B"},
        StatusCase{.name = "HealthOnADeviceInLowerCase",
                   .status = "valid",
                   .bundle = "com.apple.health.0f7c3b5a-1d2e-4f60-8a9b-0c1d2e3f4a5b"},
        StatusCase{.name = "HealthOnADeviceAboveHundred",
                   .status = "out_of_range",
                   .value = 101,
                   .bundle = "com.apple.health.0F7C3B5A-1D2E-4F60-8A9B-0C1D2E3F4A5B"},
        StatusCase{.name = "HealthOnAPhone",
                   .status = "unverified_scale",
                   .bundle = "com.apple.health.phone"},
        StatusCase{
            .name = "HealthOnNothing", .status = "unverified_scale", .bundle = "com.apple.health."},
        StatusCase{.name = "DeviceOneDigitShort",
                   .status = "unverified_scale",
                   .bundle = "com.apple.health.0F7C3B5A-1D2E-4F60-8A9B-0C1D2E3F4A5"},
        StatusCase{.name = "DeviceOneDigitLong",
                   .status = "unverified_scale",
                   .bundle = "com.apple.health.0F7C3B5A-1D2E-4F60-8A9B-0C1D2E3F4A5BB"},
        StatusCase{.name = "DeviceWithALetterThatIsNoDigit",
                   .status = "unverified_scale",
                   .bundle = "com.apple.health.0F7C3B5G-1D2E-4F60-8A9B-0C1D2E3F4A5B"},
        StatusCase{.name = "DeviceWithoutDashes",
                   .status = "unverified_scale",
                   .bundle = "com.apple.health.0F7C3B5A1D2E4F608A9B0C1D2E3F4A5B"},
        StatusCase{.name = "DeviceInBraces",
                   .status = "unverified_scale",
                   .bundle = "com.apple.health.{0F7C3B5A-1D2E-4F60-8A9B-0C1D2E3F4A5B}"},
        StatusCase{.name = "WorkoutInLowerCase",
                   .status = "unverified_scale",
                   .bundle = "com.apple.workout"},
        StatusCase{.name = "LongerThanWorkout",
                   .status = "unverified_scale",
                   .bundle = "com.apple.Workout.2"},
        StatusCase{.name = "LongerThanHealth",
                   .status = "unverified_scale",
                   .bundle = "com.apple.healthy"},
        StatusCase{
            .name = "AnotherMaker", .status = "unverified_scale", .bundle = "com.example.running"},
        StatusCase{.name = "AnotherMakerAboveHundred",
                   .status = "unverified_scale",
                   .value = 5500,
                   .bundle = "com.example.running"},
        StatusCase{.name = "EmptySource", .status = "unverified_scale", .bundle = ""},
        StatusCase{.name = "NoSource", .status = "unverified_scale", .bundle = std::nullopt}),
    named);

/// The message with which `text` fails to be a reading; "" when it is one.
std::string messageFor(const char* text) {
  try {
    json::parse(text).get<WorkoutHumidity>();
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "";
}

TEST(WorkoutHumidity, IsReadFromAllItsKeysAndWrittenInTheirOrder) {
  const std::string text =
      R"({"raw_value":55.5,"raw_unit":"%","raw_text":"55.5 %","encoding":"xml_percent",)"
      R"("source_bundle_id":"com.apple.health","source_version":"17.3"})";
  const WorkoutHumidity humidity = json::parse(text);

  EXPECT_EQ(humidity,
            (WorkoutHumidity{55.5, "%", "55.5 %", "xml_percent", "com.apple.health", "17.3"}));
  EXPECT_EQ(ordered_json(humidity).dump(), text);
}

TEST(WorkoutHumidity, NeedsNothingButItsEncoding) {
  const WorkoutHumidity humidity = json::parse(R"({"encoding": "xml_percent"})");

  EXPECT_EQ(humidity, (WorkoutHumidity{{}, {}, {}, "xml_percent", {}, {}}));
  EXPECT_EQ(ordered_json(humidity).dump(), R"({"encoding":"xml_percent"})");
}

TEST(WorkoutHumidity, IsWrittenWithoutAValueThatIsNoNumber) {
  for (const double value : {infinity, -infinity, notANumber}) {
    const WorkoutHumidity humidity{value, "%", {}, "xml_percent", {}, {}};
    EXPECT_EQ(ordered_json(humidity).dump(), R"({"raw_unit":"%","encoding":"xml_percent"})")
        << value;
  }
}

TEST(WorkoutHumidity, TakesNullForAbsentAndIgnoresUnknownKeys) {
  EXPECT_EQ(json::parse(R"({"raw_value": null, "raw_unit": null, "raw_text": null,
                            "encoding": "x", "source_bundle_id": null, "source_version": null,
                            "added": [1]})")
                .get<WorkoutHumidity>(),
            (WorkoutHumidity{{}, {}, {}, "x", {}, {}}));
}

TEST(WorkoutHumidity, RefusesWhatItIsNot) {
  EXPECT_EQ(messageFor("{}"), "encoding is missing");
  EXPECT_EQ(messageFor(R"({"encoding": null})"), "encoding is not a string");
  EXPECT_EQ(messageFor(R"({"encoding": 7})"), "encoding is not a string");
  EXPECT_EQ(messageFor(R"({"encoding": "x", "raw_value": "55"})"), "raw_value is not a number");
  EXPECT_EQ(messageFor(R"({"encoding": "x", "raw_unit": 1})"), "raw_unit is not a string");
  EXPECT_EQ(messageFor(R"({"encoding": "x", "raw_text": 1})"), "raw_text is not a string");
  EXPECT_EQ(messageFor(R"({"encoding": "x", "source_bundle_id": 1})"),
            "source_bundle_id is not a string");
  EXPECT_EQ(messageFor(R"({"encoding": "x", "source_version": 17.3})"),
            "source_version is not a string");
  EXPECT_EQ(messageFor("[]"), "raw_value is wanted of what is not an object");
}

}  // namespace
