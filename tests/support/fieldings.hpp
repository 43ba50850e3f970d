#pragma once
// Position fieldings, line fieldings and swap sets, written shortly.

#include <string_view>
#include <vector>

#include "support/owned.hpp"
#include "support/text.hpp"

namespace qoc::test {

/// A list of codes.
inline Owned<qstd_vectorChar32> codeVector(std::u32string_view text) {
  return vectorOf<qstd_vectorChar32>(std::vector<Char32>(text.begin(), text.end()));
}

/// The codes of a list, in order.
inline std::u32string show(const qstd_vectorChar32 &list) {
  const auto view = elements(list);
  return {view.begin(), view.end()};
}

/// A position fielding of class bits and listed codes: fielding(QOC_FIELDING_DIGIT, U"-").
inline Owned<qoc_ocrDictionaryPositionFielding> fielding(uint32_t bits, std::u32string_view listed = U"") {
  Owned<qoc_ocrDictionaryPositionFielding> made;
  require(qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(made, codeVector(listed), bits));
  return made;
}

/// A line, one character for each position: A upper, a lower, 9 digit, * any non-space, ? any, _ space, ~ nothing; any
/// other character stands for itself, listed.
inline Owned<qoc_ocrDictionaryLineFielding> line(std::string_view picture) {
  Owned<qoc_ocrDictionaryLineFielding> made;
  for (const char one : picture) {
    const char32_t self[] = {static_cast<char32_t>(one), 0};
    const auto position = one == 'A'   ? fielding(QOC_FIELDING_UPPER)
                          : one == 'a' ? fielding(QOC_FIELDING_LOWER)
                          : one == '9' ? fielding(QOC_FIELDING_DIGIT)
                          : one == '*' ? fielding(QOC_FIELDING_NONSPACE)
                          : one == '?' ? fielding(QOC_FIELDING_NONSPACE | QOC_FIELDING_SPACE)
                          : one == '_' ? fielding(QOC_FIELDING_SPACE)
                          : one == '~' ? fielding(0)
                                       : fielding(0, self);
    require(qstd_vector_qoc_ocrDictionaryPositionFielding_pushBack(&made->positions, position));
  }
  return made;
}

/// A reading of single candidates, one for each character.
inline Owned<qoc_ocrDictionaryStringMulti> plain(std::string_view text) {
  const auto string = word(text);
  return Owned<qoc_ocrDictionaryStringMulti>(
      [&](qoc_ocrDictionaryStringMulti *multi) { return qoc_ocrDictionaryStringMulti_constructString(multi, string); });
}

/// A swap set of groups of characters.
inline Owned<qoc_swapCharSet> swaps(const std::vector<std::u32string_view> &groups) {
  Owned<qstd_vector_vectorChar32> lists;
  for (const std::u32string_view group : groups) {
    require(qstd_vector_vectorChar32_pushBack(lists, codeVector(group)));
  }
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setEquiv(set, lists));
  return set;
}

}  // namespace qoc::test
