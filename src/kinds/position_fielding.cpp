// The characters that one position of a line admits: lifecycle, setters and queries. Matching is in position_fielding_match.cpp.

#include <qoc/position_fielding.h>

#include "frame/frame.hpp"

using namespace qoc;

qsys_status qoc_ocrDictionaryPositionFielding_construct(qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({positionFielding})) return QSYS_STATUS_OK;
  QOC_TRY(qstd_vectorChar32_constructEmpty(&positionFielding->fieldingCharacters));
  positionFielding->fieldingBits = QOC_FIELDING_NONSPACE;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_constructCopy(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                            const qoc_ocrDictionaryPositionFielding *source) {
  if (!present({positionFielding, source})) return QSYS_STATUS_OK;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryPositionFielding_construct(positionFielding));
    frame.output<qoc_ocrDictionaryPositionFielding_destruct>(positionFielding);
    return qoc_ocrDictionaryPositionFielding_assign(positionFielding, source);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_assign(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                     const qoc_ocrDictionaryPositionFielding *source) {
  if (!present({positionFielding, source})) return QSYS_STATUS_OK;
  if (positionFielding == source) return QSYS_STATUS_OK;
  positionFielding->fieldingBits = source->fieldingBits;
  return qstd_vectorChar32_assign(&positionFielding->fieldingCharacters, &source->fieldingCharacters);
}

qsys_status qoc_ocrDictionaryPositionFielding_destruct(qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({positionFielding})) return QSYS_STATUS_OK;
  return qstd_vectorChar32_destruct(&positionFielding->fieldingCharacters);
}

qsys_status qoc_ocrDictionaryPositionFielding_compareEqual(const qoc_ocrDictionaryPositionFielding *a,
                                                           const qoc_ocrDictionaryPositionFielding *b,
                                                           qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) return QSYS_STATUS_OK;
  if (a->fieldingBits != b->fieldingBits) {
    *isEqual = 0;
    return QSYS_STATUS_OK;
  }
  return qstd_vectorChar32_compareEqual(&a->fieldingCharacters, &b->fieldingCharacters, isEqual);
}
