// How a reading has the shape of a line: every alignment as a result, ranked. The alignments are in line_alignment.hpp.

#include "kinds/line_fielding_match.hpp"

#include <array>
#include <optional>
#include <utility>

#include "kinds/line_states.hpp"
#include "platform/containers/shared_elements.hpp"
#include "platform/system/work_meter.hpp"
#include "run/result_set_ops.hpp"
#include "swap/variants.hpp"
#include "text/reading_of.hpp"
#include "text/shared_reading.hpp"

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
  if (answerOf<qoc_ocrDictionaryPositionFielding_isAnyCharacter>(positionFielding)) {
    const qoc_ocrDictionaryChar any = {QOC_CHAR_ANY, 0};
    return qstd_vector_qoc_ocrDictionaryChar_pushBack(&candidates, &any);
  }
  for (const Char32 code : viewAs<Char32>(positionFielding.fieldingCharacters)) {
    const qoc_ocrDictionaryChar listed = {code, 0};
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(&candidates, &listed));
  }
  return QSYS_STATUS_OK;
}

/// What a matcher makes, constructed empty: its buckets, the copy of the reading that all results share, and a list of
/// what a position admits.
struct Storage {
  qstd_vector_vector_qoc_ocrDictionaryResult buckets;
  qoc_ocrDictionaryStringMulti shown;
  qstd_vector_qoc_ocrDictionaryChar admitted;
};

/// How many of its results a matcher makes: every one, or the best.
///
/// The best in the default ranking depends on nothing but a few numbers (see ExpressionResults, where it is proved), so
/// of the others no results are made. Making one may be a failure, which would be missed, where the reading has
/// characters that it is a failure to ask about.
enum class Wanted { all, best };

/// The matcher of one reading: files the alignments of its ranges in buckets.
class ReadingMatcher {
 public:
  ReadingMatcher(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_ocrDictionaryStringMulti &reading,
                 const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, Wanted wanted, Storage &storage)
      : reading_(reading),
        set_(set),
        storage_(storage),
        admission_(lineFielding, reading, set, ask),
        hasParams_(params != nullptr),
        params_(params != nullptr ? *params : qoc_ocrDictionaryRunParams{}),
        wanted_(wanted),
        pool_(wanted == Wanted::best ? expectedForOne() : SIZE_MAX) {}

  /// Files the alignments of the whole reading and, where asked for, of its windows; or the best of them.
  qsys_status matchAll() {
    QOC_TRY(matchRange(0, sizeOf(reading_)));
    if (hasParams_ && params_.matchOption9 != 0) {
      QOC_TRY(forEachWindow(
          admission_, params_, [&] { return stopEditsOnceExact(); },
          [&](std::int32_t start, std::int32_t length, bool &) { return matchRange(start, length); }));
    }
    return best_ ? file(best_->start, best_->length, best_->alignment) : qsys_status{QSYS_STATUS_OK};
  }

 private:
  /// What the default order looks at: the smaller comes first. Edits, deleted positions, and primary and secondary ones
  /// negated.
  using Keys = std::array<std::int32_t, 4>;
  struct Best {
    std::int32_t start, length;
    LineAlignment alignment;
    Keys keys;
  };

  static constexpr std::size_t workPerPosition = 64;  // It is graded and its candidates are listed.

  std::size_t expectedForOne() const noexcept {
    const auto numPositions = static_cast<std::size_t>(admission_.numLinePositions());
    return ElementPool::sizeOf(numPositions, sizeof(qoc_ocrDictionaryPositionStatus)) +
           numPositions * ElementPool::sizeOf(2, sizeof(qoc_ocrDictionaryChar));
  }

  void stopEditsOnceExact() {
    if (stopsOnceExact(&params_)) {
      const bool hasExact = wanted_ == Wanted::all
                                ? answerOf<qoc_ocrDictionaryResultBuckets_hasResults>(storage_.buckets)
                                : best_ && best_->alignment.edit == LineEdit::none;
      params_.maxEdits = hasExact ? 0 : 1;
    }
  }

  qsys_status matchRange(std::int32_t start, std::int32_t length) {
    return forEachAlignment(
        admission_, start, length, hasParams_ ? &params_ : nullptr, EmptyPositionRule::emptyRangeOrFirst,
        [&](LineAlignment alignment, bool &goOn) -> qsys_status {
          goOn = alignment.edit != LineEdit::none || params_.returnBestOnly == 0;
          return wanted_ == Wanted::all ? file(start, length, alignment) : compare(start, length, alignment);
        });
  }

  /// Keeps an alignment if it is before the best so far.
  qsys_status compare(std::int32_t start, std::int32_t length, LineAlignment alignment) {
    const std::int32_t numPositions = admission_.numLinePositions();
    const bool isCompared = alignment.edit == LineEdit::none || alignment.edit == LineEdit::extra;
    Keys keys = {alignment.edit == LineEdit::none ? 0 : 1, alignment.edit == LineEdit::extra ? 1 : 0,
                 isCompared ? -numPositions : 1 - numPositions, 0};
    if (best_ && !(keys < best_->keys)) {
      return QSYS_STATUS_OK;  // It could not be better.
    }
    QOC_TRY(meter_.add(workPerPosition / 4 * static_cast<std::size_t>(numPositions)));
    keys[2] = 0;
    for (std::int32_t position = 0; position < numPositions; ++position) {
      qoc_ocrDictionaryPositionStatus status = qoc_ocrDictionaryPositionStatus_noMatch;
      QOC_TRY(grade(start, position, alignment, status));
      keys[2] -= status == qoc_ocrDictionaryPositionStatus_primary ? 1 : 0;
      keys[3] -= status == qoc_ocrDictionaryPositionStatus_secondary ? 1 : 0;
    }
    if (!best_ || keys < best_->keys) {
      best_ = {start, length, alignment, keys};
    }
    return QSYS_STATUS_OK;
  }

  qsys_status file(std::int32_t start, std::int32_t length, LineAlignment alignment) {
    QOC_TRY(meter_.add(workPerPosition * static_cast<std::size_t>(admission_.numLinePositions())));
    const std::int32_t numEdits = alignment.edit == LineEdit::none ? 0 : 1;
    qoc_ocrDictionaryResult result;
    QOC_TRY(inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      frame.emptyLocal<qoc_ocrDictionaryResult_construct, qoc_ocrDictionaryResult_destruct>(&result);
      result.isComputed = 1;
      result.mode = qoc_ocrDictionaryMode_fielding;
      result.numEdits = numEdits;
      result.numIgnoredPrefixCharacters = start;
      result.numIgnoredSuffixCharacters = sizeOf(reading_) - (start + length);
      result.overlapInputString = length;
      return qoc_ocrDictionaryResultBuckets_add(&storage_.buckets, &result);
    }));
    // The rest is filled in where the result is filed, so that it is not copied.
    qoc_ocrDictionaryResult &filed =
        edit(editAs<qstd_vector_qoc_ocrDictionaryResult>(storage_.buckets)[static_cast<std::size_t>(numEdits)]).back();
    if (alignment.edit == LineEdit::extra) {
      const std::int32_t skipped = start + alignment.place;
      QOC_TRY(qstd_vector32s_pushBack(&filed.deleted, &skipped));
    }
    if (sizeOf(storage_.shown) == 0) {
      QOC_TRY(makeShared(view(reading_), storage_.shown));
    }
    QOC_SURE(qoc_ocrDictionaryStringMulti_assign(&filed.given, &storage_.shown));  // They join the copy that is shared.
    QOC_SURE(qoc_ocrDictionaryStringMulti_assign(&filed.givenSwap, &storage_.shown));
    return fillPositions(start, alignment, filed);
  }

  qsys_status fillPositions(std::int32_t start, LineAlignment alignment, qoc_ocrDictionaryResult &result) {
    const std::int32_t numPositions = admission_.numLinePositions();
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&result.valid.positions, numPositions));
    void *elements = nullptr;
    QOC_TRY(pool_.place(result.resultStringStatus.core, numPositions, elements));
    const auto valid = editAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
    const auto statuses = editAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
    std::ranges::fill(statuses, qoc_ocrDictionaryPositionStatus_noMatch);
    for (std::int32_t position = 0; position < numPositions; ++position) {
      const auto index = static_cast<std::size_t>(position);
      QOC_TRY(grade(start, position, alignment, statuses[index]));
      QOC_TRY(listAdmitted(start, position, alignment));
      const Characters admitted = view(storage_.admitted);
      QOC_TRY(pool_.placeCopies(valid[index].candidates.core, admitted.data(), sizeOf(storage_.admitted)));
    }
    return QSYS_STATUS_OK;
  }

  static bool isUncompared(std::int32_t position, LineAlignment alignment) noexcept {
    return position == alignment.place &&
           (alignment.edit == LineEdit::missing || alignment.edit == LineEdit::substituted);
  }

  /// What is compared with a position of the line.
  const qoc_ocrDictionaryCharMulti &readAt(std::int32_t start, std::int32_t position,
                                           LineAlignment alignment) const noexcept {
    std::int32_t read = start + position;
    read -= alignment.edit == LineEdit::missing && position > alignment.place ? 1 : 0;
    read += alignment.edit == LineEdit::extra && position >= alignment.place ? 1 : 0;
    return view(reading_)[static_cast<std::size_t>(read)];
  }

  /// The status of a position of the line.
  qsys_status grade(std::int32_t start, std::int32_t position, LineAlignment alignment,
                    qoc_ocrDictionaryPositionStatus &status) {
    if (isUncompared(position, alignment)) {
      status = alignment.edit == LineEdit::missing ? qoc_ocrDictionaryPositionStatus_inserted
                                                   : qoc_ocrDictionaryPositionStatus_substituted;
      return QSYS_STATUS_OK;
    }
    qsys_bool isMatch = 0;
    return qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(
        &admission_.linePosition(position), &readAt(start, position, alignment), set_, &isMatch, &status);
  }

  /// Lists what stands at a position of the line.
  qsys_status listAdmitted(std::int32_t start, std::int32_t position, LineAlignment alignment) {
    const qoc_ocrDictionaryPositionFielding &positionFielding = admission_.linePosition(position);
    if (isUncompared(position, alignment)) {
      clear(storage_.admitted);
      return listUncompared(positionFielding, storage_.admitted);
    }
    return qoc_ocrDictionaryPositionFielding_matchMulti(&positionFielding, &readAt(start, position, alignment), set_,
                                                        &storage_.admitted);
  }

  WorkMeter meter_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;
  Storage &storage_;
  Admission admission_;
  bool hasParams_;
  qoc_ocrDictionaryRunParams params_;  // A working copy: its maxEdits falls to 0 once an exact result is there.
  Wanted wanted_;
  ElementPool pool_;
  std::optional<Best> best_;
};

/// Ranks everything that one reading gives in `results`, computed also when that is nothing; or the best of it.
qsys_status matchReading(const qoc_ocrDictionaryLineFielding &lineFielding, const qoc_ocrDictionaryStringMulti &reading,
                         const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, Wanted wanted,
                         qoc_ocrDictionaryResultSet &results) {
  Storage storage;
  return inFrame<3>([&](Frame<3> &frame) -> qsys_status {
    reset(results);
    results.isComputed = 1;
    frame.emptyLocal<qstd_vector_vector_qoc_ocrDictionaryResult_constructEmpty,
                     qstd_vector_vector_qoc_ocrDictionaryResult_destruct>(&storage.buckets);
    frame.emptyLocal<qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>(&storage.shown);
    frame.emptyLocal<qstd_vector_qoc_ocrDictionaryChar_constructEmpty, qstd_vector_qoc_ocrDictionaryChar_destruct>(
        &storage.admitted);
    QOC_TRY(ReadingMatcher(lineFielding, reading, params, set, wanted, storage).matchAll());
    return qoc_ocrDictionaryResultSet_mergeBuckets(&results, &storage.buckets, params);
  });
}

/// Matches the variants of the reading that the set's multi-character swaps allow: those that may fit, or, without
/// `variants`, every one.
qsys_status matchVariants(const qoc_ocrDictionaryLineFielding &lineFielding,
                          const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams *params,
                          const qoc_swapCharSet &set, std::optional<LineVariants> &variants,
                          qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryRunParams working = params != nullptr ? *params : qoc_ocrDictionaryRunParams{};
  qoc_ocrDictionaryResultSet found;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&found);
    const auto matchOne = [&](const qoc_ocrDictionaryStringMulti &variant, const qstd_vector32s &indices,
                              bool isFirst) -> qsys_status {
      QOC_TRY(matchReading(lineFielding, variant, params != nullptr ? &working : nullptr, &set, Wanted::all, found));
      QOC_TRY(takeVariantsResults(results, found, reading, indices, isFirst, params));
      stopEarly(params, results, working);
      return QSYS_STATUS_OK;
    };
    if (variants) {
      return forEachNearVariant(
          lineFielding, *variants, params, {0, searchesWindows(params) ? 1 : 0},
          [&](auto &near, const auto &variant, const auto &indices, bool isFirst, bool &) -> qsys_status {
            const std::int32_t editsBefore = working.maxEdits;
            QOC_TRY(matchOne(variant, indices, isFirst));
            return working.maxEdits != editsBefore ? near.forbidEdits() : qsys_status{QSYS_STATUS_OK};
          },
          [&] { results.isComputed = 1; });
    }
    bool isFirst = true;
    return forEachVariant(reading, set, [&](const auto &variant, const auto &indices, bool &) {
      return matchOne(variant, indices, std::exchange(isFirst, false));
    });
  });
}

}  // namespace

qsys_status LineFieldingMatching::match(const qoc_ocrDictionaryLineFielding &lineFielding,
                                        const qoc_ocrDictionaryRunParams *params, qoc_ocrDictionaryResultSet &results) {
  reset(results);
  if (hasVariants(set_)) {
    if (!variants_ && usesLattice(reading_)) {
      variants_.emplace(reading_, *set_);
    }
    QOC_TRY(matchVariants(lineFielding, reading_, params, *set_, variants_, results));
  } else if (!screen_.mayFit(lineFielding, params)) {
    results.isComputed = 1;
    return passOverWindows(sizeOf(reading_), params);
  } else {
    const bool isBest =
        params != nullptr && params->returnBestOnly != 0 && params->rankingMode != 1 && screen_.isEveryCharacterText();
    QOC_TRY(matchReading(lineFielding, reading_, params, set_, isBest ? Wanted::best : Wanted::all, results));
  }
  QOC_TRY(qoc_ocrDictionaryResultSet_finalize(&results, params));
  results.isComputed = 1;
  return QSYS_STATUS_OK;
}

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
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    return LineFieldingMatching(*reading, set).match(*lineFielding, params, *results);
  });
}
