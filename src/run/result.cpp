// The life of a result, its simple queries and its printed form.

#include "qoc/result.h"

#include <algorithm>

#include "frame/frame.hpp"
#include "run/result_set_ops.hpp"
#include "text/views.hpp"

using qoc::present;

namespace {

using Statuses = qstd_vector_qoc_ocrDictionaryPositionStatus;

/// Everything that a fresh result and a reset one have in common, but for the owned members.
void setDefaults(qoc_ocrDictionaryResult &result) {
  result.isComputed = 0;
  result.resultStringLineStatus = qoc_ocrDictionaryPositionStatus_noMatch;
  result.numIgnoredPrefixCharacters = 0;
  result.numIgnoredSuffixCharacters = 0;
  result.startFieldIndex = 0;
  result.mode = qoc_ocrDictionaryMode_fielding;
  result.numEdits = 0;
  result.scoreIsCached = 0;
  result.score = 0;
  result.overlapInputString = 0;
  result.numInsertedIsCached = 0;
  result.numInserted = 0;
  result.orderIndex = 0;
  result.numMatchedPositionsIsCached = 0;
  result.numMatchedPositions = 0;
}

qsys_status countStatus(const qoc_ocrDictionaryResult *result, qoc_ocrDictionaryPositionStatus status, int32_t *n) {
  if (present({result, n})) {
    *n = static_cast<std::int32_t>(std::ranges::count(qoc::statusesOf(*result), status));
  }
  return QSYS_STATUS_OK;
}

qsys_status printStrings(const qoc_ocrDictionaryResult &result) {
  QOC_TRY(qsys_printfA(" given: "));
  QOC_TRY(qoc_ocrDictionaryStringMulti_print(&result.given));
  QOC_TRY(qsys_printfA(" given(swap): "));
  QOC_TRY(qoc_ocrDictionaryStringMulti_print(&result.givenSwap));
  QOC_TRY(qsys_printfA(" valid: "));
  return qoc_ocrDictionaryStringMulti_print(&result.valid);
}

}  // namespace

qsys_status qoc_ocrDictionaryResult_construct(qoc_ocrDictionaryResult *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  for (qoc_ocrDictionaryStringMulti *reading : {&object->given, &object->givenSwap, &object->valid}) {
    QOC_SURE(qoc_ocrDictionaryStringMulti_construct(reading));  // Members without contents take no memory.
  }
  for (Statuses *statuses : {&object->resultStringStatus, &object->statusWRTInputStringSwapChar}) {
    QOC_SURE(qstd_vector_qoc_ocrDictionaryPositionStatus_constructEmpty(statuses));  // As above.
  }
  for (qstd_vector32s *indices : {&object->deleted, &object->inputIndices}) {
    QOC_SURE(qstd_vector32s_constructEmpty(indices));  // As above.
  }
  setDefaults(*object);
  object->scoreStatusMask = 3;
  object->ignoreDeletedSpaces = 1;
  return qoc_ocrDictionaryString_construct(&object->dictionaryString);
}

qsys_status qoc_ocrDictionaryResult_constructCopy(qoc_ocrDictionaryResult *object,
                                                  const qoc_ocrDictionaryResult *source) {
  return qoc::constructThenAssign<qoc_ocrDictionaryResult_construct, qoc_ocrDictionaryResult_assign,
                                  qoc_ocrDictionaryResult_destruct>(object, source);
}

qsys_status qoc_ocrDictionaryResult_assign(qoc_ocrDictionaryResult *object, const qoc_ocrDictionaryResult *source) {
  if (!present({object, source}) || object == source) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&object->given, &source->given));
  QOC_TRY(qoc_ocrDictionaryString_assign(&object->dictionaryString, &source->dictionaryString));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_assign(&object->resultStringStatus, &source->resultStringStatus));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_assign(&object->statusWRTInputStringSwapChar,
                                                             &source->statusWRTInputStringSwapChar));
  QOC_TRY(qstd_vector32s_assign(&object->deleted, &source->deleted));
  QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&object->givenSwap, &source->givenSwap));
  QOC_TRY(qstd_vector32s_assign(&object->inputIndices, &source->inputIndices));
  QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&object->valid, &source->valid));
  object->isComputed = source->isComputed;
  object->resultStringLineStatus = source->resultStringLineStatus;
  object->numIgnoredPrefixCharacters = source->numIgnoredPrefixCharacters;
  object->numIgnoredSuffixCharacters = source->numIgnoredSuffixCharacters;
  object->startFieldIndex = source->startFieldIndex;
  object->scoreStatusMask = source->scoreStatusMask;
  object->mode = source->mode;
  object->numEdits = source->numEdits;
  object->ignoreDeletedSpaces = source->ignoreDeletedSpaces;
  object->scoreIsCached = source->scoreIsCached;
  object->score = source->score;
  object->overlapInputString = source->overlapInputString;
  object->numInsertedIsCached = source->numInsertedIsCached;
  object->numInserted = source->numInserted;
  object->orderIndex = source->orderIndex;
  object->numMatchedPositionsIsCached = source->numMatchedPositionsIsCached;
  object->numMatchedPositions = source->numMatchedPositions;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_destruct(qoc_ocrDictionaryResult *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  // All members go, whatever one of them says; the first failure is what is told.
  qsys_status first = QSYS_STATUS_OK;
  const auto note = [&first](qsys_status status) {
    if (QOC_NEVER(status < 0) && first >= 0) {  // What the members hold is destructed without fail.
      first = status;
    }
  };
  note(qoc_ocrDictionaryStringMulti_destruct(&object->given));
  note(qoc_ocrDictionaryString_destruct(&object->dictionaryString));
  note(qstd_vector_qoc_ocrDictionaryPositionStatus_destruct(&object->resultStringStatus));
  note(qstd_vector_qoc_ocrDictionaryPositionStatus_destruct(&object->statusWRTInputStringSwapChar));
  note(qstd_vector32s_destruct(&object->deleted));
  note(qoc_ocrDictionaryStringMulti_destruct(&object->givenSwap));
  note(qstd_vector32s_destruct(&object->inputIndices));
  note(qoc_ocrDictionaryStringMulti_destruct(&object->valid));
  return first;
}

qsys_status qoc_ocrDictionaryResult_reset(qoc_ocrDictionaryResult *result) {
  if (!present({result})) {
    return QSYS_STATUS_OK;
  }
  for (qoc_ocrDictionaryStringMulti *reading : {&result->given, &result->givenSwap, &result->valid}) {
    qoc::clear(reading->positions);
  }
  qoc::clear(result->dictionaryString.characters);
  qoc::clear(result->inputIndices);
  qoc::clear(result->resultStringStatus);
  qoc::clear(result->deleted);
  // Deliberate: scoreStatusMask, ignoreDeletedSpaces and statusWRTInputStringSwapChar stay.
  setDefaults(*result);
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_compareEqual(const qoc_ocrDictionaryResult *a, const qoc_ocrDictionaryResult *b,
                                                 qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  *isEqual = 0;
  return a->mode == b->mode ? qoc_ocrDictionaryResult_isSameResult(a, b, isEqual) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_checkComputed(const qoc_ocrDictionaryResult *result) {
  return present({result}) && result->isComputed == 0 ? QOC_STATUS_NOT_COMPUTED : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_getDictionaryString(const qoc_ocrDictionaryResult *result, qsys_bool withSwap,
                                                        qoc_ocrDictionaryString *string) {
  if (!present({result, string})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: with swaps there is nothing to write.
  return withSwap != 0 ? QSYS_STATUS_OK : qoc_ocrDictionaryStringMulti_getString(&result->valid, string);
}

qsys_status qoc_ocrDictionaryResult_getNumPrimaryCharacters(const qoc_ocrDictionaryResult *result, int32_t *n) {
  return countStatus(result, qoc_ocrDictionaryPositionStatus_primary, n);
}

qsys_status qoc_ocrDictionaryResult_getNumSecondaryCharacters(const qoc_ocrDictionaryResult *result, int32_t *n) {
  return countStatus(result, qoc_ocrDictionaryPositionStatus_secondary, n);
}

qsys_status qoc_ocrDictionaryResult_print(const qoc_ocrDictionaryResult *result) {
  if (!present({result})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qsys_printfA("qoc_ocrDictionaryResult "));
  QOC_TRY(qsys_printfA("isComputed: %s", qoc::nameOfFlag(result->isComputed)));
  if (result->isComputed == 0) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryMode_print(result->mode));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_print(&result->resultStringStatus));
  QOC_TRY(qsys_printfA("resultStringLineStatus: "));
  QOC_TRY(qoc_ocrDictionaryPositionStatus_print(result->resultStringLineStatus));
  QOC_TRY(printStrings(*result));
  QOC_TRY(qsys_printfA(" numIgnoredPrefixCharacters: %d ", static_cast<int>(result->numIgnoredPrefixCharacters)));
  QOC_TRY(qsys_printfA(" numIgnoredSuffixCharacters: %d ", static_cast<int>(result->numIgnoredSuffixCharacters)));
  QOC_TRY(qsys_printfA(" startFieldIndex: %d ", static_cast<int>(result->startFieldIndex)));
  QOC_TRY(qsys_printfA(" deleted [ "));
  for (const std::int32_t index : qoc::viewAs<std::int32_t>(result->deleted)) {
    QOC_TRY(qsys_printfA("%d ", static_cast<int>(index)));
  }
  QOC_TRY(qsys_printfA("] "));
  return qsys_printfA(" overlapInputString: %d ", static_cast<int>(result->overlapInputString));
}

qsys_status qstd_vector_qoc_ocrDictionaryResult_print(const qstd_vector_qoc_ocrDictionaryResult *vector) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qsys_printfA(" { "));
  for (const qoc_ocrDictionaryResult &result : qoc::view(*vector)) {
    QOC_TRY(qoc_ocrDictionaryResult_print(&result));
  }
  return qsys_printfA(" } ");
}
