// The characters that one position of a line admits: lifecycle, setters and queries. Matching is in
// position_fielding_match.cpp.

#include <qoc/position_fielding.h>

#include <algorithm>
#include <span>

#include "frame/frame.hpp"
#include "text/views.hpp"

using namespace qoc;

namespace {

constexpr std::uint32_t allBits =
    QOC_FIELDING_UPPER | QOC_FIELDING_LOWER | QOC_FIELDING_DIGIT | QOC_FIELDING_SPACE | QOC_FIELDING_NONSPACE;

bool hasBit(const qoc_ocrDictionaryPositionFielding &positionFielding, std::uint32_t bit) noexcept {
  return (positionFielding.fieldingBits & bit) != 0;
}

std::span<const Char32> listed(const qoc_ocrDictionaryPositionFielding &positionFielding) noexcept {
  return viewAs<Char32>(positionFielding.fieldingCharacters);
}

bool lists(const qoc_ocrDictionaryPositionFielding &positionFielding, Char32 code) noexcept {
  return std::ranges::find(listed(positionFielding), code) != listed(positionFielding).end();
}

bool isSpaceAlone(const qoc_ocrDictionaryPositionFielding &positionFielding) noexcept {
  return positionFielding.fieldingBits == QOC_FIELDING_SPACE && listed(positionFielding).empty();
}

bool isListedAlone(const qoc_ocrDictionaryPositionFielding &positionFielding) noexcept {
  return positionFielding.fieldingBits == 0 && listed(positionFielding).size() == 1;
}

bool allowsSpace(const qoc_ocrDictionaryPositionFielding &positionFielding) noexcept {
  return hasBit(positionFielding, QOC_FIELDING_SPACE) || lists(positionFielding, U' ');
}

/// Every query: writes query(positionFielding) to *answer.
template <class Answer, class Query>
qsys_status give(const qoc_ocrDictionaryPositionFielding *positionFielding, Answer *answer, Query query,
                 int line = __builtin_LINE()) noexcept {
  if (present({positionFielding, answer}, line)) {
    *answer = query(*positionFielding);
  }
  return QSYS_STATUS_OK;
}

qsys_status appendCodes(const qstd_vector_qoc_ocrDictionaryChar &characters, qstd_vectorChar32 &codes) {
  QOC_TRY(qstd_vectorChar32_reserve(&codes, characters.core.size));
  for (const qoc_ocrDictionaryChar &character : view(characters)) {
    Char32 code = QOC_CHAR_EMPTY;
    // The empty character is no text character, and is taken over as it stands.
    if (character.code != QOC_CHAR_EMPTY) {
      CharT text = 0;
      QOC_TRY(qoc_ocrDictionaryChar_getCharT(&character, &text));
      code = codeOf(text);
    }
    QOC_SURE(qstd_vectorChar32_pushBack(&codes, &code));  // The room is there.
  }
  return QSYS_STATUS_OK;
}

/// Runs body(codes) with the codes of the characters, which must all be text characters or empty.
template <class Body>
qsys_status withCodesOf(const qstd_vector_qoc_ocrDictionaryChar &characters, Body body) {
  qstd_vectorChar32 codes;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vectorChar32_constructEmpty, qstd_vectorChar32_destruct>(&codes);
    QOC_TRY(appendCodes(characters, codes));
    return body(&codes);
  });
}

}  // namespace

qsys_status qoc_ocrDictionaryPositionFielding_construct(qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({positionFielding})) {
    return QSYS_STATUS_OK;
  }
  positionFielding->fieldingBits = QOC_FIELDING_NONSPACE;
  return qstd_vectorChar32_constructEmpty(&positionFielding->fieldingCharacters);
}

qsys_status qoc_ocrDictionaryPositionFielding_constructCopy(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                            const qoc_ocrDictionaryPositionFielding *source) {
  return constructThenAssign<qoc_ocrDictionaryPositionFielding_construct, qoc_ocrDictionaryPositionFielding_assign,
                             qoc_ocrDictionaryPositionFielding_destruct>(positionFielding, source);
}

qsys_status qoc_ocrDictionaryPositionFielding_assign(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                     const qoc_ocrDictionaryPositionFielding *source) {
  if (!present({positionFielding, source})) {
    return QSYS_STATUS_OK;
  }
  positionFielding->fieldingBits = source->fieldingBits;
  return qstd_vectorChar32_assign(&positionFielding->fieldingCharacters, &source->fieldingCharacters);
}

qsys_status qoc_ocrDictionaryPositionFielding_destruct(qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({positionFielding})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vectorChar32_destruct(&positionFielding->fieldingCharacters);
}

qsys_status qoc_ocrDictionaryPositionFielding_compareEqual(const qoc_ocrDictionaryPositionFielding *a,
                                                           const qoc_ocrDictionaryPositionFielding *b,
                                                           qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  if (a->fieldingBits != b->fieldingBits) {
    *isEqual = 0;
    return QSYS_STATUS_OK;
  }
  return qstd_vectorChar32_compareEqual(&a->fieldingCharacters, &b->fieldingCharacters, isEqual);
}

qsys_status qoc_ocrDictionaryPositionFielding_constructFieldingBits(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                                    uint32_t bits) {
  if (!present({positionFielding})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_SURE(qoc_ocrDictionaryPositionFielding_construct(positionFielding));  // Without a list it takes no memory.
    frame.output<qoc_ocrDictionaryPositionFielding_destruct>(positionFielding);
    return qoc_ocrDictionaryPositionFielding_setFieldingBits(positionFielding, bits);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_setFieldingBits(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                              uint32_t bits) {
  if (!present({positionFielding})) {
    return QSYS_STATUS_OK;
  }
  if ((bits & allBits) != bits) {
    return QOC_STATUS_FIELDING_BITS_INVALID;
  }
  positionFielding->fieldingBits = bits;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_getFielding(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                          uint32_t *bits) {
  return give(positionFielding, bits,
              [](const qoc_ocrDictionaryPositionFielding &asked) { return asked.fieldingBits; });
}

qsys_status qoc_ocrDictionaryPositionFielding_getFieldingBits(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                              uint32_t *bits) {
  return qoc_ocrDictionaryPositionFielding_getFielding(positionFielding, bits);
}

qsys_status qoc_ocrDictionaryPositionFielding_setFieldingCharacters(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                                    const qstd_vectorChar32 *characters) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  qstd_vectorChar32 sorted;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qstd_vectorChar32_constructCopy(&sorted, characters));
    frame.local<qstd_vectorChar32_destruct>(&sorted);
    QOC_SURE(qstd_vectorChar32_sortUnique(&sorted, 1));  // It only takes elements out.
    if (sorted.core.size != characters->core.size) {
      return QOC_STATUS_CHARACTER_DUPLICATE;
    }
    if (std::ranges::binary_search(viewAs<Char32>(sorted), QOC_CHAR_EMPTY)) {
      return QOC_STATUS_CHARACTER_EMPTY;
    }
    return qstd_vectorChar32_assign(&positionFielding->fieldingCharacters, characters);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vectorChar32 *characters, uint32_t bits) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qoc_ocrDictionaryPositionFielding_setFieldingBits(positionFielding, bits));
  // Deliberate: the new bits stay when the list is refused.
  return qoc_ocrDictionaryPositionFielding_setFieldingCharacters(positionFielding, characters);
}

qsys_status qoc_ocrDictionaryPositionFielding_setDictCharacters(qoc_ocrDictionaryPositionFielding *positionFielding,
                                                                const qstd_vector_qoc_ocrDictionaryChar *characters) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  // Deliberate: neither duplicates nor the empty character are refused on this road.
  return withCodesOf(*characters, [&](const qstd_vectorChar32 *codes) {
    return qstd_vectorChar32_assign(&positionFielding->fieldingCharacters, codes);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vector_qoc_ocrDictionaryChar *characters,
    uint32_t bits) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  return withCodesOf(*characters, [&](const qstd_vectorChar32 *codes) {
    return qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(positionFielding, codes, bits);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_getFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vectorChar32 **characters) {
  return give(positionFielding, characters,
              [](const qoc_ocrDictionaryPositionFielding &asked) { return &asked.fieldingCharacters; });
}

qsys_status qoc_ocrDictionaryPositionFielding_hasFieldingBits(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                              qsys_bool *has) {
  return give(positionFielding, has,
              [](const qoc_ocrDictionaryPositionFielding &asked) { return asked.fieldingBits != 0; });
}

qsys_status qoc_ocrDictionaryPositionFielding_hasFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *has) {
  return give(positionFielding, has,
              [](const qoc_ocrDictionaryPositionFielding &asked) { return !listed(asked).empty(); });
}

qsys_status qoc_ocrDictionaryPositionFielding_isEmpty(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                      qsys_bool *isEmpty) {
  return give(positionFielding, isEmpty, [](const qoc_ocrDictionaryPositionFielding &asked) {
    return asked.fieldingBits == 0 && listed(asked).empty();
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_isAnyCharacter(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                             qsys_bool *isAny) {
  return give(positionFielding, isAny, [](const qoc_ocrDictionaryPositionFielding &asked) {
    return (hasBit(asked, QOC_FIELDING_SPACE) && hasBit(asked, QOC_FIELDING_NONSPACE)) || lists(asked, QOC_CHAR_ANY) ||
           (lists(asked, U' ') && (hasBit(asked, QOC_FIELDING_NONSPACE) || lists(asked, QOC_CHAR_ANY_NONSPACE)));
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_isAnyNonspaceCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isAny) {
  return give(positionFielding, isAny, [](const qoc_ocrDictionaryPositionFielding &asked) {
    return !allowsSpace(asked) && (hasBit(asked, QOC_FIELDING_NONSPACE) || lists(asked, QOC_CHAR_ANY_NONSPACE));
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_getIsSingleCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isSingle) {
  return give(positionFielding, isSingle, [](const qoc_ocrDictionaryPositionFielding &asked) {
    return isSpaceAlone(asked) || isListedAlone(asked);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_getSingleCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, Char32 *code) {
  return give(positionFielding, code, [](const qoc_ocrDictionaryPositionFielding &asked) {
    return isSpaceAlone(asked) ? Char32{U' '} : isListedAlone(asked) ? listed(asked).front() : Char32{QOC_CHAR_EMPTY};
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_getAllowsSpace(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                             qsys_bool *allows) {
  return give(positionFielding, allows,
              [](const qoc_ocrDictionaryPositionFielding &asked) { return allowsSpace(asked); });
}
