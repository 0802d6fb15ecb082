#include "mcp/server/Confinement.h"
#include "platform/System.h"
#include "platform/Text.h"

#include <string>

namespace {

System::Reach reachOf(const std::filesystem::path& dataRoot, const std::vector<Member>& members) {
  System::Reach reach{.read = System::filesOfTheLibrary(),
                      .databases = {},
                      .change = {},
                      .staying = dataRoot};  // where the access log is open, if it opened
  reach.read.push_back(dataRoot);
  for (const Member& member : members) reach.databases.emplace_back(member.dbPath);
  return reach;
}

const char* held(bool holds) { return holds ? "是" : "否"; }

}  // namespace

void confine(const std::filesystem::path& dataRoot, const std::vector<Member>& members,
             Logger& log) {
  const System::Confinement confinement = System::confine(reachOf(dataRoot, members));
  log.write(Logger::Level::debug,
            filled("内核限制:文件 {0},网络 {1},系统调用 {2}",
                   {held(confinement.files), held(confinement.network), held(confinement.calls)}));
}
