#include "sample/life/Person.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(Household, GivesEverybodyANameAndAnIdentifierOfTheirOwn) {
  std::set<std::string> names;
  std::set<std::string> ids;
  for (const Person& person : household(largestHousehold)) {
    names.insert(person.name);
    ids.insert(person.id);
  }

  EXPECT_EQ(names.size(), static_cast<std::size_t>(largestHousehold));
  EXPECT_EQ(ids.size(), static_cast<std::size_t>(largestHousehold));
}

TEST(Household, KeepsItsFirstMembersHoweverManyFollow) {
  const std::vector<Person> few = household(2);
  const std::vector<Person> many = household(12);

  for (std::size_t index = 0; index < few.size(); ++index) {
    EXPECT_EQ(few[index].id, many[index].id);
  }
}

}  // namespace
