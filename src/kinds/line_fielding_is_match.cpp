// Whether a reading has the shape of a line: the yes or no form. The alignments are in line_alignment.hpp.

#include <qoc/line_fielding.h>

#include "kinds/line_states.hpp"
#include "swap/variants.hpp"
#include "text/reading_of.hpp"

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
  if (!LineScreen(reading, set).mayFit(lineFielding, params)) {
    return passOverWindows(sizeOf(reading), params);
  }
  Admission admission(lineFielding, reading, set, ask);
  QOC_TRY(isRangeMatch(admission, 0, sizeOf(reading), params, isMatch));
  if (isMatch || params == nullptr || params->matchOption9 == 0) {
    return QSYS_STATUS_OK;
  }
  return forEachWindow(
      admission, *params, [] {},
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
  return withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
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
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    bool answer = false;
    if (hasVariants(set)) {
      const auto askOne = [&](const qoc_ocrDictionaryStringMulti &variant, bool &isDone) {
        const qsys_status status = isReadingMatch(*lineFielding, variant, params, set, answer);
        isDone = answer;
        return status;
      };
      if (usesLattice(*reading)) {
        LineVariants variants(*reading, *set);
        QOC_TRY(forEachNearVariant(
            *lineFielding, variants, params, {1, searchesWindows(params) ? 1 : 0},
            [&](auto &, const auto &variant, const auto &, bool, bool &isDone) { return askOne(variant, isDone); },
            [] {}));
      } else {
        QOC_TRY(forEachVariant(
            *reading, *set, [&](const auto &variant, const auto &, bool &isDone) { return askOne(variant, isDone); }));
      }
    } else {
      QOC_TRY(isReadingMatch(*lineFielding, *reading, params, set, answer));
    }
    *isMatch = answer;
    return QSYS_STATUS_OK;
  });
}
