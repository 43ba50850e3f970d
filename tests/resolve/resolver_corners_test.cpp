// The resolver on readings, results, entries and rules that are out of the ordinary.

#include <functional>

#include "resolve/setting.hpp"
#include "support/handlers.hpp"
#include "support/metered.hpp"
#include "support/shortcuts.hpp"
#include "swap/swaps.hpp"

namespace {

using namespace qoc::test;

const auto lexiconMode = qoc_ocrDictionaryMode_lexicon, fieldingMode = qoc_ocrDictionaryMode_fielding,
           expressionMode = qoc_ocrDictionaryMode_regularExpression;
const auto luhn = qoc_checkDigitMethod_luhn;

/// A reading of digits, all of the same score, in which some show others, too: digits("17", {{1, '8', 80}}).
struct Other {
  std::size_t position;
  char code;
  int32_t score;
};
std::string shown(std::string_view text, const std::vector<Other> &others = {}) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    out += std::string(i > 0 ? " " : "") + text[i] + "90";
    for (const Other &other : others) {
      if (other.position == i) out += std::string("|") + other.code + std::to_string(other.score);
    }
  }
  return out;
}

/// What the resolver says, which has to be the same without the shortcuts.
template <class Text>
std::string both(Setting &setting, const Text &input) {
  const std::string fast = setting(input);
  const ShortcutsTaken taken(ShortcutsTaken::none);
  EXPECT_EQ(setting(input), fast) << "without shortcuts";
  return fast;
}

// Readings ----------------------------------------------------------------------------------------------------------

TEST(ResolverReadings, AWildcardIsEveryCharacterThatAWordHas) {
  Setting setting;
  setting.setWords({"cat", "car", "dog"});
  EXPECT_EQ(setting(U"c90 a90 \uF80190"), "unsure: car 270 +0, cat 270");
  EXPECT_EQ(setting(U"c90 a90 r90|\uF80150"), "sure: car 270 +41, cat 229");
  setting.params->maxEdits = 1;
  EXPECT_EQ(setting(U"d90 o90 \uF80190 x90"), "sure: dog 250");
}

TEST(ResolverReadings, AWildcardIsOpenInAShapeUnlessItAdmitsOneCharacter) {
  Setting setting;
  setting.addExpression("[A-Z]-[0-9]");
  EXPECT_EQ(setting(U"B90 \uF80190 790"), "sure: B-7 270");
  EXPECT_EQ(setting(U"\uF80190 -90 790"), "unsure: ?-7 270");
  EXPECT_EQ(setting(U"B90|\uF80180 -90 790"), "sure: B-7 270 +11, ?-7 259");
}

TEST(ResolverReadings, AWildcardOfAnExpressionIsFilledInByTheCheck) {
  Setting setting;
  setting.addExpression("[0-9]{11}");
  setting.addExpression("[A-Z]{2}");
  setting.addCheck(expressionMode, 0, luhn);
  EXPECT_EQ(setting(U"790 990 990 290 \uF80190 390 990 890 790 190 390"), "sure: 79927398713 990");
}

TEST(ResolverReadings, AnEmptyCharacterIsNoCandidate) {
  Setting setting;
  setting.setWords({"cat", "car"});
  EXPECT_EQ(setting(U"c90 a90 r90|\uF80088|t80"), "sure: car 270 +11, cat 259");
  Setting shape;
  shape.addLine("A9");
  EXPECT_EQ(shape(U"B90|\uF80088 790|180"), "sure: B7 180 +11, B1 169");
}

TEST(ResolverReadings, APositionWithoutCandidatesShowsNothing) {
  Setting setting;
  setting.setWords({"cat", "dog"});
  EXPECT_EQ(setting("c90 a90 ~"), "none");
  setting.params->maxEdits = 1;
  EXPECT_EQ(setting("c90 a90 ~"), "sure: cat 130");
}

TEST(ResolverReadings, CharactersBeyondAsciiAreLikeAllOthers) {
  Setting setting;
  setting.addWords({U"caf\u00E9", U"cafe", U"ca\u0142y"});
  require(qoc_swapCharSet_setSingleSwap(setting.swaps, U'\u00E8', U'\u00E9'));
  EXPECT_EQ(setting(U"c90 a90 f90 e90|\u00E985"), "unsure: cafe 360 +6, caf{E9} 354");
  EXPECT_EQ(setting(U"c90 a90 f90 \u00E890"), "sure: caf{E9} 330");
  setting.params->maxEdits = 1;
  EXPECT_EQ(setting(U"c90 a90 f90 \u00E890"), "sure: caf{E9} 330 +110, cafe 220");
  EXPECT_EQ(setting(U"\u00E790 a90 \u014290 y90"), "sure: ca{142}y 220");
  Setting shape;
  shape.addExpression("[a-z]{3}.");
  shape.addExpression("[0-9]{4}");
  EXPECT_EQ(shape(U"c90 a90 f90 \u00E890|\u00E985"), "unsure: caf{E8} 360 +6, caf{E9} 354");
}

TEST(ResolverReadings, AWildcardOfAWordIsOpen) {
  Setting setting;
  setting.addWords({U"c\uF801t", U"dog"});
  EXPECT_EQ(setting("c90 a90 t90"), "unsure: c?t 270");
  setting.params->maxEdits = 1;
  EXPECT_EQ(setting("c90 t90"), "unsure: c?t 120");
  EXPECT_EQ(setting("c90 ~ t90"), "unsure: c?t 130") << "nothing is read where the word has anything";
  setting.knowsDictionary = false;
  EXPECT_EQ(setting("c90 a90 t90"), "unsure: c?t 270");
}

TEST(ResolverReadings, LengthsBindWordsThatNothingEdits) {
  const auto input = reading("c90 a90 t90|r80");
  const Owned<qoc_ocrDictionaryResultSet> notComputed;
  Setting setting;
  setting.setWords({"cat", "car"});
  setting("");
  const auto told = [&](const std::optional<int32_t> least, const std::optional<int32_t> most, int32_t maxEdits = 0) {
    const auto params = runParams({.maxEdits = maxEdits, .minStringLength = least, .maxStringLength = most});
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(qoc_ocrDictionaryResolver_resolve(setting.resolver, input, params, setting.swaps, notComputed, resolution));
    return Setting::show(*resolution);
  };
  EXPECT_EQ(told({}, {}), "sure: cat 270 +11, car 259");
  EXPECT_EQ(told(3, 3), "sure: cat 270 +11, car 259");
  EXPECT_EQ(told(4, {}), "none");
  EXPECT_EQ(told({}, 2), "none");
  EXPECT_EQ(told(4, 9, 1), "sure: cat 270 +11, car 259") << "with edits they do not bind";
  require(qoc_swapCharSet_assign(setting.swaps, setOfSwaps({{U"rn", U"m"}})));
  EXPECT_EQ(told({}, {}), "sure: cat 270 +11, car 259");
  EXPECT_EQ(told(4, {}), "none");
  EXPECT_EQ(told({}, 2), "none");
}

TEST(ResolverReadings, SwapsOfTwoCharactersForTwoCountOnce) {
  Setting setting;
  require(qoc_swapCharSet_assign(setting.swaps, setOfSwaps({{U"vv", U"uu"}, {U"cl", U"d"}})));
  setting.setWords({"vacuum", "vacvvm", "clad"});
  EXPECT_EQ(setting("v90 a90 c90 v90 v90 m90"), "sure: vacvvm 540 +30, vacuum 510");
  EXPECT_EQ(setting("v90 a90 c90 u90 u90 m90"), "sure: vacuum 540")
      << "they stand for the others, not the others for them";
  EXPECT_EQ(setting("c90 l90 a90 c90 l90"), "sure: clad 420");
  EXPECT_EQ(setting("d90 a90 d90"), "sure: clad 240");
  setting.params->maxEdits = 1;
  EXPECT_EQ(setting("v90 a90 c90 v90 u90 m90"), "unsure: vacuum 400 +0, vacvvm 400");
}

TEST(ResolverReadings, AWindowOfTheReadingIsEnough) {
  Setting setting;
  setting.params->matchOption9 = 1;
  setting.setWords({"cat", "cats"});
  EXPECT_EQ(setting("x90 c90 a90 t90 s90"), "sure: cats 360 +90, cat 270");
  Setting shape;
  shape.params->matchOption9 = 1;
  shape.addExpression("[0-9]{2}");
  EXPECT_EQ(shape("x90 190 290 y90").substr(0, 12), "sure: 12 180");
}

TEST(ResolverReadings, AWildcardLeavesAnExpressionOfSeveralOpen) {
  Setting setting;
  setting.params->returnBestOnly = 1;
  setting.addExpression("[A-Z]-[0-9]");
  setting.addExpression("[a-z]{3}");
  EXPECT_EQ(both(setting, U"B90 \uF80190 790"), "sure: B-7 270");
  EXPECT_EQ(both(setting, U"\uF80190 -90 790"), "unsure: ?-7 270");
  setting.addCheck(expressionMode, 1, luhn);
  EXPECT_EQ(both(setting, U"\uF80190 -90 790"), "unsure: ?-7 270");
}

TEST(ResolverReadings, ACharacterThatIsAnyNonspaceIsReadAsItIs) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addExpression(".-[0-9]");
  setting.addExpression("[a-z]{5}");
  EXPECT_EQ(both(setting, U"\uF80290 =90 790"), "sure: {F802}-7 130");
}

TEST(ResolverReadings, ShapesMayHaveCharactersBeyondAscii) {
  Setting setting;
  Owned<qoc_ocrDictionaryRegularExpression> expression;
  require(qoc_ocrDictionaryRegularExpression_setStringT(expression, L"\u00E9[0-9]"));
  require(qoc_ocrDictionary_setRegularExpressionIExtend(setting.dictionary, 0, expression));
  EXPECT_EQ(setting(U"\u00E990|\u00E880 790|180"), "sure: {E9}7 180 +11, {E9}1 169");
  setting.params->returnBestOnly = 1;
  setting.addExpression("[a-z]{5}");
  EXPECT_EQ(both(setting, U"\u00E990|\u00E880 790|180"), "sure: {E9}7 180 +11, {E9}1 169");
}

TEST(ResolverReadings, AnOpenPlaceMayHaveCharactersBeyondAscii) {
  const auto of = [](const wchar_t *source, std::u32string_view input) {
    Setting setting;
    setting.params->maxEdits = 1;
    Owned<qoc_ocrDictionaryRegularExpression> expression;
    require(qoc_ocrDictionaryRegularExpression_setStringT(expression, source));
    require(qoc_ocrDictionary_setRegularExpressionIExtend(setting.dictionary, 0, expression));
    std::string all = setting(input);
    setting.params->returnBestOnly = 1;
    setting.addExpression("[a-z]{5}");
    EXPECT_EQ(setting(input), all);
    return all;
  };
  EXPECT_EQ(of(L"\u00E9[0-9]", U"x90 790"), "sure: {E9}7 40");
  EXPECT_EQ(of(L"[\u00E8\u00E9][0-9]", U"x90 790"), "unsure: ?7 40");
  EXPECT_EQ(of(L"[a\u00E9][0-9]", U"x90 790"), "unsure: ?7 40");
  EXPECT_EQ(of(L"[\u00E0-\u00FF][0-9]", U"x90 790"), "unsure: ?7 40");
  EXPECT_EQ(of(L"(a\u00E9|b[\u00E8-\u00EA])[0-9]", U"a90 x90 790"), "sure: a{E9}7 130");

  EXPECT_EQ(of(L"[\uF800-\uF803][0-9]", U"x90 790"), "sure: {F803}7 40") << "the others are no characters";

  Setting setting;
  setting.params->maxEdits = 1;
  Owned<qoc_ocrDictionaryPositionFielding> letter;
  require(qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(letter, codeVector(U"\u00E9"), 0));
  Owned<qoc_ocrDictionaryLineFielding> made = line("?9");
  require(qoc_ocrDictionaryLineFielding_setPositionFielding(made, 0, letter));
  require(qoc_ocrDictionary_setFieldingIExtend(setting.dictionary, 0, made));
  EXPECT_EQ(setting(U"x90 790"), "sure: {E9}7 40");
}

TEST(ResolverReadings, ACandidateFartherThanTheMarginDoesNotMatter) {
  Setting setting;
  setting.rules->maxTexts = 1;
  setting.rules->maxMargin = 0;
  setting.rules->alternativePenalty = 5;
  setting.setWords({"car", "cat"});
  EXPECT_EQ(both(setting, "c90 a90 r90|t81"), "sure: car 270 +10") << "9 and 5 are more than the 10 that it takes";
  EXPECT_EQ(both(setting, "c90 a90 r90|t86"), "unsure: car 270 +8");
  EXPECT_EQ(both(setting, U"c90 a90 r90|\uF80088"), "sure: car 270 +10");
  EXPECT_EQ(both(setting, U"c90 a90 r90|\uF80181"), "sure: car 270 +10");
  setting.params->returnBestOnly = 1;
  EXPECT_EQ(both(setting, U"c90 a90 r90|\uF80186"), "unsure: car 270 +8") << "it may be the t of another word";
}

TEST(ResolverReadings, WithoutSwapsAClearWordIsOneThatNothingComesNear) {
  Setting setting;
  setting.usesSwaps = false;
  setting.params->returnBestOnly = 1;
  setting.rules->maxTexts = 1;
  setting.rules->maxMargin = 0;
  setting.rules->alternativePenalty = 5;
  setting.setWords({"car", "cat", "kot"});
  EXPECT_EQ(both(setting, "c90 a90 r90|x86"), "sure: car 270 +10");
  EXPECT_EQ(both(setting, "c90 a90 r90|t81"), "sure: car 270 +10");
  EXPECT_EQ(both(setting, "c90 a90 r90|t86"), "unsure: car 270 +8");
  EXPECT_EQ(both(setting, U"c90 a90 r90|\uF80186"), "unsure: car 270 +8") << "it may be the t of another word";
  EXPECT_EQ(both(setting, "c90|k88 a90|o89 t90"), "unsure: cat 270 +6") << "two other candidates make another word";
  EXPECT_EQ(both(setting, "c90|k88 a90|o87 t90"), "sure: cat 270 +10");
  Setting shape;
  shape.usesSwaps = false;
  shape.addExpression("[A-Z].");
  EXPECT_EQ(both(shape, U"B90 790|\uF80180"), "sure: B7 180 +11, B? 169");
}

TEST(ResolverReadings, WordsOfOtherLengthsDoNotMatterWhereNothingIsLeftOut) {
  Setting setting;
  setting.usesSwaps = false;
  setting.params->maxEdits = 1;
  setting.params->minStringLength = 2;
  setting.params->matchOption1 = setting.params->matchOption2 = 0;
  setting.setWords({"caar", "car"});
  EXPECT_EQ(both(setting, "c90 a90 a20 r90"), "sure: caar 290 +40, car 250");
  setting.params->matchOption4 = 0;
  EXPECT_EQ(both(setting, "c90 a90 a20 r90"), "sure: caar 290");
}

TEST(ResolverReadings, OfSeveralSwapsTheCheapestCounts) {
  Setting setting;
  setting.addLine("A");
  require(qoc_swapCharSet_assign(setting.swaps, qoc::test::swaps({U"0OQD"})));
  for (const auto &[meant, penalty] : {std::pair<Char32, int32_t>('O', 8), {'Q', 20}, {'D', 5}}) {
    const qoc_ocrDictionaryConfusion confusion = {'0', meant, 0, penalty};
    require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&setting.rules->confusions, &confusion));
  }
  EXPECT_EQ(both(setting, "090"), "unsure: D 85 +3, O 82 +12, Q 70");
}

TEST(ResolverReadings, ASetOfSwapsOfTwoForTwoAloneCounts) {
  Setting setting;
  require(qoc_swapCharSet_assign(setting.swaps, setOfSwaps({{U"vv", U"uu"}})));
  setting.setWords({"vacuum", "dog"});
  EXPECT_EQ(setting("v90 a90 c90 v90 v90 m90"), "sure: vacuum 510");
}

// Results that the resolver is given -------------------------------------------------------------------------------

/// What a resolver without a dictionary says of made results.
std::string ofResults(const std::vector<ResultFields> &list, std::string_view input = "c90 a90 t90",
                      const std::function<void(qoc_ocrDictionaryResult &)> &change = nullptr) {
  auto results = resultSet(list);
  if (change != nullptr) {
    for (int32_t i = 0; i < results->results.core.size; ++i) {
      qoc_ocrDictionaryResult *one = nullptr;
      require(qstd_vector_qoc_ocrDictionaryResult_getElement(&results->results, i, &one));
      change(*one);
    }
  }
  Setting setting;
  require(qoc_ocrDictionaryResolver_setRules(setting.resolver, setting.rules));
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading(input), setting.params, nullptr, results,
                                            resolution));
  return Setting::show(*resolution);
}

const ResultFields whole = {
    .valid = "c a t", .statuses = {primary, primary, primary}, .mode = qoc_ocrDictionaryMode_fielding};

TEST(ResolverResults, OneThatIsNotComputedIsPassedOver) {
  ResultFields other = whole;
  EXPECT_EQ(ofResults({whole}), "sure: cat 270");
  other.isComputed = 0;
  EXPECT_EQ(ofResults({other}), "none");
  EXPECT_EQ(ofResults({other, whole}), "sure: cat 270");
  EXPECT_EQ(ofResults({{.isComputed = 0, .word = "cat"}}), "none");
}

TEST(ResolverResults, OneThatDoesNotFitTheReadingHasNoText) {
  ResultFields odd = whole;
  odd.statuses = {primary, primary, primary, primary};
  EXPECT_EQ(ofResults({odd}), "none") << "more positions than the reading";
  odd.valid = "c a t s";
  EXPECT_EQ(ofResults({odd}), "none");
  odd = whole;
  odd.valid = "c a";
  EXPECT_EQ(ofResults({odd}), "none") << "fewer characters than statuses";
  odd.valid = "c a ~";
  EXPECT_EQ(ofResults({odd}), "none") << "no character at a position";
  odd = whole;
  odd.deleted = {-1, 3, 1000};
  EXPECT_EQ(ofResults({odd}), "sure: cat 270") << "there are no such positions";
  odd.numEdits = 1;
  EXPECT_EQ(ofResults({odd}), "sure: cat 270");
  odd.deleted = {0};
  EXPECT_EQ(ofResults({odd}), "none") << "two positions are left for three characters";
  odd = whole;
  for (const int32_t prefix : {1, 4, INT32_MAX}) {
    odd.numIgnoredPrefix = prefix;
    odd.numEdits = prefix == 1 ? 0 : 1;
    EXPECT_EQ(ofResults({odd}), "none") << "the same";
  }
  odd = whole;
  odd.numIgnoredSuffix = INT32_MIN;
  EXPECT_EQ(ofResults({odd}, "c90 a90 t90 s90"), "sure: cat 250") << "one position is left out";
  for (const std::vector<int32_t> &indices : {std::vector<int32_t>{0, 7, 2}, {0, -2, 2}, {0, 1}}) {
    const auto change = [&](qoc_ocrDictionaryResult &result) {
      require(qstd_vector32s_assign(&result.inputIndices, vectorOf<qstd_vector32s>(indices)));
    };
    EXPECT_EQ(ofResults({whole}, "c90 a90 t90", change), "none");
  }
  EXPECT_EQ(ofResults({whole}, "c90 a90"), "none");
  EXPECT_EQ(ofResults({{.word = "cow"}}), "none") << "a word that the reading cannot be";
  EXPECT_EQ(ofResults({{.word = "cow"}, whole}), "sure: cat 270");
}

TEST(ResolverResults, AWordOfAnotherLengthThanAskedForIsNoText) {
  Setting setting;
  setting.knowsDictionary = false;
  Owned<qoc_ocrDictionaryResolution> resolution;
  for (const bool hasSequences : {false, true}) {
    if (hasSequences) require(qoc_swapCharSet_assign(setting.swaps, setOfSwaps({{U"rn", U"m"}})));
    for (const int32_t least : {3, 4}) {
      setting.params->minStringLength = least;
      require(setting.resolve(reading("c90 a90 t90"), resultSet({{.word = "cat"}}), resolution));
      EXPECT_EQ(Setting::show(*resolution), least == 3 ? "sure: cat 270" : "none");
    }
  }
}

TEST(ResolverResults, AnEditedPositionIsOpenUnlessTheResultNamesItsCharacter) {
  ResultFields edited = whole;
  edited.statuses[1] = substituted;
  edited.numEdits = 1;
  EXPECT_EQ(ofResults({edited}, "c90 x90 t90"), "sure: cat 130");
  edited.valid = "c a|o t";
  EXPECT_EQ(ofResults({edited}, "c90 x90 t90"), "unsure: c?t 130");
  const auto withCode = [&](Char32 code) {
    edited.valid = "c x t";
    return ofResults({edited}, "c90 x90 t90", [code](qoc_ocrDictionaryResult &result) {
      qoc_ocrDictionaryCharMulti *multi = nullptr;
      require(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&result.valid.positions, 1, &multi));
      const qoc_ocrDictionaryChar only = {code, 0};
      require(qstd_vector_qoc_ocrDictionaryChar_assignElements(&multi->candidates, &only, 1));
    });
  };
  EXPECT_EQ(withCode('u'), "sure: cut 130");
  for (const Char32 code : {QOC_CHAR_EMPTY, QOC_CHAR_ANY, QOC_CHAR_ANY_NONSPACE}) {
    EXPECT_EQ(withCode(code), "unsure: c?t 130");
  }
}

/// Puts other characters at the last position of what a result shows.
void showLast(qoc_ocrDictionaryResult &result, const std::vector<Char32> &codes) {
  qoc_ocrDictionaryCharMulti *multi = nullptr;
  require(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&result.valid.positions, 2, &multi));
  std::vector<qoc_ocrDictionaryChar> characters;
  for (const Char32 code : codes) characters.push_back({code, 0});
  require(qstd_vector_qoc_ocrDictionaryChar_assignElements(&multi->candidates, characters.data(),
                                                           static_cast<int32_t>(characters.size())));
}

TEST(ResolverResults, AnEmptyCharacterIsNone) {
  const auto ofCodes = [](const std::vector<Char32> &codes) {
    return ofResults({whole}, "c90 a90 t90", [&](qoc_ocrDictionaryResult &result) { showLast(result, codes); });
  };
  EXPECT_EQ(ofCodes({QOC_CHAR_EMPTY, 't'}), "sure: cat 270");
  EXPECT_EQ(ofCodes({QOC_CHAR_EMPTY}), "none");
}

TEST(ResolverResults, AQuestionMarkAndACharacterThatIsNotKnownAreOne) {
  auto results = resultSet({whole});
  qoc_ocrDictionaryResult *one = nullptr;
  require(qstd_vector_qoc_ocrDictionaryResult_getElement(&results->results, 0, &one));
  Setting setting;
  require(qoc_ocrDictionaryResolver_setRules(setting.resolver, setting.rules));
  Owned<qoc_ocrDictionaryResolution> resolution;
  for (const auto &codes : {std::vector<Char32>{'?', QOC_CHAR_ANY}, {QOC_CHAR_ANY, '?'}}) {
    showLast(*one, codes);
    require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading(U"c90 a90 \uF80190|?50"), nullptr, nullptr,
                                              results, resolution));
    EXPECT_EQ(Setting::show(*resolution), "unsure: ca? 270");
  }
}

TEST(ResolverResults, AResolverThatKnowsTheDictionaryHasItsWordsOnly) {
  Setting setting;
  setting.setWords({"cat", "cart"});
  setting("");
  Owned<qoc_ocrDictionaryResolution> resolution;
  for (const char *text : {"ca", "cart", "cab", "cat", "c"}) {
    require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("c90 a90 t90|b80"), nullptr, nullptr,
                                              resultSet({{.word = text}}), resolution));
    EXPECT_EQ(Setting::show(*resolution), "sure: cat 270") << "told of " << text;
  }
}

TEST(ResolverResults, ThoseOfEntriesThatTheDictionaryLacksAreNotConsidered) {
  Setting setting;
  setting.setWords({"cat"});
  setting("");
  ResultFields open = {
      .valid = "c a t", .statuses = {primary, substituted, primary}, .mode = qoc_ocrDictionaryMode_fielding};
  Owned<qoc_ocrDictionaryResolution> resolution;
  for (const auto mode : {qoc_ocrDictionaryMode_fielding, qoc_ocrDictionaryMode_regularExpression}) {
    open.mode = mode;
    require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("c90 o90 t90"), nullptr, nullptr,
                                              resultSet({open}), resolution));
    EXPECT_EQ(Setting::show(*resolution), "none");
  }
}

TEST(ResolverResults, ATextThatNoneOfThemShowsComesFromNone) {
  Setting setting;
  setting.addExpression("[a-z]{3}");
  setting.addExpression("[a-z]{2}t");
  setting("");
  ResultFields passed = whole;
  passed.isComputed = 0;
  passed.mode = expressionMode;
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("c90 a90 t90"), nullptr, nullptr,
                                            resultSet({passed}), resolution));
  EXPECT_EQ(Setting::show(*resolution), "sure: cat 270");
  EXPECT_EQ(elements(resolution->texts)[0].resultIndex, -1);

  passed.isComputed = 1;
  auto without = resultSet({passed});
  qoc_ocrDictionaryResult *one = nullptr;
  require(qstd_vector_qoc_ocrDictionaryResult_getElement(&without->results, 0, &one));
  require(qoc_ocrDictionaryStringMulti_assign(&one->valid, reading(U"c90 \uF80090 t90")));
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("c90 a90 t90"), nullptr, nullptr, without,
                                            resolution));
  EXPECT_EQ(Setting::show(*resolution), "sure: cat 270");
  EXPECT_EQ(elements(resolution->texts)[0].resultIndex, -1) << "the result has no character there";
}

TEST(ResolverResults, OneThatIsNotOfTheWholeReadingLeavesTheOthersToBeFound) {
  Setting setting;
  setting.addLine("aaa");
  setting.addLine("999");
  setting("");
  ResultFields window = whole, shifted = whole;
  window.valid = "a t";
  window.statuses = {primary, primary};
  window.numIgnoredPrefix = 1;
  shifted.statuses[0] = inserted;
  shifted.deleted = {0};
  for (const ResultFields &other : {window, shifted}) {
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("x90 a90 t90"), setting.params, nullptr,
                                              resultSet({other}), resolution));
    EXPECT_EQ(Setting::show(*resolution), "sure: xat 270");
  }
}

TEST(ResolverResults, WithoutAnyTheTextsThatWereGoneThroughAreMatchedAgain) {
  Setting setting;
  setting.addExpression("[A-Z0-9]{12}");
  setting.addExpression("[0-9]{3}");
  setting.rules->maxTexts = 1;
  setting.rules->maxMargin = 15;
  setting("");
  std::string input;
  for (int32_t i = 0; i < 12; ++i) input += std::string(i > 0 ? " " : "") + "890|B89|388";
  const Owned<qoc_ocrDictionaryResultSet> notComputed;
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading(input), setting.params, nullptr, notComputed,
                                            resolution));
  EXPECT_EQ(Setting::show(*resolution), "unsure: 888888888888 1080 +2");
}

TEST(ResolverResults, OfManyExtraPositionsThreeAreWeighedByWhatTheTextsHaveBesideThem) {
  // Pairs of digits, and between those of each pair a 1 of its own: read twice beside another 1, else extra.
  const auto of = [](int numPairs, const std::string &last) {
    ResultFields pairs = {.mode = fieldingMode};
    std::string read;
    for (int32_t i = 0; i < numPairs; ++i) {
      const std::string digit = i + 1 < numPairs ? "190|280" : last;
      read += (i > 0 ? " " : "") + digit + " 190 " + digit;
      pairs.valid += i > 0 ? " 1|2 1|2" : "1|2 1|2";
      pairs.deleted.push_back(3 * i + 1);
    }
    pairs.statuses = Statuses(static_cast<std::size_t>(2 * numPairs), primary);
    pairs.numEdits = numPairs;
    return ofResults({pairs}, read).substr(0, static_cast<std::size_t>(2 * numPairs) + 12);
  };
  EXPECT_EQ(of(3, "190|280"), "sure: 111111 690 +");
  EXPECT_EQ(of(3, "290|180"), "unsure: 111112 679") << "a 1 that loses 11 saves 70";
  EXPECT_EQ(of(4, "190|280"), "sure: 11111111 920 +");
  EXPECT_EQ(of(4, "290|180"), "sure: 11111122 850 +") << "told by the 2s, which come first";
}

TEST(ResolverResults, TheCheapestWayOfACharacterCounts) {
  ResultFields twice = whole;
  twice.valid = "c a t|t";
  EXPECT_EQ(ofResults({twice}), "sure: cat 270");
  EXPECT_EQ(ofResults({whole}, "c90 a90 t90|t95"), "sure: cat 270");
}

TEST(ResolverResults, WordsLeaveOutEmptyCharacters) {
  auto results = resultSet({{.word = "ca?t"}});
  qoc_ocrDictionaryResult *one = nullptr;
  require(qstd_vector_qoc_ocrDictionaryResult_getElement(&results->results, 0, &one));
  require(qoc_ocrDictionaryString_assign(&one->dictionaryString, word(U"ca\uF800t")));
  Setting setting;
  require(qoc_ocrDictionaryResolver_setRules(setting.resolver, setting.rules));
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("c90 a90 t90"), nullptr, nullptr, results,
                                            resolution));
  EXPECT_EQ(Setting::show(*resolution), "sure: cat 270");
}

// Checks --------------------------------------------------------------------------------------------------------------

TEST(ResolverChecks, EveryMethodChoosesTheTextThatPasses) {
  const std::pair<qoc_checkDigitMethod, std::string> examples[] = {
      {qoc_checkDigitMethod_luhn, "79927398713"},           {qoc_checkDigitMethod_gtin, "6291041500213"},
      {qoc_checkDigitMethod_isbn10, "0306406152"},          {qoc_checkDigitMethod_mod11x2, "0000000218250097"},
      {qoc_checkDigitMethod_mod37x2, "G123498654321H"},     {qoc_checkDigitMethod_mod37x36, "A12425GABC1234002M"},
      {qoc_checkDigitMethod_mod97, "213800WSGIIZCXF1P572"}, {qoc_checkDigitMethod_container, "CSQU3054383"},
      {qoc_checkDigitMethod_vehicle, "1M8GDM9AXKP042788"},  {qoc_checkDigitMethod_icao9303, "AB2134<<<5"}};
  for (const auto &[method, text] : examples) {
    SCOPED_TRACE(text);
    Setting setting;
    setting.addLine(std::string(text.size(), '*'));
    setting.addCheck(fieldingMode, 0, method);
    for (const std::size_t i : {std::size_t{0}, text.size() / 2, text.size() - 1}) {
      std::string misread = text;
      misread[i] = text[i] == '7' ? '3' : '7';
      EXPECT_EQ(setting(shown(misread, {{i, text[i], 80}})).substr(0, 6 + text.size()), "sure: " + text);
    }
  }
}

TEST(ResolverChecks, ATextHasToPassAllOfItsEntry) {
  Setting setting;
  setting.addLine("9999");
  setting.addCheck(fieldingMode, 0, luhn, {{0, 2}});
  setting.addCheck(fieldingMode, 0, luhn, {{2, 4}});
  EXPECT_EQ(setting(shown("1826", {{0, '2', 80}, {3, '7', 70}})), "sure: 1826 360");
  EXPECT_EQ(setting(shown("1726", {{1, '8', 80}, {3, '7', 70}})), "sure: 1826 349");
  EXPECT_EQ(setting(shown("1726")), "unsure: 1726 360") << "it fails the first and passes the second";
  EXPECT_EQ(setting(shown("1827")), "unsure: 1827 360") << "the other way round";
}

TEST(ResolverChecks, PartsMayComeInAnyOrderAndMoreThanOnce) {
  Setting account;
  const std::string iban = "DE89370400440532013000";
  account.addLine("AA99******************");
  account.addCheck(fieldingMode, 0, qoc_checkDigitMethod_mod97, {{4, QOC_CHECK_DIGIT_END}, {0, 4}});
  std::string misread = iban;
  misread[7] = '7';
  EXPECT_EQ(account(shown(misread, {{7, iban[7], 80}, {9, '8', 85}})).substr(0, 28), "sure: " + iban);

  // Two rules with orders of their own: only one of them can lead the search.
  Setting mixed;
  mixed.addLine("999999");
  mixed.addCheck(fieldingMode, 0, luhn, {{3, 6}, {0, 3}});
  mixed.addCheck(fieldingMode, 0, luhn, {{0, 2}});
  mixed.addCheck(fieldingMode, 0, qoc_checkDigitMethod_gtin, {{2, 4}, {0, 2}});
  // By trying: of the texts that pass all three the one with the fewest and nearest others.
  const std::string first = "279119", second = "962356";
  std::string best;
  int32_t most = 0;
  for (int32_t i = 0; i < 64; ++i) {
    std::string text = first;
    int32_t total = 540;
    for (std::size_t k = 0; k < text.size(); ++k) {
      if ((i >> k & 1) == 0) continue;
      text[k] = second[k];
      total -= 11 + static_cast<int32_t>(k);
    }
    bool passes = true;
    for (const auto &check : elements(mixed.rules->checks)) {
      qsys_bool isValid = 0;
      require(qoc_checkDigitRule_isValidT(&check.rule, text.c_str(), &isValid));
      passes = passes && isValid != 0;
    }
    if (passes && total > most) {
      most = total;
      best = text;
    }
  }
  ASSERT_NE(best, "");
  std::vector<Other> others;
  for (std::size_t k = 0; k < second.size(); ++k) others.push_back({k, second[k], 80 - static_cast<int32_t>(k)});
  const std::string told = mixed(shown(first, others)), expected = ": " + best + " " + std::to_string(most) + " ";
  EXPECT_EQ(told.substr(told.find(':'), expected.size()), expected);

  Setting twice;
  twice.addLine("99");
  twice.addCheck(fieldingMode, 0, luhn, {{0, 2}, {0, 2}});
  EXPECT_EQ(twice(shown("50", {{1, '4', 80}})), "sure: 54 169") << "5454 passes, 5050 does not";
}

TEST(ResolverChecks, TheSameCheckManyTimesIsTheSame) {
  Setting setting;
  setting.addLine(std::string(17, '*'));
  const std::string text = "1M8GDM9AXKP042788";
  for (int32_t i = 0; i < 12; ++i) setting.addCheck(fieldingMode, 0, qoc_checkDigitMethod_vehicle);
  std::string misread = text;
  misread[3] = 'C';
  EXPECT_EQ(setting(shown(misread, {{3, 'G', 80}, {5, 'N', 70}})).substr(0, 23), "sure: " + text);
}

TEST(ResolverChecks, ASeparatorMayBeADigitInstead) {
  Setting setting;
  setting.addLine("9?9");
  setting.addCheck(fieldingMode, 0, luhn);
  EXPECT_EQ(setting("190 -90|580 890"), "sure: 1-8 270 +11, 158 259");
  EXPECT_EQ(setting("190 -90|180 790"), "sure: 117 259") << "1-7 does not pass";
}

TEST(ResolverChecks, NoTextPassesOneThatDoesNotFitItsLength) {
  Setting setting;
  setting.addLine("99");
  setting.addCheck(fieldingMode, 0, luhn, {{0, 5}});
  EXPECT_EQ(setting(shown("18")), "unsure: 18 180");
  Setting vehicle;
  vehicle.addLine("99");
  vehicle.addCheck(fieldingMode, 0, qoc_checkDigitMethod_vehicle);
  EXPECT_EQ(vehicle(shown("18")), "unsure: 18 180");
}

TEST(ResolverChecks, WordsArePassedOverInTheLexiconWhoseCheckTheyFail) {
  Setting setting;
  setting.setWords({"17", "18", "26"});
  setting.addCheck(lexiconMode, 0, luhn);
  EXPECT_EQ(setting(shown("17", {{1, '8', 80}})), "sure: 18 169");
  EXPECT_EQ(setting(shown("17")), "unsure: 17 180");
  setting.knowsDictionary = false;
  EXPECT_EQ(setting(shown("17", {{1, '8', 80}})), "sure: 18 169");
  EXPECT_EQ(setting(shown("17")), "unsure: 17 180");
  setting.knowsDictionary = true;
  setting.addWords({U"17"});
  EXPECT_EQ(setting(shown("17", {{1, '8', 80}})), "sure: 17 180 +11, 18 169") << "the other lexicon has no check";
}

TEST(ResolverChecks, OfAnExpressionChooseWhatMayStandInTheOpenPlace) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addExpression("[0-9]{4}");
  setting.addExpression("[A-Z]{3}");
  setting.addCheck(expressionMode, 0, luhn);
  setting.addCheck(expressionMode, 1, qoc_checkDigitMethod_mod37x2);
  EXPECT_EQ(both(setting, "190 x90 290 690").substr(0, 10), "sure: 1826");
  // Two open places leave ten ways to pass.
  EXPECT_EQ(setting(U"190 \uF80190 \uF80190 690").substr(0, 6), "unsure");
}

// Entries -------------------------------------------------------------------------------------------------------------

TEST(ResolverEntries, ALargeExpressionTellsWhatItAdmitsLikeASmallOne) {
  std::string text, read;
  for (int32_t i = 0; i < 70; ++i) text += "AB"[i % 2];
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addExpression("(A|B){70}-[0-9]");
  EXPECT_EQ(setting(shown(text + "=7")).substr(0, 78), "sure: " + text + "-7");
  setting.addExpression("[0-9]+");
  EXPECT_EQ(setting(shown(text + "=7")).substr(0, 78), "sure: " + text + "-7");
  EXPECT_EQ(setting(shown(text + "-=")).substr(0, 80), "unsure: " + text + "-?");
}

TEST(ResolverEntries, AnEmptyListAmongOthersIsPassedOver) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.setWords({"cat"});
  setting.addWords({});
  setting.addWords({U"dog"});
  EXPECT_EQ(both(setting, "d90 o90 g90"), "sure: dog 270");
  EXPECT_EQ(both(setting, "d90 x90 g90"), "sure: dog 130");
}

TEST(ResolverEntries, LongListsAreSearchedLikeShortOnes) {
  std::vector<std::string> list;
  for (int32_t i = 0; i < 17000; ++i) {
    const std::string digits = std::to_string(11 * i);
    list.push_back(std::string(6 - digits.size(), '0') + digits);
  }
  Setting setting;
  setting.params->matchOption2 = setting.params->matchOption4 = 0;
  setting.setWords(list);
  for (const int32_t maxMargin : {1000, INT32_MAX}) {
    setting.rules->maxMargin = maxMargin;
    for (const int32_t maxEdits : {1, 3}) {
      SCOPED_TRACE("margin " + std::to_string(maxMargin) + ", edits " + std::to_string(maxEdits));
      setting.params->maxEdits = maxEdits;
      setting.rules->maxTexts = 1;
      EXPECT_EQ(both(setting, "190 290 390 490 590 x90").substr(0, 16), "sure: 123453 400");
      EXPECT_EQ(both(setting, "190 290 390 490 590 390").substr(0, 16), "sure: 123453 540");
      setting.rules->maxTexts = 2;
      setting.rules->maxLag = 100;
      EXPECT_EQ(both(setting, "190 290 390 490 590|688 390|488").substr(0, 33), "unsure: 123453 540 +6, 123464 534");
    }
  }
  setting.rules->maxTexts = 1;
  setting.params->maxEdits = 4;
  EXPECT_EQ(both(setting, "x90 x90 x90 x90 990 990").substr(0, 18), "unsure: 000099 -20");
}

TEST(ResolverEntries, AnEmptyReadingIsShortOfWords) {
  std::vector<std::string> list;
  for (int32_t i = 0; i < 5000; ++i) list.push_back(std::to_string(i));
  Setting setting;
  setting.params->maxEdits = 1;
  setting.setWords(list);
  const std::string all = setting.withoutRun({});
  EXPECT_EQ(all.substr(0, 20), "unsure: 0 -60 +0, 1 ");
  const ShortcutsTaken taken(ShortcutsTaken::none);
  EXPECT_EQ(setting.withoutRun({}), all);
}

TEST(ResolverEntries, WordsPutIntoTheListItselfAreWords) {
  Setting setting;
  setting.setWords({"cat"});
  qoc_ocrDictionaryLexicon *list = nullptr;
  require(qstd_vector_qoc_ocrDictionaryLexicon_getElement(&setting.dictionary->lexicons, 0, &list));
  require(qstd_vector_qoc_ocrDictionaryString_pushBack(&list->strings, word("dog")));
  EXPECT_EQ(both(setting, "d90 o90 g90"), "sure: dog 270");
  EXPECT_EQ(both(setting, "c90 a90 t90"), "sure: cat 270");
}

/// Letters without order, so that no two stretches of some length are the same.
std::string manyLetters(std::size_t n, uint64_t seed) {
  std::string text;
  for (uint64_t state = seed; text.size() < n; state = state * 6364136223846793005u + 1442695040888963407u) {
    text += static_cast<char>('a' + state / (uint64_t{1} << 40) % 26);
  }
  return text;
}

TEST(ResolverEntries, LongWordsAreTracedThroughRowsThatAreMadeAgain) {
  std::string letters = manyLetters(700, 3);
  std::replace(letters.begin(), letters.end(), 'm', 'M');
  letters[650] = 'm';
  // One is missing, one is extra, one is another, and the m is read as two.
  std::string read = letters.substr(0, 100) + letters.substr(101, 199) + "7" + letters.substr(300, 100) + "7" +
                     letters.substr(401, 249) + "rn" + letters.substr(651);
  std::vector<int32_t> expected;
  for (int32_t i = 0; i < 700; ++i) expected.push_back(i < 100 ? i : i == 100 ? -1 : i < 300 ? i - 1 : i);
  for (std::size_t i = 650; i < 700; ++i) ++expected[i];
  for (const int32_t around : {0, 40}) {
    SCOPED_TRACE(std::to_string(around) + " positions around it");
    const std::string other(static_cast<std::size_t>(around), '0');
    Setting setting;
    setting.params->maxEdits = 3;
    setting.params->matchOption9 = around > 0 ? 1 : 0;
    setting.rules->maxTexts = 1;
    require(qoc_swapCharSet_assign(setting.swaps, setOfSwaps({{U"rn", U"m"}})));
    setting.setWords({letters});
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(setting.resolve(reading(shown(other + read + other)), resolution));
    ASSERT_EQ(resolution->texts.core.size, 1);
    const qoc_ocrDictionaryResolvedText &text = elements(resolution->texts)[0];
    EXPECT_EQ(show(text.text), letters);
    EXPECT_EQ(text.total, 90 * 701 - 30 - 60 - 110 - 140);
    std::vector<int32_t> shifted = expected;
    for (int32_t &input : shifted) input += input >= 0 ? around : 0;
    EXPECT_EQ(values(text.inputIndices), shifted);
  }
}

TEST(ResolverEntries, LongWordsOfOneBeginningAreWeighedAsEachAlone) {
  const std::string letters = manyLetters(600, 5);
  std::vector<std::string> list = {letters};
  for (const std::size_t shared : {1, 126, 127, 128, 129, 130, 254, 255, 256, 257, 300, 450, 599}) {
    for (const std::size_t more : {1, 3, 140}) list.push_back(letters.substr(0, shared) + manyLetters(more, shared));
  }
  std::sort(list.begin(), list.end());
  for (const bool isWindow : {false, true}) {
    Setting setting, alone;
    for (Setting *each : {&setting, &alone}) {
      each->params->maxEdits = 3;
      each->params->matchOption9 = isWindow ? 1 : 0;
      each->rules->maxTexts = 50;
      each->rules->maxLag = INT32_MAX;
    }
    setting.setWords(list);
    for (const std::size_t size : {256, 301, 452, 600}) {
      SCOPED_TRACE(std::to_string(size) + (isWindow ? " positions in windows" : " positions"));
      std::string read = letters.substr(0, size);
      read[size / 2] = '7';
      const auto input = reading(shown(read));
      const auto told = [&](Setting &one) {
        Owned<qoc_ocrDictionaryResolution> resolution;
        require(one.resolve(input, {}, resolution));
        std::vector<std::pair<std::string, int32_t>> texts;
        for (const auto &text : elements(resolution->texts)) texts.emplace_back(show(text.text), text.total);
        return texts;
      };
      std::vector<std::pair<std::string, int32_t>> all, each;
      {
        const ShortcutsTaken taken(ShortcutsTaken::none);
        all = told(setting);
      }
      for (const std::string &one : list) {
        alone.setWords({one});
        for (const auto &text : told(alone)) each.push_back(text);
      }
      std::sort(all.begin(), all.end());
      std::sort(each.begin(), each.end());
      EXPECT_GE(each.size(), 1u);
      std::vector<std::pair<std::string, int32_t>> different;
      std::set_symmetric_difference(all.begin(), all.end(), each.begin(), each.end(), std::back_inserter(different));
      EXPECT_EQ(different, (std::vector<std::pair<std::string, int32_t>>()));
    }
  }
}

TEST(ResolverEntries, ManyTextsAreWeighedAsByMatches) {
  Setting setting;
  setting.params->returnBestOnly = 1;
  setting.addExpression("[A-Z0-9]{12}");
  setting.addExpression("[0-9]{3}");
  // As texts of the same total may come in any order, the totals are compared.
  const auto totals = [&](const std::string &input) {
    setting.rules->maxTexts = 600;
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(setting.resolve(reading(input), resolution));
    std::vector<int32_t> list;
    for (const auto &text : elements(resolution->texts)) list.push_back(text.total);
    return list;
  };
  std::string input;
  for (int32_t i = 0; i < 12; ++i) input += std::string(i > 0 ? " " : "") + "890|B89|388";
  const std::vector<int32_t> many = totals(input);
  EXPECT_EQ(many.size(), 600u);
  EXPECT_EQ(many.front(), 1080);
  {
    const ShortcutsTaken taken(ShortcutsTaken::none);
    EXPECT_EQ(totals(input), many) << "without shortcuts";
  }
  setting.rules->maxLag = 100;
  const std::string all = setting(input);
  EXPECT_EQ(setting.withoutRun(reading(input)).substr(0, 200), all.substr(0, 200)) << "too many to be gone through";
  setting.rules->maxTexts = 1;
  setting.rules->maxMargin = 15;
  EXPECT_EQ(both(setting, input), "unsure: 888888888888 1080 +2");
  std::string longInput;
  for (int32_t i = 0; i < 260; ++i) longInput += std::string(i > 0 ? " " : "") + (i == 100 ? "a90|b80" : "a90");
  Setting longer;
  longer.params->returnBestOnly = 1;
  longer.addExpression("[ab]+");
  longer.addExpression("[0-9]+");
  EXPECT_EQ(both(longer, longInput), "sure: " + std::string(260, 'a') + " 23400 +11, " + std::string(100, 'a') + "b" +
                                         std::string(159, 'a') + " 23389");
}

/// Interrupts at every poll, of which meters make one in so many units of work; then the text has to be the one
/// without.
void interruptEverywhere(Setting &setting, const Owned<qoc_ocrDictionaryStringMulti> &input, std::size_t units,
                         std::string_view expected) {
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionary_runSwapCharSetMulti(setting.dictionary, input, setting.params, nullptr, results));
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(setting.resolve(input, results, resolution));
  int64_t numPolls = 0;
  for (int64_t n = 0; n <= numPolls; ++n) {
    const PollingMeters meters(units);
    const Polls polls(n);
    const qsys_status status =
        qoc_ocrDictionaryResolver_resolve(setting.resolver, input, setting.params, nullptr, results, resolution);
    EXPECT_EQ(status, polls.count() > n ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK) << "poll " << n;
    numPolls = std::max(numPolls, polls.count());
  }
  EXPECT_GT(numPolls, 2);
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, input, setting.params, nullptr, results, resolution));
  EXPECT_EQ(Setting::show(*resolution), expected);
}

TEST(ResolverEntries, AnInterruptEndsWalksWithOpenPlacesBehindAnExtraOne) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.params->returnBestOnly = 1;
  setting.addExpression("..[0-9]");
  setting.addExpression("[a-z]{5}");
  interruptEverywhere(setting, reading(U"\uF80290 \uF80190 x20 790"), 1,
                      "unsure: {F802}?7 250 +0, {F802}x7 250 +0, ?x7 250");
}

TEST(ResolverEntries, AnInterruptEndsSearchesOfLongLists) {
  std::vector<std::string> list;
  for (int32_t i = 0; i < 5000; ++i) list.push_back(std::to_string(100000 + 7 * i));
  Setting setting;
  setting.params->maxEdits = 4;
  setting.setWords(list);
  interruptEverywhere(setting, reading("190 x90 x90 x90 x90 590"), 10000,
                      "unsure: 100035 -20 +0, 100105 -20 +0, 100175 -20 +0, 100245 -20 +0, 100315 -20 +0");
}

TEST(ResolverEntries, CharactersThatNoEntryAdmitsThereDoNotMatter) {
  Setting one;
  one.addExpression("[A-Z][0-9]");
  EXPECT_EQ(both(one, "B90|889 790"), "sure: B7 180");
  Setting setting;
  setting.params->returnBestOnly = 1;
  setting.rules->maxTexts = 1;
  setting.rules->maxMargin = 20;
  setting.addExpression("[A-Z][0-9]");
  setting.addExpression("[A-Z]{2}[0-9]");
  EXPECT_EQ(both(setting, "B90|889 790"), "sure: B7 180 +20") << "no text begins with 8";
  EXPECT_EQ(both(setting, "B90|R89 790"), "unsure: B7 180 +2");
  EXPECT_EQ(both(setting, "B90|889 790|A89"), "sure: B7 180 +20");
  setting.addExpression("[0-9][A-Z]");
  EXPECT_EQ(both(setting, "B90|889 790|A89"), "unsure: B7 180 +4") << "the other entry has 8A";
}

// Records -------------------------------------------------------------------------------------------------------------

TEST(ResolverRecords, AssignedToThemselvesStay) {
  Setting setting;
  setting.setWords({"cat", "car"});
  const qoc_ocrDictionaryConfusion confusion = {'r', 't', 3, 7};
  require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&setting.rules->confusions, &confusion));
  setting.addCheck(expressionMode, 2, luhn);
  require(qoc_ocrDictionaryResolverRules_assign(setting.rules, setting.rules));
  EXPECT_EQ(setting.rules->swapPenalty, 30);
  EXPECT_EQ(elements(setting.rules->confusions)[0].listedPenalty, 3);
  EXPECT_EQ(elements(setting.rules->checks)[0].entry, 2);
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(setting.resolve(reading("c90 a90 r90|t88"), resolution));
  const std::string expected = "unsure: car 270 +4, cat 266";
  EXPECT_EQ(Setting::show(*resolution), expected);
  require(qoc_ocrDictionaryResolution_assign(resolution, resolution));
  qoc_ocrDictionaryResolvedText *text = nullptr;
  require(qstd_vector_qoc_ocrDictionaryResolvedText_getElement(&resolution->texts, 0, &text));
  require(qoc_ocrDictionaryResolvedText_assign(text, text));
  EXPECT_EQ(Setting::show(*resolution), expected);
  require(qoc_ocrDictionaryResolver_assign(setting.resolver, setting.resolver));
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionaryResolver_resolve(setting.resolver, reading("c90 a90 r90|t88"), setting.params, nullptr,
                                            results, resolution));
  EXPECT_EQ(Setting::show(*resolution), expected);
}

TEST(ResolverRecords, RulesAreRefusedWithNegativePenaltiesOfConfusionsOrTooManyTexts) {
  for (const bool isListed : {false, true}) {
    Owned<qoc_ocrDictionaryResolverRules> rules;
    const qoc_ocrDictionaryConfusion confusion = {'a', 'b', isListed ? -1 : 0, isListed ? 0 : -1};
    require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules->confusions, &confusion));
    EXPECT_EQ(qoc_ocrDictionaryResolverRules_validate(rules), QOC_STATUS_PENALTY_NEGATIVE);
  }
  Owned<qoc_ocrDictionaryResolverRules> rules;
  rules->maxTexts = 1000;
  EXPECT_EQ(qoc_ocrDictionaryResolverRules_validate(rules), QSYS_STATUS_OK);
  rules->maxTexts = 1001;
  EXPECT_EQ(qoc_ocrDictionaryResolverRules_validate(rules), QOC_STATUS_TEXTS_INVALID);
}

TEST(ResolverRecords, OutcomesHaveNames) {
  EXPECT_STREQ(qoc_ocrDictionaryOutcome_getName(qoc_ocrDictionaryOutcome_none), "none");
  EXPECT_STREQ(qoc_ocrDictionaryOutcome_getName(qoc_ocrDictionaryOutcome_sure), "sure");
  EXPECT_STREQ(qoc_ocrDictionaryOutcome_getName(3), "");
}

}  // namespace
