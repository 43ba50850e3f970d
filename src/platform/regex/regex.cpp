// The life of regular expressions.

#include "qoc/regex.h"

#include "platform/containers/vector_family.hpp"
#include "platform/system/present.hpp"

QOC_DEFINE_TYPE_CHECKS(qstd_regex)

using qoc::present;

qsys_status qstd_regex_construct(qstd_regex *object) {
  if (present({object})) {
    object->shared = nullptr;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_constructCopy(qstd_regex *object, const qstd_regex *source) {
  if (present({object, source})) {
    object->shared = source->shared;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_assign(qstd_regex *object, const qstd_regex *source) {
  return qstd_regex_constructCopy(object, source);
}

qsys_status qstd_regex_destruct(qstd_regex *object) {
  if (present({object})) {
    object->shared = nullptr;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_regex_compareEqual(const qstd_regex *a, const qstd_regex *b, qsys_bool *isEqual) {
  if (present({a, b, isEqual})) {
    *isEqual = a->shared == b->shared ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}
