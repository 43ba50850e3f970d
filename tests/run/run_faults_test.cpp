// Memory that runs out: from the n-th allocation on, for every n, over lexicons, dictionaries, their runs and result
// sets.

#include <functional>

#include "run/result_set_ops.hpp"
#include "run/run_builders.hpp"
#include "support/allocator.hpp"
#include "support/fieldings.hpp"
#include "support/heap.hpp"

namespace {

using namespace qoc::test;

/// Objects that live through a failure and are used again after it.
struct Objects {
  Owned<qstd_vector_qoc_ocrDictionaryString> list = words({"abc", "abd", "ab", "xyz", "abcd"});
  Owned<qoc_ocrDictionaryString> added = word("zabc");
  Owned<qoc_ocrDictionaryStringMulti> input = reading("a|x b c|d");
  Owned<qoc_ocrDictionaryRunParams> params = runParams({.maxEdits = 2, .returnBestOnly = 0, .matchOption9 = 1});
  Owned<qoc_ocrDictionaryRunParams> oneEdit = runParams({.maxEdits = 1, .returnBestOnly = 0, .finalizeEachResult = 1});
  Owned<qoc_ocrDictionaryLexicon> lexicon;
  Owned<qoc_ocrDictionary> dictionary;
  Owned<qoc_ocrDictionaryResultSet> results, oneEditResults, merged;
};

/// Uses everything; the objects are set anew, so the outcome does not depend on what happened to them before.
qsys_status script(Objects &o) {
#define QOC_TEST_STEP(call)          \
  do {                               \
    const qsys_status status = call; \
    if (status < 0) return status;   \
  } while (false)
  QOC_TEST_STEP(qoc_ocrDictionaryLexicon_setStrings(o.lexicon, o.list));
  QOC_TEST_STEP(qoc_ocrDictionaryLexicon_addString(o.lexicon, o.added));
  QOC_TEST_STEP(qoc_ocrDictionaryLexicon_addStringT(o.lexicon, "bb"));
  QOC_TEST_STEP(qoc_ocrDictionaryLexicon_removeString(o.lexicon, o.added));
  QOC_TEST_STEP(qoc_ocrDictionary_setLexiconIExtend(o.dictionary, 1, o.lexicon));
  QOC_TEST_STEP(qoc_ocrDictionaryLexicon_setStringsSafe(o.lexicon, o.list));
  QOC_TEST_STEP(qoc_ocrDictionary_setLexiconI(o.dictionary, 0, o.lexicon));
  QOC_TEST_STEP(qoc_ocrDictionary_getLexiconI(o.dictionary, 1, o.lexicon));
  QOC_TEST_STEP(qoc_ocrDictionary_runMulti(o.dictionary, o.input, o.params, o.results));
  QOC_TEST_STEP(qoc_ocrDictionary_runMulti(o.dictionary, o.input, o.oneEdit, o.oneEditResults));
  QOC_TEST_STEP(qoc_ocrDictionaryResultSet_assign(o.merged, o.results));
  QOC_TEST_STEP(qoc_ocrDictionaryResultSet_merge(o.merged, o.oneEditResults, o.params));
  QOC_TEST_STEP(qoc_ocrDictionaryResultSet_finalize(o.merged, o.params));
#undef QOC_TEST_STEP
  return QSYS_STATUS_OK;
}

std::string outcome(const Objects &o) {
  return describe(*o.results) + describe(*o.oneEditResults) + describe(*o.merged);
}

TEST(RunFaults, GiveANegativeStatusLeakNothingAndLeaveTheObjectsUsable) {
  LibraryAllocator memory;
  std::string expected;
  {
    Objects o;
    ASSERT_EQ(script(o), QSYS_STATUS_OK);
    expected = outcome(o);
  }
  ASSERT_EQ(memory.numLive(), 0);
  ASSERT_NE(expected.find("abc"), std::string::npos);

  bool isComplete = false;
  for (int64_t n = 0; !isComplete && !HasFailure(); ++n) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    {
      Objects o;
      memory.failFrom(n);
      const qsys_status status = script(o);
      memory.failFrom(-1);

      isComplete = status >= 0;
      if (!isComplete) {
        EXPECT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
        EXPECT_EQ(script(o), QSYS_STATUS_OK);
      }
      EXPECT_EQ(outcome(o), expected);
    }
    EXPECT_EQ(memory.numLive(), 0);
  }
}

TEST(RunFaults, OfTheHeapGiveANegativeStatusAndLeaveTheObjectsUsable) {
  LibraryAllocator memory;
  std::string expected;
  {
    Objects o;
    ASSERT_EQ(script(o), QSYS_STATUS_OK);
    expected = outcome(o);
  }

  bool isComplete = false;
  for (int64_t n = 0; !isComplete && !HasFailure(); ++n) {
    SCOPED_TRACE("use " + std::to_string(n) + " of operator new");
    {
      Objects o;
      qsys_status status = 0;
      {
        HeapFault fault(n);
        status = script(o);
      }
      isComplete = status >= 0;
      if (!isComplete) {
        EXPECT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
        EXPECT_EQ(script(o), QSYS_STATUS_OK);
      }
      EXPECT_EQ(outcome(o), expected);
    }
    EXPECT_EQ(memory.numLive(), 0);
  }
}

/// Lets every allocation of operation(object) fail, and every use of the C++ heap; the object is make()'s, anew.
template <class Make, class Operation>
void failEverywhere(Make make, Operation operation) {
  LibraryAllocator memory;
  int numFailures = 0;
  for (const bool isOfHeap : {false, true}) {
    bool isComplete = false;
    for (int64_t n = 0; !isComplete; n += n < 500 ? 1 : n / 4) {
      SCOPED_TRACE((isOfHeap ? "use of the heap " : "allocation ") + std::to_string(n));
      {
        auto object = make();
        qsys_status status = 0;
        if (isOfHeap) {
          HeapFault fault(n);
          status = operation(object);
        } else {
          memory.failFrom(n);
          status = operation(object);
          memory.failFrom(-1);
        }
        isComplete = status >= 0;
        numFailures += isComplete ? 0 : 1;
        EXPECT_TRUE(isComplete || status == QSYS_STATUS_OUT_OF_MEMORY) << qoc_status_getName(status);
      }
      EXPECT_EQ(memory.numLive(), 0);
    }
    EXPECT_TRUE(isComplete);
  }
  EXPECT_GT(numFailures, 0);
}

TEST(RunFaults, OfFinishingResultsThatShareWhatTheyShow) {
  failEverywhere(
      [] {
        Owned<qoc_ocrDictionaryResultSet> set;
        require(qoc_ocrDictionary_runMulti(dictionaryOf({{"abc", "abd", "abe"}}), reading("a b c"),
                                           runParams({.maxEdits = 1, .returnBestOnly = 0}), set));
        EXPECT_EQ(set->results.core.size, 3);
        for (qoc_ocrDictionaryResult &result : qoc::edit(set->results)) {
          require(qoc_ocrDictionaryStringMulti_assign(&result.valid, &result.given));
          result.isComputed = 1;
          result.numEdits = 3 - result.orderIndex;  // No longer in order.
          require(qstd_vector_qoc_ocrDictionaryPositionStatus_assign(
              &result.resultStringStatus, vectorOf<StatusVector>(Statuses{inserted, primary, primary})));
        }
        return set;
      },
      [](Owned<qoc_ocrDictionaryResultSet> &set) {
        const auto params = runParams({.returnBestOnly = 0, .finalizeEachResult = 1});
        return qoc_ocrDictionaryResultSet_finalize(set, params);
      });
}

TEST(RunFaults, OfMatchingLongWords) {
  struct Objects {
    Owned<qoc_ocrDictionaryLexicon> words;
    Owned<qoc_ocrDictionaryStringMulti> read;
    Owned<qoc_ocrDictionaryResultSet> results;
  };
  const std::string text(2600, 'a');  // Three lists of statuses fill a block of them.
  failEverywhere(
      [&] {
        return Objects{lexicon({text + "b", text + "c", text + "d", text + "e"}), plain(text + "x"), {}};
      },
      [](Objects &objects) {
        const auto params = runParams({.maxEdits = 1, .returnBestOnly = 0});
        return qoc_ocrDictionaryLexicon_matchMulti(objects.words, objects.read, params, nullptr, objects.results);
      });
}

TEST(RunFaults, OfLongLinesAndExpressions) {
  struct Objects {
    Owned<qoc_ocrDictionaryLineFielding> fitting;
    Owned<qoc_ocrDictionaryRegularExpression> expression;
    Owned<qoc_ocrDictionaryStringMulti> read;
    Owned<qoc_ocrDictionaryResultSet> results;
  };
  const std::string text(3000, 'a');
  failEverywhere(
      [&] {
        Objects objects{line(text), {}, plain(text), {}};
        require(qoc_ocrDictionaryRegularExpression_setStringT(objects.expression, L"a*"));
        return objects;
      },
      [](Objects &objects) {
        const qsys_status status =
            qoc_ocrDictionaryLineFielding_matchMulti(objects.fitting, objects.read, nullptr, nullptr, objects.results);
        return status < 0 ? status
                          : qoc_ocrDictionaryRegularExpression_matchMulti(objects.expression, objects.read, nullptr,
                                                                          nullptr, objects.results);
      });
}

TEST(RunFaults, OfAdmittingEquivalents) {
  struct Objects {
    Owned<qoc_ocrDictionaryLineFielding> fitting;
    Owned<qoc_swapCharSet> set;
    Owned<qoc_ocrDictionaryStringMulti> read;
    Owned<qoc_ocrDictionaryResultSet> results;
  };
  failEverywhere(
      [] {
        return Objects{line("99"), swaps({U"O0", U"l1"}), plain("Ol"), {}};
      },
      [](Objects &objects) {
        const auto params = runParams();
        return qoc_ocrDictionaryLineFielding_matchMulti(objects.fitting, objects.read, params, objects.set,
                                                        objects.results);
      });
}

TEST(RunFaults, OfListingIndices) {
  using Objects = std::pair<Owned<qoc_ocrDictionaryResult>, Owned<qstd_vector32s>>;
  for (const auto list : {qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters,
                          qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices}) {
    failEverywhere(
        [] {
          return Objects(result({.given = "a b", .statuses = {primary, inserted, primary}}), {});
        },
        [list](Objects &objects) { return list(objects.first, objects.second); });
  }
}

TEST(RunFaults, OfTakingInsertedPositionsOut) {
  failEverywhere(
      [] {
        Owned<qoc_ocrDictionaryResultSet> set;
        require(qoc_ocrDictionary_runMulti(dictionaryOf({{"abcd", "xabc"}}), reading("a b c"),
                                           runParams({.maxEdits = 1, .returnBestOnly = 0}), set));
        EXPECT_GE(set->results.core.size, 1);
        return set;
      },
      [](Owned<qoc_ocrDictionaryResultSet> &set) {
        const auto params = runParams({.returnBestOnly = 0, .finalizeEachResult = 1});
        return qoc_ocrDictionaryResultSet_finalize(set, params);
      });
}

TEST(RunFaults, OfTakingOverResultsOutOfOrder) {
  using Objects = std::pair<Owned<qoc_ocrDictionaryResultSet>, Owned<qoc_ocrDictionaryResultSet>>;
  failEverywhere(
      [] {
        return Objects({}, resultSet({{.given = "a", .numEdits = 2}, {.given = "b"}}));
      },
      [](Objects &objects) { return qoc::mergeTaking(*objects.first, *objects.second, nullptr); });
}

TEST(RunFaults, OfFilingResultsInBuckets) {
  using Objects = std::pair<Owned<Buckets>, Owned<ResultVector>>;
  failEverywhere(
      [] {
        return Objects({}, resultVector({{.given = "a", .numEdits = 2}, {.given = "b"}}));
      },
      [](Objects &objects) { return qoc_ocrDictionaryResultBuckets_addVector(objects.first, objects.second); });
}

TEST(RunFaults, LeaveNothingOfAnObjectThatCouldNotBeConstructed) {
  LibraryAllocator memory;
  const auto list = words({"abc", "ab"});
  const auto dictionary = dictionaryOf({{"abc"}, {"ab"}});
  const auto set = resultSet({{.given = "a b", .word = "ab", .statuses = {primary, primary}, .deleted = {1}}});
  const std::function<qsys_status()> constructions[] = {
      [&] {
        qoc_ocrDictionaryLexicon object;
        const qsys_status status = qoc_ocrDictionaryLexicon_constructStrings(&object, list);
        return status < 0 ? status : qoc_ocrDictionaryLexicon_destruct(&object);
      },
      [&] {
        qoc_ocrDictionary object;
        const qsys_status status = qoc_ocrDictionary_constructCopy(&object, dictionary);
        return status < 0 ? status : qoc_ocrDictionary_destruct(&object);
      },
      [&] {
        qoc_ocrDictionaryResultSet object;
        const qsys_status status = qoc_ocrDictionaryResultSet_constructCopy(&object, set);
        return status < 0 ? status : qoc_ocrDictionaryResultSet_destruct(&object);
      }};

  for (const auto &construction : constructions) {
    SCOPED_TRACE(&construction - constructions);
    const int64_t numLive = memory.numLive();
    bool isComplete = false;
    for (int64_t n = 0; !isComplete; ++n) {
      SCOPED_TRACE("allocation " + std::to_string(n));
      memory.failFrom(n);
      const qsys_status status = construction();
      memory.failFrom(-1);
      isComplete = status >= 0;
      EXPECT_TRUE(isComplete || status == QSYS_STATUS_OUT_OF_MEMORY) << qoc_status_getName(status);
      EXPECT_EQ(memory.numLive(), numLive);
    }
  }
}

}  // namespace
