// Swap character sets of any groups and swaps, and what they answer.

#include <algorithm>

#include "input.hpp"

namespace {

using namespace qoc::test;
using qoc::fuzz::check;
using qoc::fuzz::Input;

Owned<qstd_vectorChar32> codesOf(Input &input, int maxSize) {
  Owned<qstd_vectorChar32> codes;
  for (int n = input.below(maxSize + 1); n > 0; --n) {
    const Char32 code = input.code();
    require(qstd_vectorChar32_pushBack(codes, &code));
  }
  return codes;
}

qsys_status build(Input &input, qoc_swapCharSet *set) {
  switch (input.below(4)) {
    case 0: {
      Owned<qstd_vector_vectorChar32> groups;
      for (int n = input.below(6); n > 0; --n) {
        require(qstd_vector_vectorChar32_pushBack(groups, codesOf(input, 6)));
      }
      const qsys_status status = qoc_swapCharSet_setEquiv(set, groups);
      if (status >= 0) {
        Owned<qstd_vector_vectorChar32> back;
        require(qoc_swapCharSet_getEquiv(set, back));
        qsys_bool isEqual = 0;
        require(qstd_vector_vectorChar32_compareEqual(groups, back, &isEqual));
        check(isEqual == 1);
      }
      return status;
    }
    case 1: {
      Owned<qstd_vector_qoc_swapChar> swaps;
      for (int n = input.below(6); n > 0; --n) {
        Owned<qoc_swapChar> swap;
        require(qstd_vectorChar32_assign(&swap->first, codesOf(input, 3)));
        require(qstd_vectorChar32_assign(&swap->second, codesOf(input, 3)));
        require(qstd_vector_qoc_swapChar_pushBack(swaps, swap));
      }
      return qoc_swapCharSet_setSwapCharacters(set, swaps);
    }
    case 2:
      return qoc_swapCharSet_setSingleSwap(set, input.code(), input.code());
    default:
      return qoc_swapCharSet_appendSingleSwap(set, input.code(), input.code());
  }
}

/// The answers of a set have to fit together.
void query(Input &input, const qoc_swapCharSet *set) {
  const qoc_ocrDictionaryChar a = {input.code(), 1}, b = {input.code(), 2};
  qsys_bool isMatch = 0, isReverse = 0, isContained = 0, isGroupMatch = 0;
  require(qoc_swapCharSet_isMatchChar(set, &a, &b, &isMatch));
  require(qoc_swapCharSet_isMatchChar(set, &b, &a, &isReverse));
  check(isMatch == isReverse);
  check(a.code != QOC_CHAR_EMPTY || isMatch == 0);
  require(qoc_swapCharSet_contains(set, a.code, &isContained));
  require(qoc_swapCharSet_isMatch(set, a.code, b.code, &isGroupMatch));
  check(isGroupMatch <= isMatch || a.code == QOC_CHAR_EMPTY || b.code == QOC_CHAR_EMPTY);

  Owned<qstd_vector_qoc_ocrDictionaryChar> equivalents;
  require(qoc_swapCharSet_getEquivalentCharacters(set, &a, equivalents));
  const auto list = elements(*equivalents);
  check(isContained == 1 || list.empty());
  const auto byCode = [](const auto &x, const auto &y) { return x.code < y.code; };
  check(std::is_sorted(list.begin(), list.end(), byCode));
  for (const qoc_ocrDictionaryChar &one : list) {
    check(one.code != a.code);
    require(qoc_swapCharSet_isMatchChar(set, &a, &one, &isMatch));
    check(isMatch == 1);
  }
  Owned<qstd_vectorChar32> group;
  require(qoc_swapCharSet_getGroup(set, a.code, group));
  check(elements(*group).size() == (isContained == 1 ? list.size() + 1 : 0));
}

void expand(Input &input, const qoc_swapCharSet *set) {
  Owned<qoc_ocrDictionaryStringMulti> reading;
  for (int n = input.below(6); n > 0; --n) {
    Owned<qoc_ocrDictionaryCharMulti> position;
    require(qoc_ocrDictionaryCharMulti_setCharacterCodeScore(position, input.code(), 0));
    require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&reading->positions, position));
  }
  Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
  Owned<qstd_vector_vector32s> positions;
  const Polls polls(500);
  const qsys_status status = qoc_swapCharSet_multiSwapStrings(set, reading, variants, positions);
  check(status >= 0 || status == QSYS_STATUS_INTERRUPTED || status == QSYS_STATUS_OUT_OF_MEMORY);
  check(status >= 0 ? !elements(*variants).empty() : elements(*variants).empty() && elements(*positions).empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    Owned<qoc_swapCharSet> set;
    for (int i = 0; i < 20 && !input.isEmpty(); ++i) {
      switch (input.below(4)) {
        case 0:
          build(input, set);
          break;
        case 1:
          query(input, set);
          break;
        case 2:
          expand(input, set);
          break;
        default: {
          const Owned<qoc_swapCharSet> copy(*set);
          qsys_bool isEqual = 0;
          require(qoc_swapCharSet_compareEqual(set, copy, &isEqual));
          check(isEqual == 1);
          query(input, copy);
        }
      }
    }
  });
}
