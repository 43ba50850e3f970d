// How far behind the best text others matter, and which edits they can have then.

#include "resolve/task.hpp"

#include "platform/containers/view.hpp"

namespace qoc {

Task::Task(const qoc_ocrDictionaryResolver &resolver, const Confusions &confusions,
           const qoc_ocrDictionaryStringMulti &toResolve, const qoc_ocrDictionaryRunParams &runParams,
           const qoc_swapCharSet *swapSet, const qoc_ocrDictionaryResultSet &found)
    : rules(resolver.rules),
      knowledge(keptBy(resolver) != nullptr ? keptBy(resolver)->dictionary.get() : nullptr),
      reading(toResolve),
      params(runParams),
      set(swapSet),
      results(viewAs<qoc_ocrDictionaryResult>(found.results)),
      costs(toResolve, resolver.rules, confusions, swapSet),
      reach(Reach::of(runParams)),
      swaps(multiSwapsOf(swapSet)),
      freeText(mostAsFreeText()),
      numWanted(static_cast<std::size_t>(rules.maxTexts) + 1) {}

Cost Task::mostAsFreeText() const {
  const bool hasWords = knowledge == nullptr || knowledge->words.size() > 0;
  const bool hasShapes = knowledge == nullptr || knowledge->numShapes() > 0;
  return std::max(hasShapes ? costs.freeText(rules.freeShape) : 0, hasWords ? costs.freeText(rules.freeWord) : 0);
}

namespace {

bool isOf(const qoc_ocrDictionaryEntryCheck &check, qoc_ocrDictionaryMode mode, std::int32_t entry) {
  return check.mode == mode && check.entry == entry;
}

}  // namespace

bool Task::hasChecks(qoc_ocrDictionaryMode mode, std::int32_t entry) const {
  const auto checks = viewAs<qoc_ocrDictionaryEntryCheck>(rules.checks);
  return std::any_of(checks.begin(), checks.end(),
                     [&](const qoc_ocrDictionaryEntryCheck &check) { return isOf(check, mode, entry); });
}

Task::Verdict Task::verdictOn(std::span<const Choice> choices, qoc_ocrDictionaryMode mode, std::int32_t entry) const {
  const auto checks = viewAs<qoc_ocrDictionaryEntryCheck>(rules.checks);
  Verdict verdict = {false, true};
  for (std::size_t i = 0; i < checks.size(); ++i) {
    if (!isOf(checks[i], mode, entry)) {
      continue;
    }
    if (!verdict.hasCheck) {
      codes_.clear();
      for (const Choice &choice : choices) codes_.push_back(choice.code);
    }
    while (checkers_.size() <= i) checkers_.emplace_back(checks[checkers_.size()].rule);
    verdict.hasCheck = true;
    verdict.passesCheck = verdict.passesCheck && checkers_[i].passes(codes_);
  }
  verdict.passesCheck = verdict.passesCheck && verdict.hasCheck;
  return verdict;
}

Cost Task::limitBehind(Cost best) const {
  if (best >= noWay) {
    return noWay - 1;
  }
  if (rules.maxTexts > 1) {
    return limitFrom(best);
  }
  if (!costs.penalties().hasScores()) {  // Texts with as many differences.
    return best - best % differenceCost + differenceCost - 1;
  }
  return std::max(best, std::min(best + greatestMargin(), freeText));
}

Cost Task::limitFrom(Cost least) const { return costs.penalties().hasScores() ? least + rules.maxLag : noWay - 1; }

bool Task::knowsMoreShapes() const {
  return knowledge != nullptr && knowledge->numShapes() > 0 &&
         (params.returnBestOnly != 0 || knowledge->numShapes() > 1 || knowledge->words.size() > 0);
}

Reach Task::reachWithin(Cost limit) const {
  Reach within = reach;
  if (!tellsEdits()) {
    return within;
  }
  Cost substituted = noWay, extra = noWay;
  for (std::int32_t i = 0; i < costs.size(); ++i) {
    substituted = std::min(substituted, costs.substituted(i));
    extra = std::min(extra, costs.leastExtra(i));
  }
  Cost least = noWay;
  const auto allows = [&](bool isAllowed, Cost cost) {
    if (isAllowed) least = std::min(least, cost);
    return isAllowed && cost <= limit;
  };
  within.allowsSubstitution = allows(within.allowsSubstitution, substituted);
  within.allowsMissing = allows(within.allowsMissing, costs.penalties().leastMissing());
  within.allowsExtra = allows(within.allowsExtra, extra);
  within.leastEdit = least;
  if (least > 0) within.maxEdits = static_cast<std::int32_t>(std::min<Cost>(within.maxEdits, limit / least));
  return within;
}

qoc_ocrDictionaryRunParams Task::paramsWithin(Cost limit) const {
  qoc_ocrDictionaryRunParams within = params;
  within.returnBestOnly = 0;
  if (!tellsEdits()) {
    return within;
  }
  const Reach allowed = reachWithin(limit);
  const std::int64_t n = costs.size();
  within.matchOption1 = allowed.allowsSubstitution && knowledge->admitsLength(n) ? 1 : 0;
  within.matchOption2 = allowed.allowsMissing && knowledge->admitsLength(n + 1) ? 1 : 0;
  within.matchOption4 = allowed.allowsExtra && knowledge->admitsLength(n - 1) ? 1 : 0;
  if (within.matchOption1 == 0 && within.matchOption2 == 0 && within.matchOption4 == 0) within.maxEdits = 0;
  return within;
}

}  // namespace qoc
