// The match of a lexicon: every word that can be read in a reading, ranked.
//
// Words are kept by length, so the ones worth trying are one run of the list. Each is first tested by its signature (see
// LexiconIndex), which refuses only words that no alignment accepts; the others are aligned.

#include "kinds/lexicon_match.hpp"

#include <algorithm>
#include <bit>

#include "text/alignment.hpp"
#include "text/reading_of.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::view;

namespace qoc {

WordRange findLengthRange(const qoc_ocrDictionaryLexicon &lexicon, std::int32_t n,
                          const qoc_ocrDictionaryRunParams *params) {
  const auto words = view(lexicon.strings);
  const auto firstOfLength = [&](std::int64_t length) {
    const auto found = std::ranges::lower_bound(words, length, {}, [](const qoc_ocrDictionaryString &word) {
      return static_cast<std::int64_t>(sizeOf(word));
    });
    return static_cast<std::int32_t>(found - words.begin());
  };
  const std::int64_t d = params != nullptr ? params->maxEdits : 0;
  const bool takesShorter = params != nullptr && params->matchOption9 != 0;
  return {takesShorter ? 0 : firstOfLength(n - d), firstOfLength(n + d + 1)};
}

namespace {

/// Constructs a scratch set as a local of the frame.
template <std::int32_t Capacity>
qsys_status makeLocal(Frame<Capacity> &frame, qoc_ocrDictionaryResultSet &set) {
  QOC_TRY(qoc_ocrDictionaryResultSet_construct(&set));
  frame.template local<qoc_ocrDictionaryResultSet_destruct>(&set);
  return QSYS_STATUS_OK;
}

/// Stops looking for an edit once the results so far begin with an exact one.
qsys_status stopEarly(const qoc_ocrDictionaryRunParams *params, const qoc_ocrDictionaryResultSet &results,
                      qoc_ocrDictionaryRunParams &working) {
  if (stopsEarly(params, working)) {
    qsys_bool isExactBest = 0;
    QOC_TRY(qoc_ocrDictionaryResultSet_getIsExactBest(&results, &isExactBest));
    working.maxEdits = isExactBest != 0 ? 0 : working.maxEdits;
  }
  return QSYS_STATUS_OK;
}

/// Aligns every word worth trying with one reading.
qsys_status matchWords(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                       const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                       qoc_ocrDictionaryResultSet &results) {
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(&results));
  qoc_ocrDictionaryResultSet scratch;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(makeLocal(frame, scratch));
    const LexiconIndex *index = indexOf(lexicon);
    const auto words = view(lexicon.strings);
    const WordRange range = findLengthRange(lexicon, sizeOf(reading), params);
    if (index == nullptr || range.first >= range.end) {
      return QSYS_STATUS_OK;
    }
    qoc_ocrDictionaryRunParams working = params != nullptr ? *params : qoc_ocrDictionaryRunParams{};
    ReadingMatches matches(reading, set);
    Aligner aligner(matches, Aligner::Kind::multi);
    std::uint64_t covered = 0;
    QOC_TRY(index->cover(matches, covered));
    for (std::int32_t k = range.first; k < range.end; ++k) {
      if (k % wordsPerPoll == 0) {
        QOC_TRY(qsys_attention_check());
      }
      const std::uint64_t uncovered = index->signature(static_cast<std::size_t>(k)) & ~covered;
      if (std::popcount(uncovered) > std::max(working.maxEdits, 0)) {
        QOC_TRY(passOverWindows(sizeOf(reading), params));
        continue;
      }
      QOC_TRY(stopEarly(params, results, working));
      QOC_TRY(aligner.align(words[static_cast<std::size_t>(k)], params != nullptr ? &working : nullptr, scratch));
      QOC_TRY(qoc_ocrDictionaryResultSet_merge(&results, &scratch, params));
    }
    return qoc_ocrDictionaryResultSet_sort(&results, params, 1);
  });
}

qsys_status matchVariants(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                          const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet &set,
                          qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryResultSet scratch;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(makeLocal(frame, scratch));
    qoc_ocrDictionaryRunParams working = params != nullptr ? *params : qoc_ocrDictionaryRunParams{};
    bool isFirst = true;
    return forEachVariant(reading, set, [&](const auto &variant, const auto &inputIndices, bool &) -> qsys_status {
      QOC_TRY(stopEarly(params, results, working));
      QOC_TRY(matchWords(lexicon, variant, params != nullptr ? &working : nullptr, &set, scratch));
      QOC_TRY(qoc_ocrDictionaryResultSet_setGiven(&scratch, &reading, &inputIndices));
      if (isFirst) {
        isFirst = false;
        return qoc_ocrDictionaryResultSet_assign(&results, &scratch);
      }
      return qoc_ocrDictionaryResultSet_merge(&results, &scratch, params);
    });
  });
}

}  // namespace

}  // namespace qoc

qsys_status qoc_ocrDictionaryLexicon_matchMulti(const qoc_ocrDictionaryLexicon *lexicon,
                                                const qoc_ocrDictionaryStringMulti *reading,
                                                const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                qoc_ocrDictionaryResultSet *results) {
  if (!present({lexicon, reading, results})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(results));
  if (qoc::hasVariants(set)) {
    QOC_TRY(qoc::matchVariants(*lexicon, *reading, params, *set, *results));
  } else {
    QOC_TRY(qoc::matchWords(*lexicon, *reading, params, set, *results));
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_finalize(results, params));
  results->isComputed = 1;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLexicon_match(const qoc_ocrDictionaryLexicon *lexicon,
                                           const qoc_ocrDictionaryString *input,
                                           const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                           qoc_ocrDictionaryResultSet *results) {
  if (!present({lexicon, input, results})) {
    return QSYS_STATUS_OK;
  }
  return qoc::withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
    return qoc_ocrDictionaryLexicon_matchMulti(lexicon, &reading, params, set, results);
  });
}

qsys_status qoc_ocrDictionaryLexicon_matchStrings(const qoc_ocrDictionaryLexicon *lexicon,
                                                  const qstd_vector_qoc_ocrDictionaryString *inputs,
                                                  const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                  qoc_ocrDictionaryResultSet *results) {
  if (!present({lexicon, inputs, results})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(results));
  qoc_ocrDictionaryResultSet scratch;
  qstd_vector32s inputIndices;
  QOC_TRY(inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    QOC_TRY(qoc::makeLocal(frame, scratch));
    QOC_TRY(qstd_vector32s_constructEmpty(&inputIndices));
    frame.local<qstd_vector32s_destruct>(&inputIndices);
    const auto strings = view(*inputs);
    for (std::size_t i = 0; i < strings.size(); ++i) {
      QOC_TRY(qoc_ocrDictionaryLexicon_match(lexicon, &strings[i], params, set, &scratch));
      const auto index = static_cast<std::int32_t>(i);
      QOC_TRY(qstd_vector32s_assignElements(&inputIndices, &index, 1));
      for (qoc_ocrDictionaryResult &result : qoc::edit(scratch.results)) {
        QOC_TRY(qstd_vector32s_assign(&result.inputIndices, &inputIndices));
      }
      QOC_TRY(qoc_ocrDictionaryResultSet_merge(results, &scratch, params));
    }
    return QSYS_STATUS_OK;
  }));
  QOC_TRY(qoc_ocrDictionaryResultSet_finalize(results, params));
  results->isComputed = 1;
  return QSYS_STATUS_OK;
}
