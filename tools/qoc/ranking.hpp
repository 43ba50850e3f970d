#pragma once

/// @file Why one result ranks before another.

#include "objects.hpp"

#include <string>

namespace qoc::program {

/// The first key of the ranking in which two results differ.
struct RankingDecision {
  std::string key;           ///< What is compared, such as "edits".
  std::string first, second; ///< The values of the result ahead and of the one behind it.
  std::string order;         ///< Which comes first, such as "lower first"; empty where nothing decides.
};

/// Compares two computed results that stand one behind the other, key by key in the order that the parameters choose.
RankingDecision whyRanked(const qoc_ocrDictionaryRunParams &params, const qoc_ocrDictionaryResult &ahead,
                          const qoc_ocrDictionaryResult &behind);

} // namespace qoc::program
