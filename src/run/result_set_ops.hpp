#pragma once
// What the matchers and the run do with results and result sets; inside the library only.

#include <qoc/result_set.h>

#include "text/views.hpp"

namespace qoc {

inline std::span<const qoc_ocrDictionaryPositionStatus> statusesOf(const qoc_ocrDictionaryResult &result) noexcept {
  return viewAs<qoc_ocrDictionaryPositionStatus>(result.resultStringStatus);
}
inline std::span<const qoc_ocrDictionaryResult> view(const qstd_vector_qoc_ocrDictionaryResult &results) noexcept {
  return viewAs<qoc_ocrDictionaryResult>(results);
}
inline std::span<qoc_ocrDictionaryResult> edit(qstd_vector_qoc_ocrDictionaryResult &results) noexcept {
  return editAs<qoc_ocrDictionaryResult>(results);
}
/// As qoc_ocrDictionaryResultSet_reset, which cannot fail: it only lets go.
inline void reset(qoc_ocrDictionaryResultSet &set) noexcept {
  set.isComputed = 0;
  clear(set.results);
}
/// As qoc_ocrDictionaryResultSet_merge, for a partial set that is not needed any more: what is merged moves, and it
/// ends empty.
qsys_status mergeTaking(qoc_ocrDictionaryResultSet &target, qoc_ocrDictionaryResultSet &partial,
                        const qoc_ocrDictionaryRunParams *params);
/// Whether a run with these params, which may be null, looks for its one edit only until an exact result is there.
inline bool stopsOnceExact(const qoc_ocrDictionaryRunParams *params) noexcept {
  return params != nullptr && params->returnBestOnly != 0 && params->maxEdits == 1;
}
/// The early stop: takes the edit from the working copy of such params once the best of the results so far is exact.
void stopEarly(const qoc_ocrDictionaryRunParams *params, const qoc_ocrDictionaryResultSet &results,
               qoc_ocrDictionaryRunParams &working);
/// Brings what one variant of a reading gave, told of the reading itself, into the results: the first variant's become
/// the results, those of the others are merged. What is left in `found` is of no use.
qsys_status takeVariantsResults(qoc_ocrDictionaryResultSet &results, qoc_ocrDictionaryResultSet &found,
                                const qoc_ocrDictionaryStringMulti &reading, const qstd_vector32s &inputIndices,
                                bool isFirst, const qoc_ocrDictionaryRunParams *params);
/// What finishing a set does to the set as a whole: ranks it, and cuts it to the best where the params, which may be
/// null, say so.
qsys_status rankAndCut(qoc_ocrDictionaryResultSet &set, const qoc_ocrDictionaryRunParams *params);
/// Fills `out`, which has the reading's size, with the statuses of
/// qoc_ocrDictionaryResult_getStatusWRTInputStringSwapChar.
void fillStatusWRTInputString(const qoc_ocrDictionaryResult &result, std::span<qoc_ocrDictionaryPositionStatus> out);
inline const char *nameOfFlag(qsys_bool flag) noexcept { return flag != 0 ? "qeTrue" : "qeFalse"; }

}  // namespace qoc

extern "C" {

/// The duplicate test: same reading, same edits; the entry that it was found through does not count.
qsys_status qoc_ocrDictionaryResult_isSameResult(const qoc_ocrDictionaryResult *a, const qoc_ocrDictionaryResult *b,
                                                 qsys_bool *isSame);
/// Ranks results in place, best first (descending flag 1) or last (0). params may be null.
qsys_status qoc_ocrDictionaryResultVector_sort(qstd_vector_qoc_ocrDictionaryResult *results,
                                               const qoc_ocrDictionaryRunParams *params, qsys_bool isDescending);
qsys_status qoc_ocrDictionaryResultSet_sort(qoc_ocrDictionaryResultSet *set, const qoc_ocrDictionaryRunParams *params,
                                            qsys_bool isDescending);
/// Merges a partial set, whose ranking caches may be filled on the way, into the target.
qsys_status qoc_ocrDictionaryResultSet_merge(qoc_ocrDictionaryResultSet *target, qoc_ocrDictionaryResultSet *partial,
                                             const qoc_ocrDictionaryRunParams *params);
/// Merges every bucket, fewest edits first; each bucket is ranked on the way. The results move: the buckets end empty.
qsys_status qoc_ocrDictionaryResultSet_mergeBuckets(qoc_ocrDictionaryResultSet *target,
                                                    qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                                    const qoc_ocrDictionaryRunParams *params);
/// Files a copy of the candidate under its numEdits, with givenSwap as given.
qsys_status qoc_ocrDictionaryResultBuckets_add(qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                               const qoc_ocrDictionaryResult *result);
qsys_status qoc_ocrDictionaryResultBuckets_addVector(qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                                     const qstd_vector_qoc_ocrDictionaryResult *results);
/// Whether an exact result, one in bucket 0, is there.
qsys_status qoc_ocrDictionaryResultBuckets_hasResults(const qstd_vector_vector_qoc_ocrDictionaryResult *buckets,
                                                      qsys_bool *hasResults);
/// Writes the same given and inputIndices into every result.
qsys_status qoc_ocrDictionaryResultSet_setGiven(qoc_ocrDictionaryResultSet *set,
                                                const qoc_ocrDictionaryStringMulti *given,
                                                const qstd_vector32s *inputIndices);
/// The early-stop test: whether the first result has no edits.
qsys_status qoc_ocrDictionaryResultSet_getIsExactBest(const qoc_ocrDictionaryResultSet *set, qsys_bool *isExactBest);
/// Ranks, cuts to the best, takes inserted positions out and fills the statuses, as params (may be null) say.
qsys_status qoc_ocrDictionaryResultSet_finalize(qoc_ocrDictionaryResultSet *set,
                                                const qoc_ocrDictionaryRunParams *params);
}
