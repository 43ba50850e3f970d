#pragma once
// What the two matches of a lexicon share.

#include <qoc/lexicon.h>

#include <optional>

#include "frame/frame.hpp"
#include "kinds/lexicon_index.hpp"
#include "platform/system/attention.hpp"
#include "run/result_set_ops.hpp"
#include "swap/variants.hpp"

namespace qoc {

/// The words worth trying on n positions: [first, end) in the lexicon's order.
struct WordRange {
  std::int32_t first, end;
};
WordRange findLengthRange(const qoc_ocrDictionaryLexicon &lexicon, std::int32_t n,
                          const qoc_ocrDictionaryRunParams *params);

/// Interrupts are asked for at every word of the lexicon whose index is a multiple of this.
inline constexpr std::int32_t wordsPerPoll = 128;

/// The number of words of a range at which interrupts are asked for.
inline std::int64_t numPolls(const WordRange &range) noexcept {
  const auto numBelow = [](std::int64_t index) { return (index + wordsPerPoll - 1) / wordsPerPoll; };
  return range.first < range.end ? numBelow(range.end) - numBelow(range.first) : 0;
}

/// A search that goes through the words one by one does so in parts, so that it is interrupted between them.
inline constexpr std::int32_t wordsPerScan = 1 << 16;

/// The first part of a search's range: all of it where the search is no scan.
inline WordRange firstPart(const WordRange &range, bool isScan) noexcept {
  return {range.first, isScan && range.end - range.first > wordsPerScan ? range.first + wordsPerScan : range.end};
}
/// The part behind another one; empty behind the last.
inline WordRange nextPart(const WordRange &range, const WordRange &part) noexcept {
  return firstPart({part.end, range.end}, true);
}

/// The attention checks between one word and another: one at every word whose index is a multiple of wordsPerPoll, and
/// where windows are searched one for each of their starts at every word.
class WordPolls {
 public:
  WordPolls(const WordRange &range, std::int32_t numPositions, const qoc_ocrDictionaryRunParams *params)
      : next_(range.first), numStarts_(params != nullptr && params->matchOption9 != 0 ? numPositions : 0) {}

  /// Passes over the words up to the given one, and asks what is asked before it is looked at; words passed before are
  /// done with.
  qsys_status pollBefore(std::int32_t word) {
    if (word < next_) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(passOver(word));
    next_ = word + 1;
    return word % wordsPerPoll == 0 ? qsys_attention_check() : static_cast<qsys_status>(QSYS_STATUS_OK);
  }
  /// Passes over all words up to the given one.
  qsys_status passOver(std::int32_t word) {
    if (word <= next_) {
      return QSYS_STATUS_OK;
    }
    const std::int64_t times = numPolls({next_, word}) + (std::int64_t{word} - next_) * numStarts_;
    next_ = word;
    return checkAttention(times);
  }

 private:
  std::int32_t next_, numStarts_;
};

/// One reading against any number of lexicons: what is worked out of the reading is worked out once.
class LexiconMatching {
 public:
  /// The reading and the set, which may be null, stay as they are while the object lives.
  LexiconMatching(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set)
      : reading_(reading), set_(set), hasVariants_(hasVariants(set)) {}

  /// As qoc_ocrDictionaryLexicon_matchMulti.
  qsys_status match(const qoc_ocrDictionaryLexicon &lexicon, const qoc_ocrDictionaryRunParams *params,
                    qoc_ocrDictionaryResultSet &results);

 private:
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;
  bool hasVariants_;
  std::optional<ReadingMatches> matches_;
};

}  // namespace qoc
