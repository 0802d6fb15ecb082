#include "import/Interruption.h"

namespace {

constexpr Phrase interruptedRun{.zh = "已中断:没有改动任何数据",
                                .en = "interrupted: nothing was changed"};
static_assert(inBothLanguages(interruptedRun));

}  // namespace

Interruption::Interruption() : Interruption(interruptedRun) {}

Interruption::Interruption(const Phrase& phrase) : ImportError(phrase) {}

void heed(const Interrupted& interrupted) {
  if (interrupted()) throw Interruption();
}
