// Runs on several threads at once: one dictionary that nobody changes serves them all.

#include <atomic>
#include <optional>
#include <thread>

#include <qoc/resolver.h>

#include "run/run_builders.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

constexpr int numThreads = 4;

/// Two capital letters and two digits.
Owned<qoc_ocrDictionaryLineFielding> codeLine() {
  Owned<qoc_ocrDictionaryLineFielding> made;
  for (const uint32_t bits : {QOC_FIELDING_UPPER, QOC_FIELDING_UPPER, QOC_FIELDING_DIGIT, QOC_FIELDING_DIGIT}) {
    const Owned<qoc_ocrDictionaryPositionFielding> position([&](qoc_ocrDictionaryPositionFielding *fielding) {
      return qoc_ocrDictionaryPositionFielding_constructFieldingBits(fielding, bits);
    });
    require(qstd_vector_qoc_ocrDictionaryPositionFielding_pushBack(&made->positions, position));
  }
  return made;
}

/// Entries of every kind under a swap set with groups that share a character, a one-to-two and a two-to-two swap.
Owned<qoc_ocrDictionary> mixedDictionary() {
  auto dictionary = dictionaryOf({{"m0d", "corner", "modem"}, {"uucorn", "barn"}});
  require(qoc_ocrDictionary_setFieldingIExtend(dictionary, 0, codeLine()));
  Owned<qoc_ocrDictionaryRegularExpression> expression;
  require(qoc_ocrDictionaryRegularExpression_setStringT(expression, L"(ba|co)[a-z]+|[A-Z]{2}[0-9]+"));
  require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, 0, expression));
  require(qoc_ocrDictionary_setSwapCharSet(dictionary,
                                           setOfSwaps({{U"0", U"O"}, {U"O", U"D"}, {U"m", U"rn"}, {U"vv", U"uu"}})));
  return dictionary;
}

std::string resultsOfRun(const qoc_ocrDictionary *dictionary, std::string_view text,
                         const qoc_ocrDictionaryRunParams *params) {
  Owned<qoc_ocrDictionaryResultSet> set;
  require(qoc_ocrDictionary_runMulti(dictionary, reading(text), params, set));
  return describe(*set);
}

const std::vector<std::string_view> texts = {"r|x n O d", "c o m e r", "v v c o r n", "b a m", "A D|8 O 1", "q"};

/// Calls work(t) on several threads, which start together.
template <class Work>
void onThreads(Work work) {
  std::atomic<int> numWaiting = numThreads;
  std::vector<std::thread> threads;
  for (int t = 0; t < numThreads; ++t) {
    threads.emplace_back([&, t] {
      for (--numWaiting; numWaiting > 0;) {}
      work(t);
    });
  }
  for (std::thread &thread : threads) {
    thread.join();
  }
}

TEST(DictionaryThreads, OfRunsWithSwapsGetTheResultsOfOneAlone) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  std::vector<std::string> expected;
  const auto own = mixedDictionary();
  for (const std::string_view text : texts) {
    expected.push_back(resultsOfRun(own, text, params));
  }
  ASSERT_NE(expected[0].find("m0d"), std::string::npos);
  ASSERT_NE(expected[2].find("uucorn"), std::string::npos);

  // Nothing has been asked of the shared dictionary before, so that a run that still had to fill something would race.
  const auto shared = mixedDictionary();
  std::atomic<int> numWrong = 0;
  onThreads([&](int t) {
    for (std::size_t i = 0; i < 5 * texts.size(); ++i) {
      const std::size_t each = (i + static_cast<std::size_t>(t)) % texts.size();
      numWrong += resultsOfRun(shared, texts[each], params) == expected[each] ? 0 : 1;
    }
  });
  EXPECT_EQ(numWrong, 0);
}

TEST(DictionaryThreads, ThatAskALargeLexiconTogetherForTheFirstTimeGetTheResultsOfOneAlone) {
  std::vector<std::string> list;
  for (int i = 0; i < 5000; ++i) {
    list.push_back("w" + std::to_string(100000 + 17 * i));
  }
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  const auto own = dictionaryOf({list});
  const std::string expected = resultsOfRun(own, "w 1 0 0 0 1 x", params);
  ASSERT_NE(expected.find("w100017"), std::string::npos);
  // Whoever comes second waits for what the first one makes.
  for (int round = 0; round < 10; ++round) {
    auto shared = dictionaryOf({});
    auto entry = lexicon(list);
    require(qoc_ocrDictionaryLexicon_addString(entry, word("added")));  // What words are found by is made by the match.
    require(qoc_ocrDictionary_setLexiconIExtend(shared, 0, entry));
    std::atomic<int> numWrong = 0;
    onThreads([&](int) { numWrong += resultsOfRun(shared, "w 1 0 0 0 1 x", params) == expected ? 0 : 1; });
    EXPECT_EQ(numWrong, 0);
  }
}

TEST(DictionaryThreads, MayCopyADictionaryThatOthersRunAndChangeTheirCopies) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  const auto shared = mixedDictionary();
  const std::string expected = resultsOfRun(shared, "b a m", params), none = resultsOfRun(shared, "z z z z", params);
  std::atomic<int> numWrong = 0;
  onThreads([&](int t) {
    for (int i = 0; i < 10; ++i) {
      Owned<qoc_ocrDictionary> copy;
      require(qoc_ocrDictionary_assign(copy, shared));
      numWrong += resultsOfRun(t % 2 == 0 ? copy : shared, "b a m", params) == expected ? 0 : 1;
      Owned<qoc_ocrDictionaryLexicon> lexicon;
      require(qoc_ocrDictionary_getLexiconI(copy, 0, lexicon));
      require(qoc_ocrDictionaryLexicon_addString(lexicon, word("zzzz")));
      require(qoc_ocrDictionary_setLexiconI(copy, 0, lexicon));
      numWrong +=
          resultsOfRun(copy, "z z z z", params) != none && resultsOfRun(shared, "z z z z", params) == none ? 0 : 1;
    }
  });
  EXPECT_EQ(numWrong, 0);
}

TEST(DictionaryThreads, OfAResolverGetTheTextsOfOneAlone) {
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  const auto dictionary = mixedDictionary();
  Owned<qoc_ocrDictionaryResolver> resolver;
  require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionary));
  const auto resolve = [&](std::string_view text) {
    Owned<qoc_ocrDictionaryResultSet> results;
    require(qoc_ocrDictionary_runMulti(dictionary, reading(text), params, results));
    Owned<qoc_ocrDictionaryResolution> resolution;
    require(qoc_ocrDictionaryResolver_resolve(resolver, reading(text), params, nullptr, results, resolution));
    const auto resolved = elements(resolution->texts);
    return resolved.empty() ? std::string("none") : show(resolved[0].text) + std::to_string(resolved[0].margin);
  };
  std::vector<std::string> expected;
  for (const std::string_view text : texts) {
    expected.push_back(resolve(text));
  }
  ASSERT_NE(expected[3], "none");
  std::atomic<int> numWrong = 0;
  onThreads([&](int t) {
    for (std::size_t i = 0; i < 2 * texts.size(); ++i) {
      const std::size_t each = (i + static_cast<std::size_t>(t)) % texts.size();
      numWrong += resolve(texts[each]) == expected[each] ? 0 : 1;
    }
  });
  EXPECT_EQ(numWrong, 0);
}

TEST(DictionaryThreads, MayEachMakeAResolverOfADictionaryThatGoesAway) {
  std::vector<std::string> list;
  for (int i = 0; i < 5000; ++i) list.push_back("w" + std::to_string(100000 + 17 * i));
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  const Owned<qoc_ocrDictionaryResultSet> nothingRun;
  for (int round = 0; round < 5; ++round) {
    // Nothing has been asked of it before: one of the threads makes what words are found by, for all.
    std::optional<Owned<qoc_ocrDictionary>> shared(dictionaryOf({list}));
    std::atomic<int> numReady = 0, numWrong = 0;
    onThreads([&](int t) {
      Owned<qoc_ocrDictionaryResolver> resolver;
      require(qoc_ocrDictionaryResolver_setDictionary(resolver, *shared));
      ++numReady;
      while (numReady < numThreads) {}
      if (t == 0) shared.reset();
      Owned<qoc_ocrDictionaryResolution> resolution;
      require(qoc_ocrDictionaryResolver_resolve(resolver, reading("w 1 0 0 0 1 x"), params, nullptr, nothingRun,
                                                resolution));
      const auto texts = elements(resolution->texts);
      numWrong += !texts.empty() && show(texts[0].text) == "w100017" ? 0 : 1;
    });
    EXPECT_EQ(numWrong, 0);
  }
}

TEST(DictionaryThreads, AnInterruptOfOneThreadLeavesTheOthersAlone) {
  const auto shared = mixedDictionary();
  const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
  const std::string expected = resultsOfRun(shared, "c o m e r", params);
  std::atomic<int32_t> stop = 0;
  std::atomic<int> numWrong = 0;
  qsys_status ended = QSYS_STATUS_OK;

  std::thread interrupted([&] {
    require(qsys_attention_setHandler(qsys_attention_flagHandler, &stop));
    while (ended == QSYS_STATUS_OK) {
      Owned<qoc_ocrDictionaryResultSet> set;
      ended = qoc_ocrDictionary_runMulti(shared, reading("c o m e r"), params, set);
    }
  });
  for (int i = 0; i < 20; ++i) {
    numWrong += resultsOfRun(shared, "c o m e r", params) == expected ? 0 : 1;
  }
  stop = 1;
  interrupted.join();

  EXPECT_EQ(ended, QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(numWrong, 0);
}

}  // namespace
}  // namespace qoc::test
