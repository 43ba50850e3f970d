// The life of a result set, and what is done to all of its results.

#include <algorithm>

#include "frame/frame.hpp"
#include "platform/containers/shared_elements.hpp"
#include "run/result_set_ops.hpp"
#include "text/shared_reading.hpp"

using qoc::ElementPool;
using qoc::present;

namespace {

using Status = qoc_ocrDictionaryPositionStatus;

/// Takes inserted positions out of a result.
qsys_status removeInserted(qoc_ocrDictionaryResult &result) {
  auto &statuses = result.resultStringStatus;
  for (std::int32_t p = 0; p < qoc::sizeOf(statuses); ++p) {
    // Deliberate: the position that moves into p is not looked at, so of two neighbours only the first goes.
    if (qoc::statusesOf(result)[static_cast<std::size_t>(p)] != qoc_ocrDictionaryPositionStatus_inserted) {
      continue;
    }
    QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_eraseElement(&statuses, p));
    if (p < qoc::sizeOf(result.valid)) {
      QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_eraseElement(&result.valid.positions, p));
    }
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&result.valid.positions, qoc::sizeOf(statuses)));
  }
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc_ocrDictionaryResultSet_construct(qoc_ocrDictionaryResultSet *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  object->isComputed = 0;
  return qstd_vector_qoc_ocrDictionaryResult_constructEmpty(&object->results);
}

qsys_status qoc_ocrDictionaryResultSet_constructCopy(qoc_ocrDictionaryResultSet *object,
                                                     const qoc_ocrDictionaryResultSet *source) {
  return qoc::constructThenAssign<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_assign,
                                  qoc_ocrDictionaryResultSet_destruct>(object, source);
}

qsys_status qoc_ocrDictionaryResultSet_assign(qoc_ocrDictionaryResultSet *object,
                                              const qoc_ocrDictionaryResultSet *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  object->isComputed = source->isComputed;
  return qstd_vector_qoc_ocrDictionaryResult_assign(&object->results, &source->results);
}

qsys_status qoc_ocrDictionaryResultSet_destruct(qoc_ocrDictionaryResultSet *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryResult_destruct(&object->results) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResultSet_reset(qoc_ocrDictionaryResultSet *set) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  qoc::reset(*set);
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResultSet_print(const qoc_ocrDictionaryResultSet *set) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qsys_printfA("qoc_ocrDictionaryResultSet "));
  QOC_TRY(qsys_printfA("isComputed: %s", qoc::nameOfFlag(set->isComputed)));
  return set->isComputed == 1 ? qstd_vector_qoc_ocrDictionaryResult_print(&set->results) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResultSet_setGiven(qoc_ocrDictionaryResultSet *set,
                                                const qoc_ocrDictionaryStringMulti *given,
                                                const qstd_vector32s *inputIndices) {
  if (!present({set, given, inputIndices}) || qoc::sizeOf(set->results) == 0) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryStringMulti shared;  // One copy for all of the results.
  return qoc::inFrame<1>([&](qoc::Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>(&shared);
    QOC_TRY(qoc::makeShared(qoc::view(*given), shared));
    for (qoc_ocrDictionaryResult &result : qoc::edit(set->results)) {
      QOC_SURE(qoc_ocrDictionaryStringMulti_assign(&result.given, &shared));  // It joins the copy that is shared.
      QOC_TRY(qstd_vector32s_assign(&result.inputIndices, inputIndices));
    }
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryResultSet_getIsExactBest(const qoc_ocrDictionaryResultSet *set, qsys_bool *isExactBest) {
  if (present({set, isExactBest})) {
    const auto results = qoc::view(set->results);
    *isExactBest = !results.empty() && results.front().numEdits == 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc::rankAndCut(qoc_ocrDictionaryResultSet &set, const qoc_ocrDictionaryRunParams *params) {
  QOC_TRY(qoc_ocrDictionaryResultSet_sort(&set, params, 1));
  const bool isCut = params != nullptr && params->returnBestOnly != 0 && sizeOf(set.results) > 1;
  return isCut ? qstd_vector_qoc_ocrDictionaryResult_resize(&set.results, 1) : static_cast<qsys_status>(QSYS_STATUS_OK);
}

qsys_status qoc_ocrDictionaryResultSet_finalize(qoc_ocrDictionaryResultSet *set,
                                                const qoc_ocrDictionaryRunParams *params) {
  if (!present({set})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc::rankAndCut(*set, params));
  if (params == nullptr) {
    return QSYS_STATUS_OK;
  }
  // The statuses of many results share blocks, in vectors that have no storage yet.
  const auto isFresh = [](const qoc_ocrDictionaryResult &result) {
    const qstd_vector &statuses = result.statusWRTInputStringSwapChar.core;
    return statuses.elements == nullptr && statuses.memory == nullptr;
  };
  std::size_t expected = 0;
  for (const qoc_ocrDictionaryResult &result : qoc::view(set->results)) {
    expected += isFresh(result) ? ElementPool::sizeOf(qoc::view(result.given).size(), sizeof(Status)) : 0;
  }
  ElementPool pool(expected);
  for (qoc_ocrDictionaryResult &result : qoc::edit(set->results)) {
    if (params->finalizeEachResult != 0) {
      QOC_TRY(removeInserted(result));
    }
    const auto statuses = qoc::statusesOf(result);
    result.resultStringLineStatus = statuses.empty() ? 0 : std::ranges::max(statuses);
    if (result.isComputed != 0 && isFresh(result)) {
      void *elements = nullptr;
      QOC_TRY(pool.place(result.statusWRTInputStringSwapChar.core, qoc::sizeOf(result.given), elements));
      qoc::fillStatusWRTInputString(result, qoc::editAs<Status>(result.statusWRTInputStringSwapChar));
    } else if (result.isComputed != 0) {
      QOC_TRY(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(&result, &result.statusWRTInputStringSwapChar));
    }
  }
  return QSYS_STATUS_OK;
}
