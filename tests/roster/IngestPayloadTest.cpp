#include "platform/JsonFields.h"
#include "roster/IngestPayload.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

/// The message with which `text` fails to be a `Payload`; "" when it is one.
template <typename Payload>
std::string messageFor(const char* text) {
  try {
    json::parse(text).get<Payload>();
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "";
}

TEST(BackfillState, IsReadFromAllItsKeys) {
  const BackfillState state = json::parse(R"({
    "frontier": "2023-05-01", "earliest": "2016-01-02", "done": true, "completeFrom": "2023-05-02"
  })");
  EXPECT_EQ(state, (BackfillState{"2023-05-01", "2016-01-02", true, "2023-05-02"}));
}

TEST(BackfillState, NeedsOnlyToSayWhetherItIsDone) {
  EXPECT_EQ(json::parse(R"({"done": false})").get<BackfillState>(), BackfillState());
}

TEST(BackfillState, TakesNullForAbsent) {
  const char* text = R"({"frontier": null, "earliest": null, "done": true, "completeFrom": null})";
  EXPECT_EQ(json::parse(text).get<BackfillState>(), (BackfillState{{}, {}, true, {}}));
}

TEST(BackfillState, IgnoresUnknownKeys) {
  EXPECT_EQ(messageFor<BackfillState>(R"({"done": true, "speed": 7})"), "");
}

TEST(BackfillState, RefusesWhatItIsNot) {
  EXPECT_EQ(messageFor<BackfillState>("{}"), "done is missing");
  EXPECT_EQ(messageFor<BackfillState>(R"({"done": null})"), "done is not a boolean");
  EXPECT_EQ(messageFor<BackfillState>(R"({"done": 1})"), "done is not a boolean");
  EXPECT_EQ(messageFor<BackfillState>(R"({"done": true, "frontier": 7})"),
            "frontier is not a string");
  EXPECT_EQ(messageFor<BackfillState>(R"({"done": true, "earliest": []})"),
            "earliest is not a string");
  EXPECT_EQ(messageFor<BackfillState>(R"({"done": true, "completeFrom": false})"),
            "completeFrom is not a string");
}

TEST(BackfillState, IsWrittenInTheOrderOfItsFields) {
  EXPECT_EQ(ordered_json(BackfillState{"2023-05-01", "2016-01-02", true, "2023-05-02"}).dump(),
            R"({"frontier":"2023-05-01","earliest":"2016-01-02","done":true,)"
            R"("completeFrom":"2023-05-02"})");
}

TEST(BackfillState, LeavesOutWhatIsAbsent) {
  EXPECT_EQ(ordered_json(BackfillState()).dump(), R"({"done":false})");
}

TEST(HistoryHint, IsReadFromItsKeys) {
  EXPECT_EQ(
      json::parse(R"({"through": "2024-03-01", "earliest": "2016-01-02"})").get<HistoryHint>(),
      (HistoryHint{"2024-03-01", "2016-01-02"}));
  EXPECT_EQ(json::parse(R"({"through": "2024-03-01", "earliest": null})").get<HistoryHint>(),
            (HistoryHint{"2024-03-01", {}}));
}

TEST(HistoryHint, RefusesWhatItIsNot) {
  EXPECT_EQ(messageFor<HistoryHint>(R"({"earliest": "2016-01-02"})"), "through is missing");
  EXPECT_EQ(messageFor<HistoryHint>(R"({"through": null})"), "through is not a string");
  EXPECT_EQ(messageFor<HistoryHint>(R"({"through": "2024-03-01", "earliest": 2016})"),
            "earliest is not a string");
}

TEST(HistoryHint, IsWrittenInTheOrderOfItsFields) {
  EXPECT_EQ(ordered_json(HistoryHint{"2024-03-01", "2016-01-02"}).dump(),
            R"({"through":"2024-03-01","earliest":"2016-01-02"})");
  EXPECT_EQ(ordered_json(HistoryHint{"2024-03-01", {}}).dump(), R"({"through":"2024-03-01"})");
}

}  // namespace
