// The shape of a line, position by position: lifecycle and access. Matching is in line_fielding_match.cpp and
// line_fielding_is_match.cpp.

#include <qoc/line_fielding.h>

#include "frame/frame.hpp"

using namespace qoc;

qsys_status qoc_ocrDictionaryLineFielding_construct(qoc_ocrDictionaryLineFielding *lineFielding) {
  if (!present({lineFielding})) return QSYS_STATUS_OK;
  return qstd_vector_qoc_ocrDictionaryPositionFielding_constructEmpty(&lineFielding->positions);
}

qsys_status qoc_ocrDictionaryLineFielding_constructCopy(qoc_ocrDictionaryLineFielding *lineFielding,
                                                        const qoc_ocrDictionaryLineFielding *source) {
  if (!present({lineFielding, source})) return QSYS_STATUS_OK;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryLineFielding_construct(lineFielding));
    frame.output<qoc_ocrDictionaryLineFielding_destruct>(lineFielding);
    return qoc_ocrDictionaryLineFielding_assign(lineFielding, source);
  });
}

qsys_status qoc_ocrDictionaryLineFielding_assign(qoc_ocrDictionaryLineFielding *lineFielding,
                                                 const qoc_ocrDictionaryLineFielding *source) {
  if (!present({lineFielding, source})) return QSYS_STATUS_OK;
  return qstd_vector_qoc_ocrDictionaryPositionFielding_assign(&lineFielding->positions, &source->positions);
}

qsys_status qoc_ocrDictionaryLineFielding_destruct(qoc_ocrDictionaryLineFielding *lineFielding) {
  if (!present({lineFielding})) return QSYS_STATUS_OK;
  return qstd_vector_qoc_ocrDictionaryPositionFielding_destruct(&lineFielding->positions);
}

qsys_status qoc_ocrDictionaryLineFielding_compareEqual(const qoc_ocrDictionaryLineFielding *a,
                                                       const qoc_ocrDictionaryLineFielding *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) return QSYS_STATUS_OK;
  return qstd_vector_qoc_ocrDictionaryPositionFielding_compareEqual(&a->positions, &b->positions, isEqual);
}
