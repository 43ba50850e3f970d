// The match of a lexicon: every word that can be read in a reading, ranked.
//
// Words are kept by length, so the ones worth trying are one run of the list. Each is first tested by its signature (see
// LexiconIndex), which refuses only words that no alignment accepts; the others are aligned.

#include "kinds/lexicon_match.hpp"

#include <algorithm>
#include <vector>

#include "platform/system/attention.hpp"
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

/// The attention checks between one word and another: one at every word whose index is a multiple of wordsPerPoll, and where windows
/// are searched one for each of their starts at every word.
class WordPolls {
 public:
  WordPolls(const WordRange &range, std::int32_t numPositions, const qoc_ocrDictionaryRunParams *params)
      : next_(range.first), numStarts_(params != nullptr && params->matchOption9 != 0 ? numPositions : 0) {}

  /// Passes over the words up to the given one, and asks what is asked before it is looked at.
  qsys_status pollBefore(std::int32_t word) {
    QOC_TRY(passOver(word));
    next_ = word + 1;
    return word % wordsPerPoll == 0 ? qsys_attention_check() : static_cast<qsys_status>(QSYS_STATUS_OK);
  }
  /// Passes over all words up to the given one.
  qsys_status passOver(std::int32_t word) {
    const auto numBelow = [](std::int64_t index) { return (index + wordsPerPoll - 1) / wordsPerPoll; };
    const std::int64_t times = numBelow(word) - numBelow(next_) + (std::int64_t{word} - next_) * numStarts_;
    next_ = word;
    return checkAttention(times);
  }

 private:
  std::int32_t next_, numStarts_;
};

/// One reading against the words of a lexicon.
class WordMatcher {
 public:
  WordMatcher(const qoc_ocrDictionaryLexicon &lexicon, const LexiconIndex &index,
              const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams *params,
              const qoc_swapCharSet *set)
      : words_(view(lexicon.strings)),
        index_(index),
        params_(params),
        range_(findLengthRange(lexicon, sizeOf(reading), params)),
        polls_(range_, sizeOf(reading), params),
        matches_(reading, set),
        aligner_(matches_, Aligner::Kind::multi) {}

  /// Merges the results of every word into `results`, in the words' order; `scratch` is for the results of one.
  qsys_status matchAll(qoc_ocrDictionaryResultSet &scratch, qoc_ocrDictionaryResultSet &results) {
    if (range_.first >= range_.end) {
      return QSYS_STATUS_OK;
    }
    index_.prepare(matches_, query_);
    const std::int32_t maxEdits = params_ != nullptr ? std::max(params_->maxEdits, 0) : 0;
    if (params_ != nullptr && params_->matchOption9 != 0) {
      for (std::int32_t word = range_.first; word < range_.end; ++word) {
        if (index_.mayMatch(word, query_, maxEdits)) {
          found_.push_back(word);
        }
      }
    } else {
      index_.find(query_, maxEdits, range_.first, range_.end, found_);
    }
    QOC_TRY(alignFound(scratch, results));
    return polls_.passOver(range_.end);
  }

 private:
  qsys_status alignFound(qoc_ocrDictionaryResultSet &scratch, qoc_ocrDictionaryResultSet &results) {
    qoc_ocrDictionaryRunParams working = params_ != nullptr ? *params_ : qoc_ocrDictionaryRunParams{};
    for (const std::int32_t word : found_) {
      QOC_TRY(polls_.pollBefore(word));
      QOC_TRY(stopEarly(params_, results, working));
      QOC_TRY(aligner_.align(words_[static_cast<std::size_t>(word)], params_ != nullptr ? &working : nullptr, scratch));
      QOC_TRY(qoc_ocrDictionaryResultSet_merge(&results, &scratch, params_));
    }
    return QSYS_STATUS_OK;
  }

  std::span<const qoc_ocrDictionaryString> words_;
  const LexiconIndex &index_;
  const qoc_ocrDictionaryRunParams *params_;
  WordRange range_;
  WordPolls polls_;
  ReadingMatches matches_;
  Aligner aligner_;
  IndexQuery query_;
  std::vector<std::int32_t> found_;
};

/// Aligns every word worth trying with one reading.
qsys_status matchWords(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryStringMulti &reading,
                       const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                       qoc_ocrDictionaryResultSet &results) {
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(&results));
  qoc_ocrDictionaryResultSet scratch;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(makeLocal(frame, scratch));
    const LexiconIndex *index = indexOf(lexicon);
    if (index == nullptr) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(WordMatcher(lexicon, *index, reading, params, set).matchAll(scratch, results));
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
