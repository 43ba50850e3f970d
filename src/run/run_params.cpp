// Run parameters.

#include "qoc/run_params.h"

#include "frame/frame.hpp"

using qoc::present;

qsys_status qoc_ocrDictionaryRunParams_construct(qoc_ocrDictionaryRunParams *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  object->maxEdits = 0;
  object->matchOption1 = 1;
  object->matchOption2 = 1;
  object->matchOption3 = 0;
  object->matchOption4 = 1;
  object->minStringLength = 1;
  object->maxStringLength = INT32_MAX;
  object->matchOption7 = 1;
  object->returnBestOnly = 1;
  object->matchOption9 = 0;
  object->finalizeEachResult = 0;
  object->matchOption11 = 0;
  object->matchOption12 = 0;
  object->matchOption13 = 0;
  object->limitA = INT32_MAX;
  object->limitB = 0;
  object->rankingMode = 0;
  // Deliberate: reserved1 and reserved2 stay as the storage holds them.
  object->rankingVariant = 3;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRunParams_constructCopy(qoc_ocrDictionaryRunParams *object,
                                                     const qoc_ocrDictionaryRunParams *source) {
  return qoc::constructThenAssign<qoc_ocrDictionaryRunParams_construct, qoc_ocrDictionaryRunParams_assign,
                                  qoc_ocrDictionaryRunParams_destruct>(object, source);
}

qsys_status qoc_ocrDictionaryRunParams_assign(qoc_ocrDictionaryRunParams *object,
                                              const qoc_ocrDictionaryRunParams *source) {
  if (present({object, source})) {
    *object = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRunParams_destruct(qoc_ocrDictionaryRunParams *object) {
  present({object});
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRunParams_validate(const qoc_ocrDictionaryRunParams *params) {
  if (!present({params})) {
    return QSYS_STATUS_OK;
  }
  if (params->minStringLength < 1) {
    return QOC_STATUS_MIN_LENGTH_INVALID;
  }
  if (params->minStringLength > params->maxStringLength) {
    return QOC_STATUS_LENGTHS_REVERSED;
  }
  if (params->limitA < 0 || params->limitB < 0) {
    return QOC_STATUS_LIMIT_NEGATIVE;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRunParams_satisfiesStringLength(const qoc_ocrDictionaryRunParams *params, int32_t length,
                                                             qsys_bool *isSatisfied) {
  if (present({isSatisfied})) {
    *isSatisfied =
        params == nullptr || (params->minStringLength <= length && length <= params->maxStringLength) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRunParams_compareEqual(const qoc_ocrDictionaryRunParams *a,
                                                    const qoc_ocrDictionaryRunParams *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: matchOption3 and everything behind finalizeEachResult are left out.
  *isEqual = a->maxEdits == b->maxEdits && a->matchOption1 == b->matchOption1 &&
                     a->matchOption2 == b->matchOption2 && a->matchOption4 == b->matchOption4 &&
                     a->minStringLength == b->minStringLength && a->maxStringLength == b->maxStringLength &&
                     a->matchOption7 == b->matchOption7 && a->returnBestOnly == b->returnBestOnly &&
                     a->matchOption9 == b->matchOption9 && a->finalizeEachResult == b->finalizeEachResult
                 ? 1
                 : 0;
  return QSYS_STATUS_OK;
}
