#include "support/Household.h"

#include <nlohmann/json.hpp>

TestDatabase& Household::add(const std::string& id, const std::string& name) {
  TestDatabase& database = databases.emplace_back();
  addAt(id, name, database.path());
  return database;
}

void Household::addAt(const std::string& id, const std::string& name,
                      const std::filesystem::path& database) {
  Member member;
  member.id = id;
  member.name = name;
  member.dbPath = database.string();
  add(member);
}

void Household::add(const Member& member) {
  roster.members.push_back(member);
  folder.write("members.json", nlohmann::ordered_json(roster).dump());
}
