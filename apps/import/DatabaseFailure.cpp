#include "import/DatabaseFailure.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

namespace phrases {

constexpr Phrase diskFull{.zh = "磁盘满了;这次导入全部撤销,腾出空间再来",
                          .en =
                              "the disk is full; the whole import was undone, make room and try "
                              "again"};
constexpr Phrase failed{.zh = "库写不了,这次导入全部撤销:{0}",
                        .en = "the database cannot be written, the whole import was undone: {0}"};
constexpr std::array all{&diskFull, &failed};
static_assert(std::ranges::all_of(all,
                                  [](const Phrase* phrase) { return inBothLanguages(*phrase); }));

}  // namespace phrases

}  // namespace

ImportError databaseFailure(const ReceiverError& error) {
  // The store hands on no more of a failure than SQLite's sentence about it.
  if (std::string_view(error.message).ends_with("database or disk is full")) {
    return ImportError(phrases::diskFull);
  }
  return ImportError(phrases::failed, {error.message});
}
