// No program leaves its memory in a core file.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"
#include "withstand/SystemCalls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

class CoreFiles : public testing::TestWithParam<const char*> {};

TEST_P(CoreFiles, AreGivenUpBeforeAnythingIsRead) {
  const EnvironmentGuard quiet({{"ASAN_OPTIONS", "detect_leaks=0"}});
  const TemporaryFolder folder;
  ChildProcess program(LARKSPUR_STRACE,
                       {"-qq",
                        "-e",
                        "trace=prctl,prlimit64,setrlimit",
                        "-o",
                        folder / "trace",
                        GetParam(),
                        "--help"},
                       folder.path());
  EXPECT_EQ(program.finished().status, 0);

  const std::vector<SystemCall> calls = systemCallsIn(fileContents(folder / "trace").value());

  const auto succeeded = [&calls](const std::string& name, const std::string& text) {
    return std::ranges::any_of(calls, [&](const SystemCall& call) {
      return call.name == name && call.arguments.find(text) != std::string::npos &&
             call.arguments.ends_with(" = 0");
    });
  };
  EXPECT_TRUE(succeeded("prctl", "PR_SET_DUMPABLE, SUID_DUMP_DISABLE"));
  EXPECT_TRUE(succeeded("prlimit64", "RLIMIT_CORE, {rlim_cur=0, rlim_max=0}") ||
              succeeded("setrlimit", "RLIMIT_CORE, {rlim_cur=0, rlim_max=0}"));
}

INSTANTIATE_TEST_SUITE_P(Programs, CoreFiles,
                         testing::Values(LARKSPUR_MCP_PROGRAM, LARKSPUR_IMPORT_PROGRAM,
                                         LARKSPUR_SAMPLE_PROGRAM),
                         [](const auto& test) {
                           std::string name = test.param;
                           name = name.substr(name.rfind('-') + 1);
                           return name;
                         });

}  // namespace
