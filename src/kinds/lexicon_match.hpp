#pragma once
// What the two matches of a lexicon share.

#include <qoc/lexicon.h>

#include "frame/frame.hpp"
#include "kinds/lexicon_index.hpp"
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

/// Whether a run with these params looks for one edit only until an exact result is there.
inline bool stopsEarly(const qoc_ocrDictionaryRunParams *params, const qoc_ocrDictionaryRunParams &working) noexcept {
  return params != nullptr && params->returnBestOnly != 0 && working.maxEdits == 1;
}

}  // namespace qoc
