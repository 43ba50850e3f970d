// The shape of a line, position by position: lifecycle and access. Matching is in line_fielding_is_match.cpp and
// line_fielding_match.cpp.

#include <qoc/line_fielding.h>

#include "frame/frame.hpp"

using namespace qoc;

namespace {

qsys_status checkIndex(const qoc_ocrDictionaryLineFielding &lineFielding, std::int32_t index) noexcept {
  if (index < 0) {
    return QOC_STATUS_INDEX_NEGATIVE;
  }
  return index < lineFielding.positions.core.size ? QSYS_STATUS_OK : QOC_STATUS_INDEX_TOO_BIG;
}

/// Grows the line to hold the index; the vector refuses what is too large for it.
qsys_status growTo(qoc_ocrDictionaryLineFielding &lineFielding, std::int32_t index) {
  if (index < 0) {
    return QOC_STATUS_INDEX_NEGATIVE;
  }
  if (index < lineFielding.positions.core.size) {
    return QSYS_STATUS_OK;
  }
  if (index == INT32_MAX) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_resize(&lineFielding.positions, index + 1);
}

}  // namespace

qsys_status qoc_ocrDictionaryLineFielding_construct(qoc_ocrDictionaryLineFielding *lineFielding) {
  if (!present({lineFielding})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_constructEmpty(&lineFielding->positions);
}

qsys_status qoc_ocrDictionaryLineFielding_constructCopy(qoc_ocrDictionaryLineFielding *lineFielding,
                                                        const qoc_ocrDictionaryLineFielding *source) {
  return constructThenAssign<qoc_ocrDictionaryLineFielding_construct, qoc_ocrDictionaryLineFielding_assign,
                             qoc_ocrDictionaryLineFielding_destruct>(lineFielding, source);
}

qsys_status qoc_ocrDictionaryLineFielding_assign(qoc_ocrDictionaryLineFielding *lineFielding,
                                                 const qoc_ocrDictionaryLineFielding *source) {
  if (!present({lineFielding, source})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_assign(&lineFielding->positions, &source->positions);
}

qsys_status qoc_ocrDictionaryLineFielding_destruct(qoc_ocrDictionaryLineFielding *lineFielding) {
  if (!present({lineFielding})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_destruct(&lineFielding->positions);
}

qsys_status qoc_ocrDictionaryLineFielding_compareEqual(const qoc_ocrDictionaryLineFielding *a,
                                                       const qoc_ocrDictionaryLineFielding *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_compareEqual(&a->positions, &b->positions, isEqual);
}

qsys_status qoc_ocrDictionaryLineFielding_constructPositionFieldings(
    qoc_ocrDictionaryLineFielding *lineFielding, const qstd_vector_qoc_ocrDictionaryPositionFielding *positions) {
  if (!present({lineFielding, positions})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_SURE(qoc_ocrDictionaryLineFielding_construct(lineFielding));  // Without positions it takes no memory.
    frame.output<qoc_ocrDictionaryLineFielding_destruct>(lineFielding);
    return qoc_ocrDictionaryLineFielding_setPositionFieldings(lineFielding, positions);
  });
}

qsys_status qoc_ocrDictionaryLineFielding_getIsEmpty(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                     qsys_bool *isEmpty) {
  if (!present({lineFielding, isEmpty})) {
    return QSYS_STATUS_OK;
  }
  *isEmpty = lineFielding->positions.core.size == 0;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLineFielding_getPositionFieldings(
    const qoc_ocrDictionaryLineFielding *lineFielding,
    const qstd_vector_qoc_ocrDictionaryPositionFielding **positions) {
  if (!present({lineFielding, positions})) {
    return QSYS_STATUS_OK;
  }
  *positions = &lineFielding->positions;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryLineFielding_getNumPositionFieldings(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                                  int32_t *n) {
  if (!present({lineFielding, n})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_getSize32(&lineFielding->positions, n);
}

qsys_status qoc_ocrDictionaryLineFielding_setPositionFieldings(
    qoc_ocrDictionaryLineFielding *lineFielding, const qstd_vector_qoc_ocrDictionaryPositionFielding *positions) {
  if (!present({lineFielding, positions})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector_qoc_ocrDictionaryPositionFielding_assign(&lineFielding->positions, positions);
}

qsys_status qoc_ocrDictionaryLineFielding_getPositionFielding(
    const qoc_ocrDictionaryLineFielding *lineFielding, int32_t index,
    const qoc_ocrDictionaryPositionFielding **positionFielding) {
  if (!present({lineFielding, positionFielding})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(checkIndex(*lineFielding, index));
  return qstd_vector_qoc_ocrDictionaryPositionFielding_getElementConst(&lineFielding->positions, index,
                                                                       positionFielding);
}

qsys_status qoc_ocrDictionaryLineFielding_setPositionFielding(
    qoc_ocrDictionaryLineFielding *lineFielding, int32_t index,
    const qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({lineFielding, positionFielding})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(checkIndex(*lineFielding, index));
  qoc_ocrDictionaryPositionFielding *stored = nullptr;
  // The index has been checked.
  QOC_SURE(qstd_vector_qoc_ocrDictionaryPositionFielding_getElement(&lineFielding->positions, index, &stored));
  return qoc_ocrDictionaryPositionFielding_assign(stored, positionFielding);
}

qsys_status qoc_ocrDictionaryLineFielding_getPositionFieldingExtend(
    qoc_ocrDictionaryLineFielding *lineFielding, int32_t index, qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({lineFielding, positionFielding})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: the getter grows the line too.
  QOC_TRY(growTo(*lineFielding, index));
  const qoc_ocrDictionaryPositionFielding *stored = nullptr;
  QOC_SURE(qoc_ocrDictionaryLineFielding_getPositionFielding(lineFielding, index, &stored));  // It has grown to that.
  return qoc_ocrDictionaryPositionFielding_assign(positionFielding, stored);
}

qsys_status qoc_ocrDictionaryLineFielding_setPositionFieldingExtend(
    qoc_ocrDictionaryLineFielding *lineFielding, int32_t index,
    const qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({lineFielding, positionFielding})) {
    return QSYS_STATUS_OK;
  }
  if (index < 0) {
    return QOC_STATUS_INDEX_NEGATIVE;
  }
  qoc_ocrDictionaryPositionFielding copy;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    // The position fielding may stand in this very line, whose growth moves it.
    QOC_TRY(qoc_ocrDictionaryPositionFielding_constructCopy(&copy, positionFielding));
    frame.local<qoc_ocrDictionaryPositionFielding_destruct>(&copy);
    QOC_TRY(growTo(*lineFielding, index));
    return qoc_ocrDictionaryLineFielding_setPositionFielding(lineFielding, index, &copy);
  });
}
