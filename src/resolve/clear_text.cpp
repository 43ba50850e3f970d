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

/// Whether some position shows another character that costs no more than the limit.
/// @param mayHave says of a position and a code whether another text that matters could have it there
template <class MayHave>
bool showsOther(const Task &task, const Text &text, Cost limit, MayHave &&mayHave) {
  const ReadingCosts &costs = task.costs;
  if (task.set != nullptr && costs.penalties().leastSwapped() <= limit) {
    return true;
  }
  for (std::int32_t i = 0; i < costs.size(); ++i) {
    const auto candidates = costs.candidates(i);
    const Char32 chosen = text.choices[static_cast<std::size_t>(i)].code;
    for (std::size_t k = 0; k < candidates.size(); ++k) {
      const Char32 code = candidates[k].code;
      if (code != chosen && code != QOC_CHAR_EMPTY && costs.firstScore(i) - candidates[k].score <= limit &&
          costs.candidate(i, k).cost <= limit && (code == QOC_CHAR_ANY || mayHave(i, code))) {
        return true;
      }
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

/// Whether a text with a position less than the reading, that costs no more than the limit, is a word, too. True where
/// it may be one with two positions less.
bool hasWordWithoutOne(const Task &task, std::vector<Char32> codes, Cost limit) {
  Cost least = noWay;
  for (std::size_t i = codes.size(); i-- > 0;) {
    const Cost extra = task.costs.leastExtra(static_cast<std::int32_t>(i));
    if (extra > limit) {
      continue;
    }
    if (least + extra <= limit) {
      return true;
    }
    least = std::min(least, extra);
    const Char32 left = codes[i];
    codes.erase(codes.begin() + static_cast<std::ptrdiff_t>(i));
    if (task.knowledge->words.contains(codes)) {
      return true;
    }
    codes.insert(codes.begin() + static_cast<std::ptrdiff_t>(i), left);
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
  std::vector<Char32> codes = text.codes();
  if (!task.knowledge->words.contains(codes)) {
    return Clarity::none;
  }
  const Cost limit = task.limitBehind(text.cost);
  const Reach within = task.reachWithin(limit);
  const bool mayEdit = within.maxEdits > 0 && (within.allowsSubstitution || within.allowsMissing ||
                                               hasWordWithoutOne(task, std::move(codes), limit));
  return mayEdit || showsOther(task, text, limit, [](std::int32_t, Char32) { return true; }) ? Clarity::bound
                                                                                             : Clarity::clear;
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
