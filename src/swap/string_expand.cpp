// The records of multi-character swaps: their life.

#include <qoc/string_expand.h>

#include "frame/frame.hpp"

using qoc::firstFailure;
using qoc::present;

qsys_status qoc_stringExpandOneToTwo__construct(qoc_stringExpandOneToTwo_ *record) {
  if (present({record})) {
    *record = {0, 0, 0};
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpandOneToTwo__constructCopy(qoc_stringExpandOneToTwo_ *record,
                                                    const qoc_stringExpandOneToTwo_ *source) {
  return qoc_stringExpandOneToTwo__assign(record, source);
}

qsys_status qoc_stringExpandOneToTwo__assign(qoc_stringExpandOneToTwo_ *record,
                                             const qoc_stringExpandOneToTwo_ *source) {
  if (present({record, source})) {
    *record = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpandOneToTwo__destruct(qoc_stringExpandOneToTwo_ *record) {
  present({record});
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpandTwoToTwo__construct(qoc_stringExpandTwoToTwo_ *record) {
  if (present({record})) {
    *record = {0, 0, 0, 0};
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpandTwoToTwo__constructCopy(qoc_stringExpandTwoToTwo_ *record,
                                                    const qoc_stringExpandTwoToTwo_ *source) {
  return qoc_stringExpandTwoToTwo__assign(record, source);
}

qsys_status qoc_stringExpandTwoToTwo__assign(qoc_stringExpandTwoToTwo_ *record,
                                             const qoc_stringExpandTwoToTwo_ *source) {
  if (present({record, source})) {
    *record = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpandTwoToTwo__destruct(qoc_stringExpandTwoToTwo_ *record) {
  present({record});
  return QSYS_STATUS_OK;
}

qsys_status qoc_stringExpand__construct(qoc_stringExpand_ *expansion) {
  if (!present({expansion})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vector_qoc_stringExpandOneToTwo__constructEmpty(&expansion->oneToTwo),
                       qstd_vector_qoc_stringExpandTwoToTwo__constructEmpty(&expansion->twoToTwo)});
}

qsys_status qoc_stringExpand__constructCopy(qoc_stringExpand_ *expansion, const qoc_stringExpand_ *source) {
  return qoc::constructThenAssign<qoc_stringExpand__construct, qoc_stringExpand__assign, qoc_stringExpand__destruct>(
      expansion, source);
}

qsys_status qoc_stringExpand__assign(qoc_stringExpand_ *expansion, const qoc_stringExpand_ *source) {
  if (!present({expansion, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qoc_stringExpandOneToTwo__assign(&expansion->oneToTwo, &source->oneToTwo));
  return qstd_vector_qoc_stringExpandTwoToTwo__assign(&expansion->twoToTwo, &source->twoToTwo);
}

qsys_status qoc_stringExpand__destruct(qoc_stringExpand_ *expansion) {
  if (!present({expansion})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vector_qoc_stringExpandOneToTwo__destruct(&expansion->oneToTwo),
                       qstd_vector_qoc_stringExpandTwoToTwo__destruct(&expansion->twoToTwo)});
}

qsys_status qoc_stringExpand__reset(qoc_stringExpand_ *expansion) {
  if (!present({expansion})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vector_qoc_stringExpandOneToTwo__clear(&expansion->oneToTwo),
                       qstd_vector_qoc_stringExpandTwoToTwo__clear(&expansion->twoToTwo)});
}

qsys_status qoc_stringExpand__isEmpty(const qoc_stringExpand_ *expansion, qsys_bool *isEmpty) {
  if (present({expansion, isEmpty})) {
    *isEmpty = expansion->oneToTwo.core.size == 0 && expansion->twoToTwo.core.size == 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}
