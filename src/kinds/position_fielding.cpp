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

qsys_status codesOf(const qstd_vector_qoc_ocrDictionaryChar &characters, qstd_vectorChar32 &codes) {
  QOC_TRY(qstd_vectorChar32_reserve(&codes, characters.core.size));
  for (const qoc_ocrDictionaryChar &character : view(characters)) {
    Char32 code = QOC_CHAR_EMPTY;
    // The empty character is no text character, and is taken over as it stands.
    if (character.code != QOC_CHAR_EMPTY) {
      CharT text = 0;
      QOC_TRY(qoc_ocrDictionaryChar_getCharT(&character, &text));
      code = codeOf(text);
    }
    QOC_TRY(qstd_vectorChar32_pushBack(&codes, &code));
  }
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc_ocrDictionaryPositionFielding_construct(qoc_ocrDictionaryPositionFielding *positionFielding) {
  if (!present({positionFielding})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vectorChar32_constructEmpty(&positionFielding->fieldingCharacters));
  positionFielding->fieldingBits = QOC_FIELDING_NONSPACE;
  return QSYS_STATUS_OK;
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
    QOC_TRY(qoc_ocrDictionaryPositionFielding_construct(positionFielding));
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
  if (!present({positionFielding, bits})) {
    return QSYS_STATUS_OK;
  }
  *bits = positionFielding->fieldingBits;
  return QSYS_STATUS_OK;
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
    QOC_TRY(qstd_vectorChar32_sortUnique(&sorted, 1));
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
  qstd_vectorChar32 codes;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qstd_vectorChar32_constructEmpty(&codes));
    frame.local<qstd_vectorChar32_destruct>(&codes);
    QOC_TRY(codesOf(*characters, codes));
    // Deliberate: neither duplicates nor the empty character are refused on this road.
    return qstd_vectorChar32_assign(&positionFielding->fieldingCharacters, &codes);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vector_qoc_ocrDictionaryChar *characters,
    uint32_t bits) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  qstd_vectorChar32 codes;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qstd_vectorChar32_constructEmpty(&codes));
    frame.local<qstd_vectorChar32_destruct>(&codes);
    QOC_TRY(codesOf(*characters, codes));
    return qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(positionFielding, &codes, bits);
  });
}

qsys_status qoc_ocrDictionaryPositionFielding_getFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vectorChar32 **characters) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  *characters = &positionFielding->fieldingCharacters;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_hasFieldingBits(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                              qsys_bool *has) {
  if (!present({positionFielding, has})) {
    return QSYS_STATUS_OK;
  }
  *has = positionFielding->fieldingBits != 0;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_hasFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *has) {
  if (!present({positionFielding, has})) {
    return QSYS_STATUS_OK;
  }
  *has = !listed(*positionFielding).empty();
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_isEmpty(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                      qsys_bool *isEmpty) {
  if (!present({positionFielding, isEmpty})) {
    return QSYS_STATUS_OK;
  }
  *isEmpty = positionFielding->fieldingBits == 0 && listed(*positionFielding).empty();
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_isAnyCharacter(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                             qsys_bool *isAny) {
  if (!present({positionFielding, isAny})) {
    return QSYS_STATUS_OK;
  }
  const qoc_ocrDictionaryPositionFielding &asked = *positionFielding;
  const bool hasSpaceBit = (asked.fieldingBits & QOC_FIELDING_SPACE) != 0;
  const bool hasNonspaceBit = (asked.fieldingBits & QOC_FIELDING_NONSPACE) != 0;
  *isAny = (hasSpaceBit && hasNonspaceBit) || lists(asked, QOC_CHAR_ANY) ||
           (lists(asked, U' ') && (hasNonspaceBit || lists(asked, QOC_CHAR_ANY_NONSPACE)));
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_isAnyNonspaceCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isAny) {
  if (!present({positionFielding, isAny})) {
    return QSYS_STATUS_OK;
  }
  const qoc_ocrDictionaryPositionFielding &asked = *positionFielding;
  const bool allowsSpace = (asked.fieldingBits & QOC_FIELDING_SPACE) != 0 || lists(asked, U' ');
  *isAny = !allowsSpace && ((asked.fieldingBits & QOC_FIELDING_NONSPACE) != 0 || lists(asked, QOC_CHAR_ANY_NONSPACE));
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_getIsSingleCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isSingle) {
  if (!present({positionFielding, isSingle})) {
    return QSYS_STATUS_OK;
  }
  *isSingle = isSpaceAlone(*positionFielding) || isListedAlone(*positionFielding);
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_getSingleCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, Char32 *code) {
  if (!present({positionFielding, code})) {
    return QSYS_STATUS_OK;
  }
  *code = isSpaceAlone(*positionFielding)    ? Char32{U' '}
          : isListedAlone(*positionFielding) ? listed(*positionFielding).front()
                                             : Char32{QOC_CHAR_EMPTY};
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_getAllowsSpace(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                             qsys_bool *allows) {
  if (!present({positionFielding, allows})) {
    return QSYS_STATUS_OK;
  }
  *allows = (positionFielding->fieldingBits & QOC_FIELDING_SPACE) != 0 || lists(*positionFielding, U' ');
  return QSYS_STATUS_OK;
}
