#include "mcp/tools/Arguments.h"
#include "mcp/tools/Tools.h"
#include "summary/SummaryEngine.h"
#include "summary/SummaryText.h"

std::string Tools::overview(const Call& call) { return overviewOf(resolve(call), call); }

std::string Tools::overviewOf(const Member& member, const Call& call) {
  const HealthStore store = open(member, call);
  const double now = call.clock();
  const SummaryEngine engine(store, now, call.lang, call.grouping);
  const HealthSummary summary =
      engine.build(member.id, member.name, member.lastSyncAt, member.backfill);
  return SummaryText::render(summary, call.lang, SummaryText::Options{}, now, call.grouping);
}
