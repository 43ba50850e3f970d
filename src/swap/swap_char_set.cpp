// Swap character sets: their life.
//
// A set is either reset (all tables empty) or built by one of its setters. All that queries read is there from then on,
// the cache of equivalents included, so that queries write nothing and any number of threads may ask one set at once.

#include <qoc/swap_char_set.h>

#include <utility>

#include "frame/frame.hpp"

using qoc::firstFailure;
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
  *expansion = made;
  return qoc_stringExpand__construct(made);
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
  // First, because it alone takes memory.
  QOC_TRY(constructExpansion(&set->expansion));
  set->isEmpty = 1;
  set->pairFilterData = nullptr;
  return firstFailure(
      {qstd_vector_qoc_swapChar_constructEmpty(&set->swaps), qstd_vector_vectorChar32_constructEmpty(&set->groups),
       qstd_vector32s_constructEmpty(&set->swapCharCodeToIndexLUT),
       qstd_vectorChar32_constructEmpty(&set->distinctCharacters),
       qstd_vector_vectorb_constructEmpty(&set->swapCharEquivalenceTable),
       qstd_vector_vectorChar32_constructEmpty(&set->equivalentsCacheLists),
       qstd_vectorb_constructEmpty(&set->equivalentsCacheFlags), qstd_vectorb_constructEmpty(&set->pairFilter)});
}

qsys_status qoc_swapCharSet_constructCopy(qoc_swapCharSet *set, const qoc_swapCharSet *source) {
  if (!present({set, source})) {
    return QSYS_STATUS_OK;
  }
  return qoc::constructThen<qoc_swapCharSet_construct, qoc_swapCharSet_destruct>(
      set, [&] { return assignFields(set, source); });
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
  return firstFailure({qstd_vector_qoc_swapChar_destruct(&set->swaps), qstd_vector_vectorChar32_destruct(&set->groups),
                       qstd_vector32s_destruct(&set->swapCharCodeToIndexLUT),
                       qstd_vectorChar32_destruct(&set->distinctCharacters),
                       qstd_vector_vectorb_destruct(&set->swapCharEquivalenceTable),
                       qstd_vector_vectorChar32_destruct(&set->equivalentsCacheLists),
                       qstd_vectorb_destruct(&set->equivalentsCacheFlags), destroyExpansion(set->expansion),
                       qstd_vectorb_destruct(&set->pairFilter)});
}

qsys_status qoc_swapCharSet_reset(qoc_swapCharSet *set) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  set->isEmpty = 1;
  // An empty filter has no first entry, so that its pointer tells whether there is one.
  set->pairFilterData = nullptr;
  return firstFailure(
      {qstd_vector_qoc_swapChar_clear(&set->swaps), qstd_vector_vectorChar32_clear(&set->groups),
       qstd_vector32s_clearAndFreeMemory(&set->swapCharCodeToIndexLUT),
       qstd_vectorChar32_clear(&set->distinctCharacters), qstd_vector_vectorb_clear(&set->swapCharEquivalenceTable),
       qstd_vector_vectorChar32_clear(&set->equivalentsCacheLists), qstd_vectorb_clear(&set->equivalentsCacheFlags),
       qoc_stringExpand__reset(set->expansion), qstd_vectorb_clear(&set->pairFilter)});
}
