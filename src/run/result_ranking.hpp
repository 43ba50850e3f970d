#pragma once
// The orders of results that others than the sort use too.

#include <qoc/result.h>

#include <cstdint>

namespace qoc {

/// Each gives -1 when a comes first, 1 when b does, 0 when all keys tie; what is counted is cached in the results.
int compareDefault(qoc_ocrDictionaryResult &a, qoc_ocrDictionaryResult &b);
int comparePrimary(qoc_ocrDictionaryResult &a, qoc_ocrDictionaryResult &b);
int comparePrimaryAndSecondary(qoc_ocrDictionaryResult &a, qoc_ocrDictionaryResult &b);

inline constexpr std::int32_t maskPrimary = 3;
inline constexpr std::int32_t maskPrimaryAndSecondary = 15;

inline int fewerFirst(std::int32_t a, std::int32_t b) noexcept { return a < b ? -1 : a > b ? 1 : 0; }
inline int moreFirst(std::int32_t a, std::int32_t b) noexcept { return fewerFirst(b, a); }

/// The scoring orders of two computed results, or of what stands for them; they differ in whether a secondary position
/// is as good as a primary one. The counts that are kept (see result.h) are asked for only where a key before them
/// leaves the order open.
template <class Ranked>
int compareByScore(Ranked a, Ranked b, bool withSecondary) {
  if (const int order = fewerFirst(a.numEdits(), b.numEdits()); order != 0) {
    return order;
  }
  if (const int order = moreFirst(a.numGood(withSecondary), b.numGood(withSecondary)); order != 0) {
    return order;
  }
  a.setMask(withSecondary ? maskPrimaryAndSecondary : maskPrimary);
  b.setMask(withSecondary ? maskPrimaryAndSecondary : maskPrimary);
  const auto lineStatus = [withSecondary](const Ranked &ranked) {
    const qoc_ocrDictionaryPositionStatus status = ranked.lineStatus();
    const bool isSecondary =
        status == qoc_ocrDictionaryPositionStatus_secondary || status == qoc_ocrDictionaryPositionStatus_secondarySwap;
    return withSecondary && isSecondary ? status - 2 : status;
  };
  if (const int order = fewerFirst(lineStatus(a), lineStatus(b)); order != 0) {
    return order;
  }
  // Deliberate: the matched positions are counted and kept, and decide nothing.
  a.countMatched();
  b.countMatched();
  const std::int32_t scoreOfA = a.score();
  if (const int order = moreFirst(scoreOfA, b.score()); order != 0) {
    return order;
  }
  if (const int order = fewerFirst(a.numDeleted(), b.numDeleted()); order != 0) {
    return order;
  }
  const std::int32_t numInsertedInA = a.numInserted();
  if (const int order = fewerFirst(numInsertedInA, b.numInserted()); order != 0) {
    return order;
  }
  return fewerFirst(a.orderIndex(), b.orderIndex());
}

}  // namespace qoc
