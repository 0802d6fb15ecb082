#include "import/DatabaseFailure.h"
#include "platform/Phrase.h"

#include <array>
#include <cerrno>
#include <string_view>

namespace {

namespace phrases {

constexpr Phrase diskFull{"磁盘已满,这次导入已全部撤销;请腾出空间后再导入",
                          "the disk is full; the whole import was undone, make room and try "
                          "again"};
constexpr Phrase fileFull{
    "数据库文件不能再变大:文件系统或 ulimit -f 限制了文件的大小。这次导入已全部撤销",
    "the database's file cannot grow: the file system or \"ulimit -f\" limits the size of a "
    "file; the whole import was undone"};
constexpr Phrase failed{"数据库无法写入,这次导入已全部撤销:{0}",
                        "the database cannot be written, the whole import was undone: {0}"};
constexpr Phrase unopened{"数据库无法打开:{0}", "the database cannot be opened: {0}"};
constexpr Phrase noFile{"{0} 不是普通文件;请移走后再导入",
                        "{0} is no regular file; move it away and try again"};

}  // namespace phrases

constexpr std::string_view openFailure = "打不开库:";
constexpr std::string_view noFileFailure = "不是普通文件:";

/// What the store says first, whatever it was that failed.
constexpr std::array<std::string_view, 3> stepFailures{"SQL 失败:", "prepare 失败:", "读取失败:"};

}  // namespace

ImportError databaseFailure(const ReceiverError& error) {
  // The store hands on no more of a failure than SQLite's sentence about it.
  std::string_view reason = error.message;
  if (reason.ends_with("database or disk is full")) return ImportError(phrases::diskFull);
  if (error.systemError == EFBIG) return ImportError(phrases::fileFull);
  if (reason.starts_with(openFailure)) {
    return ImportError(phrases::unopened, {reason.substr(openFailure.size())});
  }
  if (reason.starts_with(noFileFailure)) {
    return ImportError(phrases::noFile, {reason.substr(noFileFailure.size())});
  }
  for (const std::string_view failure : stepFailures) {
    if (reason.starts_with(failure)) reason.remove_prefix(failure.size());
  }
  return ImportError(phrases::failed, {reason});
}
