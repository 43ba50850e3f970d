#include "reference/dictionary.hpp"

#include "reference/ranking.hpp"

namespace reference {

ResultSet Dictionary::runMulti(const Reading &reading, const RunParams &params, const Swaps *swaps,
                               Polls &polls) const {
  ResultSet out;
  RunParams working = params;
  auto runEntries = [&](const auto &entries) {
    for (const auto &entry : entries) {
      polls.poll();
      if (params.returnBestOnly != 0 && params.maxEdits == 1 && isExactBest(out)) working.maxEdits = 0;
      ResultSet scratch = entry.matchMulti(reading, &working, swaps, polls);
      merge(out, scratch, &params);
    }
  };
  runEntries(lexicons);
  runEntries(fieldings);
  runEntries(expressions);
  sortResults(out.results, &params, true);
  if (!out.isComputed) {
    out.results.clear();
    out.isComputed = true;
  }
  finalize(out, &params);
  return out;
}

}  // namespace reference
