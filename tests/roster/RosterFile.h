#pragma once
// A roster file for the tests that load it.

#include "platform/Files.h"
#include "platform/ReceiverError.h"
#include "roster/Roster.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>

/// A roster in which every key that there is has a value.
inline nlohmann::json fullFile() {
  return nlohmann::json::parse(R"({
    "version": 1,
    "members": [{
      "id": "ann-01",
      "name": "Ann",
      "dbPath": "/data/ann.sqlite",
      "createdAt": 1700000000.5,
      "lastSyncAt": 1709247272.25,
      "devices": [{
        "token": "token-1",
        "model": "iPhone15,2",
        "deviceName": "Ann's iPhone",
        "pairedAt": 1700000001,
        "lastSeenAt": 1709247000,
        "history": {"through": "2024-03-01", "earliest": "2016-01-02"},
        "key": "c2VjcmV0"
      }],
      "backfill": {
        "frontier": "2023-05-01",
        "earliest": "2016-01-02",
        "done": false,
        "completeFrom": "2023-05-02"
      }
    }]
  })");
}

inline Member fullMember() {
  return {.id = "ann-01",
          .name = "Ann",
          .dbPath = "/data/ann.sqlite",
          .createdAt = 1700000000.5,
          .lastSyncAt = 1709247272.25,
          .devices = {{.token = "token-1",
                       .model = "iPhone15,2",
                       .deviceName = "Ann's iPhone",
                       .pairedAt = 1700000001,
                       .lastSeenAt = 1709247000,
                       .history = HistoryHint{"2024-03-01", "2016-01-02"},
                       .key = "c2VjcmV0"}},
          .backfill = BackfillState{"2023-05-01", "2016-01-02", false, "2023-05-02"}};
}

/// A roster file in a folder of its own, with a log beside it and a clock that stands still.
class RosterFile : public testing::Test {
protected:
  Roster roster() {
    return Roster(path, log, [] { return 1700000000.9; });
  }

  void write(const std::string& contents) { folder.write("members.json", contents); }

  /// Loads a roster made of `contents`; returns what it fails with, "" when it does not.
  std::string failureOf(const std::string& contents) {
    write(contents);
    Roster broken = roster();
    try {
      broken.load();
    } catch (const ReceiverError& error) {
      EXPECT_TRUE(broken.members().empty());
      return error.what();
    }
    return "";
  }

  /// What every failure begins with.
  std::string prefix() const { return "名册解析失败(已备份到 " + backup.string() + "):"; }

  std::string logged() const { return fileContents(folder / "log").value_or(""); }

  TemporaryFolder folder;
  std::filesystem::path path = folder / "members.json";
  std::filesystem::path backup = folder / "members.json.broken-1700000000";
  Logger log{folder / "log", Logger::Level::debug, false, [] { return 0.0; }};
};
