// Swap character sets: what they answer. No query writes anything in the set.

#include <qoc/swap_char_set.h>

#include <algorithm>

#include "frame/frame.hpp"
#include "platform/containers/vector_family.hpp"
#include "swap/match.hpp"
#include "swap/view.hpp"

using qoc::present;
using qoc::viewOf;

qsys_status qoc_swapCharSet_compareEqual(const qoc_swapCharSet *a, const qoc_swapCharSet *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  // The tables follow from the groups.
  QOC_TRY(qstd_vector__compareEqual(&a->swaps.core, &b->swaps.core, isEqual,
                                    qoc::compareElements<qoc_swapChar, qoc_swapChar_compareEqual>));
  return *isEqual != 0 ? qstd_vector_vectorChar32_compareEqual(&a->groups, &b->groups, isEqual) : QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_getIsEmpty(const qoc_swapCharSet *set, qsys_bool *isEmpty) {
  if (present({set, isEmpty})) {
    *isEmpty = set->isEmpty;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_isMatchChar(const qoc_swapCharSet *set, const qoc_ocrDictionaryChar *a,
                                        const qoc_ocrDictionaryChar *b, qsys_bool *isMatch) {
  if (present({a, b, isMatch})) {
    *isMatch = qoc::isMatch(set, a->code, b->code) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_isMatchCharMultiChar(const qoc_swapCharSet *set,
                                                 const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                 const qoc_ocrDictionaryChar *b, qsys_bool *isMatch) {
  if (present({candidates, b, isMatch})) {
    const auto characters = viewOf<qoc_ocrDictionaryChar>(*candidates);
    *isMatch = std::any_of(characters.begin(), characters.end(),
                           [&](const qoc_ocrDictionaryChar &a) { return qoc::isMatch(set, a.code, b->code); })
                   ? 1
                   : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_hasMultiSwap(const qoc_swapCharSet *set, qsys_bool *hasMultiSwap) {
  if (!present({set, hasMultiSwap})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_stringExpand__isEmpty(set->expansion, hasMultiSwap));
  *hasMultiSwap = *hasMultiSwap != 0 ? 0 : 1;
  return QSYS_STATUS_OK;
}
