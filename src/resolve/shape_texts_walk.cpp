// The texts of expressions near a reading, gone through one by one.

#include "platform/containers/view.hpp"
#include "platform/regex/shared_expression.hpp"
#include "platform/system/present.hpp"
#include "platform/system/shortcuts.hpp"
#include "resolve/shape_texts.hpp"
#include "resolve/shape_walk.hpp"

namespace qoc {

/// What each position costs at least as a character that some entry admits at its place, or some places further on,
/// within what is listed; noWay where it shows none.
std::vector<Cost> ShapeTexts::leastAdmitted(std::int32_t before, std::int32_t behind) const {
  std::vector<Cost> least(static_cast<std::size_t>(task_.costs.size()), noWay);
  for (std::int32_t i = 0; i < task_.costs.size(); ++i) {
    Cost &here = least[static_cast<std::size_t>(i)];
    for (const Choice &choice : task_.costs.choices(i)) {
      for (std::int32_t place = std::max(i - before, 0); place <= i + behind && choice.cost < here; ++place) {
        if (task_.knowledge->admits(static_cast<std::size_t>(place), choice.code)) here = choice.cost;
      }
    }
  }
  return least;
}

/// The kinds of edits with which a text can cost this much at most, given what the rest of the reading costs then.
qoc_ocrDictionaryRunParams ShapeTexts::paramsWithin(Cost limit) const {
  qoc_ocrDictionaryRunParams params = task_.paramsWithin(limit);
  if (params.maxEdits != 1 || !task_.isPlain()) {
    return params;
  }
  // Whether some position can be edited while each of the others shows what is admitted.
  const auto isNear = [&](const std::vector<Cost> &least, auto &&edit) {
    Cost sum = 0;
    std::size_t numWithout = 0;
    for (const Cost cost : least) {
      if (cost < noWay) {
        sum += cost;
      } else {
        ++numWithout;
      }
    }
    for (std::size_t i = 0; i < least.size(); ++i) {
      const bool isWithout = least[i] >= noWay;
      const Cost others = isWithout ? sum : sum - least[i];
      if (numWithout == (isWithout ? 1u : 0u) && others + edit(static_cast<std::int32_t>(i)) <= limit) return true;
    }
    return false;
  };
  const ReadingCosts &costs = task_.costs;
  const auto substituted = [&](std::int32_t i) { return costs.substituted(i); };
  const auto extra = [&](std::int32_t i) { return costs.leastExtra(i); };
  if (params.matchOption1 != 0 && !isNear(leastAdmitted(0, 0), substituted)) params.matchOption1 = 0;
  if (params.matchOption4 != 0 && !isNear(leastAdmitted(1, 0), extra)) params.matchOption4 = 0;
  if (params.matchOption2 != 0) {
    Cost sum = costs.penalties().leastMissing();
    for (const Cost cost : leastAdmitted(0, 1)) sum = std::min(noWay, sum + cost);
    if (sum > limit) params.matchOption2 = 0;
  }
  if (params.matchOption1 == 0 && params.matchOption2 == 0 && params.matchOption4 == 0) params.maxEdits = 0;
  return params;
}

qsys_status ShapeTexts::walk(bool &isDone) {
  isDone = false;
  const Knowledge &knowledge = *task_.knowledge;
  const auto expressions = viewAs<qoc_ocrDictionaryRegularExpression>(*knowledge.expressions.get());
  const auto takes = [&](const qoc_ocrDictionaryRegularExpression &expression) {
    return ShapeWalk::takes(expressionOf(expression.regex), task_.costs.size());
  };
  // What is further off than free text is not looked for in this way, unless it is known that there is nothing nearer.
  const Cost known = task_.limitBehind(texts_.best());
  const Cost most = texts_.empty() ? std::min(known, task_.freeText) : known;
  if (!task_.isPlain() || !task_.reach.allowsAnyLength() || most >= noWay - 1 || !shortcuts().walksShapes ||
      knowledge.fieldings->core.size > 0 || !std::all_of(expressions.begin(), expressions.end(), takes)) {
    return QSYS_STATUS_OK;
  }
  // Where what is listed leaves nothing within it, more is.
  const Cost width = std::max<Cost>(task_.greatestMargin(), 1);
  const auto leastListed = [&](Cost listed) {
    task_.costs.show(listed);
    return leastWithin(task_.reach).front();
  };
  Cost least = leastListed(std::min(most, 2 * width));
  if (least > 2 * width) least = leastListed(most);
  Cost limit = std::min(most, least + width);
  for (;;) {
    task_.costs.show(limit);
    QOC_TRY(walkWithin(limit, isDone));
    Cost needed = task_.limitBehind(texts_.best());
    if (texts_.size() >= task_.numWanted) needed = std::min(needed, texts_[task_.numWanted - 1].cost);
    if (!isDone || limit >= needed) {
      return QSYS_STATUS_OK;
    }
    if (texts_.empty() && limit >= most) {
      isDone = false;
      return QSYS_STATUS_OK;
    }
    limit = texts_.empty() ? std::min(most, limit + width) : needed;
  }
}

/// By position, and one behind the last, what the reading loses from there on at least.
std::vector<Cost> ShapeTexts::leastWithin(const Reach &reach) const {
  const bool mayMiss = reach.maxEdits > 0 && reach.allowsMissing;
  const bool maySubstitute = reach.maxEdits > 0 && reach.allowsSubstitution;
  const bool mayLeaveOut = reach.maxEdits > 0 && reach.allowsExtra;
  const std::int32_t most = std::min(reach.maxEdits, task_.costs.size());
  std::vector<Cost> least = leastAdmitted(mayLeaveOut ? most : 0, mayMiss ? most : 0);
  least.push_back(0);
  for (std::int32_t i = task_.costs.size(); i-- > 0;) {
    Cost &here = least[static_cast<std::size_t>(i)];
    if (maySubstitute) here = std::min(here, task_.costs.substituted(i));
    if (mayLeaveOut) here = std::min(here, task_.costs.leastExtra(i));
    here = std::min(noWay, here + least[static_cast<std::size_t>(i) + 1]);
  }
  return least;
}

/// Adds the texts that cost no more than the limit, as far as they can be gone through.
qsys_status ShapeTexts::walkWithin(Cost limit, bool &isDone) {
  const qoc_ocrDictionaryRunParams params = paramsWithin(limit);
  const Reach allowed = Reach::of(params);
  // With several edits a match does not give every way, so what is seen here would depend on the way that is taken.
  isDone = allowed.maxEdits <= ShapeWalk::maxEdits;
  const std::vector<Cost> rest = leastWithin(allowed);
  const auto expressions = viewAs<qoc_ocrDictionaryRegularExpression>(*task_.knowledge->expressions.get());
  for (std::size_t k = 0; isDone && k < expressions.size(); ++k) {
    QOC_TRY(qsys_attention_check());
    const auto entry = static_cast<std::int32_t>(k);
    ShapeWalk walk(expressionOf(expressions[k].regex), task_.costs, allowed, rest, limit);
    bool isWalked = true;
    constexpr qoc_ocrDictionaryMode mode = qoc_ocrDictionaryMode_regularExpression;
    const bool hasChecks = task_.hasChecks(mode, entry);
    const auto visit = [&](const WalkedText &walked) -> qsys_status {
      const bool isClosed = walked.open.empty();
      const Task::Verdict verdict = isClosed ? task_.verdictOn(walked.choices, mode, entry) : Task::Verdict();
      if (!task_.admits(verdict)) {
        return QSYS_STATUS_OK;
      }
      Text text;
      text.choices = walked.choices;
      text.inputs = walked.inputs;
      text.cost = walked.cost;
      text.mode = mode;
      text.hasCheck = verdict.hasCheck;
      text.passesCheck = verdict.passesCheck;
      if (isClosed || !hasChecks) {
        bool isDescribed = true;
        QOC_TRY(fill(entry, walked.open, text, isDescribed));
        if (isDescribed) texts_.add(std::move(text));
      } else if (walked.open.size() == 1) {
        QOC_TRY(addPassing(entry, walked.open[0], text));
      } else {
        isDone = false;
      }
      walk.lowerLimit(task_.limitBehind(texts_.best()));
      // The last one that is wanted is only measured against.
      if (texts_.size() >= task_.numWanted) walk.lowerLimit(texts_[task_.numWanted - 1].cost - 1);
      return QSYS_STATUS_OK;
    };
    QOC_TRY(walk.run(visit, isWalked));
    isDone = isDone && isWalked;
  }
  return QSYS_STATUS_OK;
}

/// Adds a text with an open place, with each character there with which it passes its checks.
qsys_status ShapeTexts::addPassing(std::int32_t entry, std::size_t open, Text &text) {
  listCodes(text, entry, {&open, 1});
  QOC_TRY(task_.knowledge->findAdmitted(text.mode, entry, codes_, open, admitted_));
  for (const Char32 code : admitted_) {
    text.choices[open].code = code;
    task_.check(text, entry);
    if (task_.admits(text)) texts_.add(text);
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
