// Swap character sets: what they answer. No query writes anything in the set.

#include <qoc/swap_char_set.h>

#include <algorithm>

#include "frame/frame.hpp"
#include "platform/containers/vector_family.hpp"
#include "platform/system/certain.hpp"
#include "swap/match.hpp"
#include "swap/pair_filter.hpp"
#include "text/views.hpp"

using qoc::Frame;
using qoc::indexOfCode;
using qoc::inFrame;
using qoc::present;
using qoc::view;
using qoc::viewAs;

namespace {

/// Appends the code's equivalents, ascending: from the cache, or, in a class too large for it, from the table.
qsys_status appendEquivalents(const qoc_swapCharSet &set, Char32 code, qstd_vectorChar32 *codes) {
  const std::int32_t index = indexOfCode(set, code);
  if (index < 0) {
    return QSYS_STATUS_OK;
  }
  const auto row = static_cast<std::size_t>(index);
  if (viewAs<std::uint8_t>(set.equivalentsCacheFlags)[row] != 0) {
    return qstd_vectorChar32_append(codes, &viewAs<qstd_vectorChar32>(set.equivalentsCacheLists)[row]);
  }
  const auto distinctCharacters = viewAs<Char32>(set.distinctCharacters);
  for (std::int32_t i = 0; i < set.distinctCharacters.core.size; ++i) {
    if (i != index && qoc::areEquivalent(set, index, i)) {
      QOC_TRY(qstd_vectorChar32_pushBack(codes, &distinctCharacters[static_cast<std::size_t>(i)]));
    }
  }
  return QSYS_STATUS_OK;
}

bool contains(const qstd_vector_qoc_ocrDictionaryChar &characters, Char32 code) {
  return std::ranges::find(view(characters), code, &qoc_ocrDictionaryChar::code) != view(characters).end();
}

/// Appends the codes as characters with score 0; with `isNewOnly` only those that are neither `except` nor there yet.
qsys_status appendCharacters(const qstd_vectorChar32 &codes, bool isNewOnly, Char32 except,
                             qstd_vector_qoc_ocrDictionaryChar *characters) {
  for (const Char32 code : viewAs<Char32>(codes)) {
    const qoc_ocrDictionaryChar character = {code, 0};
    if (!isNewOnly || (code != except && !contains(*characters, code))) {
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(characters, &character));
    }
  }
  return QSYS_STATUS_OK;
}

bool isAnyMatch(const qoc_swapCharSet *set, qoc::Characters candidates, Char32 code) {
  return std::any_of(candidates.begin(), candidates.end(),
                     [&](const qoc_ocrDictionaryChar &candidate) { return qoc::isMatch(set, candidate.code, code); });
}

bool isInOneGroup(const qoc_swapCharSet *set, Char32 a, Char32 b) {
  if (set == nullptr || set->pairFilterData == nullptr || set->pairFilterData[qoc::slotOfPair(a, b)] == 0) {
    return false;
  }
  // The slot may stand for other pairs, too. Reserved codes are in no group.
  const std::int32_t indexA = indexOfCode(*set, a);
  const std::int32_t indexB = indexOfCode(*set, b);
  return a != b && indexA >= 0 && indexB >= 0 && qoc::areEquivalent(*set, indexA, indexB);
}

}  // namespace

qsys_status qoc_swapCharSet_getIsEmpty(const qoc_swapCharSet *set, qsys_bool *isEmpty) {
  if (present({set, isEmpty})) {
    *isEmpty = set->isEmpty;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_compareEqual(const qoc_swapCharSet *a, const qoc_swapCharSet *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  // The tables follow from the groups.
  qstd_vector__compareEqual(&a->swaps.core, &b->swaps.core, isEqual,
                            qoc::compareElements<qoc_swapChar, qoc_swapChar_compareEqual>);
  return *isEqual != 0 ? qstd_vector_vectorChar32_compareEqual(&a->groups, &b->groups, isEqual) : QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_contains(const qoc_swapCharSet *set, Char32 code, qsys_bool *isContained) {
  if (present({set, isContained})) {
    *isContained = indexOfCode(*set, code) >= 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_getEquiv(const qoc_swapCharSet *set, qstd_vector_vectorChar32 *groups) {
  return present({set, groups}) ? qstd_vector_vectorChar32_assign(groups, &set->groups) : QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_getGroup(const qoc_swapCharSet *set, Char32 code, qstd_vectorChar32 *group) {
  if (!present({set, group})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vectorChar32_clear(group));
  QOC_TRY(appendEquivalents(*set, code, group));
  return group->core.size > 0 ? qstd_vectorChar32_pushBack(group, &code) : QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_getEquivalentCharacters(const qoc_swapCharSet *set, const qoc_ocrDictionaryChar *character,
                                                    qstd_vector_qoc_ocrDictionaryChar *equivalents) {
  if (!present({set, character, equivalents})) {
    return QSYS_STATUS_OK;
  }
  qstd_vectorChar32 codes;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vectorChar32_constructEmpty, qstd_vectorChar32_destruct>(&codes);
    QOC_TRY(appendEquivalents(*set, character->code, &codes));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_clear(equivalents));
    return appendCharacters(codes, false, 0, equivalents);
  });
}

qsys_status qoc_swapCharSet_getEquivalentCharactersMulti(const qoc_swapCharSet *set,
                                                         const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                         qstd_vector_qoc_ocrDictionaryChar *equivalents) {
  if (!present({set, candidates, equivalents})) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_qoc_ocrDictionaryChar copy;
  qstd_vectorChar32 codes;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    // Copied, because the output may be the candidates themselves.
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_constructCopy(&copy, candidates));
    frame.local<qstd_vector_qoc_ocrDictionaryChar_destruct>(&copy);
    frame.emptyLocal<qstd_vectorChar32_constructEmpty, qstd_vectorChar32_destruct>(&codes);
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_clear(equivalents));
    const qoc::Characters all = view(copy);
    for (std::size_t i = 0; i < all.size(); ++i) {
      const Char32 code = all[i].code;
      qoc::clear(codes);
      // Deliberate: a later candidate is entered itself, even one with the first candidate's code; the first is not.
      if (i > 0 && !contains(*equivalents, code)) {
        QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_pushBack(equivalents, &all[i]));
      }
      QOC_TRY(appendEquivalents(*set, code, &codes));
      QOC_TRY(appendCharacters(codes, i > 0, all[0].code, equivalents));
    }
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_swapCharSet_isMatch(const qoc_swapCharSet *set, Char32 a, Char32 b, qsys_bool *isMatch) {
  if (present({isMatch})) {
    *isMatch = isInOneGroup(set, a, b) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_isMatchChar(const qoc_swapCharSet *set, const qoc_ocrDictionaryChar *a,
                                        const qoc_ocrDictionaryChar *b, qsys_bool *isMatch) {
  if (present({a, b, isMatch})) {
    *isMatch = qoc::isMatch(set, a->code, b->code) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_isMatchCharMulti(const qoc_swapCharSet *set, const qstd_vector_qoc_ocrDictionaryChar *a,
                                             const qstd_vector_qoc_ocrDictionaryChar *b, qsys_bool *isMatch) {
  if (present({a, b, isMatch})) {
    const qoc::Characters others = view(*b);
    *isMatch = std::any_of(others.begin(), others.end(),
                           [&](const qoc_ocrDictionaryChar &other) { return isAnyMatch(set, view(*a), other.code); })
                   ? 1
                   : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_isMatchCharMultiChar(const qoc_swapCharSet *set,
                                                 const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                 const qoc_ocrDictionaryChar *b, qsys_bool *isMatch) {
  if (present({candidates, b, isMatch})) {
    *isMatch = isAnyMatch(set, view(*candidates), b->code) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_hasMultiSwap(const qoc_swapCharSet *set, qsys_bool *hasMultiSwap) {
  if (present({set, hasMultiSwap})) {
    *hasMultiSwap = qoc::answerOf<qoc_stringExpand__isEmpty>(*set->expansion) ? 0 : 1;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_multiSwapStrings(const qoc_swapCharSet *set, const qoc_ocrDictionaryStringMulti *input,
                                             qstd_vector_qoc_ocrDictionaryStringMulti *variants,
                                             qstd_vector_vector32s *positions) {
  if (!present({set, input, variants, positions})) {
    return QSYS_STATUS_OK;
  }
  return qoc_stringExpand__mapStringMulti(set->expansion, input, set, variants, positions);
}
