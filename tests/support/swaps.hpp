#pragma once
// Swap character sets, written shortly.

#include <qoc/swap_char_set.h>

#include <string_view>
#include <vector>

#include "support/text.hpp"

namespace qoc::test {

/// A set of groups of interchangeable characters: swaps({"0OD", "1l"}).
inline Owned<qoc_swapCharSet> swaps(const std::vector<std::string_view> &groups) {
  Owned<qstd_vector_qstd_string> texts;
  for (const std::string_view group : groups) {
    require(qstd_vector_qstd_string_pushBack(texts, stdString(group)));
  }
  return Owned<qoc_swapCharSet>(
      [&](qoc_swapCharSet *set) { return qoc_swapCharSet_constructEquivStdStrings(set, texts); });
}

}  // namespace qoc::test
