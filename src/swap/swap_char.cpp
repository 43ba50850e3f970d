// Swap characters: one allowed confusion between two character sequences.

#include <qoc/swap_char.h>

#include <algorithm>

#include "frame/frame.hpp"
#include "text/views.hpp"

using qoc::Characters;
using qoc::constructThen;
using qoc::editAs;
using qoc::firstFailure;
using qoc::present;
using qoc::view;
using qoc::viewAs;

namespace {

bool areEqual(const qstd_vectorChar32 &a, const qstd_vectorChar32 &b) {
  return std::ranges::equal(viewAs<Char32>(a), viewAs<Char32>(b));
}

bool areEqual(const qoc_swapChar &a, const qoc_swapChar &b) {
  return areEqual(a.first, b.first) && areEqual(a.second, b.second);
}

bool areEqualCodes(const qoc_ocrDictionaryChar &a, const qoc_ocrDictionaryChar &b) { return a.code == b.code; }

/// Whether `part` occurs in `whole` at an examined place. Deliberate: the place that ends with the last character of
/// `whole` is not examined, so "AB" contains "A" but not "B".
bool occursBeforeTheEnd(Characters part, Characters whole) {
  const Characters examined = whole.first(whole.size() - 1);
  return std::search(examined.begin(), examined.end(), part.begin(), part.end(), areEqualCodes) != examined.end();
}

qsys_status validate(Characters first, Characters second) {
  if (first.empty() || second.empty()) {
    return QOC_STATUS_STRING_EMPTY;
  }
  const bool isRefused = first.size() == second.size()
                             ? std::equal(first.begin(), first.end(), second.begin(), areEqualCodes)
                         : first.size() > second.size() ? occursBeforeTheEnd(second, first)
                                                        : occursBeforeTheEnd(first, second);
  return isRefused ? QOC_STATUS_SWAP_CONTAINED : QSYS_STATUS_OK;
}

qsys_status setCodes(qstd_vectorChar32 *sequence, Characters characters) {
  QOC_TRY(qstd_vectorChar32_resize(sequence, static_cast<std::int32_t>(characters.size())));
  std::transform(characters.begin(), characters.end(), editAs<Char32>(*sequence).begin(),
                 [](const qoc_ocrDictionaryChar &character) { return character.code; });
  return QSYS_STATUS_OK;
}

qsys_status setValidated(qoc_swapChar *swap, Characters first, Characters second) {
  QOC_TRY(validate(first, second));
  QOC_TRY(setCodes(&swap->first, first));
  return setCodes(&swap->second, second);
}

qsys_status getString(const qstd_vectorChar32 &sequence, qoc_ocrDictionaryString *string) {
  const std::span<const Char32> codes = viewAs<Char32>(sequence);
  QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_resize(&string->characters, static_cast<std::int32_t>(codes.size())));
  std::transform(codes.begin(), codes.end(), editAs<qoc_ocrDictionaryChar>(string->characters).begin(),
                 [](Char32 code) {
                   return qoc_ocrDictionaryChar{code, 0};
                 });
  return QSYS_STATUS_OK;
}

/// Constructs the swap and sets it; a swap that could not be set is destroyed again.
template <auto Set, class Source>
qsys_status constructThenSet(qoc_swapChar *swap, const Source *first, const Source *second,
                             int line = __builtin_LINE()) {
  if (!present({swap, first, second}, line)) {
    return QSYS_STATUS_OK;
  }
  return constructThen<qoc_swapChar_construct, qoc_swapChar_destruct>(swap, [&] { return Set(swap, first, second); });
}

}  // namespace

qsys_status qoc_swapChar_construct(qoc_swapChar *swap) {
  if (!present({swap})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure(
      {qstd_vectorChar32_constructEmpty(&swap->first), qstd_vectorChar32_constructEmpty(&swap->second)});
}

qsys_status qoc_swapChar_constructCopy(qoc_swapChar *swap, const qoc_swapChar *source) {
  return qoc::constructThenAssign<qoc_swapChar_construct, qoc_swapChar_assign, qoc_swapChar_destruct>(swap, source);
}

qsys_status qoc_swapChar_assign(qoc_swapChar *swap, const qoc_swapChar *source) {
  if (!present({swap, source})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: the second sequence before the first.
  QOC_TRY(qstd_vectorChar32_assign(&swap->second, &source->second));
  return qstd_vectorChar32_assign(&swap->first, &source->first);
}

qsys_status qoc_swapChar_destruct(qoc_swapChar *swap) {
  if (!present({swap})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vectorChar32_destruct(&swap->first), qstd_vectorChar32_destruct(&swap->second)});
}

qsys_status qoc_swapChar_compareEqual(const qoc_swapChar *a, const qoc_swapChar *b, qsys_bool *isEqual) {
  if (present({a, b, isEqual})) {
    *isEqual = areEqual(*a, *b) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector_qoc_swapChar_find(const qstd_vector_qoc_swapChar *vector, const qoc_swapChar *swap,
                                          const qoc_swapChar **element) {
  if (!present({vector, swap, element})) {
    return QSYS_STATUS_OK;
  }
  const auto swaps = viewAs<qoc_swapChar>(*vector);
  const auto found =
      std::ranges::find_if(swaps, [&](const qoc_swapChar &candidate) { return areEqual(candidate, *swap); });
  *element = found != swaps.end() ? &*found : nullptr;
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapChar_constructStrings(qoc_swapChar *swap, const qoc_ocrDictionaryString *first,
                                          const qoc_ocrDictionaryString *second) {
  return constructThenSet<qoc_swapChar_setStrings>(swap, first, second);
}

qsys_status qoc_swapChar_constructCharacters(qoc_swapChar *swap, const qoc_ocrDictionaryChar *first,
                                             const qoc_ocrDictionaryChar *second) {
  return constructThenSet<qoc_swapChar_setCharacters>(swap, first, second);
}

qsys_status qoc_swapChar_constructVectors(qoc_swapChar *swap, const qstd_vector_qoc_ocrDictionaryChar *first,
                                          const qstd_vector_qoc_ocrDictionaryChar *second) {
  return constructThenSet<qoc_swapChar_setVectors>(swap, first, second);
}

qsys_status qoc_swapChar_setStrings(qoc_swapChar *swap, const qoc_ocrDictionaryString *first,
                                    const qoc_ocrDictionaryString *second) {
  if (!present({swap, first, second})) {
    return QSYS_STATUS_OK;
  }
  return setValidated(swap, view(*first), view(*second));
}

qsys_status qoc_swapChar_setVectors(qoc_swapChar *swap, const qstd_vector_qoc_ocrDictionaryChar *first,
                                    const qstd_vector_qoc_ocrDictionaryChar *second) {
  if (!present({swap, first, second})) {
    return QSYS_STATUS_OK;
  }
  const Characters firstCharacters = view(*first);
  const Characters secondCharacters = view(*second);
  if (firstCharacters.empty() || secondCharacters.empty()) {
    // Deliberate: not the status that an empty string gives.
    return QOC_STATUS_SWAP_CONTAINED;
  }
  return setValidated(swap, firstCharacters, secondCharacters);
}

qsys_status qoc_swapChar_setCharacters(qoc_swapChar *swap, const qoc_ocrDictionaryChar *first,
                                       const qoc_ocrDictionaryChar *second) {
  if (!present({swap, first, second})) {
    return QSYS_STATUS_OK;
  }
  if (areEqualCodes(*first, *second)) {
    return QOC_STATUS_SWAP_SAME_CHARACTER;
  }
  QOC_TRY(setCodes(&swap->first, Characters(first, 1)));
  return setCodes(&swap->second, Characters(second, 1));
}

qsys_status qoc_swapChar_getStrings(const qoc_swapChar *swap, qoc_ocrDictionaryString *first,
                                    qoc_ocrDictionaryString *second) {
  if (!present({swap, first, second})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(getString(swap->first, first));
  return getString(swap->second, second);
}

qsys_status qoc_swapChar_getIsSingleCharSwap(const qoc_swapChar *swap, qsys_bool *isSingle) {
  if (present({swap, isSingle})) {
    *isSingle = swap->first.core.size == 1 && swap->second.core.size == 1 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}
