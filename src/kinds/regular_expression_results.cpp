#include "kinds/regular_expression_results.hpp"

#include <algorithm>

#include "frame/frame.hpp"
#include "platform/containers/shared_elements.hpp"
#include "run/result_set_ops.hpp"
#include "text/shared_reading.hpp"

namespace qoc {

bool ExpressionResults::mayCount(ExpressionEdit edit, std::int32_t length) const noexcept {
  if (isEmpty()) {
    return true;
  }
  if (!keepsBestWay_) {
    return !(keepsBestOnly_ && hasExact()) || edit == ExpressionEdit::none;
  }
  const bool isOneLess = edit == ExpressionEdit::deletion || edit == ExpressionEdit::substitution;
  const Keys bestOfAll = {edit == ExpressionEdit::none ? 0 : 1, edit == ExpressionEdit::deletion ? 1 : 0,
                          isOneLess ? 1 - length : -length, 0};
  return bestOfAll < best().keys;
}

/// Finishes an outline whose places are the last ones, and keeps it, unless there is a better one.
void ExpressionResults::settle(Outline &outline) {
  const EditedSpan &span = outline.span;
  const auto statuses = std::span(statuses_).subspan(outline.firstPlace);
  if (span.edit == ExpressionEdit::insertion || span.edit == ExpressionEdit::substitution) {
    statuses[static_cast<std::size_t>(span.place - span.start)] = span.edit == ExpressionEdit::insertion
                                                                      ? qoc_ocrDictionaryPositionStatus_inserted
                                                                      : qoc_ocrDictionaryPositionStatus_substituted;
  }
  const auto numOf = [&](qoc_ocrDictionaryPositionStatus status) {
    return static_cast<std::int32_t>(std::ranges::count(statuses, status));
  };
  outline.keys = {span.edit == ExpressionEdit::none ? 0 : 1, span.edit == ExpressionEdit::deletion ? 1 : 0,
                  -numOf(qoc_ocrDictionaryPositionStatus_primary), -numOf(qoc_ocrDictionaryPositionStatus_secondary)};
  if (keepsBestWay_ && !isEmpty()) {
    const bool isBetter = outline.keys < best().keys;
    const auto drop = [](auto &elements, std::size_t first, std::size_t end) {
      elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(first),
                     elements.begin() + static_cast<std::ptrdiff_t>(end));
    };
    drop(statuses_, isBetter ? 0 : outline.firstPlace, isBetter ? outline.firstPlace : statuses_.size());
    drop(numCodes_, isBetter ? 0 : outline.firstPlace, isBetter ? outline.firstPlace : numCodes_.size());
    drop(codes_, isBetter ? 0 : outline.firstCode, isBetter ? outline.firstCode : codes_.size());
    if (!isBetter) {
      return;
    }
    outline.firstPlace = outline.firstCode = 0;
    outlines_[0].clear();
    outlines_[1].clear();
  }
  outlines_[outline.keys[0]].push_back(outline);
}

qsys_status ExpressionResults::make(qoc_ocrDictionaryResultSet &results) {
  qoc_ocrDictionaryStringMulti shown;
  qoc_ocrDictionaryResultSet bucket;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>(&shown);
    QOC_TRY(makeShared(reading_, shown));
    if (outlines_[0].size() + outlines_[1].size() == 1) {
      return makeOf(outlines_[hasExact() ? 0 : 1], shown, results.results);
    }
    frame.emptyLocal<qoc_ocrDictionaryResultSet_construct, qoc_ocrDictionaryResultSet_destruct>(&bucket);
    for (const std::vector<Outline> &outlines : outlines_) {
      reset(bucket);
      bucket.isComputed = 1;
      QOC_TRY(makeOf(outlines, shown, bucket.results));
      QOC_TRY(qoc_ocrDictionaryResultSet_sort(&bucket, params_, 1));
      QOC_TRY(mergeTaking(results, bucket, params_));
    }
    return QSYS_STATUS_OK;
  });
}

/// Makes a result of each outline, in a vector without any; they share the copy of the reading that they show.
qsys_status ExpressionResults::makeOf(std::span<const Outline> outlines, const qoc_ocrDictionaryStringMulti &shown,
                                      qstd_vector_qoc_ocrDictionaryResult &results) {
  constexpr std::size_t workPerPlace = 16;
  if (outlines.empty()) {
    return QSYS_STATUS_OK;
  }
  if (QOC_NEVER(outlines.size() > INT32_MAX)) {  // They would take more memory than any machine has by far.
    return QSTD_STATUS_SIZE_INVALID;
  }
  std::size_t expected = 0;
  for (const Outline &outline : outlines) {
    expected += ElementPool::sizeOf(outline.numPlaces, sizeof(qoc_ocrDictionaryPositionStatus)) +
                ElementPool::sizeOf(1, sizeof(std::int32_t));
    for (std::size_t i = 0; i < outline.numPlaces; ++i) {
      expected += ElementPool::sizeOf(static_cast<std::size_t>(numCodes_[outline.firstPlace + i]),
                                      sizeof(qoc_ocrDictionaryChar));
    }
  }
  // Results and positions without contents own nothing: their bytes make as many as are needed.
  qoc_ocrDictionaryResult blank;
  QOC_SURE(qoc_ocrDictionaryResult_construct(&blank));  // As they own nothing.
  blank.isComputed = 1;
  blank.mode = qoc_ocrDictionaryMode_regularExpression;
  qoc_ocrDictionaryCharMulti blankPosition;
  QOC_SURE(qoc_ocrDictionaryCharMulti_construct(&blankPosition));  // Neither has contents.
  QOC_TRY(qstd_vector_qoc_ocrDictionaryResult_resizeUninit(&results, static_cast<std::int32_t>(outlines.size())));
  const auto made = edit(results);
  std::ranges::fill(made, blank);
  ElementPool pool(expected);
  for (std::size_t k = 0; k < outlines.size(); ++k) {
    const Outline &outline = outlines[k];
    const EditedSpan &span = outline.span;
    qoc_ocrDictionaryResult &result = made[k];
    QOC_TRY(meter_.add(workPerPlace * outline.numPlaces));
    result.numEdits = outline.keys[0];
    result.numIgnoredPrefixCharacters = span.start;
    result.numIgnoredSuffixCharacters = static_cast<std::int32_t>(reading_.size()) - span.end;
    if (span.edit == ExpressionEdit::deletion) {
      QOC_TRY(pool.placeCopies(result.deleted.core, &span.place, 1));
    }
    QOC_SURE(qoc_ocrDictionaryStringMulti_assign(&result.given, &shown));  // They join the copy that is shared.
    QOC_SURE(qoc_ocrDictionaryStringMulti_assign(&result.givenSwap, &shown));
    const auto numPlaces = static_cast<std::int32_t>(outline.numPlaces);
    QOC_TRY(pool.placeCopies(result.resultStringStatus.core, statuses_.data() + outline.firstPlace, numPlaces));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resizeUninit(&result.valid.positions, numPlaces));
    const auto valid = editAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
    std::ranges::fill(valid, blankPosition);
    const Char32 *code = codes_.data() + outline.firstCode;
    for (std::size_t i = 0; i < outline.numPlaces; ++i) {
      const std::int32_t numCodes = numCodes_[outline.firstPlace + i];
      void *elements = nullptr;
      QOC_TRY(pool.place(valid[i].candidates.core, numCodes, elements));
      for (auto &candidate : editAs<qoc_ocrDictionaryChar>(valid[i].candidates)) {
        candidate = {*code++, 0};
      }
    }
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc
