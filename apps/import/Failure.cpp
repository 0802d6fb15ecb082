#include "import/Failure.h"
#include "platform/Text.h"
#include "store/DatabaseError.h"

#include <cerrno>
#include <filesystem>
#include <utility>

Failure::Failure(const Phrase& phrase, std::initializer_list<std::string_view> values)
    : Failure(filled(phrase.in(SummaryLang::zh), values),
              filled(phrase.in(SummaryLang::en), values)) {}

Failure::Failure(std::string chinese, std::string english)
    : std::runtime_error(english), chinese(std::move(chinese)), english(std::move(english)) {}

const std::string& Failure::text(SummaryLang lang) const noexcept {
  return lang == SummaryLang::zh ? chinese : english;
}

namespace {

namespace phrases {

constexpr Phrase diskFull{"磁盘已满，这次导入已全部撤销；请腾出空间后再导入",
                          "the disk is full; the whole import was undone, make room and try "
                          "again"};
constexpr Phrase fileFull{
    "数据库文件无法继续增大：文件系统或 ulimit -f 限制了文件的大小；这次导入已全部撤销",
    "the database's file cannot grow: the file system or \"ulimit -f\" limits the size of a "
    "file; the whole import was undone"};
constexpr Phrase failed{"数据库无法写入，这次导入已全部撤销：{0}",
                        "the database cannot be written, the whole import was undone: {0}"};
constexpr Phrase unopened{"数据库无法打开：{0}", "the database cannot be opened: {0}"};
constexpr Phrase noFile{"{0} 不是普通文件；请移走后再导入",
                        "{0} is no regular file; move it away and try again"};
constexpr Phrase unusable{"{0} 无法使用：{1}", "{0} cannot be used: {1}"};
constexpr Phrase refused{"系统报错：{0}", "the system reports: {0}"};

}  // namespace phrases

}  // namespace

Failure databaseFailure(const DatabaseError& error) {
  const std::string& reason = error.facts.reason;
  if (error.isDiskFull()) return Failure(phrases::diskFull);
  if (error.facts.systemError == EFBIG) return Failure(phrases::fileFull);
  switch (error.facts.act) {
    case DatabaseError::Act::look:
      return Failure(phrases::noFile, {reason});
    case DatabaseError::Act::open:
      return Failure(phrases::unopened, {reason});
    case DatabaseError::Act::work:
      break;
  }
  return Failure(phrases::failed, {reason});
}

Failure systemFailure(const std::system_error& error) {
  const std::string reason = error.code().message();
  const auto* const aboutFile = dynamic_cast<const std::filesystem::filesystem_error*>(&error);
  if (aboutFile == nullptr || aboutFile->path1().empty()) {
    return Failure(phrases::refused, {reason});
  }
  return Failure(phrases::unusable, {aboutFile->path1().string(), reason});
}
