// Regular expressions as dictionary entries: life and access. Matching is in regular_expression_is_match.cpp and
// regular_expression_match.cpp.

#include "qoc/regular_expression.h"

#include "frame/frame.hpp"

using qoc::present;

namespace {

/// What a status of the regular expressions is called here; every other status is itself.
qsys_status translate(qsys_status status) noexcept {
  switch (status) {
    case QSTD_STATUS_REGEX_PARENTHESIS:
      return QOC_STATUS_EXPRESSION_PARENTHESIS;
    case QSTD_STATUS_REGEX_TOO_LARGE:
      return QOC_STATUS_EXPRESSION_TOO_LARGE;
    case QSTD_STATUS_REGEX_SYNTAX:
      return QOC_STATUS_EXPRESSION_SYNTAX;
    case QSTD_STATUS_REGEX_CLASS_OPEN:
      return QOC_STATUS_EXPRESSION_CLASS_OPEN;
    case QSTD_STATUS_REGEX_RANGE_REVERSED:
    case QSTD_STATUS_REGEX_CLASS_EMPTY:
      return QOC_STATUS_EXPRESSION_CLASS;
    case QSTD_STATUS_REGEX_ESCAPE:
      return QOC_STATUS_EXPRESSION_ESCAPE;
    case QSTD_STATUS_REGEX_REPEAT_ALONE:
      return QOC_STATUS_EXPRESSION_REPEAT_ALONE;
    case QSTD_STATUS_REGEX_REPEAT_INVALID:
      return QOC_STATUS_EXPRESSION_REPEAT_INVALID;
    default:
      return status;
  }
}

}  // namespace

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

qsys_status qoc_ocrDictionaryRegularExpression_constructString(qoc_ocrDictionaryRegularExpression *expression,
                                                               const qstd_string *source) {
  return present({expression, source}) ? translate(qstd_regex_constructString(&expression->regex, source))
                                       : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_constructStringT(qoc_ocrDictionaryRegularExpression *expression,
                                                                const wchar_t *source) {
  return present({expression, source}) ? translate(qstd_regex_constructStringT(&expression->regex, source))
                                       : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_setString(qoc_ocrDictionaryRegularExpression *expression,
                                                         const qstd_string *source) {
  return present({expression, source}) ? translate(qstd_regex_setString(&expression->regex, source)) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_setStringT(qoc_ocrDictionaryRegularExpression *expression,
                                                          const wchar_t *source) {
  return present({expression, source}) ? translate(qstd_regex_setStringT(&expression->regex, source)) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_getString(const qoc_ocrDictionaryRegularExpression *expression,
                                                         qstd_string *source) {
  return present({expression, source}) ? qstd_regex_getString(&expression->regex, source) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryRegularExpression_getIsEmpty(const qoc_ocrDictionaryRegularExpression *expression,
                                                          qsys_bool *isEmpty) {
  if (!present({expression, isEmpty})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryRegularExpression empty;
  return qoc::inFrame<1>([&](qoc::Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryRegularExpression_construct, qoc_ocrDictionaryRegularExpression_destruct>(&empty);
    return qoc_ocrDictionaryRegularExpression_compareEqual(expression, &empty, isEmpty);
  });
}
