// The resolver on readings written by hand.

#include <qoc/resolver.h>

#include "resolve/setting.hpp"
#include "support/allocator.hpp"
#include "support/heap.hpp"

namespace {

using namespace qoc::test;

TEST(Resolver, TakesTheCandidatesThatTheEntryAdmitsByTheirScores) {
  Setting setting;
  setting.addLine("A99");
  EXPECT_EQ(setting("890|B80 190|789|I20 O70|060"), "unsure: B10 228 +2, B70 226");
  setting.rules->minMargin = 2;
  EXPECT_EQ(setting("890|B80 190|789|I20 O70|060"), "sure: B10 228 +2, B70 226");
}

TEST(Resolver, TakesNoTextWhereNothingFits) {
  Setting setting;
  setting.addLine("A99");
  EXPECT_EQ(setting("850 150"), "none");
  EXPECT_EQ(setting(""), "none");
}

TEST(Resolver, CountsNoCandidateForMoreThanTheFirst) {
  Setting setting;
  setting.addLine("9");
  EXPECT_EQ(setting("170|790"), "unsure: 1 70 +0, 7 70");
}

TEST(Resolver, GivesASwapTheScoreOfItsCandidateLessAPenalty) {
  Setting setting;
  setting.addLine("A");
  require(qoc_swapCharSet_setSingleSwap(setting.swaps, '0', 'O'));
  EXPECT_EQ(setting("090|D50"), "sure: O 60 +11, D 49");
  const qoc_ocrDictionaryConfusion confusion = {'0', 'O', 0, 12};
  require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&setting.rules->confusions, &confusion));
  EXPECT_EQ(setting("090|D50"), "sure: O 78 +29, D 49");
}

TEST(Resolver, WeighsAListedConfusionByItsOwnPenalty) {
  Setting setting;
  setting.addLine("9");
  const qoc_ocrDictionaryConfusion confusion = {'8', '0', 7, 0};
  require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&setting.rules->confusions, &confusion));
  EXPECT_EQ(setting("890|380|079"), "sure: 8 90 +11, 3 79 +7, 0 72");
}

TEST(Resolver, TakesNoMoreForAnotherCandidateThanItIsBehind) {
  Setting setting;
  setting.addLine("9");
  setting.rules->alternativePenalty = 20;
  EXPECT_EQ(setting("890|390"), "unsure: 8 90 +0, 3 90");
  EXPECT_EQ(setting("890|387"), "unsure: 8 90 +6, 3 84");
  EXPECT_EQ(setting("890|350"), "sure: 8 90 +60, 3 30");
}

TEST(Resolver, CountsMarginsAsFarAsItIsTold) {
  Setting setting;
  setting.addLine("9");
  setting.rules->maxMargin = 15;
  EXPECT_EQ(setting("890|380|060"), "sure: 8 90 +11, 3 79 +15, 0 59 +15");
  setting.rules->minMargin = 16;
  EXPECT_EQ(setting("890|350"), "sure: 8 90 +16, 3 49 +16");
}

TEST(Resolver, CallsATextWithoutScoresSureWhereNoneOtherIsAsNear) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.setWords({"cat", "car", "dog"});
  EXPECT_EQ(setting("c0 a0 r0"), "sure: car 0 +0, cat -50 +0");
  EXPECT_EQ(setting("d0 o0 x0"), "sure: dog -50 +0");
  EXPECT_EQ(setting("c0 a0 x0"), "unsure: car -50 +0, cat -50 +0");
  EXPECT_EQ(setting("c0 a0"), "unsure: car -60 +0, cat -60 +0");
  require(qoc_swapCharSet_setSingleSwap(setting.swaps, '7', 't'));
  EXPECT_EQ(setting("c0 a0 70"), "unsure: cat -30 +0, car -50 +0") << "a swap and an edit are a difference each";
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(setting.resolve(reading("c0 a0 r0"), resolution));
  EXPECT_EQ(resolution->hasScores, 0u);
  require(setting.resolve(reading("c0 a0 r1"), resolution));
  EXPECT_EQ(resolution->hasScores, 1u);
}

TEST(Resolver, DoesNotTakeAnOpenOrUncheckedTextWithoutScoresForSure) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addLine("99");
  EXPECT_EQ(setting("10"), "unsure: ?1 -60 +0, 1? -60 +0");
  setting.addCheck(qoc_ocrDictionaryMode_fielding, 0, qoc_checkDigitMethod_luhn);
  EXPECT_EQ(setting("10 80"), "sure: 18 0 +0");
  EXPECT_EQ(setting("10 70"), "unsure: 67 -50 +0, 18 -50 +0");
  setting.params->maxEdits = 0;
  EXPECT_EQ(setting("10 70"), "unsure: 17 0 +0");
}

TEST(Resolver, LeavesAnEditedPositionOpenUnlessItsShapeAdmitsOneCharacter) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addLine("A-9");
  EXPECT_EQ(setting("B90 =90 790"), "sure: B-7 130");
  EXPECT_EQ(setting("B90 790"), "sure: B-7 120");
  EXPECT_EQ(setting("B90 -90"), "unsure: B-? 120");
}

TEST(Resolver, FindsOutWhatAnExpressionAdmitsAtAnOpenPosition) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addExpression("[A-C][-][0-9]");
  EXPECT_EQ(setting("B90 =90 790"), "sure: B-7 130");
  setting.knowsDictionary = false;
  EXPECT_EQ(setting("B90 =90 790"), "unsure: B?7 130");
}

TEST(Resolver, LeavesOutAGlyphThatWasReadTwiceMoreReadilyThanAnother) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addLine("A9");
  require(qoc_swapCharSet_setSingleSwap(setting.swaps, 'u', 'U'));
  // The pair counts 90 + 90 less 40 for the doubled one; without a likeness it counts 90 less 20.
  EXPECT_EQ(setting("u90 U90 790"), "sure: U7 230");
  EXPECT_EQ(setting("k90 U90 790"), "sure: U7 160");
}

TEST(Resolver, FindsTheOneTextThatPassesItsCheckBelowThousandsThatDoNot) {
  Setting setting;
  setting.addLine("999999999999999");
  std::string input;
  for (int i = 0; i < 15; ++i) input += std::string(i > 0 ? " " : "") + (i == 0 ? "190|489" : "190|788");
  setting.addCheck(qoc_ocrDictionaryMode_fielding, 0, qoc_checkDigitMethod_luhn);
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(setting.resolve(reading(input), resolution));
  const auto texts = elements(resolution->texts);
  ASSERT_EQ(texts.size(), 5u);
  qsys_bool isValid = 0;
  Owned<qoc_checkDigitRule> luhn;
  for (const qoc_ocrDictionaryResolvedText &text : texts) {
    EXPECT_EQ(text.passesCheck, 1u);
    require(qoc_checkDigitRule_isValid(luhn, &text.text, &isValid));
    EXPECT_EQ(isValid, 1u) << show(text.text);
  }
}

TEST(Resolver, FindsAnUnreadableDigitThroughTheCheck) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.addExpression("[0-9]{11}");
  setting.addCheck(qoc_ocrDictionaryMode_regularExpression, 0, qoc_checkDigitMethod_luhn);
  EXPECT_EQ(setting("790 990 990 290 ?90 390 990 890 790 190 390").substr(0, 17), "sure: 79927398713");
}

TEST(Resolver, GivesTextsThatFailTheirCheckOnlyWhereNonePasses) {
  Setting setting;
  setting.addLine("99999999999");
  setting.addCheck(qoc_ocrDictionaryMode_fielding, 0, qoc_checkDigitMethod_luhn);
  EXPECT_EQ(setting("790 990 990 290 790 390 990 890 790 190 090|340"), "sure: 79927398713 939");
  EXPECT_EQ(setting("790 990 990 290 790 390 990 890 790 190 090"), "unsure: 79927398710 990");
}

TEST(Resolver, CanDemandACheck) {
  Setting setting;
  setting.addLine("99");
  setting.rules->requiresCheck = 1;
  EXPECT_EQ(setting("190 890"), "unsure: 18 180");
  setting.addCheck(qoc_ocrDictionaryMode_fielding, 0, qoc_checkDigitMethod_luhn);
  EXPECT_EQ(setting("190 890"), "sure: 18 180");
}

TEST(Resolver, SeesTheWordThatTheSetDropsBecauseItRanksEqually) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.setWords({"cat", "car"});
  Owned<qoc_ocrDictionaryResultSet> results;
  const auto input = reading("c90 a90 x90");
  require(qoc_ocrDictionary_runMulti(setting.dictionary, input, setting.params, results));
  ASSERT_EQ(resultsOf(*results).size(), 1u) << "the set shows one of them";
  EXPECT_EQ(setting("c90 a90 x90"), "unsure: car 130 +0, cat 130");
}

TEST(Resolver, CallsNoTextSureThatAnotherOneEquals) {
  Setting setting;
  setting.rules->minMargin = 0;
  setting.params->maxEdits = 1;
  setting.setWords({"cat", "car"});
  EXPECT_EQ(setting("c90 a90 x90"), "unsure: car 130 +0, cat 130");
  EXPECT_EQ(setting("c90 a90 r90"), "sure: car 270 +140, cat 130");
}

TEST(Resolver, SeesTheWordWithoutACharacterThatMayBeNoneAtAll) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.params->returnBestOnly = 1;
  setting.rules->maxTexts = 1;
  const qoc_ocrDictionaryConfusion phantom = {' ', QOC_CHAR_EMPTY, 0, 5};
  require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&setting.rules->confusions, &phantom));
  setting.rules->maxMargin = 20;
  setting.setWords({"to day", "today", "to night"});
  EXPECT_EQ(setting("t90 o90  90 d90 a90 y90"), "unsure: to day 540 +5");
  setting.setWords({"to day", "to night"});
  EXPECT_EQ(setting("t90 o90  90 d90 a90 y90"), "sure: to day 540 +20");
  setting.params->maxEdits = 2;
  setting.setWords({"a b c", "abc"});
  EXPECT_EQ(setting("a90  90 b90  90 c90"), "sure: a b c 450 +10");
}

TEST(Resolver, SeesTheNextWordThatABestOnlyRunDoesNotGive) {
  Setting setting;
  setting.params->returnBestOnly = 1;
  setting.setWords({"cat", "car", "dog"});
  EXPECT_EQ(setting("c90 a90 r90|t88"), "unsure: car 270 +3, cat 267");
}

TEST(Resolver, SeesTheOtherShapesThatABestOnlyRunDoesNotGive) {
  Setting setting;
  setting.params->returnBestOnly = 1;
  setting.addLine("9A");
  setting.addLine("A9");
  EXPECT_EQ(setting("890|B85 B90|880"), "sure: 8B 180 +17, B8 163");
}

TEST(Resolver, CountsMultiCharacterSwapsOfWordsAndShapesAlike) {
  Setting setting;
  constexpr Char32 single[] = {'m'}, pair[] = {'r', 'n'};
  Owned<qstd_vector_qoc_swapChar> list;
  Owned<qoc_swapChar> made;
  require(qstd_vectorChar32_assignElements(&made->first, single, 1));
  require(qstd_vectorChar32_assignElements(&made->second, pair, 2));
  require(qstd_vector_qoc_swapChar_pushBack(list, made));
  require(qoc_swapCharSet_setSwapCharacters(setting.swaps, list));
  setting.setWords({"yarns", "yams", "rnd"});
  EXPECT_EQ(setting("m90 d90"), "sure: rnd 150") << "where it begins the word";
  EXPECT_EQ(setting("y90 a90 m90 s90"), "sure: yams 360 +30, yarns 330");
  EXPECT_EQ(setting("y90 a90 r90 n90 s90"), "sure: yarns 450 +30, yams 420");
  Setting shape;
  require(qoc_swapCharSet_assign(shape.swaps, setting.swaps));
  shape.addExpression("(yarns)|(yams)");
  EXPECT_EQ(shape("y90 a90 m90 s90"), "sure: yams 360 +30, yarns 330");
  EXPECT_EQ(shape("y90 a90 r90 n90 s90"), "sure: yarns 450 +30, yams 420");
}

TEST(Resolver, MeasuresTheMarginAgainstFreeTextToo) {
  Setting setting;
  setting.setWords({"tea"});
  setting.params->maxEdits = 1;
  setting.rules->freeWord = {10, 20, 50};
  setting.rules->leadCap = 30;
  // Free text loses 10 and, for each position, 20 and half of the lead: 10 + 2 * 20 + 15 + 5; "tea" loses 60.
  EXPECT_EQ(setting("t90 e90|c80"), "sure: tea 120 +10");
}

TEST(Resolver, SaysWhereEveryCharacterComesFrom) {
  Setting setting;
  setting.params->maxEdits = 1;
  setting.setWords({"cart"});
  require(qoc_swapCharSet_setSingleSwap(setting.swaps, '4', 'a'));
  Owned<qoc_ocrDictionaryResolution> resolution;
  require(setting.resolve(reading("c90 x90|440 t80"), resolution));
  const auto &text = elements(resolution->texts)[0];
  EXPECT_EQ(show(text.text.characters), "cart");
  EXPECT_EQ(values(text.inputIndices), (std::vector<int32_t>{0, 1, -1, 2}));
  EXPECT_EQ(values(text.candidateIndices), (std::vector<int32_t>{0, 1, -1, 0}));
  EXPECT_EQ(text.mode, qoc_ocrDictionaryMode_lexicon);
  EXPECT_EQ(text.resultIndex, 0);
  EXPECT_EQ(elements(text.text.characters)[1].score, 40);
}

TEST(Resolver, CopiesShareWhatTheyKnow) {
  Setting setting;
  setting.setWords({"cat", "car"});
  EXPECT_EQ(setting("c90 a90 r90|t88"), "unsure: car 270 +3, cat 267");
  const Owned<qoc_ocrDictionaryResolver> copy(*setting.resolver);
  Owned<qoc_ocrDictionaryResolution> resolution;
  const Owned<qoc_ocrDictionaryResultSet> nothing;
  require(qoc_ocrDictionaryResolver_resolve(copy, reading("c90 a90 r90|t88"), setting.params, nullptr, nothing,
                                            resolution));
  EXPECT_EQ(elements(resolution->texts).size(), 2u);
}

TEST(ResolverRules, AreRefusedWithNegativePenaltiesOrNoTexts) {
  Owned<qoc_ocrDictionaryResolver> resolver;
  Owned<qoc_ocrDictionaryResolverRules> rules;
  EXPECT_EQ(qoc_ocrDictionaryResolver_setRules(resolver, rules), QSYS_STATUS_OK);
  rules->swapPenalty = -1;
  EXPECT_EQ(qoc_ocrDictionaryResolver_setRules(resolver, rules), QOC_STATUS_PENALTY_NEGATIVE);
  rules->swapPenalty = 1;
  rules->maxTexts = 0;
  EXPECT_EQ(qoc_ocrDictionaryResolver_setRules(resolver, rules), QOC_STATUS_TEXTS_INVALID);
  rules->maxTexts = 1;
  Owned<qoc_ocrDictionaryEntryCheck> check;
  check->rule.method = 0;
  require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules->checks, check));
  EXPECT_EQ(qoc_ocrDictionaryResolver_setRules(resolver, rules), QOC_STATUS_CHECK_METHOD_INVALID);
  EXPECT_EQ(resolver->rules.maxTexts, 5);
}

TEST(Resolver, EndsWhenInterrupted) {
  Setting setting;
  setting.setWords({"cat", "car"});
  setting.addLine("AAA");
  Owned<qoc_ocrDictionaryResultSet> results;
  const auto input = reading("c90 a90 r90|t88");
  require(qoc_ocrDictionary_runMulti(setting.dictionary, input, setting.params, results));
  require(qoc_ocrDictionaryResolver_setDictionary(setting.resolver, setting.dictionary));
  Owned<qoc_ocrDictionaryResolution> resolution;
  qsys_attention_setHandler([](void *) -> qsys_status { return interruption; }, nullptr);
  EXPECT_EQ(qoc_ocrDictionaryResolver_resolve(setting.resolver, input, setting.params, nullptr, results, resolution),
            interruption);
  qsys_attention_setHandler(nullptr, nullptr);
}

/// Every fault of memory in a resolver that learns the rules and the dictionary, and resolves; afterwards it gives what
/// it gave before.
void expectFaultsToBeStatuses(LibraryAllocator &memory, Setting &setting,
                              const Owned<qoc_ocrDictionaryStringMulti> &input) {
  const std::string expected = setting(input);
  ASSERT_NE(expected, "none");
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionary_runMulti(setting.dictionary, input, setting.params, results));
  for (const bool isHeap : {false, true}) {
    bool isComplete = false;
    for (int64_t n = 0; !isComplete && !testing::Test::HasFailure(); ++n) {
      SCOPED_TRACE((isHeap ? "use of operator new " : "allocation ") + std::to_string(n));
      Owned<qoc_ocrDictionaryResolver> resolver;
      Owned<qoc_ocrDictionaryResolution> resolution;
      qsys_status status = 0;
      const auto act = [&] {
        status = qoc_ocrDictionaryResolver_setRules(resolver, setting.rules);
        if (status >= 0) status = qoc_ocrDictionaryResolver_setDictionary(resolver, setting.dictionary);
        if (status >= 0) {
          status =
              qoc_ocrDictionaryResolver_resolve(resolver, input, setting.params, setting.swaps, results, resolution);
        }
      };
      if (isHeap) {
        HeapFault fault(n);
        act();
      } else {
        memory.failFrom(n);
        act();
        memory.failFrom(-1);
      }
      isComplete = status >= 0;
      EXPECT_TRUE(isComplete || status == QSYS_STATUS_OUT_OF_MEMORY) << qoc_status_getName(status);
    }
  }
  EXPECT_EQ(setting(input), expected);
}

TEST(ResolverFaults, OfAllocationsAreStatusesAndLeakNothing) {
  LibraryAllocator memory;
  {
    Setting setting;
    setting.params->maxEdits = 1;
    setting.setWords({"B817", "8B17", "BB11"});
    setting.addLine("A999");
    setting.addExpression("[0-9][A-Z][0-9]{2}");
    setting.addCheck(qoc_ocrDictionaryMode_regularExpression, 0, qoc_checkDigitMethod_mod37x2);
    expectFaultsToBeStatuses(memory, setting, reading("890|B85 B90|880 190 x90|740"));
  }
  EXPECT_EQ(memory.numLive(), 0);
}

TEST(ResolverFaults, OfAllocationsWhereAMatchTellsWhatMayStandInAnOpenPlaceAreStatuses) {
  LibraryAllocator memory;
  for (const bool isChecked : {false, true}) {
    Setting setting;
    setting.params->maxEdits = 1;
    setting.params->returnBestOnly = 1;
    setting.addExpression(".-[0-9]");
    if (!isChecked) {
      setting.addExpression("[0-9]-.");
    } else {
      setting.params->matchOption4 = 0;  // Positions that are left out take the match at once.
      setting.addCheck(qoc_ocrDictionaryMode_regularExpression, 0, qoc_checkDigitMethod_luhn, {{2, 3}, {2, 3}});
    }
    for (const std::u32string_view input :
         {U"\uF80290 =90 090", U"\uF80290 -90 090", U"\uF80290 -90 ~", U"\uF80290 -90"}) {
      ASSERT_NO_FATAL_FAILURE(expectFaultsToBeStatuses(memory, setting, reading(input)));
    }
  }
  EXPECT_EQ(memory.numLive(), 0);
}

}  // namespace
