// Random cases in which everything fails that can, one after the other: memory of the library's allocator and of the
// C++ heap, and polls of the attention, also those of long loops, which here ask at every unit of work. Whatever fails,
// the operation ends with its status, and the next call with the same objects gives what it gives without.
//
// Some cases are the same in every run, so that they always reach the same places.

#include <qoc/fielding_run.h>

#include <algorithm>
#include <atomic>

#include "random/random_cases.hpp"
#include "random/random_patterns.hpp"
#include "random/swap_record.hpp"
#include "run/result_set_ops.hpp"
#include "run/run_builders.hpp"
#include "support/allocator.hpp"
#include "support/heap.hpp"
#include "support/metered.hpp"
#include "support/shortcuts.hpp"

namespace random_cases {
namespace {

using namespace qoc::test;

/// The objects of a case, and an operation on them that gives a status and an outcome.
class FaultCase {
 public:
  explicit FaultCase(Random &random)
      : alphabet_(random.oneIn(2) ? randomAlphabet(random) : randomLineAlphabet(random)) {
    toRecord(randomWords(random, alphabet_, random.oneIn(4) ? 12 : 4, 5), &words_);
    require(qoc_ocrDictionaryLexicon_setStringsSafe(&lexicon_, &words_));
    toRecord(randomWord(random, alphabet_, 5), &input_);
    toRecord(randomLineFielding(random, alphabet_, random.oneIn(10) ? 70 : 4), &line_);
    std::vector<uint32_t> letters = {'A'};
    for (const uint32_t letter : alphabet_.letters) {
      if (letter < 0x7F && letter != '-') {
        letters.push_back(letter);
      }
    }
    const std::string source = sourceOf(random, randomPattern(random, letters, random.between(1, 3)));
    require(qoc_ocrDictionaryRegularExpression_setString(expression_, stdString(source)));
    std::optional<RunParams> params = randomParams(random, 0);
    limitCount(params);
    params_ = *params;
    std::optional<Swaps> swaps = randomSwaps(random, alphabet_);
    Reading reading = randomReading(random, alphabet_, 4);
    limitVariants(reading, swaps);
    toRecord(reading, &reading_);
    swaps_.emplace(swaps);
    for (int i = 0; i < 2; ++i) {
      require(qoc_ocrDictionary_setLexiconIExtend(dictionary_, i, &lexicon_));
      require(qoc_ocrDictionary_setFieldingIExtend(dictionary_, i, &line_));
      require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary_, i, expression_));
    }
    require(qoc_ocrDictionaryFieldingRunParams_construct(&fieldingParams_));
    fieldingParams_.fieldingMode = random.below(2);
    fieldingParams_.rankingVariant = random.pick({3, 15});
    operation_ = random.below(numOperations);
    if (operation_ == 9 && random.oneIn(4)) {
      require(qstd_vector_qoc_ocrDictionaryPositionFielding_clear(&line_->positions));
    }
  }

  /// What an operation changes; made anew for each run of it, or used again.
  struct Output {
    Owned<qoc_ocrDictionaryResultSet> results;
    qsys_bool isMatch = 0;
    Owned<qstd_vector_qoc_ocrDictionaryChar> characters;
    Owned<qstd_vectorChar32> codes;
    std::string describe() const {
      return (isMatch != 0 ? "match\n" : "no match\n") + qoc::test::describe(*results) + show(*characters) + ' ' +
             testing::PrintToString(values(*codes));
    }
  };

  qsys_status run(Output &out) {
    const qoc_swapCharSet *set = swaps_->get();
    switch (operation_) {
      case 0:
        return qoc_ocrDictionary_runSwapCharSetMulti(dictionary_, &reading_, &params_, set, out.results);
      case 1:
        return qoc_ocrDictionary_runSwapCharSet(dictionary_, &input_, &params_, set, out.results);
      case 2:
        return qoc_ocrDictionaryLexicon_matchMulti(&lexicon_, &reading_, &params_, set, out.results);
      case 3:
        return qoc_ocrDictionaryLexicon_isMatchMulti(&lexicon_, &reading_, &params_, set, &out.isMatch);
      case 4:
        return qoc_ocrDictionaryLexicon_matchStrings(&lexicon_, &words_, &params_, set, out.results);
      case 5:
        return qoc_ocrDictionaryLineFielding_matchMulti(&line_, &reading_, &params_, set, out.results);
      case 6:
        return qoc_ocrDictionaryLineFielding_isMatchMulti(&line_, &reading_, &params_, set, &out.isMatch);
      case 7:
        return qoc_ocrDictionaryRegularExpression_matchMulti(expression_, &reading_, &params_, set, out.results);
      case 8:
        return qoc_ocrDictionaryRegularExpression_isMatchMulti(expression_, &reading_, &params_, set, &out.isMatch);
      case 9:
        return qoc_ocrDictionaryLineFielding_runFieldingParams(&line_, set, &reading_, &fieldingParams_, out.results);
      case 10:
        return matchPosition(out);
      default:
        return matchWordAdded(out);
    }
  }

 private:
  static constexpr int32_t numOperations = 12;

  /// What a position of a line admits, and what it admits of a reading.
  qsys_status matchPosition(Output &out) {
    if (line_->positions.core.size == 0 || reading_->positions.core.size == 0) {
      return QSYS_STATUS_OK;
    }
    const qoc_ocrDictionaryPositionFielding &position = elements(line_->positions).front();
    const qoc_ocrDictionaryCharMulti &multi = elements(reading_->positions).front();
    qsys_status status = qoc_ocrDictionaryPositionFielding_getAllFieldingCharacters(&position, out.codes);
    if (status >= 0) {
      status = qoc_ocrDictionaryPositionFielding_isMatchMulti(&position, &multi, swaps_->get(), &out.isMatch);
    }
    return status < 0 ? status
                      : qoc_ocrDictionaryPositionFielding_matchMulti(&position, &multi, swaps_->get(), out.characters);
  }

  /// A lexicon whose index is made by the match.
  qsys_status matchWordAdded(Output &out) {
    Owned<qoc_ocrDictionaryLexicon> lexicon;
    qsys_status status = qoc_ocrDictionaryLexicon_assign(lexicon, &lexicon_);
    if (status >= 0) {
      status = qoc_ocrDictionaryLexicon_addStringT(lexicon, "@@");
    }
    return status < 0 ? status
                      : qoc_ocrDictionaryLexicon_matchMulti(lexicon, &reading_, &params_, swaps_->get(), out.results);
  }

  Alphabet alphabet_;
  int32_t operation_ = 0;
  reference::HeldStrings words_;
  reference::HeldLexicon lexicon_;
  reference::HeldString input_;
  reference::HeldLineFielding line_;
  Owned<qoc_ocrDictionaryRegularExpression> expression_;
  RunParams params_{};
  qoc_ocrDictionaryFieldingRunParams fieldingParams_{};
  reference::HeldMulti reading_;
  std::optional<SwapRecord> swaps_;
  Owned<qoc_ocrDictionary> dictionary_;
};

/// Lets the n-th thing of its kind fail in the course of run(). @return its status; `hasStruck` says whether there was
/// such a thing
struct Fault {
  const char *name;
  bool mayPassUnnoticed;
  qsys_status status;
  qsys_status (*run)(FaultCase &, FaultCase::Output &, CountingAllocator &, int64_t n, bool &hasStruck);
};

void raise(void *flag) { *static_cast<std::atomic<int32_t> *>(flag) = 1; }

const Fault faults[] = {
    {"allocation", false, QSYS_STATUS_OUT_OF_MEMORY,
     [](FaultCase &c, FaultCase::Output &out, CountingAllocator &memory, int64_t n, bool &hasStruck) {
       memory.fail(n, FaultMode::once);
       const qsys_status status = c.run(out);
       memory.failFrom(-1);
       hasStruck = memory.hasFailed();
       return status;
     }},
    // A vector that cannot be shrunk to fit stays as it is.
    {"use of the heap", true, QSYS_STATUS_OUT_OF_MEMORY,
     [](FaultCase &c, FaultCase::Output &out, CountingAllocator &, int64_t n, bool &hasStruck) {
       HeapFault fault(n, FaultMode::once);
       const qsys_status status = c.run(out);
       hasStruck = fault.hasFailed();
       return status;
     }},
    {"poll", false, QSYS_STATUS_INTERRUPTED,
     [](FaultCase &c, FaultCase::Output &out, CountingAllocator &, int64_t n, bool &hasStruck) {
       const PollingMeters meters(1);
       const Polls polls(n);
       const qsys_status status = c.run(out);
       hasStruck = polls.count() > n;
       return status;
     }},
    // The flag may be raised after the last poll.
    {"poll of a flag raised at a use of the heap", true, QSYS_STATUS_INTERRUPTED,
     [](FaultCase &c, FaultCase::Output &out, CountingAllocator &, int64_t n, bool &hasStruck) {
       const PollingMeters meters(1);
       std::atomic<int32_t> flag = 0;
       qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
       qsys_status status = 0;
       {
         const HeapCall call(n, raise, &flag);
         status = c.run(out);
       }
       qsys_attention_setHandler(nullptr, nullptr);
       hasStruck = flag != 0;
       return status;
     }},
};

std::string tryFaults(Random &random) {
  LibraryAllocator memory;
  std::string difference;
  {
    const ShortcutsTaken taken(random.oneIn(3)   ? ShortcutsTaken::none
                               : random.oneIn(2) ? ShortcutsTaken::all
                                                 : static_cast<unsigned>(random.below(ShortcutsTaken::all)));
    FaultCase c(random);
    FaultCase::Output expected;
    const qsys_status expectedStatus = c.run(expected);
    const auto isAsExpected = [&](qsys_status status, const FaultCase::Output &out) {
      return status == expectedStatus && (status < 0 || out.describe() == expected.describe());
    };
    for (const Fault &fault : faults) {
      bool hasStruck = true;
      for (int64_t n = 0; hasStruck && difference.empty();
           n += n < 30 ? 1 : random.between(1, static_cast<int32_t>(n))) {
        FaultCase::Output out;
        const qsys_status status = fault.run(c, out, memory, n, hasStruck);
        const bool isRight = (hasStruck && status == fault.status) ||
                             ((!hasStruck || fault.mayPassUnnoticed) && isAsExpected(status, out));
        const qsys_status again = c.run(out);
        if (!isRight || !isAsExpected(again, out)) {
          difference = std::string(fault.name) + " " + std::to_string(n) + ": status " + std::to_string(status) +
                       ", then " + std::to_string(again) + ", not " + std::to_string(expectedStatus) + "\n" +
                       out.describe() + "expected\n" + expected.describe();
        }
      }
    }
  }
  EXPECT_EQ(memory.numLive(), 0);
  EXPECT_EQ(memory.numForeignFrees(), 0);
  return difference;
}

TEST(FaultsRandom, EndOperationsWithTheirStatusInTheSameCases) {
  constexpr int32_t mostCases = 1000;
  for (int32_t seed = 1; seed <= std::min(numCases(), mostCases) && !HasFailure(); ++seed) {
    SCOPED_TRACE("case " + std::to_string(seed));
    Random random(static_cast<uint64_t>(seed));
    EXPECT_EQ(tryFaults(random), "");
  }
}

TEST(FaultsRandom, EndOperationsWithTheirStatus) {
  compareCases(numCases() / 100, [](Random &random) { return tryFaults(random); });
}

}  // namespace
}  // namespace random_cases
