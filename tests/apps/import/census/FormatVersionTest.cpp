#include "import/census/FormatVersion.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct VersionCase {
  std::string name;
  std::string document;
  std::optional<int> expected;
};

class FormatVersionOf : public testing::TestWithParam<VersionCase> {};

TEST_P(FormatVersionOf, IsThatOfTheDocumentTypeHoweverItIsCut) {
  for (const std::size_t size : {1UL, 7UL, 1000000UL}) {
    FormatVersion version;
    for (std::size_t place = 0; place < GetParam().document.size(); place += size) {
      version.look(std::string_view(GetParam().document).substr(place, size));
    }
    EXPECT_EQ(version.found(), GetParam().expected) << size;
  }
}

std::string documentWith(const std::string& comment) {
  return "<?xml version=\"1.0\"?>\n<!DOCTYPE HealthData [\n" + comment +
         "\n<!ELEMENT HealthData (ExportDate)>\n]>\n<HealthData locale=\"en_GB\">\n";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FormatVersionOf,
    testing::Values(
        VersionCase{"Recent", documentWith("<!-- HealthKit Export Version: 14 -->"), 14},
        VersionCase{"BrokenBehindIt",
                    documentWith("<!-- HealthKit Export Version: 12 -->\n<!ATTLIST Record ]]>"),
                    12},
        VersionCase{"None", documentWith(""), std::nullopt},
        VersionCase{
            "Words", documentWith("<!-- HealthKit Export Version: 14 of Ann -->"), std::nullopt},
        VersionCase{
            "NoNumber", documentWith("<!-- HealthKit Export Version: Ann -->"), std::nullopt},
        VersionCase{"TelephoneNumber",
                    documentWith("<!-- HealthKit Export Version: 5550142 -->"),
                    std::nullopt},
        VersionCase{"BehindTheRoot",
                    "<HealthData><!-- HealthKit Export Version: 14 --></HealthData>",
                    std::nullopt},
        VersionCase{"FarBehind",
                    std::string(70000, ' ') + "<!-- HealthKit Export Version: 14 -->",
                    std::nullopt},
        VersionCase{"Nothing", "", std::nullopt}),
    [](const auto& test) { return test.param.name; });

}  // namespace
