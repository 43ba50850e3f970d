#ifndef QOC_TESTS_REFERENCE_RANKING_HPP
#define QOC_TESTS_REFERENCE_RANKING_HPP

/** @file Reference model of result sets: duplicates, the three orders, merging, ranking and finishing. */

#include "reference/records.hpp"

namespace reference {

/** Whether two results are the same reading with the same edits; modes and dictionary strings are not looked at. */
bool isSameResult(const Result &a, const Result &b);
/** isSameResult, and equal modes. */
bool compareEqual(const Result &a, const Result &b);

/** Ranks results in place. @param[in] params may be null */
void sortResults(Results &results, const RunParams *params, bool descending);

/** Whether a comes before b in the scoring order of the variant, which leaves its counters cached in both. */
bool ranksBefore(Result &a, Result &b, int32_t rankingVariant);

/** Files a copy under its number of edits, with givenSwap made a copy of given. */
void addToBuckets(Buckets &buckets, const Result &result);
void addToBuckets(Buckets &buckets, const Results &results);
/** Whether bucket 0 holds a result. */
bool hasResults(const Buckets &buckets);

/** Merges a partial set into the target; comparisons leave their cached counters in the partial set's results. */
void merge(ResultSet &target, ResultSet &partial, const RunParams *params);
void mergeBuckets(ResultSet &target, const Buckets &buckets, const RunParams *params);
void setGiven(ResultSet &set, const Reading &given, const std::vector<int32_t> &inputIndices);
/** The early-stop test: whether the first result has no edits. */
bool isExactBest(const ResultSet &set);
void finalize(ResultSet &set, const RunParams *params);

/** One status for each position of `given`. */
std::vector<int32_t> inputStatuses(const Result &result);

}  // namespace reference

#endif
