#include "import/export/FirstUnits.h"

#include <gtest/gtest.h>

#include <string>

namespace {

ExportedRecord recordIn(std::string_view type, std::string_view unit) {
  ExportedRecord record;
  record.type = type;
  record.startDate = "2024-03-01 08:00:00 +0100";
  record.unit = unit;
  record.number = 5;
  return record;
}

std::optional<std::string> none(const ExportedRecord& /*record*/) { return std::nullopt; }

TEST(FirstUnits, BringLaterRecordsOfATypeToTheUnitOfTheFirst) {
  FirstUnits units;
  ExportedRecord first = recordIn("Stride", "m");
  ExportedRecord later = recordIn("Stride", "cm");

  units.convert(first, none);
  units.convert(later, none);

  EXPECT_FALSE(first.converted);
  EXPECT_TRUE(later.converted);
  EXPECT_EQ(later.unit, "m");
  EXPECT_EQ(later.number, 0.05);
}

TEST(FirstUnits, AskOnceForATypeThatIsNotRemembered) {
  FirstUnits units;
  int asked = 0;
  const auto stored = [&asked](const ExportedRecord&) {
    ++asked;
    return std::optional<std::string>("km");
  };
  ExportedRecord first = recordIn("Stride", "m");
  ExportedRecord later = recordIn("Stride", "m");

  units.convert(first, stored);
  units.convert(later, stored);

  EXPECT_EQ(asked, 1);
  EXPECT_EQ(first.unit, "km");
  EXPECT_EQ(later.number, 0.005);
}

TEST(FirstUnits, MarkWhatCannotBeConverted) {
  FirstUnits units;
  ExportedRecord first = recordIn("Stride", "m");
  ExportedRecord later = recordIn("Stride", "kg");

  units.convert(first, none);
  units.convert(later, none);

  EXPECT_TRUE(later.unknownUnit);
  EXPECT_EQ(later.unit, "kg");
  EXPECT_EQ(later.number, 5);
}

TEST(FirstUnits, LeaveTypesWithAUnitOfOurChoiceAlone) {
  FirstUnits units;
  ExportedRecord pounds = recordIn("BodyMass", "lb");
  ExportedRecord kilograms = recordIn("BodyMass", "kg");

  units.convert(pounds, none);
  units.convert(kilograms, none);

  EXPECT_FALSE(kilograms.converted);
}

TEST(FirstUnits, ForgetTypesThatTakeTooMuchMemory) {
  FirstUnits units;
  ExportedRecord first = recordIn("Stride", "m");
  units.convert(first, none);

  for (int number = 0; number < 20; ++number) {
    const std::string type = std::to_string(number) + std::string(100000, 't');
    ExportedRecord record = recordIn(type, "m");
    units.convert(record, none);
  }
  ExportedRecord later = recordIn("Stride", "cm");
  units.convert(later, none);

  EXPECT_FALSE(later.converted) << "the first unit is still remembered";
}

}  // namespace
