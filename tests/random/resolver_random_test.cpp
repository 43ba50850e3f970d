// The resolver against the enumeration of everything that small results and word lists allow.

#include <qoc/resolver.h>

#include <algorithm>
#include <map>

#include "random/random_cases.hpp"
#include "run/run_builders.hpp"
#include "support/fieldings.hpp"
#include "support/shortcuts.hpp"

namespace {

using namespace qoc::test;
using random_cases::Random;

constexpr int64_t never = INT64_MAX / 4;

/// A reading, swaps and rules of one case, and what one character costs.
struct Case {
  std::vector<std::vector<qoc_ocrDictionaryChar>> reading;
  Owned<qoc_swapCharSet> swaps;
  Owned<qoc_ocrDictionaryResolverRules> rules;

  explicit Case(Random &random) {
    const int32_t n = random.between(1, 4);
    for (int32_t i = 0; i < n; ++i) {
      reading.emplace_back();
      for (int32_t k = random.between(1, 3); k > 0; --k) {
        reading.back().push_back({static_cast<Char32>("0126"[random.below(4)]), random.below(30)});
      }
    }
    reading.front().front().score = random.between(1, 30);  // Without any score other rules hold.
    if (random.oneIn(2)) require(qoc_swapCharSet_setSingleSwap(swaps, '0', '6'));
    for (int32_t *penalty :
         {&rules->alternativePenalty, &rules->laterPenalty, &rules->swapPenalty, &rules->substitutedPenalty,
          &rules->missingPenalty, &rules->extraPenalty, &rules->doubledPenalty, &rules->leadCap}) {
      *penalty = random.below(25);
    }
    rules->maxTexts = random.between(1, 6);
    rules->maxLag = INT32_MAX;
    rules->maxMargin = random.pick({0, 10, 30, INT32_MAX});
    rules->freeWord = {random.below(100), random.below(20), random.below(100)};
    rules->freeShape = {random.below(100), random.below(20), random.below(100)};
    rules->minMargin = random.below(20);
    for (int32_t k = random.below(4); k > 0; --k) {
      const qoc_ocrDictionaryConfusion confusion = {random.pick<Char32>({'0', '1', '6', QOC_CHAR_EMPTY}),
                                                    random.pick<Char32>({'0', '2', '6', QOC_CHAR_EMPTY}),
                                                    random.below(25), random.below(25)};
      require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules->confusions, &confusion));
    }
  }

  int64_t size() const { return static_cast<int64_t>(reading.size()); }
  const qoc_ocrDictionaryConfusion *confusion(Char32 read, Char32 meant) const {
    for (const auto &one : elements(rules->confusions)) {
      if (one.read == read && one.meant == meant) return &one;
    }
    return nullptr;
  }
  int64_t first(std::size_t i) const { return reading[i][0].score; }
  bool areSwapped(Char32 a, Char32 b) const {
    qsys_bool answer = 0;
    const qoc_ocrDictionaryChar x = {a, 0}, y = {b, 0};
    require(qoc_swapCharSet_isMatchChar(swaps, &x, &y, &answer));
    return answer != 0;
  }
  /// What the position loses as the character, or `never`.
  int64_t cost(std::size_t i, Char32 code) const {
    int64_t least = never;
    for (std::size_t k = 0; k < reading[i].size(); ++k) {
      const auto &candidate = reading[i][k];
      int64_t loss = std::max<int64_t>(first(i) - candidate.score, 0);
      const auto *listed = confusion(reading[i][0].code, candidate.code);
      if (k > 0) loss += std::min<int64_t>(loss, listed != nullptr ? listed->listedPenalty : rules->alternativePenalty);
      if (k > 1) loss += rules->laterPenalty;
      if (candidate.code != code) {
        if (!areSwapped(candidate.code, code)) continue;
        const auto *swapped = confusion(candidate.code, code);
        loss += swapped != nullptr ? swapped->swapPenalty : rules->swapPenalty;
      }
      least = std::min(least, loss);
    }
    return least;
  }
  int64_t substituted(std::size_t i) const { return first(i) + rules->substitutedPenalty; }
  int64_t missing(Char32 code) const {
    const auto *one = confusion(QOC_CHAR_EMPTY, code);
    return one != nullptr ? one->swapPenalty : rules->missingPenalty;
  }
  int64_t extra(std::size_t i, Char32 before, Char32 behind) const {
    const auto *one = confusion(reading[i][0].code, QOC_CHAR_EMPTY);
    const int64_t loss = one != nullptr ? one->swapPenalty : first(i) + rules->extraPenalty;
    const bool isDoubled = (before != 0 && cost(i, before) < never) || (behind != 0 && cost(i, behind) < never);
    return isDoubled ? std::min<int64_t>(loss, rules->doubledPenalty) : loss;
  }
  int64_t freeText(const qoc_ocrDictionaryFreeText &free) const {
    int64_t loss = free.base;
    for (const auto &position : reading) {
      const int64_t cap = rules->leadCap;
      const int64_t lead =
          position.size() < 2 ? cap : std::clamp<int64_t>(position[0].score - position[1].score, 0, cap);
      loss += free.perCharacter + lead * free.leadPercent / 100;
    }
    return loss;
  }
  Owned<qoc_ocrDictionaryStringMulti> record() const {
    Owned<qoc_ocrDictionaryStringMulti> made;
    for (const auto &candidates : reading) {
      Owned<qoc_ocrDictionaryCharMulti> position;
      require(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position->candidates, candidates.data(),
                                                               static_cast<int32_t>(candidates.size())));
      require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&made->positions, position));
    }
    return made;
  }
};

using Texts = std::map<std::string, int64_t>;

void offer(Texts &texts, const std::string &text, int64_t cost) {
  const auto [at, isNew] = texts.try_emplace(text, cost);
  at->second = std::min(at->second, cost);
}

/// The difference between the best of all texts and what the resolver gives, or "".
std::string compare(const Case &one, const Texts &all, const qoc_ocrDictionaryFreeText &free,
                    const qoc_ocrDictionaryResolution &resolution) {
  std::vector<std::pair<int64_t, std::string>> ranked;
  for (const auto &[text, cost] : all) ranked.emplace_back(cost, text);
  std::sort(ranked.begin(), ranked.end());
  int64_t sum = 0;
  for (std::size_t i = 0; i < one.reading.size(); ++i) sum += one.first(i);
  const auto texts = elements(resolution.texts);
  const std::size_t n = std::min<std::size_t>(ranked.size(), static_cast<std::size_t>(one.rules->maxTexts));
  if (texts.size() != n) return std::to_string(texts.size()) + " texts, not " + std::to_string(n);
  for (std::size_t i = 0; i < n; ++i) {
    const std::string text = show(texts[i].text);
    const int64_t next = std::min({i + 1 < ranked.size() ? ranked[i + 1].first : never, one.freeText(free),
                                   ranked[i].first + std::max(one.rules->maxMargin, one.rules->minMargin)});
    if (all.count(text) == 0 || all.at(text) != ranked[i].first || texts[i].total != sum - ranked[i].first ||
        texts[i].margin != next - ranked[i].first) {
      return "text " + std::to_string(i) + " is " + text + " " + std::to_string(texts[i].total) + " +" +
             std::to_string(texts[i].margin) + ", not " + ranked[i].second + " " +
             std::to_string(sum - ranked[i].first) + " +" + std::to_string(next - ranked[i].first);
    }
  }
  return "";
}

std::string resolveAndCompare(const Case &one, const Texts &all, const qoc_ocrDictionaryFreeText &free,
                              const qoc_ocrDictionary *dictionary, const qoc_ocrDictionaryRunParams *params,
                              const qoc_ocrDictionaryResultSet *results) {
  Owned<qoc_ocrDictionaryResolver> resolver;
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(qoc_ocrDictionaryResolver_setRules(resolver, one.rules));
  require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionary));
  require(qoc_ocrDictionaryResolver_resolve(resolver, one.record(), params, one.swaps, results, resolution));
  const std::string difference = compare(one, all, free, *resolution);
  return difference.empty() ? "" : difference + "\n  reading " + show(one.record()) + "\n" + describe(*results);
}

/// One made result of a fielding: for each position of the text its input, or -1, and its characters, none where it is
/// open.
struct Made {
  struct Slot {
    int32_t input;
    std::vector<Char32> codes;
  };
  std::vector<Slot> slots;
  std::vector<int32_t> deleted;
};

Made randomResult(Random &random, const Case &one) {
  Made made;
  for (int32_t i = 0; i < one.size(); ++i) {
    if (random.oneIn(8)) {
      made.slots.push_back({-1, {}});
      if (random.oneIn(2)) made.slots.back().codes = {static_cast<Char32>("02"[random.below(2)])};
    }
    if (made.deleted.size() < 3 && random.oneIn(8)) {
      made.deleted.push_back(i);
      continue;
    }
    made.slots.push_back({i, {}});
    for (const Char32 code : {'0', '1', '2', '6'}) {
      if (one.cost(static_cast<std::size_t>(i), code) < never && !random.oneIn(4))
        made.slots.back().codes.push_back(code);
    }
  }
  return made;
}

Owned<qoc_ocrDictionaryResult> recordOf(const Made &made, const Case &one, const std::vector<bool> &isOpen) {
  Owned<qoc_ocrDictionaryResult> record;
  record->isComputed = 1;
  record->mode = qoc_ocrDictionaryMode_fielding;
  require(qoc_ocrDictionaryStringMulti_assign(&record->given, one.record()));
  require(qstd_vector32s_assign(&record->deleted, vectorOf<qstd_vector32s>(made.deleted)));
  for (std::size_t i = 0; i < made.slots.size(); ++i) {
    Owned<qoc_ocrDictionaryCharMulti> position;
    for (const Char32 code : made.slots[i].codes) {
      const qoc_ocrDictionaryChar candidate = {code, 0};
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate));
    }
    require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&record->valid.positions, position));
    const Status status = made.slots[i].input < 0 ? inserted : isOpen[i] ? substituted : primary;
    require(qstd_vector_qoc_ocrDictionaryPositionStatus_pushBack(&record->resultStringStatus, &status));
  }
  return record;
}

/// Every text of a result with its cost.
void enumerate(const Case &one, const Made &made, const std::vector<bool> &isOpen, const qoc_checkDigitRule *check,
               Texts &texts) {
  // What a text has at a position of the reading; 0 where that is left out.
  const auto at = [&](const std::string &text, int32_t input) -> Char32 {
    for (std::size_t i = 0; i < made.slots.size(); ++i) {
      if (input >= 0 && made.slots[i].input == input) return static_cast<Char32>(text[i]);
    }
    return 0;
  };
  const auto extras = [&](const std::string &text) {
    int64_t cost = 0;
    for (const int32_t i : made.deleted)
      cost += one.extra(static_cast<std::size_t>(i), at(text, i - 1), at(text, i + 1));
    return cost;
  };
  const std::function<void(std::size_t, std::string, int64_t)> walk = [&](std::size_t i, const std::string &text,
                                                                          int64_t cost) {
    if (i == made.slots.size()) {
      qsys_bool isValid = 1;
      if (check != nullptr) require(qoc_checkDigitRule_isValidT(check, text.c_str(), &isValid));
      if (isValid != 0) offer(texts, text, cost + extras(text));
      return;
    }
    const auto &slot = made.slots[i];
    const auto input = static_cast<std::size_t>(slot.input);
    if (isOpen[i]) {
      const Char32 code = slot.codes.size() == 1 ? slot.codes[0] : Char32{'?'};
      walk(i + 1, text + static_cast<char>(code),
           cost + (slot.input >= 0 ? one.substituted(input) : one.missing(code)));
      return;
    }
    for (const Char32 code : slot.codes) walk(i + 1, text + static_cast<char>(code), cost + one.cost(input, code));
  };
  walk(0, "", 0);
}

TEST(ResolverRandom, GivesTheBestTextsOfMadeResults) {
  random_cases::compareCases([](Random &random) -> std::string {
    const Case one(random);
    Owned<qoc_ocrDictionaryResultSet> results;
    results->isComputed = 1;
    Owned<qoc_checkDigitRule> luhn;
    const bool isChecked = random.oneIn(3);
    Texts passing, all;
    for (int32_t k = random.between(1, 4); k > 0; --k) {
      const Made made = randomResult(random, one);
      std::vector<bool> isOpen;
      for (const auto &slot : made.slots) isOpen.push_back(slot.input < 0 || slot.codes.empty());
      require(qstd_vector_qoc_ocrDictionaryResult_pushBack(&results->results, recordOf(made, one, isOpen)));
      enumerate(one, made, isOpen, nullptr, all);
      if (isChecked) enumerate(one, made, isOpen, luhn, passing);
    }
    if (isChecked) {
      Owned<qoc_ocrDictionaryEntryCheck> check;
      require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(
          const_cast<qstd_vector_qoc_ocrDictionaryEntryCheck *>(&one.rules->checks), check));
    }
    return resolveAndCompare(one, passing.empty() ? all : passing, one.rules->freeShape, nullptr, nullptr, results);
  });
}

/// The least cost of the word from position i of the reading and j of the word on, within the edits that are left.
int64_t alignWord(const Case &one, const std::string &word, const qoc_ocrDictionaryRunParams &params, std::size_t i,
                  std::size_t j, int32_t edits, int64_t prefix) {
  if (i == one.reading.size() && j == word.size()) return prefix;
  int64_t least = never;
  const auto code = [&](std::size_t k) { return static_cast<Char32>(word[k]); };
  const auto take = [&](int64_t cost, std::size_t di, std::size_t dj, int32_t used) {
    if (cost < never && edits >= used) {
      least = std::min(least, alignWord(one, word, params, i + di, j + dj, edits - used, prefix + cost));
    }
  };
  if (i < one.reading.size() && j < word.size()) {
    take(one.cost(i, code(j)), 1, 1, 0);
    if (params.matchOption1 != 0) take(one.substituted(i), 1, 1, 1);
  }
  if (j < word.size() && params.matchOption2 != 0) take(one.missing(code(j)), 0, 1, 1);
  if (i < one.reading.size() && params.matchOption4 != 0) {
    take(one.extra(i, j > 0 ? code(j - 1) : 0, 0), 1, 0, 1);
    // An extra character is like the one behind it where the reading shows that one right behind it.
    if (i + 1 < one.reading.size() && j < word.size() && one.cost(i + 1, code(j)) < never) {
      take(one.extra(i, 0, code(j)) + one.cost(i + 1, code(j)), 2, 1, 1);
    }
  }
  return least;
}

TEST(ResolverRandom, GivesTheBestWordsWithinReach) {
  random_cases::compareCases([](Random &random) -> std::string {
    const Case one(random);
    std::vector<std::string> list;
    for (int32_t k = random.between(1, 8); k > 0; --k) {
      std::string text;
      for (int32_t c = random.between(1, 5); c > 0; --c) text += "0126"[random.below(4)];
      if (std::find(list.begin(), list.end(), text) == list.end()) list.push_back(text);
    }
    const auto params = runParams({.maxEdits = random.pick({0, 1, 1, 2, 3}),
                                   .matchOption1 = random.below(2),
                                   .matchOption2 = random.below(2),
                                   .matchOption4 = random.below(2),
                                   .returnBestOnly = random.below(2)});
    Texts all;
    for (const std::string &text : list) {
      const int64_t cost = alignWord(one, text, *params, 0, 0, params->maxEdits, 0);
      if (cost < never) offer(all, text, cost);
    }
    const auto dictionary = dictionaryOf({list});
    Owned<qoc_ocrDictionaryResultSet> results;
    require(qoc_ocrDictionary_runSwapCharSetMulti(dictionary, one.record(), params, one.swaps, results));
    return resolveAndCompare(one, all, one.rules->freeWord, dictionary, params, results);
  });
}

/// What a resolution says of its best text.
std::string verdictOf(const qoc_ocrDictionaryResolution &resolution) {
  std::string out = qoc_ocrDictionaryOutcome_getName(resolution.outcome);
  for (const qoc_ocrDictionaryResolvedText &text :
       elements(resolution.texts).first(std::min<std::size_t>(elements(resolution.texts).size(), 1))) {
    out += " " + std::to_string(text.total) + " +" + std::to_string(text.margin);
    // Which of several equal texts comes first, and what is said of that one, depends on the results.
    const bool isOnlyOne = resolution.hasScores == 0 && resolution.outcome == qoc_ocrDictionaryOutcome_sure;
    if (text.margin > 0 || isOnlyOne) out += (text.passesCheck != 0 ? " ok " : " ") + show(text.text);
  }
  return out;
}

TEST(ResolverRandom, NeedsNoMoreThanTheBestResultToSayTheSame) {
  random_cases::compareCases([](Random &random) -> std::string {
    Case one(random);
    if (random.oneIn(5)) {
      for (auto &position : one.reading) {
        for (auto &candidate : position) candidate.score = 0;
      }
    }
    Owned<qoc_ocrDictionary> dictionary;
    for (int32_t k = random.between(1, 3); k > 0; --k) {
      const std::string source = random.pick<std::string>(
          {"[0-2]{1,3}", "[016]+", "(0[12])|([06]{2})|(126)", "[2][0-9]", "[0-9]{2}", "[0-9]{3}", "[12][06]*"});
      const Owned<qoc_ocrDictionaryRegularExpression> expression([&](qoc_ocrDictionaryRegularExpression *object) {
        return qoc_ocrDictionaryRegularExpression_constructString(object, stdString(source));
      });
      int32_t n = 0;
      require(qoc_ocrDictionary_getNumRegularExpressions(dictionary, &n));
      require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, n, expression));
    }
    if (random.oneIn(3)) require(qoc_ocrDictionary_setFieldingIExtend(dictionary, 0, line("99")));
    if (random.oneIn(3)) require(qoc_ocrDictionary_setLexiconIExtend(dictionary, 0, lexicon({"012", "06", "1620"})));
    if (random.oneIn(3)) {
      Owned<qoc_ocrDictionaryEntryCheck> check;
      check->mode = qoc_ocrDictionaryMode_regularExpression;
      require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&one.rules->checks, check));
    }
    std::string verdicts[2];
    for (const bool isShort : {false, true}) {
      auto params = runParams({.maxEdits = 1, .returnBestOnly = isShort ? 1 : 0});
      one.rules->maxTexts = isShort ? 1 : 50;
      Owned<qoc_ocrDictionaryResolver> resolver;
      Owned<qoc_ocrDictionaryResolution> resolution;
      Owned<qoc_ocrDictionaryResultSet> results;
      require(qoc_ocrDictionary_runSwapCharSetMulti(dictionary, one.record(), params, one.swaps, results));
      require(qoc_ocrDictionaryResolver_setRules(resolver, one.rules));
      require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionary));
      require(qoc_ocrDictionaryResolver_resolve(resolver, one.record(), params, one.swaps, results, resolution));
      verdicts[isShort ? 1 : 0] = verdictOf(*resolution);
    }
    return verdicts[0] == verdicts[1]
               ? ""
               : "short " + verdicts[1] + ", not " + verdicts[0] + "\n  reading " + show(one.record()) + "\n";
  });
}

const std::string &oneOf(Random &random, const std::vector<std::string> &list) {
  return list[static_cast<std::size_t>(random.below(static_cast<int32_t>(list.size())))];
}

std::string randomText(Random &random, const std::string &letters, int32_t length) {
  std::string text;
  for (; length > 0; --length) {
    text += letters[static_cast<std::size_t>(random.below(static_cast<int32_t>(letters.size())))];
  }
  return text;
}

/// A longer reading of few letters, two or three at some positions, with points as readers give them.
Owned<qoc_ocrDictionaryStringMulti> longReading(Random &random, const std::string &text, const std::string &letters) {
  Owned<qoc_ocrDictionaryStringMulti> made;
  for (const char c : text) {
    Owned<qoc_ocrDictionaryCharMulti> position;
    int32_t score = random.between(5000, 9900);
    for (int32_t i = 0, n = random.pick({1, 1, 2, 3}); i < n; ++i) {
      const bool isWrong = random.oneIn(6);
      const qoc_ocrDictionaryChar candidate = {
          static_cast<Char32>(isWrong || i > 0 ? randomText(random, letters, 1)[0] : c), score};
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate));
      score = random.below(score + 1);
    }
    require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&made->positions, position));
  }
  return made;
}

/// A text with some letters left out, put in or replaced.
std::string misread(Random &random, std::string text, const std::string &letters) {
  for (int32_t k = random.below(3); k > 0 && !text.empty(); --k) {
    const auto at = static_cast<std::size_t>(random.below(static_cast<int32_t>(text.size())));
    const std::string other = randomText(random, letters, 1);
    text.replace(at, random.below(2) != 0 ? 1 : 0, random.oneIn(3) ? "" : other);
  }
  return text;
}

/// Rules and swaps for readings in points, and what a resolver with them says with and without its shortcuts.
struct Comparison {
  Owned<qoc_ocrDictionary> dictionary;
  Owned<qoc_swapCharSet> swaps;
  Owned<qoc_ocrDictionaryResolverRules> rules;
  Owned<qoc_ocrDictionaryRunParams> params;
  ShortcutsTaken roads{ShortcutsTaken::all};  // With which the word lists get their indexes.

  explicit Comparison(Random &random) {
    if (random.oneIn(2)) qoc::lexiconRoads().minWordsForTries = INT32_MAX;
    if (random.oneIn(2)) require(qoc_swapCharSet_setSingleSwap(swaps, 'a', 'b'));
    rules->maxTexts = random.pick({1, 1, 1, 3});
    rules->minMargin = random.pick({0, 1000, 3000});
    rules->maxMargin = random.pick({0, 4000, 9000, INT32_MAX});
    if (random.oneIn(3)) rules->swapPenalty = random.below(9000);
    if (random.oneIn(3)) rules->missingPenalty = random.below(9000);
    for (int32_t k = random.below(3); k > 0; --k) {
      const qoc_ocrDictionaryConfusion confusion = {random.pick<Char32>({'a', 'b', 'c', QOC_CHAR_EMPTY}),
                                                    random.pick<Char32>({'a', 'b', 'd', QOC_CHAR_EMPTY}),
                                                    random.below(3000), random.below(9000)};
      require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules->confusions, &confusion));
    }
  }

  std::string run(const Owned<qoc_ocrDictionaryStringMulti> &reading) const {
    Owned<qoc_ocrDictionaryResultSet> results;
    require(qoc_ocrDictionary_runSwapCharSetMulti(dictionary, reading, params, swaps, results));
    Owned<qoc_ocrDictionaryResolver> resolver;
    require(qoc_ocrDictionaryResolver_setRules(resolver, rules));
    require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionary));
    std::string verdicts[2];
    for (const bool isPlain : {false, true}) {
      const ShortcutsTaken taken(isPlain ? ShortcutsTaken::none : ShortcutsTaken::all);
      Owned<qoc_ocrDictionaryResolution> resolution;
      require(qoc_ocrDictionaryResolver_resolve(resolver, reading, params, swaps, results, resolution));
      std::string &verdict = verdicts[isPlain ? 1 : 0];
      verdict = verdictOf(*resolution);
      for (const auto &text : elements(resolution->texts)) verdict += " " + std::to_string(text.total);
    }
    return verdicts[0] == verdicts[1] ? ""
                                      : verdicts[0] + ", not " + verdicts[1] + "\n  reading " + show(reading) + "\n";
  }
};

TEST(ResolverRandom, FindsTheWordsThatWholeTablesFind) {
  random_cases::compareCases([](Random &random) -> std::string {
    Comparison one(random);
    const std::string letters = random.pick<std::string>({"abc", "abcdefgh"});
    std::vector<std::string> list;
    for (int32_t k = random.between(1, 60); k > 0; --k) {
      list.push_back(list.empty() || random.oneIn(2) ? randomText(random, letters, random.between(1, 9))
                                                     : misread(random, oneOf(random, list), letters));
    }
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    if (list.front().empty()) list.erase(list.begin());
    if (list.empty()) return "";
    one.params = runParams({.maxEdits = random.pick({0, 1, 2, 2, 3, 14}),
                            .matchOption1 = random.oneIn(4) ? 0 : 1,
                            .matchOption2 = random.oneIn(4) ? 0 : 1,
                            .matchOption4 = random.oneIn(4) ? 0 : 1,
                            .returnBestOnly = random.below(2)});
    require(qoc_ocrDictionary_setLexiconIExtend(one.dictionary, 0, lexicon(list)));
    if (random.oneIn(4)) {
      std::vector<std::string> others = {oneOf(random, list)};
      if (const std::string other = randomText(random, letters, random.between(1, 9)); other != others[0]) {
        others.push_back(other);
      }
      require(qoc_ocrDictionary_setLexiconIExtend(one.dictionary, 1, lexicon(others)));
    }
    const std::string read = misread(random, oneOf(random, list), letters);
    Owned<qoc_ocrDictionaryStringMulti> reading = longReading(random, read.empty() ? "a" : read, letters);
    if (random.oneIn(6)) {
      Owned<qoc_ocrDictionaryCharMulti> wildcard;
      const qoc_ocrDictionaryChar any = {QOC_CHAR_ANY, random.below(9500)};
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&wildcard->candidates, &any));
      require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&reading->positions, wildcard));
    }
    return one.run(reading);
  });
}

TEST(ResolverRandom, FindsTheTextsThatMatchingAgainFinds) {
  random_cases::compareCases([](Random &random) -> std::string {
    Comparison one(random);
    for (int32_t k = random.pick({1, 1, 2}); k > 0; --k) {
      const std::string source =
          random.pick<std::string>({"[ab]{2}[0-9]{4}", "[abc]+", "(ab|cd)[0-3]{2,5}", "[a-c][0-9]+", "a?b?c?[0-9]{3}",
                                    "(a[01]|b[23]|[cd]4)+", "[0-9]{8}"});
      const Owned<qoc_ocrDictionaryRegularExpression> expression([&](qoc_ocrDictionaryRegularExpression *object) {
        return qoc_ocrDictionaryRegularExpression_constructString(object, stdString(source));
      });
      require(qoc_ocrDictionary_setRegularExpressionIExtend(one.dictionary, k - 1, expression));
    }
    if (random.oneIn(3)) {
      Owned<qoc_ocrDictionaryEntryCheck> check;
      check->mode = qoc_ocrDictionaryMode_regularExpression;
      check->rule.method = random.pick({qoc_checkDigitMethod_luhn, qoc_checkDigitMethod_mod37x2});
      require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&one.rules->checks, check));
    }
    one.params = runParams({.maxEdits = random.pick({0, 1, 1, 2}),
                            .matchOption4 = random.below(2),
                            .returnBestOnly = random.oneIn(4) ? 0 : 1});
    const std::string text = random.pick<std::string>({"ab1234", "abcab", "ab012", "b77", "bc123", "a0b2", "12345674"});
    return one.run(longReading(random, misread(random, text, "abcd0123"), "abcd01234"));
  });
}

}  // namespace
