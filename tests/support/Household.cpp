#include "support/Household.h"

#include <nlohmann/json.hpp>

TestDatabase& Household::add(const std::string& id, const std::string& name) {
  TestDatabase& database = databases.emplace_back();
  Member member;
  member.id = id;
  member.name = name;
  member.dbPath = database.path();
  add(member);
  return database;
}

void Household::add(const Member& member) {
  roster.members.push_back(member);
  folder.write("members.json", nlohmann::ordered_json(roster).dump());
}
