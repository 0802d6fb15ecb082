// A whole conversation under valgrind: no byte is read before it is written, after it is freed or
// beyond its block, and none is lost.

#include "support/ChildProcess.h"
#include "withstand/DamagedHousehold.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace {

TEST(Memcheck, FindsNothingInAWholeConversation) {
  Household household;
  household.add("ann", "Ann").replaceFile(DamagedHousehold::wholeFile());
  household.add("ben", "Ben").replaceFile("");
  std::vector<nlohmann::json> requests = generalRequests();
  for (const char* member : {"ann", "ben", "nobody"}) {
    for (const Question& question : questionsAbout(member, DamagedHousehold::workoutID())) {
      requests.push_back(question.request);
    }
  }
  requests = numbered(requests);
  constexpr int found = 99;
  ChildProcess program(LARKSPUR_VALGRIND,
                       {"--quiet",
                        "--leak-check=full",
                        "--show-leak-kinds=definite,indirect,possible",
                        "--errors-for-leak-kinds=definite,indirect,possible",
                        "--error-exitcode=" + std::to_string(found),
                        LARKSPUR_MCP_PROGRAM,
                        "--data-root",
                        household.dataRoot()},
                       household.dataRoot());

  program.write(asLines(requests) + "not JSON\n");
  const ChildProcess::Ending ending = program.finished();

  EXPECT_EQ(ending.status, 0) << ending.errors;
  EXPECT_EQ(ending.errors.find("=="), std::string::npos) << ending.errors;
  const auto answered = std::ranges::count(ending.output, '\n');
  EXPECT_EQ(answered, std::ranges::count_if(requests, [](const nlohmann::json& request) {
              return request.contains("id");
            }));
}

}  // namespace
