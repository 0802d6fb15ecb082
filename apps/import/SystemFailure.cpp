#include "import/SystemFailure.h"
#include "platform/Phrase.h"

#include <filesystem>

namespace {

namespace phrases {

constexpr Phrase unusable{"{0} 无法使用:{1}", "{0} cannot be used: {1}"};
constexpr Phrase refused{"系统报错:{0}", "the system reports: {0}"};

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
