#include "import/census/KnownNames.h"
#include "summary/Metrics.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(KnownNames, AreOurOwnTexts) {
  const std::string type = "StepCount";
  const std::string unit = "km";
  const std::string element = "WorkoutRoute";

  EXPECT_EQ(KnownNames::type(type), "StepCount");
  EXPECT_NE(KnownNames::type(type).value().data(), type.data());
  EXPECT_EQ(KnownNames::unit(unit), "km");
  EXPECT_NE(KnownNames::unit(unit).value().data(), unit.data());
  EXPECT_EQ(KnownNames::element(element), "WorkoutRoute");
  EXPECT_NE(KnownNames::element(element).value().data(), element.data());
}

TEST(KnownNames, IncludeEveryMetricAndItsUnit) {
  for (const MetricInfo& metric : metricTable) {
    EXPECT_EQ(KnownNames::type(metric.storeType), metric.storeType);
    if (metric.unit.empty()) continue;
    EXPECT_EQ(KnownNames::unit(metric.unit), metric.unit);
  }
}

TEST(KnownNames, DoNotIncludeWhatMerelyBeginsOrEndsLikeOne) {
  for (const char* name :
       {"", "DistanceToAnnSmith", "AnnEnergyBurned", "stepcount", "StepCountX"}) {
    EXPECT_EQ(KnownNames::type(name), std::nullopt) << name;
    EXPECT_EQ(KnownNames::element(name), std::nullopt) << name;
  }
  for (const char* unit : {"", "km of Ann", "KM", "mmol<Ann>/L", "mmol</L"}) {
    EXPECT_EQ(KnownNames::unit(unit), std::nullopt) << unit;
  }
}

TEST(KnownNames, LeaveTheMassOfAMoleOut) {
  EXPECT_EQ(KnownNames::unit("mmol<180.1558800000541>/L"), "mmol/L");
  EXPECT_EQ(KnownNames::unit("mg/dL"), "mg/dL");
  EXPECT_EQ(KnownNames::unit("degF"), "degF");
}

}  // namespace
