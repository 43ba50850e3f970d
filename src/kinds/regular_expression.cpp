// The life of regular expressions as dictionary entries.

#include "qoc/regular_expression.h"

#include "frame/frame.hpp"

using qoc::present;

qsys_status qoc_ocrDictionaryRegularExpression_construct(qoc_ocrDictionaryRegularExpression *object) {
  return present({object}) ? qstd_regex_construct(&object->regex) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_constructCopy(qoc_ocrDictionaryRegularExpression *object,
                                                             const qoc_ocrDictionaryRegularExpression *source) {
  return qoc::constructThenAssign<qoc_ocrDictionaryRegularExpression_construct,
                                  qoc_ocrDictionaryRegularExpression_assign,
                                  qoc_ocrDictionaryRegularExpression_destruct>(object, source);
}

qsys_status qoc_ocrDictionaryRegularExpression_assign(qoc_ocrDictionaryRegularExpression *object,
                                                      const qoc_ocrDictionaryRegularExpression *source) {
  return present({object, source}) ? qstd_regex_assign(&object->regex, &source->regex) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_destruct(qoc_ocrDictionaryRegularExpression *object) {
  return present({object}) ? qstd_regex_destruct(&object->regex) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_compareEqual(const qoc_ocrDictionaryRegularExpression *a,
                                                            const qoc_ocrDictionaryRegularExpression *b,
                                                            qsys_bool *isEqual) {
  return present({a, b, isEqual}) ? qstd_regex_compareEqual(&a->regex, &b->regex, isEqual) : QSYS_STATUS_OK;
}
