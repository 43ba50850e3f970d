// Ranking: the three orders of results, and the sort by them.
//
// The orders count edits first; the default order then prefers results that the reader's own first choices support, the
// two scoring orders the worst position and the reader's scores. A comparison caches what it counts in the results.
//
// Two results that are not computed compare inconsistently (each is said to come after the other), so the sort must not
// be one that trusts its comparison: this is a merge sort of its own, which reads and writes within bounds whatever it
// is told.

#include "run/result_ranking.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <numeric>
#include <vector>

#include "frame/frame.hpp"
#include "run/result_set_ops.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::maskPrimary;
using qoc::present;
using qoc::statusesOf;

namespace {

using Result = qoc_ocrDictionaryResult;
using Status = qoc_ocrDictionaryPositionStatus;

std::int32_t countOf(const Result &result, Status status) {
  return static_cast<std::int32_t>(std::ranges::count(statusesOf(result), status));
}

std::int32_t numDeleted(const Result &result) { return result.deleted.core.size; }

std::int32_t numMatchedPositionsOf(Result &result) {
  if (result.numMatchedPositionsIsCached == 0) {
    result.numMatchedPositions = static_cast<std::int32_t>(
        std::ranges::count_if(statusesOf(result), [](Status status) { return status >= 1 && status <= 7; }));
    result.numMatchedPositionsIsCached = 1;
  }
  return result.numMatchedPositions;
}

std::int32_t numInsertedOf(Result &result) {
  if (result.numInsertedIsCached == 0) {
    result.numInserted = countOf(result, qoc_ocrDictionaryPositionStatus_inserted);
    result.numInsertedIsCached = 1;
  }
  return result.numInserted;
}

/// The sum of the dictionary characters' scores over the positions that the mask counts. Sums wrap around as 32-bit
/// numbers do.
std::int32_t scoreOf(Result &result) {
  if (result.scoreIsCached == 0) {
    const Status lastCounted = result.scoreStatusMask == maskPrimary ? qoc_ocrDictionaryPositionStatus_primarySwap
                                                                     : qoc_ocrDictionaryPositionStatus_secondarySwap;
    const auto characters = qoc::view(result.dictionaryString);
    const auto statuses = statusesOf(result);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < std::min(characters.size(), statuses.size()); ++i) {
      if (statuses[i] >= qoc_ocrDictionaryPositionStatus_primary && statuses[i] <= lastCounted) {
        sum += static_cast<std::uint32_t>(characters[i].score);
      }
    }
    result.score = static_cast<std::int32_t>(sum);
    result.scoreIsCached = 1;
  }
  return result.score;
}

/// What all orders begin with: 0 when both are computed.
int computedFirst(const Result &a, const Result &b) {
  if (a.isComputed != 0 && b.isComputed != 0) {
    return 0;
  }
  // Deliberate: of two that are not computed the second always comes first.
  return a.isComputed != 0 ? -1 : 1;
}

/// A result as the scoring orders see it.
struct RankedResult {
  Result &result;

  std::int32_t numEdits() const { return result.numEdits; }
  std::int32_t numGood(bool withSecondary) const {
    return countOf(result, qoc_ocrDictionaryPositionStatus_primary) +
           (withSecondary ? countOf(result, qoc_ocrDictionaryPositionStatus_secondary) : 0);
  }
  void setMask(std::int32_t mask) { result.scoreStatusMask = mask; }
  Status lineStatus() const { return result.resultStringLineStatus; }
  void countMatched() { numMatchedPositionsOf(result); }
  std::int32_t score() { return scoreOf(result); }
  std::int32_t numDeleted() const { return ::numDeleted(result); }
  std::int32_t numInserted() { return numInsertedOf(result); }
  std::int32_t orderIndex() const { return result.orderIndex; }
};

int compareComputedByScore(Result &a, Result &b, bool withSecondary) {
  const int order = computedFirst(a, b);
  return order != 0 ? order : qoc::compareByScore(RankedResult{a}, RankedResult{b}, withSecondary);
}

/// The keys of the default order for computed results, but for the order index: the smaller comes first.
using DefaultKeys = std::array<std::int32_t, 4>;

DefaultKeys defaultKeysOf(const Result &result) {
  std::int32_t numPrimary = 0;
  std::int32_t numSecondary = 0;
  for (const Status status : statusesOf(result)) {
    numPrimary += status == qoc_ocrDictionaryPositionStatus_primary ? 1 : 0;
    numSecondary += status == qoc_ocrDictionaryPositionStatus_secondary ? 1 : 0;
  }
  return {result.numEdits, numDeleted(result), -numPrimary, -numSecondary};
}

/// Whether results with their places as order indexes stand in the default order, as they mostly do.
bool isInDefaultOrder(std::span<const Result> results) {
  DefaultKeys last = defaultKeysOf(results.front());
  bool isOrdered = results.front().isComputed != 0;
  for (std::size_t i = 1; i < results.size() && isOrdered; ++i) {
    const DefaultKeys keys = defaultKeysOf(results[i]);
    isOrdered = results[i].isComputed != 0 && !(keys < last);
    last = keys;
  }
  return isOrdered;
}

/// The default order of the results of a vector, of which the sort asks for a place and one before it: where all keys tie
/// the second comes first. What is counted is counted once.
class DefaultOrder {
 public:
  explicit DefaultOrder(std::span<Result> results) : results_(results) {
    keys_.reserve(results.size());
    for (const Result &result : results) {
      keys_.push_back(defaultKeysOf(result));
    }
  }
  int operator()(std::size_t a, std::size_t b) const {
    if (const int order = computedFirst(results_[a], results_[b]); order != 0) {
      return order;
    }
    return keys_[a] < keys_[b] ? -1 : 1;
  }

 private:
  std::span<Result> results_;
  std::vector<DefaultKeys> keys_;
};

/// Merges two sorted runs that lie one behind the other in `indices`.
template <class Before>
void mergeRuns(std::span<std::int32_t> indices, std::size_t middle, std::span<std::int32_t> scratch, Before isBefore) {
  std::ranges::copy(indices, scratch.begin());
  std::size_t left = 0;
  std::size_t right = middle;
  for (std::int32_t &out : indices) {
    const bool takeRight = left >= middle || (right < indices.size() && isBefore(scratch[right], scratch[left]));
    out = scratch[takeRight ? right++ : left++];
  }
}

template <class Before>
void mergeSort(std::span<std::int32_t> indices, std::span<std::int32_t> scratch, Before isBefore) {
  if (indices.size() < 2) {
    return;
  }
  const std::size_t middle = indices.size() / 2;  // The depth is the logarithm of the size.
  mergeSort(indices.first(middle), scratch, isBefore);
  mergeSort(indices.subspan(middle), scratch, isBefore);
  mergeRuns(indices, middle, scratch, isBefore);
}

/// Moves results[indices[k]] to place k.
void permute(std::span<Result> results, std::span<const std::int32_t> indices) {
  // Results may be moved byte by byte, as every element of a vector may.
  const auto bytes = std::make_unique_for_overwrite<std::byte[]>(results.size_bytes());
  for (std::size_t k = 0; k < indices.size(); ++k) {
    std::memcpy(bytes.get() + k * sizeof(Result), &results[static_cast<std::size_t>(indices[k])], sizeof(Result));
  }
  std::memcpy(static_cast<void *>(results.data()), bytes.get(), results.size_bytes());
}

/// Sorts results by compare(a, b) of their places, or by its negation.
template <class Compare>
void sortBy(std::span<Result> results, const Compare &compare, bool isDescending) {
  const auto isBefore = [&](std::int32_t a, std::int32_t b) {
    const int sign = compare(static_cast<std::size_t>(a), static_cast<std::size_t>(b));
    return isDescending ? sign < 0 : sign > 0;
  };
  // Most vectors are a ranked list with a few results behind it: only what breaks the order is sorted.
  std::size_t numRanked = 1;
  while (numRanked < results.size() &&
         !isBefore(static_cast<std::int32_t>(numRanked), static_cast<std::int32_t>(numRanked - 1))) {
    ++numRanked;
  }
  if (numRanked == results.size()) {
    return;
  }
  std::vector<std::int32_t> indices(results.size());
  std::vector<std::int32_t> scratch(results.size());
  std::iota(indices.begin(), indices.end(), 0);
  mergeSort(std::span(indices).subspan(numRanked), scratch, isBefore);
  mergeRuns(std::span(indices), numRanked, scratch, isBefore);
  permute(results, indices);
}

}  // namespace

int qoc::compareDefault(Result &a, Result &b) {
  if (const int order = computedFirst(a, b); order != 0) {
    return order;
  }
  const DefaultKeys keysOfA = defaultKeysOf(a);
  const DefaultKeys keysOfB = defaultKeysOf(b);
  return keysOfA < keysOfB ? -1 : keysOfB < keysOfA ? 1 : fewerFirst(a.orderIndex, b.orderIndex);
}

int qoc::comparePrimary(Result &a, Result &b) { return compareComputedByScore(a, b, false); }
int qoc::comparePrimaryAndSecondary(Result &a, Result &b) { return compareComputedByScore(a, b, true); }

qsys_status qoc_ocrDictionaryResultVector_sort(qstd_vector_qoc_ocrDictionaryResult *results,
                                               const qoc_ocrDictionaryRunParams *params, qsys_bool isDescending) {
  if (!present({results}) || qoc::sizeOf(*results) < 2) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    const auto edited = qoc::edit(*results);
    for (std::size_t i = 0; i < edited.size(); ++i) {
      edited[i].orderIndex = static_cast<std::int32_t>(i);
    }
    if (params == nullptr || params->rankingMode != 1) {
      if (isDescending == 0 || !isInDefaultOrder(edited)) {
        sortBy(edited, DefaultOrder(edited), isDescending != 0);
      }
    } else {
      const auto compare = params->rankingVariant == 3 ? qoc::comparePrimary : qoc::comparePrimaryAndSecondary;
      sortBy(
          edited, [&](std::size_t a, std::size_t b) { return compare(edited[a], edited[b]); }, isDescending != 0);
    }
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryResultSet_sort(qoc_ocrDictionaryResultSet *set, const qoc_ocrDictionaryRunParams *params,
                                            qsys_bool isDescending) {
  return present({set}) ? qoc_ocrDictionaryResultVector_sort(&set->results, params, isDescending) : QSYS_STATUS_OK;
}
