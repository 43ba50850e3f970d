// The fielding run: a reading forced into the shape of a line.
//
// A placement lays the line positions [first, first + length) along the reading, its first one at the reading position
// `offset`, which may lie before the reading or so near its end that only a part overlaps:
//
//     offset -1      line  A 9 9      offset 1   line    A 9 9
//                 reading    1 2              reading  x B 1 2
//
// Every position of a placement takes the best character that it admits at its place. The placements are tried one
// after the other, and the best in rank is kept, the earlier one where they tie. Each is worked out in a result of its
// own that changes places with the kept one when it wins; what only depends on the reading is filled in at the end, in
// the kept one.

#include <qoc/fielding_run.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "frame/frame.hpp"
#include "kinds/line_alignment.hpp"
#include "platform/system/certain.hpp"
#include "run/result_ranking.hpp"
#include "run/result_set_ops.hpp"

using namespace qoc;

namespace {

struct Placement {
  std::int32_t first, length, offset;
};

qsys_status isAdmitted(const qoc_ocrDictionaryPositionFielding &positionFielding,
                       const qoc_ocrDictionaryChar &character, bool &answer) {
  qsys_bool isMatch = 0;
  QOC_TRY(qoc_ocrDictionaryPositionFielding_isMatch(&positionFielding, &character, nullptr, &isMatch));
  answer = isMatch != 0;
  return QSYS_STATUS_OK;
}

struct BestCharacter {
  qoc_ocrDictionaryChar character = {QOC_CHAR_EMPTY, 0};
  qoc_ocrDictionaryPositionStatus status = qoc_ocrDictionaryPositionStatus_noMatch;
};

/// What stands at a position where the reading offers nothing that it admits: its only character, else the space where
/// it is allowed.
void fillIn(const qoc_ocrDictionaryPositionFielding &positionFielding, BestCharacter &best) noexcept {
  if (answerOf<qoc_ocrDictionaryPositionFielding_getIsSingleCharacter>(positionFielding)) {
    best.status = qoc_ocrDictionaryPositionStatus_substituted;
    qoc_ocrDictionaryPositionFielding_getSingleCharacter(&positionFielding, &best.character.code);  // As it said.
  } else if (answerOf<qoc_ocrDictionaryPositionFielding_getAllowsSpace>(positionFielding)) {
    best = {{U' ', 0}, qoc_ocrDictionaryPositionStatus_substitutedSpace};
  }
}

/// Of the candidate's swap equivalents the first that the position admits, with the candidate's score. The primary
/// candidate's equivalents are tried by score, each with that of the later candidate of the same code.
qsys_status findEquivalent(const qoc_ocrDictionaryPositionFielding &positionFielding, Characters candidates,
                           std::size_t index, const qoc_swapCharSet *set, bool &isFound,
                           qoc_ocrDictionaryChar &character) {
  isFound = false;
  if (set == nullptr) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_qoc_ocrDictionaryChar equivalents;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vector_qoc_ocrDictionaryChar_constructEmpty, qstd_vector_qoc_ocrDictionaryChar_destruct>(
        &equivalents);
    QOC_TRY(qoc_swapCharSet_getEquivalentCharacters(set, &candidates[index], &equivalents));
    const auto tried = editAs<qoc_ocrDictionaryChar>(equivalents);
    if (index == 0) {
      for (qoc_ocrDictionaryChar &equivalent : tried) {
        for (const qoc_ocrDictionaryChar &candidate : candidates.subspan(1)) {
          equivalent.score = candidate.code == equivalent.code ? candidate.score : equivalent.score;
        }
      }
      if (tried.size() > 1) {
        std::qsort(tried.data(), tried.size(), sizeof(qoc_ocrDictionaryChar), qoc_ocrDictionaryChar_compareScoresQsort);
      }
    }
    for (const qoc_ocrDictionaryChar &equivalent : tried) {
      QOC_TRY(isAdmitted(positionFielding, equivalent, isFound));
      if (isFound) {
        character = {equivalent.code, candidates[index].score};
        break;
      }
    }
    return QSYS_STATUS_OK;
  });
}

/// The best character that the position admits of one position of the reading, which has candidates.
qsys_status findBestCharacter(const qoc_ocrDictionaryPositionFielding &positionFielding, Characters candidates,
                              const qoc_swapCharSet *set, BestCharacter &best) {
  best = {};
  QOC_TRY(qsys_attention_check());
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    bool isFound = false;
    QOC_TRY(isAdmitted(positionFielding, candidates[i], isFound));
    if (isFound) {
      best = {candidates[i],
              i == 0 ? qoc_ocrDictionaryPositionStatus_primary : qoc_ocrDictionaryPositionStatus_secondary};
      return QSYS_STATUS_OK;
    }
    QOC_TRY(findEquivalent(positionFielding, candidates, i, set, isFound, best.character));
    if (isFound) {
      best.status =
          i == 0 ? qoc_ocrDictionaryPositionStatus_primarySwap : qoc_ocrDictionaryPositionStatus_secondarySwap;
      return QSYS_STATUS_OK;
    }
  }
  fillIn(positionFielding, best);
  return QSYS_STATUS_OK;
}

bool isEmptyCharacterOnly(const qoc_ocrDictionaryCharMulti &position) noexcept {
  return sizeOf(position) == 1 && view(position).front().code == QOC_CHAR_EMPTY;
}

/// Makes `valid` of one candidate for each character.
qsys_status setValid(qoc_ocrDictionaryResult &result, const qoc_ocrDictionaryString &string) {
  return qoc_ocrDictionaryStringMulti_setString(&result.valid, &string);
}

/// The reading's part of a result.
qsys_status setReading(qoc_ocrDictionaryResult &result, const qoc_ocrDictionaryStringMulti &reading) {
  QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&result.given, &reading));
  return qoc_ocrDictionaryStringMulti_assign(&result.givenSwap, &reading);
}

/// The largest status, the worst; 0 where there is none.
qoc_ocrDictionaryPositionStatus worstStatus(const qoc_ocrDictionaryResult &result) noexcept {
  qoc_ocrDictionaryPositionStatus worst = 0;
  for (const auto status : viewAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus)) {
    worst = std::max(worst, status);
  }
  return worst;
}

/// A line without positions takes over the primary candidates.
qsys_status passThrough(const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryFieldingRunParams &params,
                        qoc_ocrDictionaryResult &result) {
  qoc_ocrDictionaryString primary;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryString_construct, qoc_ocrDictionaryString_destruct>(&primary);
    for (const qoc_ocrDictionaryCharMulti &position : view(reading)) {
      qoc_ocrDictionaryChar character = {};
      QOC_TRY(qoc_ocrDictionaryCharMulti_getPrimaryCharacter(&position, &character));
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(&primary.characters, &character));
      const qoc_ocrDictionaryPositionStatus status = isEmptyCharacterOnly(position)
                                                         ? qoc_ocrDictionaryPositionStatus_noMatch
                                                         : qoc_ocrDictionaryPositionStatus_primary;
      QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_pushBack(&result.resultStringStatus, &status));
    }
    QOC_TRY(setReading(result, reading));
    QOC_TRY(setValid(result, primary));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_assign(&result.statusWRTInputStringSwapChar,
                                                               &result.resultStringStatus));
    result.resultStringLineStatus = worstStatus(result);
    result.scoreStatusMask = params.rankingVariant;
    result.isComputed = 1;
    return QSYS_STATUS_OK;
  });
}

/// The search for the best placement of a line along a reading.
class PlacementSearch {
 public:
  PlacementSearch(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_swapCharSet *set,
                  const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryFieldingRunParams &params,
                  qoc_ocrDictionaryResult &kept, qoc_ocrDictionaryResult &candidate)
      : line_(view(lineFielding)),
        set_(set),
        reading_(reading),
        params_(params),
        kept_(kept),
        candidate_(candidate),
        numLinePositions_(static_cast<std::int32_t>(line_.size())),
        numReadingPositions_(sizeOf(reading)),
        span_{0, numReadingPositions_} {}

  /// The whole line at every offset; leaves the best placement in the kept result.
  qsys_status sweep() {
    for (std::int32_t offset = 1 - numLinePositions_; offset < numReadingPositions_; ++offset) {
      QOC_TRY(qsys_attention_check());
      QOC_TRY(evaluate({0, numLinePositions_, offset}));
      if (ranksBeforeKept()) {
        std::swap(kept_, candidate_);
      }
    }
    return finishKept();
  }

  /// Every part of the line, earlier starts and longer parts first, at every offset that can still win.
  qsys_status searchParts() {
    if (params_.trimEmptyEnds != 0) {
      trimSpan();
    }
    for (std::int32_t first = 0; first <= params_.limitA && first < numLinePositions_; ++first) {
      const std::int64_t shortest =
          std::max<std::int64_t>(params_.minStringLength, std::int64_t{params_.limitB} + 1 - first);
      for (std::int32_t length = longestPart(first); length >= shortest && length >= bound_; --length) {
        QOC_TRY(qsys_attention_check());
        QOC_TRY(searchOffsets(first, length));
      }
    }
    return finishKept();
  }

 private:
  void trimSpan() noexcept {
    const Positions positions = view(reading_);
    while (span_.begin < numReadingPositions_ &&
           isEmptyCharacterOnly(positions[static_cast<std::size_t>(span_.begin)])) {
      ++span_.begin;
    }
    while (span_.end > 0 && isEmptyCharacterOnly(positions[static_cast<std::size_t>(span_.end) - 1])) {
      --span_.end;
    }
  }

  std::int32_t longestPart(std::int32_t first) const noexcept {
    const std::int32_t length = qxfIMin(numLinePositions_ - first, params_.maxStringLength);
    const bool isCutToReading = params_.limitA == INT32_MAX && numReadingPositions_ >= params_.minStringLength &&
                                std::int64_t{numReadingPositions_} + first > params_.limitB;
    return isCutToReading ? qxfIMin(length, numReadingPositions_) : length;
  }

  qsys_status searchOffsets(std::int32_t first, std::int32_t length) {
    for (std::int32_t offset = 1 - length; offset < numReadingPositions_; ++offset) {
      QOC_TRY(qsys_attention_check());
      const std::int32_t overlap =
          offset >= 0 ? qxfIMin(length, numReadingPositions_ - offset) : qxfIMin(length + offset, numReadingPositions_);
      if (overlap < bound_) {
        continue;
      }
      QOC_TRY(evaluate({first, length, offset}));
      const bool isBetter = candidate_.overlapInputString > kept_.overlapInputString ||
                            (candidate_.overlapInputString == kept_.overlapInputString && ranksBeforeKept());
      if (isBetter) {
        std::swap(kept_, candidate_);
        raiseBound();
      }
    }
    return QSYS_STATUS_OK;
  }

  // A placement with less overlap than this cannot have as many characters from the reading as the kept one.
  void raiseBound() {
    const auto statuses = viewAs<qoc_ocrDictionaryPositionStatus>(kept_.resultStringStatus);
    const auto numOf = [statuses](qoc_ocrDictionaryPositionStatus status) {
      return static_cast<std::int32_t>(std::ranges::count(statuses, status));
    };
    bound_ = numOf(qoc_ocrDictionaryPositionStatus_primary);
    if (params_.rankingVariant == 15) {
      bound_ += numOf(qoc_ocrDictionaryPositionStatus_secondary);
    }
  }

  /// Works the placement out in the candidate result.
  qsys_status evaluate(const Placement &placement) {
    QOC_SURE(qoc_ocrDictionaryResult_reset(&candidate_));  // It only lets go.
    const std::int64_t end = std::int64_t{placement.offset} + placement.length;
    candidate_.isComputed = 1;
    candidate_.mode = qoc_ocrDictionaryMode_fielding;
    candidate_.startFieldIndex = placement.first;
    candidate_.scoreStatusMask = params_.rankingVariant;
    candidate_.ignoreDeletedSpaces = params_.fieldingOption7 != 0;
    candidate_.numIgnoredPrefixCharacters = qxfIMax(placement.offset, 0);
    candidate_.numIgnoredSuffixCharacters =
        static_cast<std::int32_t>(std::max<std::int64_t>(numReadingPositions_ - end, 0));
    candidate_.overlapInputString = static_cast<std::int32_t>(
        std::max<std::int64_t>(std::min<std::int64_t>(end, span_.end) - qxfIMax(placement.offset, span_.begin), 0));
    candidate_.numEdits = candidate_.numIgnoredPrefixCharacters + candidate_.numIgnoredSuffixCharacters;
    for (std::int32_t i = 0; i < placement.length; ++i) {
      QOC_TRY(addPosition(line_[static_cast<std::size_t>(placement.first + i)], placement.offset + i));
    }
    candidate_.resultStringLineStatus = worstStatus(candidate_);
    return setValid(candidate_, candidate_.dictionaryString);
  }

  qsys_status addPosition(const qoc_ocrDictionaryPositionFielding &positionFielding, std::int32_t read) {
    BestCharacter best;
    if (0 <= read && read < numReadingPositions_) {
      QOC_TRY(findBestCharacter(positionFielding, view(view(reading_)[static_cast<std::size_t>(read)]), set_, best));
    } else {
      fillIn(positionFielding, best);
      best.status = qoc_ocrDictionaryPositionStatus_inserted;
    }
    candidate_.numEdits += best.status > qoc_ocrDictionaryPositionStatus_secondarySwap ? 1 : 0;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(&candidate_.dictionaryString.characters, &best.character));
    return qstd_vector_qoc_ocrDictionaryPositionStatus_pushBack(&candidate_.resultStringStatus, &best.status);
  }

  /// A kept result that is not computed yet comes last.
  bool ranksBeforeKept() {
    return (params_.rankingVariant == 3 ? comparePrimary(candidate_, kept_)
                                        : comparePrimaryAndSecondary(candidate_, kept_)) < 0;
  }

  qsys_status finishKept() {
    if (kept_.isComputed == 0) {
      return QSYS_STATUS_OK;
    }
    QOC_TRY(setReading(kept_, reading_));
    return qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar(&kept_, &kept_.statusWRTInputStringSwapChar);
  }

  std::span<const qoc_ocrDictionaryPositionFielding> line_;
  const qoc_swapCharSet *set_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_ocrDictionaryFieldingRunParams &params_;
  qoc_ocrDictionaryResult &kept_, &candidate_;
  std::int32_t numLinePositions_, numReadingPositions_;
  qstd_span32 span_;  // The reading without its empty ends, where these are trimmed.
  std::int32_t bound_ = 0;
};

qsys_status hasTwoOfOneCode(const qoc_ocrDictionaryCharMulti &position, bool &answer) {
  qstd_vector_qoc_ocrDictionaryChar distinct;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_constructCopy(&distinct, &position.candidates));
    frame.local<qstd_vector_qoc_ocrDictionaryChar_destruct>(&distinct);
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_removeDup(&distinct));
    answer = sizeOf(distinct) != sizeOf(position);
    return QSYS_STATUS_OK;
  });
}

qsys_status checkLine(const qoc_ocrDictionaryLineFielding &lineFielding) {
  for (const qoc_ocrDictionaryPositionFielding &positionFielding : view(lineFielding)) {
    if (answerOf<qoc_ocrDictionaryPositionFielding_isEmpty>(positionFielding)) {
      return QOC_STATUS_FIELDING_POSITION_EMPTY;
    }
  }
  return QSYS_STATUS_OK;
}

qsys_status checkReading(const qoc_ocrDictionaryStringMulti &reading) {
  if (sizeOf(reading) == 0) {
    return QOC_STATUS_STRING_EMPTY;
  }
  for (const qoc_ocrDictionaryCharMulti &position : view(reading)) {
    if (sizeOf(position) == 0) {
      return QOC_STATUS_CANDIDATES_MISSING;
    }
  }
  for (const qoc_ocrDictionaryCharMulti &position : view(reading)) {
    bool hasTwo = false;
    QOC_TRY(hasTwoOfOneCode(position, hasTwo));
    if (hasTwo) {
      return QOC_STATUS_CHARACTER_DUPLICATE;
    }
  }
  return QSYS_STATUS_OK;
}

qsys_status checkLineLength(const qoc_ocrDictionaryLineFielding &lineFielding,
                            const qoc_ocrDictionaryFieldingRunParams &params) {
  if (params.fieldingMode != 0) {
    return QSYS_STATUS_OK;
  }
  const std::int32_t numPositions = sizeOf(lineFielding.positions);
  if (numPositions <= params.limitB) {
    return QOC_STATUS_FIELDING_TOO_SHORT_FOR_LIMIT;
  }
  return numPositions < params.minStringLength ? QOC_STATUS_FIELDING_TOO_SHORT : QSYS_STATUS_OK;
}

constexpr qoc_ocrDictionaryFieldingRunParams defaults = {1, 1, INT32_MAX, INT32_MAX, 0, 1, 1, 3};

}  // namespace

qsys_status qoc_ocrDictionaryFieldingRunParams_construct(qoc_ocrDictionaryFieldingRunParams *params) {
  if (!present({params})) {
    return QSYS_STATUS_OK;
  }
  *params = defaults;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryFieldingRunParams_constructCopy(qoc_ocrDictionaryFieldingRunParams *params,
                                                             const qoc_ocrDictionaryFieldingRunParams *source) {
  return constructThenAssign<qoc_ocrDictionaryFieldingRunParams_construct, qoc_ocrDictionaryFieldingRunParams_assign,
                             qoc_ocrDictionaryFieldingRunParams_destruct>(params, source);
}

qsys_status qoc_ocrDictionaryFieldingRunParams_assign(qoc_ocrDictionaryFieldingRunParams *params,
                                                      const qoc_ocrDictionaryFieldingRunParams *source) {
  if (!present({params, source})) {
    return QSYS_STATUS_OK;
  }
  *params = *source;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryFieldingRunParams_destruct(qoc_ocrDictionaryFieldingRunParams *params) {
  present({params});
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryFieldingRunParams_reset(qoc_ocrDictionaryFieldingRunParams *params) {
  return qoc_ocrDictionaryFieldingRunParams_construct(params);
}

qsys_status qoc_ocrDictionaryFieldingRunParams_compareEqual(const qoc_ocrDictionaryFieldingRunParams *a,
                                                            const qoc_ocrDictionaryFieldingRunParams *b,
                                                            qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: rankingVariant is not compared.
  *isEqual = a->fieldingMode == b->fieldingMode && a->minStringLength == b->minStringLength &&
             a->maxStringLength == b->maxStringLength && a->limitA == b->limitA && a->limitB == b->limitB &&
             a->trimEmptyEnds == b->trimEmptyEnds && a->fieldingOption7 == b->fieldingOption7;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryFieldingRunParams_validate(const qoc_ocrDictionaryFieldingRunParams *params) {
  if (!present({params})) {
    return QSYS_STATUS_OK;
  }
  if (params->minStringLength < 1) {
    return QOC_STATUS_MIN_LENGTH_INVALID;
  }
  if (params->minStringLength > params->maxStringLength) {
    return QOC_STATUS_LENGTHS_REVERSED;
  }
  if (params->limitA < 0) {
    return QOC_STATUS_LIMIT_A_NEGATIVE;
  }
  if (params->limitB < 0) {
    return QOC_STATUS_LIMIT_B_NEGATIVE;
  }
  return params->rankingVariant == 3 || params->rankingVariant == 15 ? QSYS_STATUS_OK
                                                                     : QOC_STATUS_RANKING_VARIANT_INVALID;
}

qsys_status qoc_ocrDictionaryLineFielding_runFieldingParams(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                            const qoc_swapCharSet *set,
                                                            const qoc_ocrDictionaryStringMulti *reading,
                                                            const qoc_ocrDictionaryFieldingRunParams *params,
                                                            qoc_ocrDictionaryResultSet *results) {
  if (!present({lineFielding, reading, params, results})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryResult candidate;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    reset(*results);
    QOC_TRY(qoc_ocrDictionaryFieldingRunParams_validate(params));
    const bool isLineEmpty = sizeOf(lineFielding->positions) == 0;
    if (!isLineEmpty) {
      QOC_TRY(checkLine(*lineFielding));
      QOC_TRY(checkReading(*reading));
      QOC_TRY(checkLineLength(*lineFielding, *params));
    }
    QOC_TRY(qstd_vector_qoc_ocrDictionaryResult_resize(&results->results, 1));
    qoc_ocrDictionaryResult &kept = editAs<qoc_ocrDictionaryResult>(results->results).front();
    if (isLineEmpty) {
      QOC_TRY(passThrough(*reading, *params, kept));
    } else {
      frame.emptyLocal<qoc_ocrDictionaryResult_construct, qoc_ocrDictionaryResult_destruct>(&candidate);
      PlacementSearch search(*lineFielding, set, *reading, *params, kept, candidate);
      QOC_TRY(params->fieldingMode == 1 ? search.sweep() : search.searchParts());
    }
    results->isComputed = 1;
    return QSYS_STATUS_OK;
  });
}
