// Whether a reading has the shape of a line: the yes or no form. The alignments are in line_alignment.hpp.

#include <qoc/line_fielding.h>

#include "kinds/line_alignment.hpp"

using namespace qoc;

namespace {

qsys_status ask(const qoc_ocrDictionaryPositionFielding &positionFielding, const qoc_ocrDictionaryCharMulti &multi,
                const qoc_swapCharSet *set, bool &isAdmitted) {
  qsys_bool answer = 0;
  QOC_TRY(qoc_ocrDictionaryPositionFielding_isMatchMulti(&positionFielding, &multi, set, &answer));
  isAdmitted = answer != 0;
  return QSYS_STATUS_OK;
}

/// Whether the line fits the range in any way.
qsys_status isRangeMatch(Admission &admission, std::int32_t start, std::int32_t length,
                         const qoc_ocrDictionaryRunParams *params, bool &isMatch) {
  // The first alignment settles it; the exact one comes first, and the range is not tried further.
  return forEachAlignment(admission, start, length, params, EmptyPositionRule::emptyRangeOnly,
                          [&](LineAlignment, bool &goOn) -> qsys_status {
                            isMatch = true;
                            goOn = false;
                            return QSYS_STATUS_OK;
                          });
}

/// Whether the line fits the reading, or, where asked for, a window of it.
qsys_status isReadingMatch(const qoc_ocrDictionaryLineFielding &lineFielding,
                           const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams *params,
                           const qoc_swapCharSet *set, bool &isMatch) {
  isMatch = false;
  QOC_TRY(qsys_attention_check());
  Admission admission(lineFielding, reading, set, ask);
  QOC_TRY(isRangeMatch(admission, 0, sizeOf(reading), params, isMatch));
  if (isMatch || params == nullptr || params->matchOption9 == 0) {
    return QSYS_STATUS_OK;
  }
  return forEachWindow(
      admission, *params, [] { return qsys_status{QSYS_STATUS_OK}; },
      [&](std::int32_t start, std::int32_t length, bool &goOn) -> qsys_status {
        QOC_TRY(isRangeMatch(admission, start, length, params, isMatch));
        goOn = !isMatch;
        return QSYS_STATUS_OK;
      });
}

}  // namespace

qsys_status qoc_ocrDictionaryLineFielding_isMatch(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                  const qoc_ocrDictionaryString *input,
                                                  const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                  qsys_bool *isMatch) {
  if (!present({lineFielding, input, isMatch})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryStringMulti reading;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryStringMulti_constructString(&reading, input));
    frame.local<qoc_ocrDictionaryStringMulti_destruct>(&reading);
    return qoc_ocrDictionaryLineFielding_isMatchMulti(lineFielding, &reading, params, set, isMatch);
  });
}

qsys_status qoc_ocrDictionaryLineFielding_isMatchMulti(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                       const qoc_ocrDictionaryStringMulti *reading,
                                                       const qoc_ocrDictionaryRunParams *params,
                                                       const qoc_swapCharSet *set, qsys_bool *isMatch) {
  if (!present({lineFielding, reading, isMatch})) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_qoc_ocrDictionaryStringMulti variants;
  qstd_vector_vector32s indices;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    bool answer = false;
    qsys_bool hasMultiSwap = 0;
    if (set != nullptr) {
      QOC_TRY(qoc_swapCharSet_hasMultiSwap(set, &hasMultiSwap));
    }
    if (hasMultiSwap == 0) {
      QOC_TRY(isReadingMatch(*lineFielding, *reading, params, set, answer));
    } else {
      QOC_TRY(qstd_vector_qoc_ocrDictionaryStringMulti_constructEmpty(&variants));
      frame.local<qstd_vector_qoc_ocrDictionaryStringMulti_destruct>(&variants);
      QOC_TRY(qstd_vector_vector32s_constructEmpty(&indices));
      frame.local<qstd_vector_vector32s_destruct>(&indices);
      QOC_TRY(qoc_swapCharSet_multiSwapStrings(set, reading, &variants, &indices));
      for (const qoc_ocrDictionaryStringMulti &variant : viewAs<qoc_ocrDictionaryStringMulti>(variants)) {
        QOC_TRY(isReadingMatch(*lineFielding, variant, params, set, answer));
        if (answer) {
          break;
        }
      }
    }
    *isMatch = answer;
    return QSYS_STATUS_OK;
  });
}
