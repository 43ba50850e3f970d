// Merging results: buckets by edit count, and the merge of one ranked set into another.

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/frame.hpp"
#include "platform/containers/shared_elements.hpp"
#include "platform/system/certain.hpp"
#include "platform/system/shortcuts.hpp"
#include "run/result_ranking.hpp"
#include "run/result_set_ops.hpp"

using qoc::answerOf;
using qoc::present;

namespace {

using Result = qoc_ocrDictionaryResult;

/// The merge's own order of a against b: 1 files b behind, -1 passes over a, 0 drops b.
int mergeOrder(Result &a, Result &b, const qoc_ocrDictionaryRunParams *params) {
  // Deliberate: negated, and with the orders the other way round than the sort pairs them with rankingMode.
  const bool isScored = params != nullptr && params->rankingMode == 1;
  return -(isScored ? qoc::compareDefault(a, b) : qoc::comparePrimary(a, b));
}

/// Drops every result that is the same as the one kept before it.
qsys_status dropAdjacentDuplicates(qstd_vector_qoc_ocrDictionaryResult &results) {
  const auto edited = qoc::edit(results);
  std::size_t numKept = std::min<std::size_t>(edited.size(), 1);
  for (std::size_t k = 1; k < edited.size(); ++k) {
    if (!answerOf<qoc_ocrDictionaryResult_isSameResult>(edited[numKept - 1], edited[k])) {
      if (numKept != k) {
        std::swap(edited[numKept], edited[k]);  // What is dropped gathers behind what is kept.
      }
      ++numKept;
    }
  }
  return qstd_vector_qoc_ocrDictionaryResult_resize(&results, static_cast<std::int32_t>(numKept));
}

qsys_status copyResult(qstd_vector_qoc_ocrDictionaryResult &results, Result &result) {
  return qstd_vector_qoc_ocrDictionaryResult_pushBack(&results, &result);
}

/// Merges; append(results, result) puts a result of the partial set, none twice and in order, behind those of the
/// target.
template <class Append>
qsys_status mergeInto(qoc_ocrDictionaryResultSet &target, qoc_ocrDictionaryResultSet &partial,
                      const qoc_ocrDictionaryRunParams *params, Append append) {
  if (partial.isComputed == 0 || qoc::sizeOf(partial.results) == 0) {
    return QSYS_STATUS_OK;
  }
  if (target.isComputed == 0) {
    qoc::reset(target);
    target.isComputed = 1;
  }
  // The walk goes over the results that the target held when it began; new ones are filed behind them.
  const auto added = qoc::edit(partial.results);
  const std::int32_t numOld = qoc::sizeOf(target.results);
  std::int32_t i = 0;
  for (std::size_t j = 0; j < added.size();) {
    int decision = 1;
    if (i < numOld) {
      Result &old = qoc::edit(target.results)[static_cast<std::size_t>(i)];
      const bool areSame = answerOf<qoc_ocrDictionaryResult_isSameResult>(old, added[j]);
      decision = areSame ? 0 : mergeOrder(old, added[j], params);
    }
    if (decision > 0) {
      QOC_TRY(append(target.results, added[j]));
    }
    i += decision <= 0 ? 1 : 0;
    j += decision >= 0 ? 1 : 0;
  }
  QOC_TRY(qoc_ocrDictionaryResultVector_sort(&target.results, params, 1));
  return dropAdjacentDuplicates(target.results);
}

}  // namespace

qsys_status qoc_ocrDictionaryResult_isSameResult(const Result *a, const Result *b, qsys_bool *isSame) {
  if (!present({a, b, isSame})) {
    return QSYS_STATUS_OK;
  }
  *isSame = 0;
  if ((a->isComputed != 0) != (b->isComputed != 0)) {
    return QSYS_STATUS_OK;
  }
  if (a->isComputed == 0) {
    *isSame = 1;
    return QSYS_STATUS_OK;
  }
  if (a->resultStringLineStatus != b->resultStringLineStatus || a->numEdits != b->numEdits ||
      a->numIgnoredSuffixCharacters != b->numIgnoredSuffixCharacters ||
      a->numIgnoredPrefixCharacters != b->numIgnoredPrefixCharacters) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: mode, dictionaryString, startFieldIndex and overlapInputString do not count. What differs most comes
  // first.
  if (!std::ranges::equal(qoc::statusesOf(*a), qoc::statusesOf(*b)) ||
      !std::ranges::equal(qoc::viewAs<std::int32_t>(a->deleted), qoc::viewAs<std::int32_t>(b->deleted))) {
    return QSYS_STATUS_OK;
  }
  const qoc_ocrDictionaryStringMulti *const readings[][2] = {
      {&a->given, &b->given}, {&a->givenSwap, &b->givenSwap}, {&a->valid, &b->valid}};
  for (const auto &[readingA, readingB] : readings) {
    if (!qoc::holdSameElements(readingA->positions.core, readingB->positions.core) &&
        !answerOf<qoc_ocrDictionaryStringMulti_compareEqual>(*readingA, *readingB)) {
      return QSYS_STATUS_OK;
    }
  }
  *isSame = 1;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResultSet_merge(qoc_ocrDictionaryResultSet *target, qoc_ocrDictionaryResultSet *partial,
                                             const qoc_ocrDictionaryRunParams *params) {
  return present({target, partial}) ? mergeInto(*target, *partial, params, copyResult) : QSYS_STATUS_OK;
}

void qoc::stopEarly(const qoc_ocrDictionaryRunParams *params, const qoc_ocrDictionaryResultSet &results,
                    qoc_ocrDictionaryRunParams &working) {
  if (stopsOnceExact(params) && answerOf<qoc_ocrDictionaryResultSet_getIsExactBest>(results)) {
    working.maxEdits = 0;
  }
}

qsys_status qoc::takeVariantsResults(qoc_ocrDictionaryResultSet &results, qoc_ocrDictionaryResultSet &found,
                                     const qoc_ocrDictionaryStringMulti &reading, const qstd_vector32s &inputIndices,
                                     bool isFirst, const qoc_ocrDictionaryRunParams *params) {
  QOC_TRY(qoc_ocrDictionaryResultSet_setGiven(&found, &reading, &inputIndices));
  if (!isFirst) {
    return mergeTaking(results, found, params);
  }
  if (results.results.core.memory != found.results.core.memory) {
    return qoc_ocrDictionaryResultSet_assign(&results, &found);
  }
  std::swap(results, found);
  return QSYS_STATUS_OK;
}

qsys_status qoc::mergeTaking(qoc_ocrDictionaryResultSet &target, qoc_ocrDictionaryResultSet &partial,
                             const qoc_ocrDictionaryRunParams *params) {
  if (partial.isComputed == 0 || sizeOf(partial.results) == 0) {
    return QSYS_STATUS_OK;
  }
  if (!shortcuts().sharesStorage) {
    QOC_TRY(qoc_ocrDictionaryResultSet_merge(&target, &partial, params));
    clear(partial.results);
    return QSYS_STATUS_OK;
  }
  if ((target.isComputed == 0 || sizeOf(target.results) == 0) &&
      target.results.core.memory == partial.results.core.memory) {
    // With nothing in the target there is nothing to walk over.
    reset(target);
    target.isComputed = 1;
    std::swap(target.results, partial.results);
    QOC_TRY(qoc_ocrDictionaryResultVector_sort(&target.results, params, 1));
    return dropAdjacentDuplicates(target.results);
  }
  std::int32_t numLeft = 0;  // What is not taken gathers in front.
  std::int32_t numSeen = 0;
  const auto edited = edit(partial.results);
  const auto leave = [&](std::int32_t end) {
    for (; numSeen < end; ++numSeen, ++numLeft) {
      // The one in front has been taken, or is this one: its bytes are nobody's any more.
      std::memmove(static_cast<void *>(&edited[static_cast<std::size_t>(numLeft)]),
                   &edited[static_cast<std::size_t>(numSeen)], sizeof(Result));
    }
  };
  const qsys_status status = mergeInto(
      target, partial, params, [&](qstd_vector_qoc_ocrDictionaryResult &results, Result &result) -> qsys_status {
        const std::int32_t numResults = sizeOf(results);
        if (numResults == results.core.capacity) {
          QOC_TRY(qstd_vector_qoc_ocrDictionaryResult_reserve(
              &results, numResults + std::max(numResults / 2, sizeOf(partial.results))));
        }
        const auto index = static_cast<std::int32_t>(&result - edited.data());
        leave(index);
        numSeen = index + 1;
        QOC_SURE(qstd_vector_qoc_ocrDictionaryResult_resizeUninit(&results, numResults + 1));  // The room is there.
        std::memcpy(static_cast<void *>(&edit(results).back()), &result, sizeof(Result));
        return QSYS_STATUS_OK;
      });
  leave(static_cast<std::int32_t>(edited.size()));
  partial.results.core.size = numLeft;
  clear(partial.results);
  return status;
}

qsys_status qoc_ocrDictionaryResultSet_mergeBuckets(qoc_ocrDictionaryResultSet *target,
                                                    qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                                    const qoc_ocrDictionaryRunParams *params) {
  if (!present({target, buckets})) {
    return QSYS_STATUS_OK;
  }
  for (qstd_vector_qoc_ocrDictionaryResult &bucket : qoc::editAs<qstd_vector_qoc_ocrDictionaryResult>(*buckets)) {
    // The temporary set borrows the bucket.
    qoc_ocrDictionaryResultSet temporary = {1, bucket};
    QOC_TRY(qoc_ocrDictionaryResultSet_sort(&temporary, params, 1));
    const qsys_status status = qoc::mergeTaking(*target, temporary, params);
    bucket = temporary.results;
    QOC_TRY(status);
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResultBuckets_add(qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                               const Result *result) {
  if (!present({buckets, result})) {
    return QSYS_STATUS_OK;
  }
  const std::int32_t k = result->numEdits;
  if (k == INT32_MAX) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  if (k >= qoc::sizeOf(*buckets)) {
    QOC_TRY(qstd_vector_vector_qoc_ocrDictionaryResult_resize(buckets, k + 1));
  }
  auto &bucket = qoc::editAs<qstd_vector_qoc_ocrDictionaryResult>(*buckets)[static_cast<std::size_t>(k)];
  QOC_TRY(qstd_vector_qoc_ocrDictionaryResult_pushBack(&bucket, result));
  Result &filed = qoc::edit(bucket).back();
  return qoc_ocrDictionaryStringMulti_assign(&filed.givenSwap, &filed.given);
}

qsys_status qoc_ocrDictionaryResultBuckets_addVector(qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                                     const qstd_vector_qoc_ocrDictionaryResult *results) {
  if (!present({buckets, results})) {
    return QSYS_STATUS_OK;
  }
  for (const Result &result : qoc::view(*results)) {
    QOC_TRY(qoc_ocrDictionaryResultBuckets_add(buckets, &result));
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryResultBuckets_hasResults(const qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                                      qsys_bool *hasResults) {
  if (present({buckets, hasResults})) {
    const auto view = qoc::viewAs<qstd_vector_qoc_ocrDictionaryResult>(*buckets);
    *hasResults = !view.empty() && qoc::sizeOf(view.front()) > 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}
