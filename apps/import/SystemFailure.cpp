#include "import/SystemFailure.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace {

namespace phrases {

constexpr Phrase unusable{.zh = "{0} 无法使用:{1}", .en = "{0} cannot be used: {1}"};
constexpr Phrase refused{.zh = "系统报错:{0}", .en = "the system reports: {0}"};
constexpr std::array all{unusable, refused};
static_assert(std::ranges::all_of(all, inBothLanguages));

}  // namespace phrases

}  // namespace

ImportError systemFailure(const std::system_error& error) {
  const std::string reason = error.code().message();
  const auto* const aboutFile = dynamic_cast<const std::filesystem::filesystem_error*>(&error);
  if (aboutFile == nullptr || aboutFile->path1().empty()) {
    return ImportError(phrases::refused, {reason});
  }
  return ImportError(phrases::unusable, {aboutFile->path1().string(), reason});
}
