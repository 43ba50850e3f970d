// A dictionary as the resolver needs it.

#include "resolve/knowledge.hpp"

#include <numeric>

#include "platform/containers/view.hpp"
#include "platform/regex/shared_expression.hpp"
#include "platform/regex/states.hpp"
#include "platform/system/present.hpp"

namespace qoc {

namespace {

constexpr Char32 firstTried = 0x20, lastTried = 0x7E;

std::vector<Char32> triedAnyway() {
  std::vector<Char32> codes(lastTried - firstTried + 1);
  std::iota(codes.begin(), codes.end(), firstTried);
  return codes;
}

/// Adds the first two characters of a set that are not tried anyway: where a place admits two, it does not matter
/// which.
void addOthers(const CodeSet &set, std::vector<Char32> &tried) {
  int numAdded = 0;
  for (const CodeSet::Range &range : set.ranges()) {
    for (Char32 code = range.first; numAdded < 2; ++code) {
      if (code >= firstTried && code <= lastTried) code = lastTried + 1;
      if (code > range.last) {
        break;
      }
      const bool isCharacter = code != QOC_CHAR_EMPTY && code != QOC_CHAR_ANY && code != QOC_CHAR_ANY_NONSPACE;
      if (isCharacter && std::find(tried.begin(), tried.end(), code) == tried.end()) tried.push_back(code);
      if (isCharacter) ++numAdded;
      if (code == range.last) {
        break;
      }
    }
  }
}

}  // namespace

qsys_status Knowledge::take(const qoc_ocrDictionary &dictionary) {
  QOC_TRY(qstd_vector_qoc_ocrDictionaryLineFielding_assign(fieldings.get(), &dictionary.fieldings));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryRegularExpression_assign(expressions.get(), &dictionary.regularExpressions));
  for (const auto &expression : viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get())) {
    admitted.emplace_back(expression);
    auto &tried = triedByExpression.emplace_back(triedAnyway());
    for (const CodeSet &set : expressionOf(expression.regex).sets()) addOthers(set, tried);
  }
  for (const auto &fielding : viewAs<qoc_ocrDictionaryLineFielding>(*fieldings.get())) {
    auto &tried = triedByFielding.emplace_back(triedAnyway());
    for (const auto &position : viewAs<qoc_ocrDictionaryPositionFielding>(fielding.positions)) {
      CodeSet set;
      for (const Char32 code : viewAs<Char32>(position.fieldingCharacters)) set.add(code, code);
      set.normalise();
      addOthers(set, tried);
    }
  }
  const auto lexicons = viewAs<qoc_ocrDictionaryLexicon>(dictionary.lexicons);
  std::size_t numWords = 0, numCodes = 0;
  WorkMeter meter;
  for (const qoc_ocrDictionaryLexicon &lexicon : lexicons) {
    for (const qoc_ocrDictionaryString &word : viewAs<qoc_ocrDictionaryString>(lexicon.strings)) {
      QOC_TRY(meter.add(4));
      ++numWords;
      numCodes += static_cast<std::size_t>(word.characters.core.size);
    }
  }
  words.reserve(numWords, numCodes);
  for (const qoc_ocrDictionaryLexicon &lexicon : lexicons) words.add(lexicon);
  words.finish();
  return QSYS_STATUS_OK;
}

bool Knowledge::admitsLength(std::int64_t length) const {
  const auto all = viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get());
  return fieldings->core.size > 0 ||
         std::any_of(all.begin(), all.end(), [&](const qoc_ocrDictionaryRegularExpression &expression) {
           const Expression &compiled = expressionOf(expression.regex);
           return length >= compiled.minLength() && length <= compiled.maxLength();
         });
}

bool Knowledge::admits(std::size_t place, Char32 code) const {
  return fieldings->core.size > 0 || std::any_of(admitted.begin(), admitted.end(),
                                                 [&](const AdmittedCodes &codes) { return codes.admits(place, code); });
}

qsys_status Knowledge::match(qoc_ocrDictionaryMode mode, std::int32_t entry,
                             const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams &params,
                             const qoc_swapCharSet *set, qoc_ocrDictionaryResultSet &results) const {
  if (mode == qoc_ocrDictionaryMode_fielding) {
    return qoc_ocrDictionaryLineFielding_matchMulti(
        &viewAs<qoc_ocrDictionaryLineFielding>(*fieldings.get())[static_cast<std::size_t>(entry)], &reading, &params,
        set, &results);
  }
  return qoc_ocrDictionaryRegularExpression_matchMulti(
      &viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get())[static_cast<std::size_t>(entry)], &reading,
      &params, set, &results);
}

namespace {

/// Whether each is one character. What may be any is not among them: it is an open place.
bool arePlain(const CodesByPlace &codes) {
  return std::all_of(codes.begin(), codes.end(), [](const std::vector<Char32> &here) {
    return std::find(here.begin(), here.end(), QOC_CHAR_ANY_NONSPACE) == here.end();
  });
}

/// The positions of the automaton that a text can take at a place on its way from the first to the last.
NarrowStates::Set positionsAt(const NarrowStates &states, const CodesByPlace &codes, std::size_t place) {
  const auto accepting = [&](std::size_t at) {
    NarrowStates::Set set = states.none();
    for (const Char32 code : codes[at]) states.addAccepting(code, set);
    return set;
  };
  NarrowStates::Set from = states.first(), to = states.last();
  for (std::size_t i = 0; i < place; ++i) from = states.followersOf(from & accepting(i));
  for (std::size_t i = codes.size(); --i > place;) to = states.predecessorsOf(to & accepting(i));
  return from & to;
}

}  // namespace

qsys_status Knowledge::findAdmitted(qoc_ocrDictionaryMode mode, std::int32_t entry, const CodesByPlace &codes,
                                    std::size_t place, std::vector<Char32> &admitted) const {
  if (mode == qoc_ocrDictionaryMode_regularExpression && arePlain(codes)) {
    const Expression &compiled = expressionOf(
        viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get())[static_cast<std::size_t>(entry)].regex);
    if (compiled.isNarrow()) {
      const NarrowStates states(compiled);
      const NarrowStates::Set positions = positionsAt(states, codes, place);
      admitted.clear();
      for (const Char32 code : codes[place]) {
        NarrowStates::Set accepting = states.none();
        states.addAccepting(code, accepting);
        if (intersects(accepting, positions)) admitted.push_back(code);
      }
      return QSYS_STATUS_OK;
    }
  }
  return findByMatch(mode, entry, codes, place, admitted);
}

/// By a match of a reading that shows everything that may stand anywhere.
qsys_status Knowledge::findByMatch(qoc_ocrDictionaryMode mode, std::int32_t entry, const CodesByPlace &codes,
                                   std::size_t place, std::vector<Char32> &admitted) const {
  admitted.clear();
  HeldReading reading;
  QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&reading->positions, static_cast<std::int32_t>(codes.size())));
  std::vector<qoc_ocrDictionaryChar> characters;
  auto here = codes.begin();
  for (qoc_ocrDictionaryCharMulti &position : editAs<qoc_ocrDictionaryCharMulti>(reading->positions)) {
    characters.clear();
    for (const Char32 code : *here++) characters.push_back({code, 0});
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position.candidates, characters.data(),
                                                             static_cast<std::int32_t>(characters.size())));
  }
  qoc_ocrDictionaryRunParams exact = {};
  qoc_ocrDictionaryRunParams_construct(&exact);
  exact.returnBestOnly = 0;
  HeldResults matched;
  QOC_TRY(match(mode, entry, *reading.get(), exact, nullptr, *matched.get()));
  for (const qoc_ocrDictionaryResult &result : viewAs<qoc_ocrDictionaryResult>(matched->results)) {
    const auto valid = viewAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
    if (QOC_NEVER(place >= valid.size())) {  // A result without edits has every position of the reading.
      continue;
    }
    for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(valid[place].candidates)) {
      admitted.push_back(character.code);
    }
  }
  std::sort(admitted.begin(), admitted.end());
  admitted.erase(std::unique(admitted.begin(), admitted.end()), admitted.end());
  return QSYS_STATUS_OK;
}

}  // namespace qoc
