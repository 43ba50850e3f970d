// The only text of a reading, where it takes little to see that it is the only one.

#include "resolve/clear_text.hpp"

#include "platform/containers/view.hpp"
#include "resolve/lattice.hpp"

namespace qoc {

namespace {

using Characters = std::span<const qoc_ocrDictionaryChar>;

bool holds(Characters characters, Char32 code) {
  return std::any_of(characters.begin(), characters.end(),
                     [&](const qoc_ocrDictionaryChar &character) { return character.code == code; });
}

/// The best of a position's candidates that a result has there, or, where it has none of them, of what swaps make of
/// them. That may cost less than a candidate that is far behind; it is found where the difference matters.
Choice bestOf(const ReadingCosts &costs, std::int32_t position, Characters characters) {
  Choice best = {QOC_CHAR_EMPTY, noWay, -1, 0};
  const Characters candidates = costs.candidates(position);
  for (std::size_t k = 0; k < candidates.size(); ++k) {
    if (costs.firstScore(position) - candidates[k].score < best.cost && holds(characters, candidates[k].code)) {
      if (const Choice choice = costs.candidate(position, k); choice.cost < best.cost) best = choice;
    }
  }
  const bool isCandidate = best.cost < noWay;
  for (std::size_t k = 0; k < characters.size() && !isCandidate; ++k) {
    Choice choice;
    if (costs.find(position, characters[k].code, choice) && choice.cost < best.cost) best = choice;
  }
  return best;
}

/// Takes the best at every position.
/// @param charactersAt gives the characters that the result has at a position
/// @return whether each position can be one of them
template <class CharactersAt>
bool takeBest(const Task &task, CharactersAt &&charactersAt, Text &text) {
  const std::int32_t n = task.costs.size();
  text.choices.reserve(static_cast<std::size_t>(n));
  text.inputs.reserve(static_cast<std::size_t>(n));
  for (std::int32_t i = 0; i < n; ++i) {
    const Choice best = bestOf(task.costs, i, charactersAt(i));
    if (best.cost >= noWay || best.code == QOC_CHAR_ANY) {
      return false;
    }
    text.choices.push_back(best);
    text.inputs.push_back(i);
    text.cost += best.cost;
  }
  return n > 0;
}

/// Calls visit(code, cost) for every candidate of a position but one that costs no more than the limit, until it is
/// true.
template <class Visit>
bool anyOther(const ReadingCosts &costs, std::int32_t position, Char32 chosen, Cost limit, Visit &&visit) {
  const Characters candidates = costs.candidates(position);
  for (std::size_t k = 0; k < candidates.size(); ++k) {
    const Char32 code = candidates[k].code;
    if (code == chosen || code == QOC_CHAR_EMPTY || costs.firstScore(position) - candidates[k].score > limit) {
      continue;
    }
    if (const Cost cost = costs.candidate(position, k).cost; cost <= limit && visit(code, cost)) {
      return true;
    }
  }
  return false;
}

/// Whether some position shows another character that costs no more than the limit.
/// @param mayHave says of a position and a code whether another text that matters could have it there
template <class MayHave>
bool showsOther(const Task &task, const Text &text, Cost limit, MayHave &&mayHave) {
  const ReadingCosts &costs = task.costs;
  if (task.set != nullptr && costs.penalties().leastSwapped() <= limit) {
    return true;
  }
  for (std::int32_t i = 0; i < costs.size(); ++i) {
    const auto matters = [&](Char32 code, Cost) { return code == QOC_CHAR_ANY || mayHave(i, code); };
    if (anyOther(costs, i, text.choices[static_cast<std::size_t>(i)].code, limit, matters)) {
      return true;
    }
  }
  return false;
}

Clarity findClearShape(const Task &task, Text &text) {
  const qoc_ocrDictionaryResult &result = task.results[0];
  const auto valid = viewAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
  const auto n = static_cast<std::size_t>(task.costs.size());
  const auto statuses = viewAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
  const bool isWhole = statuses.size() == n && valid.size() == n && result.inputIndices.core.size == 0 &&
                       result.deleted.core.size == 0 && result.numIgnoredPrefixCharacters == 0 &&
                       std::none_of(statuses.begin(), statuses.end(), isEdited);
  if (!isWhole || task.needsChecksOfEntries() || (task.knowledge != nullptr && task.knowledge->words.size() > 0)) {
    return Clarity::none;
  }
  const auto charactersAt = [&](std::int32_t i) {
    return viewAs<qoc_ocrDictionaryChar>(valid[static_cast<std::size_t>(i)].candidates);
  };
  text.mode = result.mode;
  text.result = 0;
  if (!takeBest(task, charactersAt, text)) {
    return Clarity::none;
  }
  task.check(text, 0);
  if (!task.admits(text)) {
    return Clarity::none;
  }
  const bool knowsMore = task.knowsMoreShapes();
  const Cost limit = task.limitBehind(text.cost);
  const auto mayHave = [&](std::int32_t i, Char32 code) {
    return holds(charactersAt(i), code) || (knowsMore && task.knowledge->admits(static_cast<std::size_t>(i), code));
  };
  const bool mayEdit = knowsMore && task.paramsWithin(limit).maxEdits > 0;
  return mayEdit || showsOther(task, text, limit, mayHave) ? Clarity::bound : Clarity::clear;
}

/// Whether a word costs no more than the limit beside one that takes every first candidate: with another candidate at a
/// position, or without the position. True where it may be one with two such changes.
bool hasWordBeside(const Task &task, std::vector<Char32> codes, Cost limit, bool mayLeaveOut) {
  const ReadingCosts &costs = task.costs;
  const WordIndex &words = task.knowledge->words;
  Cost least = noWay;  // Of the changes at the positions so far.
  for (std::int32_t i = costs.size(); i-- > 0;) {
    const auto at = static_cast<std::size_t>(i);
    const Char32 first = codes[at];
    Cost here = noWay;
    const auto mayBeWord = [&](Char32 code, Cost cost) {
      codes[at] = code;
      here = std::min(here, cost);
      return code == QOC_CHAR_ANY || least + cost <= limit || words.contains(codes);
    };
    if (anyOther(costs, i, first, limit, mayBeWord)) {
      return true;
    }
    codes[at] = first;
    if (const Cost extra = costs.leastExtra(i); mayLeaveOut && extra <= limit) {
      codes.erase(codes.begin() + static_cast<std::ptrdiff_t>(i));
      if (least + extra <= limit || words.contains(codes)) {
        return true;
      }
      codes.insert(codes.begin() + static_cast<std::ptrdiff_t>(i), first);
      here = std::min(here, extra);
    }
    least = std::min(least, here);
  }
  return false;
}

Clarity findClearWord(const Task &task, Text &text) {
  const auto word = viewAs<qoc_ocrDictionaryChar>(task.results[0].dictionaryString.characters);
  if (task.knowledge == nullptr || task.knowledge->numShapes() > 0 || task.hasChecks() ||
      word.size() != static_cast<std::size_t>(task.costs.size())) {
    return Clarity::none;
  }
  text.mode = qoc_ocrDictionaryMode_lexicon;
  const auto charactersAt = [&](std::int32_t i) { return word.subspan(static_cast<std::size_t>(i), 1); };
  if (!takeBest(task, charactersAt, text)) {
    return Clarity::none;
  }
  const std::vector<Char32> codes = text.codes();
  if (!task.knowledge->words.contains(codes)) {
    return Clarity::none;
  }
  const Cost limit = task.limitBehind(text.cost);
  const Reach within = task.reachWithin(limit);
  const bool maySwap = task.set != nullptr && task.costs.penalties().leastSwapped() <= limit;
  const bool mayEdit = within.maxEdits > 0 && (within.allowsSubstitution || within.allowsMissing);
  const bool isClear = text.cost == 0 && !maySwap && !mayEdit &&
                       !hasWordBeside(task, codes, limit, within.maxEdits > 0 && within.allowsExtra);
  return isClear ? Clarity::clear : Clarity::bound;
}

}  // namespace

Clarity findClearText(const Task &task, Text &text) {
  const bool isOnlyResult = task.results.size() == 1 && task.results[0].isComputed != 0;
  if (!isOnlyResult || task.results[0].numEdits != 0 || !task.isPlain()) {
    return Clarity::none;
  }
  return task.results[0].mode == qoc_ocrDictionaryMode_lexicon ? findClearWord(task, text) : findClearShape(task, text);
}

}  // namespace qoc
