#include "support/Conversation.h"
#include "support/Golden.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// What a client sends when it meets the server: greetings, two readings, two mistakes, a good-bye.
const std::vector<std::string> firstMeeting{
    R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2024-11-05","capabilities":{},"clientInfo":{"name":"desk","version":"1.0"}}})",
    R"({"jsonrpc":"2.0","method":"notifications/initialized"})",
    R"({"jsonrpc":"2.0","id":1,"method":"tools/list"})",
    R"({"jsonrpc":"2.0","id":"a","method":"tools/call","params":{"name":"get_trend","arguments":{"person":"Ann","metric":"steps","from":"2024-03-01","to":"2024-03-07"}}})",
    R"({"jsonrpc":"2.0","id":"b","method":"tools/call","params":{"name":"get_trend","arguments":{"person":"小美","metric":"sleep"}}})",
    R"({"jsonrpc":"2.0","id":2,"method":"tools/call","params":{"name":"get_trend","arguments":{"metric":"steps"}}})",
    R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"get_weather","arguments":{"person":"Ann"}}})",
    R"({"jsonrpc":"2.0","id":4,"method":"ping"})"};

/// Ann walks, 小美 sleeps.
void fill(Household& household) {
  household.add("ann", "Ann")
      .addRecords({{.type = "StepCount",
                    .source_name = "Watch",
                    .start_day = "2024-03-01",
                    .value_num = 8000},
                   {.type = "StepCount",
                    .source_name = "iPhone",
                    .start_day = "2024-03-01",
                    .value_num = 7500},
                   {.type = "StepCount",
                    .source_name = "Watch",
                    .start_day = "2024-03-02",
                    .value_num = 640.5},
                   {.type = "StepCount",
                    .source_name = "Watch",
                    .start_day = "2022-03-02",
                    .value_num = 1}});
  household.add("mei", "小美")
      .addRecords({{.type = "SleepAnalysis",
                    .start_date = "2024-03-01 23:30:00 +0000",
                    .start_day = "2024-03-01",
                    .end_date = "2024-03-02 07:00:00 +0000",
                    .value = "HKCategoryValueSleepAnalysisAsleepCore"},
                   {.type = "SleepAnalysis",
                    .start_date = "2024-03-03 01:00:00 +0000",
                    .start_day = "2024-03-03",
                    .end_date = "2024-03-03 06:45:00 +0000",
                    .value = "HKCategoryValueSleepAnalysisAsleepDeep"}});
}

/// The first meeting and the records that the access log has of it.
std::string firstMeetingIn(SummaryLang lang) {
  Household household;
  fill(household);
  const Conversation conversation(household, lang);
  const std::string transcript = conversation.transcript(firstMeeting);
  std::string log = conversation.accessLog();
  log.pop_back();
  return transcript + "\n" + log;
}

TEST(GoldenConversation, GoesWellInEnglish) {
  EXPECT_TRUE(matchesGolden("conversation/first_meeting.en.txt", firstMeetingIn(SummaryLang::en)));
}

TEST(GoldenConversation, GoesWellInChinese) {
  EXPECT_TRUE(matchesGolden("conversation/first_meeting.zh.txt", firstMeetingIn(SummaryLang::zh)));
}

}  // namespace
