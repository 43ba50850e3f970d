// How a reading has the shape of a line: every alignment as a result, ranked. The alignments are in line_alignment.hpp.

#include <qoc/line_fielding.h>

#include <utility>

#include "kinds/line_alignment.hpp"
#include "platform/system/work_meter.hpp"
#include "run/result_set_ops.hpp"
#include "swap/variants.hpp"
#include "text/reading_of.hpp"

using namespace qoc;

namespace {

qsys_status ask(const qoc_ocrDictionaryPositionFielding &positionFielding, const qoc_ocrDictionaryCharMulti &multi,
                const qoc_swapCharSet *set, bool &isAdmitted) {
  qsys_bool answer = 0;
  qoc_ocrDictionaryPositionStatus status = 0;
  QOC_TRY(qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(&positionFielding, &multi, set, &answer, &status));
  isAdmitted = answer != 0;
  return QSYS_STATUS_OK;
}

/// What stands at a position that no character of the reading was compared with. The classes are deliberately not
/// expanded.
qsys_status listUncompared(const qoc_ocrDictionaryPositionFielding &positionFielding,
                           qstd_vector_qoc_ocrDictionaryChar &candidates) {
  qsys_bool isAny = 0;
  QOC_TRY(qoc_ocrDictionaryPositionFielding_isAnyCharacter(&positionFielding, &isAny));
  if (isAny != 0) {
    const qoc_ocrDictionaryChar any = {QOC_CHAR_ANY, 0};
    return qstd_vector_qoc_ocrDictionaryChar_pushBack(&candidates, &any);
  }
  for (const Char32 code : viewAs<Char32>(positionFielding.fieldingCharacters)) {
    const qoc_ocrDictionaryChar listed = {code, 0};
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(&candidates, &listed));
  }
  return QSYS_STATUS_OK;
}

/// The matcher of one reading: files the alignments of its ranges in buckets.
class ReadingMatcher {
 public:
  ReadingMatcher(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_ocrDictionaryStringMulti &reading,
                 const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                 qstd_vector_vector_qoc_ocrDictionaryResult &buckets)
      : reading_(reading),
        set_(set),
        buckets_(buckets),
        admission_(lineFielding, reading, set, ask),
        hasParams_(params != nullptr),
        params_(params != nullptr ? *params : qoc_ocrDictionaryRunParams{}) {}

  /// Files the alignments of the whole reading and, where asked for, of its windows.
  qsys_status matchAll() {
    QOC_TRY(matchRange(0, sizeOf(reading_)));
    if (!hasParams_ || params_.matchOption9 == 0) {
      return QSYS_STATUS_OK;
    }
    return forEachWindow(
        admission_, params_, [&] { return stopEditsOnceExact(); },
        [&](std::int32_t start, std::int32_t length, bool &) { return matchRange(start, length); });
  }

 private:
  qsys_status stopEditsOnceExact() {
    if (stopsOnceExact(&params_)) {
      qsys_bool hasExact = 0;
      QOC_TRY(qoc_ocrDictionaryResultBuckets_hasResults(&buckets_, &hasExact));
      params_.maxEdits = hasExact != 0 ? 0 : 1;
    }
    return QSYS_STATUS_OK;
  }

  qsys_status matchRange(std::int32_t start, std::int32_t length) {
    return forEachAlignment(admission_, start, length, hasParams_ ? &params_ : nullptr,
                            EmptyPositionRule::emptyRangeOrFirst,
                            [&](LineAlignment alignment, bool &goOn) -> qsys_status {
                              goOn = alignment.edit != LineEdit::none || params_.returnBestOnly == 0;
                              return file(start, length, alignment);
                            });
  }

  qsys_status file(std::int32_t start, std::int32_t length, LineAlignment alignment) {
    QOC_TRY(meter_.add(workPerPosition * static_cast<std::size_t>(sizeOf(reading_) + admission_.numLinePositions())));
    qoc_ocrDictionaryResult result;
    return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(qoc_ocrDictionaryResult_construct(&result));
      frame.local<qoc_ocrDictionaryResult_destruct>(&result);
      result.isComputed = 1;
      result.mode = qoc_ocrDictionaryMode_fielding;
      result.numEdits = alignment.edit == LineEdit::none ? 0 : 1;
      result.numIgnoredPrefixCharacters = start;
      result.numIgnoredSuffixCharacters = sizeOf(reading_) - (start + length);
      result.overlapInputString = length;
      if (alignment.edit == LineEdit::extra) {
        const std::int32_t skipped = start + alignment.place;
        QOC_TRY(qstd_vector32s_pushBack(&result.deleted, &skipped));
      }
      QOC_TRY(qoc_ocrDictionaryStringMulti_assign(&result.given, &reading_));
      QOC_TRY(fillPositions(start, alignment, result));
      return qoc_ocrDictionaryResultBuckets_add(&buckets_, &result);
    });
  }

  qsys_status fillPositions(std::int32_t start, LineAlignment alignment, qoc_ocrDictionaryResult &result) {
    const std::int32_t numPositions = admission_.numLinePositions();
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&result.valid.positions, numPositions));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryPositionStatus_resize(&result.resultStringStatus, numPositions));
    const auto valid = editAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
    const auto statuses = editAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
    for (std::int32_t position = 0; position < numPositions; ++position) {
      const qoc_ocrDictionaryPositionFielding &positionFielding = admission_.linePosition(position);
      qstd_vector_qoc_ocrDictionaryChar &candidates = valid[static_cast<std::size_t>(position)].candidates;
      qoc_ocrDictionaryPositionStatus &status = statuses[static_cast<std::size_t>(position)];
      const bool isUncompared = position == alignment.place &&
                                (alignment.edit == LineEdit::missing || alignment.edit == LineEdit::substituted);
      if (isUncompared) {
        status = alignment.edit == LineEdit::missing ? qoc_ocrDictionaryPositionStatus_inserted
                                                     : qoc_ocrDictionaryPositionStatus_substituted;
        QOC_TRY(listUncompared(positionFielding, candidates));
        continue;
      }
      std::int32_t read = start + position;
      read -= alignment.edit == LineEdit::missing && position > alignment.place ? 1 : 0;
      read += alignment.edit == LineEdit::extra && position >= alignment.place ? 1 : 0;
      const qoc_ocrDictionaryCharMulti &multi = view(reading_)[static_cast<std::size_t>(read)];
      qsys_bool isMatch = 0;
      QOC_TRY(qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(&positionFielding, &multi, set_, &isMatch, &status));
      QOC_TRY(qoc_ocrDictionaryPositionFielding_matchMulti(&positionFielding, &multi, set_, &candidates));
    }
    return QSYS_STATUS_OK;
  }

  static constexpr std::size_t workPerPosition = 64;  // It is copied, graded and its candidates are listed.

  WorkMeter meter_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;
  qstd_vector_vector_qoc_ocrDictionaryResult &buckets_;
  Admission admission_;
  bool hasParams_;
  qoc_ocrDictionaryRunParams params_;  // A working copy: its maxEdits falls to 0 once an exact result is there.
};

/// Ranks everything that one reading gives in `results`, computed also when that is nothing.
qsys_status matchReading(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_ocrDictionaryStringMulti &reading,
                         const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                         qoc_ocrDictionaryResultSet &results) {
  qstd_vector_vector_qoc_ocrDictionaryResult buckets;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryResultSet_reset(&results));
    results.isComputed = 1;
    QOC_TRY(qstd_vector_vector_qoc_ocrDictionaryResult_constructEmpty(&buckets));
    frame.local<qstd_vector_vector_qoc_ocrDictionaryResult_destruct>(&buckets);
    QOC_TRY(ReadingMatcher(lineFielding, reading, params, set, buckets).matchAll());
    return qoc_ocrDictionaryResultSet_mergeBuckets(&results, &buckets, params);
  });
}

/// Matches every variant of the reading that the set's multi-character swaps allow.
qsys_status matchVariants(const qoc_ocrDictionaryLineFielding &lineFielding,
                          const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams *params,
                          const qoc_swapCharSet &set, qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryRunParams working = params != nullptr ? *params : qoc_ocrDictionaryRunParams{};
  qoc_ocrDictionaryResultSet found;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryResultSet_construct(&found));
    frame.local<qoc_ocrDictionaryResultSet_destruct>(&found);
    bool isFirst = true;
    return forEachVariant(
        reading, set,
        [&](const qoc_ocrDictionaryStringMulti &variant, const qstd_vector32s &indices, bool &) -> qsys_status {
          QOC_TRY(stopEarly(params, results, working));
          QOC_TRY(matchReading(lineFielding, variant, params != nullptr ? &working : nullptr, &set, found));
          return takeVariantsResults(results, found, reading, indices, std::exchange(isFirst, false), params);
        });
  });
}

}  // namespace

qsys_status qoc_ocrDictionaryLineFielding_match(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                const qoc_ocrDictionaryString *input,
                                                const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                qoc_ocrDictionaryResultSet *results) {
  if (!present({lineFielding, input, results})) {
    return QSYS_STATUS_OK;
  }
  return withReadingOf(*input, [&](const qoc_ocrDictionaryStringMulti &reading) {
    return qoc_ocrDictionaryLineFielding_matchMulti(lineFielding, &reading, params, set, results);
  });
}

qsys_status qoc_ocrDictionaryLineFielding_matchMulti(const qoc_ocrDictionaryLineFielding *lineFielding,
                                                     const qoc_ocrDictionaryStringMulti *reading,
                                                     const qoc_ocrDictionaryRunParams *params,
                                                     const qoc_swapCharSet *set, qoc_ocrDictionaryResultSet *results) {
  if (!present({lineFielding, reading, results})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_reset(results));
  if (hasVariants(set)) {
    QOC_TRY(matchVariants(*lineFielding, *reading, params, *set, *results));
  } else {
    QOC_TRY(matchReading(*lineFielding, *reading, params, set, *results));
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_finalize(results, params));
  results->isComputed = 1;
  return QSYS_STATUS_OK;
}
