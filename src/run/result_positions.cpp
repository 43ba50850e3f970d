// The queries that relate the positions of a result to those of the reading.

#include <algorithm>

#include "frame/frame.hpp"
#include "run/result_set_ops.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::statusesOf;
using qoc::view;

namespace {

using Status = qoc_ocrDictionaryPositionStatus;

bool consumesInput(Status status) {
  return status >= qoc_ocrDictionaryPositionStatus_primary && status <= qoc_ocrDictionaryPositionStatus_noMatch;
}

bool isLeftOut(Status status) {
  return status == qoc_ocrDictionaryPositionStatus_deleted || status == qoc_ocrDictionaryPositionStatus_deletedIgnored;
}

/// Reports a status that a result string cannot have; such a position is skipped.
void checkResultStatus(Status status) {
  if (!consumesInput(status) && status != qoc_ocrDictionaryPositionStatus_inserted) {
    qstd_assert_(__LINE__);
  }
}

qsys_status checkPosition(const qoc_ocrDictionaryResult &result, std::int32_t position, std::int32_t size) {
  QOC_TRY(qoc_ocrDictionaryResult_checkComputed(&result));
  return position < 0 ? QOC_STATUS_POSITION_NEGATIVE : position >= size ? QOC_STATUS_POSITION_TOO_BIG : QSYS_STATUS_OK;
}

bool isLoneSpace(const qoc_ocrDictionaryCharMulti &position) {
  const auto candidates = view(position);
  return candidates.size() == 1 && candidates.front().code == 32;
}

}  // namespace

qsys_status qoc_ocrDictionaryResult_getIsSingularPos(const qoc_ocrDictionaryResult *result, int32_t position,
                                                     qsys_bool *isSingular) {
  if (!present({result, isSingular})) {
    return QSYS_STATUS_OK;
  }
  *isSingular = 0;
  QOC_TRY(checkPosition(*result, position, qoc::sizeOf(result->valid)));
  const auto candidates = view(view(result->valid)[static_cast<std::size_t>(position)]);
  *isSingular = candidates.size() == 1 && candidates.front().code != QOC_CHAR_ANY ? 1 : 0;
  return QSYS_STATUS_OK;
}

void qoc::fillStatusWRTInputString(const qoc_ocrDictionaryResult &result, std::span<Status> out) {
  const auto given = view(result.given);
  const auto n = static_cast<std::int64_t>(given.size());
  std::ranges::fill(out, qoc_ocrDictionaryPositionStatus_primary);
  const auto set = [&](std::int64_t index, Status status) {
    if (index >= 0 && index < n) {  // Positions outside the reading do not exist.
      out[static_cast<std::size_t>(index)] = status;
    }
  };

  const std::int64_t prefixEnd = std::min<std::int64_t>(result.numIgnoredPrefixCharacters, n);
  for (std::int64_t i = 0; i < prefixEnd; ++i) {
    set(i, qoc_ocrDictionaryPositionStatus_deletedIgnored);
  }
  for (std::int64_t i = std::max<std::int64_t>(n - result.numIgnoredSuffixCharacters, 0); i < n; ++i) {
    set(i, qoc_ocrDictionaryPositionStatus_deletedIgnored);
  }
  for (const std::int32_t index : qoc::viewAs<std::int32_t>(result.deleted)) {
    if (index >= 0 && index < n) {
      const bool isIgnored = result.ignoreDeletedSpaces != 0 && isLoneSpace(given[static_cast<std::size_t>(index)]);
      set(index, isIgnored ? qoc_ocrDictionaryPositionStatus_deletedIgnored : qoc_ocrDictionaryPositionStatus_deleted);
    }
  }

  std::int64_t q = result.numIgnoredPrefixCharacters;
  for (const Status status : statusesOf(result)) {
    if (q >= n) {
      break;
    }
    while (q >= 0 && q < n && isLeftOut(out[static_cast<std::size_t>(q)])) {
      ++q;
    }
    if (consumesInput(status)) {
      set(q, status);
      ++q;
    }
    checkResultStatus(status);
  }
}

qsys_status qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(
    const qoc_ocrDictionaryResult *result, qstd_vector_qoc_ocrDictionaryPositionStatus *statuses) {
  if (!present({result, statuses})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResult_checkComputed(result));
  // The output may be a vector of the result itself, but not the one that is walked: those differ in what they mean.
  const Status primary = qoc_ocrDictionaryPositionStatus_primary;
  qoc::clear(*statuses);
  QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_resizeFill(statuses, qoc::sizeOf(result->given), &primary));
  qoc::fillStatusWRTInputString(*result, qoc::editAs<Status>(*statuses));
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_getStatusWRTInputStringSwapCharPos(const qoc_ocrDictionaryResult *result,
                                                                       int32_t position, Status *status) {
  if (!present({result, status})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(checkPosition(*result, position, qoc::sizeOf(result->givenSwap)));
  qstd_vector_qoc_ocrDictionaryPositionStatus statuses;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vector_qoc_ocrDictionaryPositionStatus_constructEmpty,
                     qstd_vector_qoc_ocrDictionaryPositionStatus_destruct>(&statuses);
    QOC_TRY(qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(result, &statuses));
    // `givenSwap` may be longer than `given`, for which the statuses are.
    if (position >= qoc::sizeOf(statuses)) {
      return QOC_STATUS_POSITION_TOO_BIG;
    }
    *status = qoc::viewAs<Status>(statuses)[static_cast<std::size_t>(position)];
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryResult_getInputStringIndicesOfResultStringCharacters(const qoc_ocrDictionaryResult *result,
                                                                                  qstd_vector32s *indices) {
  if (!present({result, indices})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResult_checkComputed(result));
  const auto statuses = statusesOf(*result);
  const std::int32_t none = -1;
  qoc::clear(*indices);
  QOC_TRY(qstd_vector32s_resizeFill(indices, static_cast<std::int32_t>(statuses.size()), &none));
  const auto out = qoc::editAs<std::int32_t>(*indices);
  const std::int32_t n = qoc::sizeOf(result->given);
  const auto deleted = qoc::viewAs<std::int32_t>(result->deleted);
  std::int32_t q = result->numIgnoredPrefixCharacters;
  for (std::size_t r = 0; r < statuses.size(); ++r) {
    while (q < n && std::ranges::find(deleted, q) != deleted.end()) {
      ++q;
    }
    if (consumesInput(statuses[r])) {
      out[r] = q;
      q += q < INT32_MAX ? 1 : 0;
    }
    checkResultStatus(statuses[r]);
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_getInsertedDictionaryStringCharacterIndices(const qoc_ocrDictionaryResult *result,
                                                                                qstd_vector32s *indices) {
  if (!present({result, indices})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResult_checkComputed(result));
  qoc::clear(*indices);
  const auto statuses = statusesOf(*result);
  for (std::int32_t r = 0; r < static_cast<std::int32_t>(statuses.size()); ++r) {
    if (statuses[static_cast<std::size_t>(r)] == qoc_ocrDictionaryPositionStatus_inserted) {
      QOC_TRY(qstd_vector32s_pushBack(indices, &r));
    }
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResult_inputStringIndexFromResultStringIndexFromData(
    int32_t resultIndex, const qstd_vector_qoc_ocrDictionaryPositionStatus *inputStatus,
    const qstd_vector_qoc_ocrDictionaryPositionStatus *resultStatus, int32_t *inputIndex) {
  if (!present({inputStatus, resultStatus, inputIndex})) {
    return QSYS_STATUS_OK;
  }
  if (resultIndex < 0) {
    return QOC_STATUS_INDEX_NEGATIVE;
  }
  const auto result = qoc::viewAs<Status>(*resultStatus);
  const auto input = qoc::viewAs<Status>(*inputStatus);
  const auto last = static_cast<std::size_t>(resultIndex);
  if (last >= result.size()) {
    return QOC_STATUS_INDEX_TOO_BIG;
  }
  std::int32_t out = result[0] == qoc_ocrDictionaryPositionStatus_inserted ? -1 : 0;
  if (out == -1 && last == 0) {
    *inputIndex = out;
    return QSYS_STATUS_OK;
  }
  for (std::size_t k = 1; k <= last; ++k) {
    if (result[k] != qoc_ocrDictionaryPositionStatus_inserted) {
      ++out;
    } else if (k == last) {
      out = -1;
    }
  }
  for (std::size_t j = 0; j < input.size(); ++j) {
    if (isLeftOut(input[j]) && static_cast<std::int64_t>(j) <= out) {
      ++out;
    }
  }
  *inputIndex = out;
  return QSYS_STATUS_OK;
}
