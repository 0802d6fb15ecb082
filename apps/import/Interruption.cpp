#include "import/Interruption.h"
#include "platform/Phrase.h"

namespace {

constexpr Phrase interruptedRun{"已中断：没有改动任何数据", "interrupted: nothing was changed"};

}  // namespace

Interruption::Interruption() : Interruption(interruptedRun) {}

Interruption::Interruption(const Phrase& phrase) : Failure(phrase) {}

void heed(const Interrupted& interrupted) {
  if (interrupted()) throw Interruption();
}
