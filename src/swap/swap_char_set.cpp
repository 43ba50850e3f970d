// Swap character sets: their life.
//
// A set is either reset (all tables empty) or built by one of its setters. All that queries read is there from then on,
// the cache of equivalents included, so that queries write nothing and any number of threads may ask one set at once.

#include <qoc/swap_char_set.h>

#include <utility>

#include "frame/frame.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;

namespace {

qsys_status destroyExpansion(qoc_stringExpand_ *expansion) {
  const qsys_status status = qoc_stringExpand__destruct(expansion);
  qsys_memory_free_internal(expansion);
  return status;
}

qsys_status constructExpansion(qoc_stringExpand_ **expansion) {
  auto *made = static_cast<qoc_stringExpand_ *>(qsys_memory_alloc_internal(sizeof(qoc_stringExpand_)));
  if (made == nullptr) {
    return QSYS_STATUS_OUT_OF_MEMORY;
  }
  const qsys_status status = qoc_stringExpand__construct(made);
  if (QOC_NEVER(status < 0)) {  // An empty expansion takes no memory.
    qsys_memory_free_internal(made);
    return status;
  }
  *expansion = made;
  return QSYS_STATUS_OK;
}

qsys_status assignFields(qoc_swapCharSet *set, const qoc_swapCharSet *source) {
  QOC_TRY(qstd_vector_qoc_swapChar_assign(&set->swaps, &source->swaps));
  QOC_TRY(qstd_vector_vectorChar32_assign(&set->groups, &source->groups));
  QOC_TRY(qstd_vector32s_assign(&set->swapCharCodeToIndexLUT, &source->swapCharCodeToIndexLUT));
  QOC_TRY(qstd_vectorChar32_assign(&set->distinctCharacters, &source->distinctCharacters));
  QOC_TRY(qstd_vector_vectorb_assign(&set->swapCharEquivalenceTable, &source->swapCharEquivalenceTable));
  QOC_TRY(qstd_vector_vectorChar32_assign(&set->equivalentsCacheLists, &source->equivalentsCacheLists));
  QOC_TRY(qstd_vectorb_assign(&set->equivalentsCacheFlags, &source->equivalentsCacheFlags));
  QOC_TRY(qoc_stringExpand__assign(set->expansion, source->expansion));
  set->isEmpty = source->isEmpty;
  QOC_TRY(qstd_vectorb_assign(&set->pairFilter, &source->pairFilter));
  return qstd_vectorb_getBeginConst(&set->pairFilter, &set->pairFilterData);
}

}  // namespace

qsys_status qoc_swapCharSet_construct(qoc_swapCharSet *set) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<8>([&](Frame<8> &frame) -> qsys_status {
    QOC_TRY(qstd_vector_qoc_swapChar_constructEmpty(&set->swaps));
    frame.output<qstd_vector_qoc_swapChar_destruct>(&set->swaps);
    QOC_TRY(qstd_vector_vectorChar32_constructEmpty(&set->groups));
    frame.output<qstd_vector_vectorChar32_destruct>(&set->groups);
    QOC_TRY(qstd_vector32s_constructEmpty(&set->swapCharCodeToIndexLUT));
    frame.output<qstd_vector32s_destruct>(&set->swapCharCodeToIndexLUT);
    QOC_TRY(qstd_vectorChar32_constructEmpty(&set->distinctCharacters));
    frame.output<qstd_vectorChar32_destruct>(&set->distinctCharacters);
    QOC_TRY(qstd_vector_vectorb_constructEmpty(&set->swapCharEquivalenceTable));
    frame.output<qstd_vector_vectorb_destruct>(&set->swapCharEquivalenceTable);
    QOC_TRY(qstd_vector_vectorChar32_constructEmpty(&set->equivalentsCacheLists));
    frame.output<qstd_vector_vectorChar32_destruct>(&set->equivalentsCacheLists);
    QOC_TRY(qstd_vectorb_constructEmpty(&set->equivalentsCacheFlags));
    frame.output<qstd_vectorb_destruct>(&set->equivalentsCacheFlags);
    QOC_TRY(constructExpansion(&set->expansion));
    frame.output<destroyExpansion>(set->expansion);
    set->isEmpty = 1;
    set->pairFilterData = nullptr;
    return qstd_vectorb_constructEmpty(&set->pairFilter);
  });
}

qsys_status qoc_swapCharSet_constructCopy(qoc_swapCharSet *set, const qoc_swapCharSet *source) {
  if (!present({set, source})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_swapCharSet_construct(set));
    frame.output<qoc_swapCharSet_destruct>(set);
    return assignFields(set, source);
  });
}

qsys_status qoc_swapCharSet_assign(qoc_swapCharSet *set, const qoc_swapCharSet *source) {
  if (!present({set, source}) || set == source) {
    return QSYS_STATUS_OK;
  }
  // The fields refer to each other, so a copy that fails half-way must not stay in the set.
  qoc_swapCharSet copy;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_swapCharSet_constructCopy(&copy, source));
    frame.local<qoc_swapCharSet_destruct>(&copy);
    std::swap(*set, copy);
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_swapCharSet_destruct(qoc_swapCharSet *set) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qoc_swapChar_destruct(&set->swaps));
  QOC_TRY(qstd_vector_vectorChar32_destruct(&set->groups));
  QOC_TRY(qstd_vector32s_destruct(&set->swapCharCodeToIndexLUT));
  QOC_TRY(qstd_vectorChar32_destruct(&set->distinctCharacters));
  QOC_TRY(qstd_vector_vectorb_destruct(&set->swapCharEquivalenceTable));
  QOC_TRY(qstd_vector_vectorChar32_destruct(&set->equivalentsCacheLists));
  QOC_TRY(qstd_vectorb_destruct(&set->equivalentsCacheFlags));
  QOC_TRY(destroyExpansion(set->expansion));
  return qstd_vectorb_destruct(&set->pairFilter);
}

qsys_status qoc_swapCharSet_reset(qoc_swapCharSet *set) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qoc_swapChar_clear(&set->swaps));
  QOC_TRY(qstd_vector_vectorChar32_clear(&set->groups));
  QOC_TRY(qstd_vector32s_clearAndFreeMemory(&set->swapCharCodeToIndexLUT));
  QOC_TRY(qstd_vectorChar32_clear(&set->distinctCharacters));
  QOC_TRY(qstd_vector_vectorb_clear(&set->swapCharEquivalenceTable));
  QOC_TRY(qstd_vector_vectorChar32_clear(&set->equivalentsCacheLists));
  QOC_TRY(qstd_vectorb_clear(&set->equivalentsCacheFlags));
  QOC_TRY(qoc_stringExpand__reset(set->expansion));
  set->isEmpty = 1;
  // An empty filter has no first entry, so that its pointer tells whether there is one.
  QOC_TRY(qstd_vectorb_clear(&set->pairFilter));
  set->pairFilterData = nullptr;
  return QSYS_STATUS_OK;
}
