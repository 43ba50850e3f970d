#pragma once
// Swaps, groups and sets, written shortly: a sequence of codes is a text, "rn", or a UTF-32 text where a code is beyond
// ASCII.

#include <string_view>
#include <utility>
#include <vector>

#include "support/text.hpp"

namespace qoc::test {

using Codes = std::vector<Char32>;

inline Codes codes(std::u32string_view text) { return Codes(text.begin(), text.end()); }

inline Owned<qstd_vector_vectorChar32> groupsOfCodes(const std::vector<Codes> &groups) {
  Owned<qstd_vector_vectorChar32> result;
  for (const Codes &group : groups) {
    require(qstd_vector_vectorChar32_pushBack(result, vectorOf<qstd_vectorChar32>(group)));
  }
  return result;
}
inline Owned<qstd_vector_vectorChar32> groupsOf(const std::vector<std::u32string_view> &groups) {
  std::vector<Codes> result;
  for (const std::u32string_view group : groups) {
    result.push_back(codes(group));
  }
  return groupsOfCodes(result);
}

inline std::vector<Codes> groupsIn(const qstd_vector_vectorChar32 &groups) {
  std::vector<Codes> result;
  for (const qstd_vectorChar32 &group : elements(groups)) {
    result.push_back(values(group));
  }
  return result;
}

inline Owned<qoc_swapCharSet> setOf(const std::vector<std::u32string_view> &groups) {
  return Owned<qoc_swapCharSet>(
      [&](qoc_swapCharSet *set) { return qoc_swapCharSet_constructEquiv(set, groupsOf(groups)); });
}

/// A swap of any two sequences, valid or not.
inline Owned<qoc_swapChar> swapOf(const Codes &first, const Codes &second) {
  Owned<qoc_swapChar> swap;
  require(qstd_vectorChar32_assignElements(&swap->first, first.data(), static_cast<int32_t>(first.size())));
  require(qstd_vectorChar32_assignElements(&swap->second, second.data(), static_cast<int32_t>(second.size())));
  return swap;
}
inline Owned<qoc_swapChar> swapOf(std::u32string_view first, std::u32string_view second) {
  return swapOf(codes(first), codes(second));
}

using Pairs = std::vector<std::pair<std::u32string_view, std::u32string_view>>;

inline Owned<qstd_vector_qoc_swapChar> swapsOf(const Pairs &pairs) {
  Owned<qstd_vector_qoc_swapChar> swaps;
  for (const auto &[first, second] : pairs) {
    require(qstd_vector_qoc_swapChar_pushBack(swaps, swapOf(first, second)));
  }
  return swaps;
}

inline Owned<qoc_swapCharSet> setOfSwaps(const Pairs &pairs) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, swapsOf(pairs)));
  return set;
}

/// The answer of a query that writes a flag: answer(query, arguments...) is query(arguments..., &flag).
template <class Query, class... Arguments>
bool answer(Query query, const Arguments &...arguments) {
  qsys_bool flag = 7;
  require(query(arguments..., &flag));
  if (flag > 1) {
    throw std::runtime_error("a flag was not set to 0 or 1");
  }
  return flag != 0;
}

inline bool isMatchChar(const qoc_swapCharSet *set, Char32 a, Char32 b) {
  const qoc_ocrDictionaryChar left = character(a), right = character(b);
  return answer(qoc_swapCharSet_isMatchChar, set, &left, &right);
}
inline bool isMatch(const qoc_swapCharSet *set, Char32 a, Char32 b) {
  return answer(qoc_swapCharSet_isMatch, set, a, b);
}

inline Codes groupOf(const qoc_swapCharSet *set, Char32 code) {
  Owned<qstd_vectorChar32> group;
  require(qoc_swapCharSet_getGroup(set, code, group));
  return values(group);
}

/// The variants of a reading in the notation of readings, each followed by its positions: "m @0".
inline std::vector<std::string> variantsOf(const qoc_swapCharSet *set, std::string_view text) {
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;
  require(qoc_swapCharSet_multiSwapStrings(set, reading(text), variants, positions));
  std::vector<std::string> result;
  for (std::size_t i = 0; i < elements(variants).size(); ++i) {
    result.push_back(show(elements(variants)[i]));
    for (std::size_t k = 0; i < elements(positions).size() && k < elements(elements(positions)[i]).size(); ++k) {
      result.back() += (k == 0 ? " @" : ",") + std::to_string(elements(elements(positions)[i])[k]);
    }
  }
  return result;
}

}  // namespace qoc::test
