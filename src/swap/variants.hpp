#pragma once
// The readings that a swap set's multi-character swaps make of a reading, one after the other: what every kind of
// dictionary entry matches.

#include <qoc/swap_char_set.h>

#include "frame/frame.hpp"
#include "platform/system/certain.hpp"
#include "text/views.hpp"

namespace qoc {

/// Makes every reading that the set's multi-character swaps make of a reading, with the input indices of their
/// positions, and calls visit(variant, inputIndices, isDone) for each in order until one sets isDone.
template <class Visit>
qsys_status forEachVariant(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet &set, Visit visit) {
  qstd_vector_qoc_ocrDictionaryStringMulti variants;
  qstd_vector_vector32s positions;
  qstd_vector32s none;  // The empty variant of an empty reading has no list of positions.
  return inFrame<3>([&](Frame<3> &frame) -> qsys_status {
    frame.template emptyLocal<qstd_vector_qoc_ocrDictionaryStringMulti_constructEmpty,
                              qstd_vector_qoc_ocrDictionaryStringMulti_destruct>(&variants);
    frame.template emptyLocal<qstd_vector_vector32s_constructEmpty, qstd_vector_vector32s_destruct>(&positions);
    frame.template emptyLocal<qstd_vector32s_constructEmpty, qstd_vector32s_destruct>(&none);
    QOC_TRY(qoc_swapCharSet_multiSwapStrings(&set, &reading, &variants, &positions));
    const auto lists = viewAs<qstd_vector32s>(positions);
    bool isDone = false;
    for (std::size_t k = 0; k < static_cast<std::size_t>(sizeOf(variants)) && !isDone; ++k) {
      QOC_TRY(visit(viewAs<qoc_ocrDictionaryStringMulti>(variants)[k], k < lists.size() ? lists[k] : none, isDone));
    }
    return QSYS_STATUS_OK;
  });
}

/// Whether matching with this set, which may be null, takes variants of the reading.
inline bool hasVariants(const qoc_swapCharSet *set) noexcept {
  return set != nullptr && answerOf<qoc_swapCharSet_hasMultiSwap>(*set);
}

}  // namespace qoc
