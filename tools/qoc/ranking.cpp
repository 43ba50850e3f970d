#include "ranking.hpp"

#include "marks.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <vector>

namespace qoc::program {
namespace {

using Result = qoc_ocrDictionaryResult;

constexpr std::int32_t primaryVariant = 3;
constexpr std::int32_t primaryMask = 3, allMask = 15; ///< Statuses that count towards the score: 1 and 2, or 1 to 4.

/// A key of the ranking: a number of each result, the smaller or the larger ahead.
struct Key {
  const char *name;
  bool isLessFirst;
  std::function<std::int64_t(const Result &)> value;
  std::function<std::string(std::int64_t)> show = [](std::int64_t value) { return std::to_string(value); };
};

std::int64_t count(const Result &result, std::int32_t first, std::int32_t last) {
  const auto statuses = elements(result.resultStringStatus);
  return std::count_if(statuses.begin(), statuses.end(),
                       [&](std::int32_t status) { return status >= first && status <= last; });
}

std::int64_t countOf(const Result &result, std::int32_t status) { return count(result, status, status); }

/// The scores of the dictionary string's characters at positions whose status counts.
std::int64_t scoreOf(const Result &result, std::int32_t mask) {
  if (result.scoreIsCached != 0) return result.score; // What the ranking has seen stays what it goes by.
  const std::int32_t last = mask == primaryMask ? qoc_ocrDictionaryPositionStatus_primarySwap
                                                : qoc_ocrDictionaryPositionStatus_secondarySwap;
  const auto characters = elements(result.dictionaryString.characters);
  const auto statuses = elements(result.resultStringStatus);
  std::int64_t score = 0;
  for (std::size_t i = 0; i < std::min(characters.size(), statuses.size()); ++i) {
    if (statuses[i] >= 1 && statuses[i] <= last) score += characters[i].score;
  }
  return score;
}

/// The worst status, where swaps of other candidates count as those of the first ones, and likewise without swaps.
std::int64_t lineStatusOf(const Result &result, bool isEitherCandidate) {
  const std::int32_t status = result.resultStringLineStatus;
  const bool isMapped = isEitherCandidate && (status == qoc_ocrDictionaryPositionStatus_secondary ||
                                              status == qoc_ocrDictionaryPositionStatus_secondarySwap);
  return isMapped ? status - 2 : status;
}

std::vector<Key> keysOf(const qoc_ocrDictionaryRunParams &params) {
  const Key edits{"edits", true, [](const Result &result) { return result.numEdits; }};
  const Key deleted{"characters left out", true, [](const Result &result) {
                      return static_cast<std::int64_t>(elements(result.deleted).size());
                    }};
  const Key primary{"first candidates used", false, [](const Result &result) {
                      return countOf(result, qoc_ocrDictionaryPositionStatus_primary);
                    }};
  const Key secondary{"other candidates used", false, [](const Result &result) {
                        return countOf(result, qoc_ocrDictionaryPositionStatus_secondary);
                      }};
  if (params.rankingMode != 1) return {edits, deleted, primary, secondary};
  const bool isPrimary = params.rankingVariant == primaryVariant;
  const Key candidates{"candidates used", false, [](const Result &result) {
                         return countOf(result, qoc_ocrDictionaryPositionStatus_primary) +
                                countOf(result, qoc_ocrDictionaryPositionStatus_secondary);
                       }};
  const Key lineStatus{"worst status", true,
                       [isPrimary](const Result &result) { return lineStatusOf(result, !isPrimary); },
                       [](std::int64_t status) {
                         return std::string(status == 0 ? "none" : markOf(static_cast<std::int32_t>(status)).name);
                       }};
  const std::int32_t mask = isPrimary ? primaryMask : allMask;
  const Key score{"score", false, [mask](const Result &result) { return scoreOf(result, mask); },
                  [](std::int64_t units) {
                    char text[32];
                    std::snprintf(text, sizeof text, "%.2f", static_cast<double>(units) / 100);
                    return std::string(text);
                  }};
  const Key inserted{"characters missing", true, [](const Result &result) {
                       return countOf(result, qoc_ocrDictionaryPositionStatus_inserted);
                     }};
  return {edits, isPrimary ? primary : candidates, lineStatus, score, deleted, inserted};
}

} // namespace

RankingDecision whyRanked(const qoc_ocrDictionaryRunParams &params, const Result &ahead, const Result &behind) {
  for (const Key &key : keysOf(params)) {
    const std::int64_t first = key.value(ahead), second = key.value(behind);
    if (first != second) {
      return {key.name, key.show(first), key.show(second), key.isLessFirst ? "lower first" : "higher first"};
    }
  }
  return {"order in which they were found", "", "", ""};
}

} // namespace qoc::program
