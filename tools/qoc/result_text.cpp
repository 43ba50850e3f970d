#include "output.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

using Candidates = std::span<const qoc_ocrDictionaryChar>;

bool isOneOf(Char32 code, Candidates candidates) {
  return std::any_of(candidates.begin(), candidates.end(),
                     [&](const qoc_ocrDictionaryChar &candidate) { return candidate.code == code; });
}

/// What a position is of all that it may be: what the reading itself has goes before what is swapped for that.
Char32 choose(Candidates valid, Candidates read) {
  if (valid.empty() || isOneOf(QOC_CHAR_ANY, valid) || isOneOf(QOC_CHAR_ANY_NONSPACE, valid)) return QOC_CHAR_EMPTY;
  const auto found = std::find_if(read.begin(), read.end(), [&](const qoc_ocrDictionaryChar &candidate) {
    return isOneOf(candidate.code, valid);
  });
  return found == read.end() ? valid.front().code : found->code;
}

} // namespace

std::vector<Char32> resultText(const qoc_ocrDictionaryResult &result) {
  std::vector<Char32> codes;
  if (result.mode == qoc_ocrDictionaryMode_lexicon) {
    for (const qoc_ocrDictionaryChar &character : elements(result.dictionaryString.characters)) {
      codes.push_back(character.code);
    }
    return codes;
  }
  Integers indices; // By position of the result: where it stands in the reading as swaps have made it.
  check(qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(&result, indices.get()), "a result");
  const auto places = elements(*indices.get());
  const auto given = elements(result.givenSwap.positions);
  for (const qoc_ocrDictionaryCharMulti &position : elements(result.valid.positions)) {
    const std::size_t i = codes.size();
    const bool isRead = i < places.size() && places[i] >= 0 && static_cast<std::size_t>(places[i]) < given.size();
    const Candidates read = isRead ? elements(given[static_cast<std::size_t>(places[i])].candidates) : Candidates{};
    codes.push_back(choose(elements(position.candidates), read));
  }
  return codes;
}

} // namespace qoc::program
