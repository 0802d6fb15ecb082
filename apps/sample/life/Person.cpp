#include "sample/life/Person.h"

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace {

// Phones use the typographic apostrophe in names, and some use a no-break space instead of a blank.
// Two such texts look alike but are different sources.
constexpr std::string_view possessive = "\u2019s ";
constexpr std::string_view noBreakSpace = "\u00a0";

constexpr int hour = 3600;

/// `name` and a two-digit number: "ann-01".
std::string idOf(std::string_view name, int number) {
  std::string id(name);
  for (char& letter : id)
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  char suffix[16];
  std::snprintf(suffix, sizeof suffix, "-%02d", number);
  return id + suffix;
}

Source phoneNamed(std::string name) {
  return {.name = std::move(name),
          .device = "<<HKDevice: 0x2>, name:iPhone, model:iPhone, hardware:iPhone14,5>",
          .version = "17.1",
          .delaySeconds = 240};
}

Person withWatchAndPhone(std::string_view name, int number) {
  Person person{.id = idOf(name, number),
                .name = std::string(name),
                .kind = Person::Kind::watchAndPhone,
                .home = Zone::shanghai,
                .journeys = Zone::newYork,
                .usualBedtime = 23 * hour};
  std::string watch(name);
  watch.append(possessive).append("Apple").append(noBreakSpace).append("Watch");
  person.devices.watch = Source{
      .name = std::move(watch),
      .device =
          "<<HKDevice: 0x1>, name:Apple Watch, model:Watch, hardware:Watch6,2, software:10.1>",
      .version = "10.1",
      .delaySeconds = 35};
  person.devices.phone = phoneNamed("iPhone");
  person.devices.chestStrap =
      Source{.name = "Chest Strap", .device = "<<HKDevice: 0x3>, name:CS1>", .version = "2.4"};
  person.devices.scale =
      Source{.name = "Bathroom Scale", .device = "<<HKDevice: 0x4>, name:BS2>", .version = "5"};
  person.devices.oldScale = Source{.name = "Old Scale", .device = ""};
  person.devices.mealDiary = Source{.name = "Meal Diary", .device = "", .version = "6.2.1"};
  person.devices.kitchenScale = Source{.name = "Kitchen Scale", .device = ""};
  return person;
}

Person withPhoneAlone(std::string_view name, int number) {
  Person person{.id = idOf(name, number),
                .name = std::string(name),
                .kind = Person::Kind::phoneAlone,
                .home = Zone::newYork,
                .usualBedtime = 24 * hour};
  person.devices.phone = phoneNamed(std::string(name).append(possessive).append("iPhone"));
  person.devices.runningApp =
      Source{.name = "Pace Log", .device = "", .version = "3.8", .delaySeconds = 5};
  return person;
}

constexpr std::array furtherNames = std::to_array<std::string_view>(
    {"Clara", "David", "Emma", "Felix", "Grace", "Henry", "Ida", "Jonas", "Karin"});
static_assert(furtherNames.size() + 3 == largestHousehold, "everybody has a name of one's own");

/// Only Ann's watch records her sleep: sleep of two sources is summed, and hers must be plausible.
Person ann() {
  Person person = withWatchAndPhone("Ann", 1);
  person.phoneNoticesSleep = false;
  return person;
}

Person furtherMember(int number) {
  const std::string_view name = furtherNames.at(static_cast<std::size_t>(number - 4));
  if (number % 2 == 0) return withWatchAndPhone(name, number);
  Person person = withPhoneAlone(name, number);
  person.devices.byHand = Source{.name = "Health", .device = "", .version = "17.1"};
  return person;
}

Person member(int number) {
  if (number == 1) return ann();
  if (number == 2) return withPhoneAlone("Ben", number);
  if (number == 3) return {.id = "mei-03", .name = "小美"};
  return furtherMember(number);
}

}  // namespace

std::vector<Person> household(int count) {
  std::vector<Person> members;
  for (int number = 1; number <= count; ++number) members.push_back(member(number));
  return members;
}
