#include "sample/Person.h"

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace {

// Phones set names with the typographic apostrophe, and some put a no-break space where one would
// type a blank: two texts that look alike are not the same source.
constexpr std::string_view possessive = "\u2019s ";
constexpr std::string_view noBreakSpace = "\u00a0";

constexpr int hour = 3600;

/// `name` and a number of two digits: "ann-01".
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
      .delaySeconds = 35};
  person.devices.phone = phoneNamed("iPhone");
  person.devices.chestStrap =
      Source{.name = "Chest Strap", .device = "<<HKDevice: 0x3>, name:CS1>"};
  person.devices.scale = Source{.name = "Bathroom Scale", .device = "<<HKDevice: 0x4>, name:BS2>"};
  person.devices.oldScale = Source{.name = "Old Scale", .device = ""};
  person.devices.mealDiary = Source{.name = "Meal Diary", .device = ""};
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
  person.devices.runningApp = Source{.name = "Pace Log", .device = "", .delaySeconds = 5};
  person.devices.byHand = Source{.name = "Health", .device = ""};
  return person;
}

constexpr std::array<std::string_view, 8> furtherNames{
    "Clara", "David", "Emma", "Felix", "Grace", "Henry", "Ida", "Jonas"};

Person member(int number) {
  if (number == 1) return withWatchAndPhone("Ann", number);
  if (number == 2) return withPhoneAlone("Ben", number);
  if (number == 3) return {.id = "mei-03", .name = "小美"};
  const std::string_view name =
      furtherNames[static_cast<std::size_t>(number - 4) % furtherNames.size()];
  return number % 2 == 0 ? withWatchAndPhone(name, number) : withPhoneAlone(name, number);
}

}  // namespace

std::vector<Person> household(int count) {
  std::vector<Person> members;
  for (int number = 1; number <= count; ++number) members.push_back(member(number));
  return members;
}
