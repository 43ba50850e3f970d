// What one position of a line admits of a reading: yes or no, with a status, and as a list of characters.

#include <qoc/position_fielding.h>

#include <algorithm>
#include <span>

#include "frame/frame.hpp"
#include "kinds/fielding_classes.hpp"
#include "platform/system/certain.hpp"
#include "swap/match.hpp"
#include "text/views.hpp"

using namespace qoc;

namespace {

bool isInClass(Char32 code, std::uint32_t bits) noexcept { return (classesOf(code) & bits) != 0; }

/// The code after a conversion to a text character and back; what does not convert is a failure.
qsys_status textCode(const qoc_ocrDictionaryChar &character, Char32 &code) noexcept {
  CharT text = 0;
  QOC_TRY(qoc_ocrDictionaryChar_getCharT(&character, &text));
  code = codeOf(text);
  return QSYS_STATUS_OK;
}

/// True when the class test admits a swap equivalent of the character.
qsys_status isEquivalentInClass(const qoc_ocrDictionaryPositionFielding &positionFielding,
                                const qoc_ocrDictionaryChar &character, const qoc_swapCharSet *set, bool &isMatch) {
  qstd_vector_qoc_ocrDictionaryChar equivalents;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vector_qoc_ocrDictionaryChar_constructEmpty, qstd_vector_qoc_ocrDictionaryChar_destruct>(
        &equivalents);
    QOC_TRY(qoc_swapCharSet_getEquivalentCharacters(set, &character, &equivalents));
    for (const qoc_ocrDictionaryChar &equivalent : view(equivalents)) {
      Char32 code = 0;
      QOC_TRY(textCode(equivalent, code));
      if (isInClass(code, positionFielding.fieldingBits)) {
        isMatch = true;
        break;
      }
    }
    return QSYS_STATUS_OK;
  });
}

/// True when the listed character may stand for the one of the reading, which is not the empty one.
bool isListedMatch(Char32 listed, const qoc_ocrDictionaryChar &character, const qoc_swapCharSet *set) noexcept {
  return listed == QOC_CHAR_ANY_NONSPACE ? character.code != U' ' : qoc::isMatch(set, character.code, listed);
}

qsys_status isCharacterMatch(const qoc_ocrDictionaryPositionFielding &positionFielding,
                             const qoc_ocrDictionaryChar &character, const qoc_swapCharSet *set, bool &isMatch) {
  isMatch = false;
  if (character.code == QOC_CHAR_EMPTY) {
    return QSYS_STATUS_OK;
  }
  Char32 code = 0;
  QOC_TRY(textCode(character, code));
  const std::span<const Char32> listed = viewAs<Char32>(positionFielding.fieldingCharacters);
  isMatch = isInClass(code, positionFielding.fieldingBits) || std::ranges::find(listed, code) != listed.end();
  if (!isMatch && set != nullptr) {
    QOC_TRY(isEquivalentInClass(positionFielding, character, set, isMatch));
  }
  for (std::size_t i = 0; !isMatch && i < listed.size(); ++i) {
    isMatch = isListedMatch(listed[i], character, set);
  }
  return QSYS_STATUS_OK;
}

qsys_status appendIfAdmitted(const qoc_ocrDictionaryPositionFielding &positionFielding,
                             const qoc_ocrDictionaryChar &character, qstd_vector_qoc_ocrDictionaryChar &matches) {
  bool isMatch = false;
  QOC_TRY(isCharacterMatch(positionFielding, character, nullptr, isMatch));
  return isMatch ? qstd_vector_qoc_ocrDictionaryChar_pushBack(&matches, &character) : qsys_status{QSYS_STATUS_OK};
}

/// Appends the character and its equivalents, each where the position admits it without a further swap.
qsys_status appendMatches(const qoc_ocrDictionaryPositionFielding &positionFielding,
                          const qoc_ocrDictionaryChar &character, const qoc_swapCharSet *set,
                          qstd_vector_qoc_ocrDictionaryChar &matches) {
  QOC_TRY(appendIfAdmitted(positionFielding, character, matches));
  if (set == nullptr) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_qoc_ocrDictionaryChar equivalents;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vector_qoc_ocrDictionaryChar_constructEmpty, qstd_vector_qoc_ocrDictionaryChar_destruct>(
        &equivalents);
    QOC_TRY(qoc_swapCharSet_getEquivalentCharacters(set, &character, &equivalents));
    for (const qoc_ocrDictionaryChar &equivalent : view(equivalents)) {
      QOC_TRY(appendIfAdmitted(positionFielding, equivalent, matches));
    }
    return QSYS_STATUS_OK;
  });
}

}  // namespace

qsys_status qoc_ocrDictionaryPositionFielding_isMatch(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                      const qoc_ocrDictionaryChar *character,
                                                      const qoc_swapCharSet *set, qsys_bool *isMatch) {
  if (!present({positionFielding, character, isMatch})) {
    return QSYS_STATUS_OK;
  }
  bool answer = false;
  QOC_TRY(isCharacterMatch(*positionFielding, *character, set, answer));
  *isMatch = answer;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_isMatchMulti(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                           const qoc_ocrDictionaryCharMulti *multi,
                                                           const qoc_swapCharSet *set, qsys_bool *isMatch) {
  if (!present({positionFielding, multi, isMatch})) {
    return QSYS_STATUS_OK;
  }
  bool answer = false;
  for (const qoc_ocrDictionaryChar &candidate : view(*multi)) {
    QOC_TRY(isCharacterMatch(*positionFielding, candidate, set, answer));
    if (answer) {
      break;
    }
  }
  *isMatch = answer;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qoc_ocrDictionaryCharMulti *multi,
    const qoc_swapCharSet *set, qsys_bool *isMatch, qoc_ocrDictionaryPositionStatus *status) {
  if (!present({positionFielding, multi, isMatch, status})) {
    return QSYS_STATUS_OK;
  }
  *isMatch = 0;
  const std::span<const qoc_ocrDictionaryChar> candidates = view(*multi);
  if (candidates.empty()) {
    return QSYS_STATUS_OK;
  }
  *status = qoc_ocrDictionaryPositionStatus_primary;
  if (answerOf<qoc_ocrDictionaryPositionFielding_isAnyCharacter>(*positionFielding)) {
    *isMatch = 1;
    return QSYS_STATUS_OK;
  }
  // Deliberate: a match through the swap set has no status of its own, and a refusal leaves the status at secondary.
  for (const qoc_ocrDictionaryChar &candidate : candidates) {
    bool answer = false;
    QOC_TRY(isCharacterMatch(*positionFielding, candidate, set, answer));
    if (answer) {
      *isMatch = 1;
      return QSYS_STATUS_OK;
    }
    *status = qoc_ocrDictionaryPositionStatus_secondary;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryPositionFielding_match(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                    const qoc_ocrDictionaryChar *character, const qoc_swapCharSet *set,
                                                    qstd_vector_qoc_ocrDictionaryChar *matches) {
  if (!present({positionFielding, character, matches})) {
    return QSYS_STATUS_OK;
  }
  clear(*matches);
  return appendMatches(*positionFielding, *character, set, *matches);
}

qsys_status qoc_ocrDictionaryPositionFielding_matchMulti(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                         const qoc_ocrDictionaryCharMulti *multi,
                                                         const qoc_swapCharSet *set,
                                                         qstd_vector_qoc_ocrDictionaryChar *matches) {
  if (!present({positionFielding, multi, matches})) {
    return QSYS_STATUS_OK;
  }
  clear(*matches);
  for (const qoc_ocrDictionaryChar &candidate : view(*multi)) {
    QOC_TRY(appendMatches(*positionFielding, candidate, set, *matches));
  }
  return qstd_vector_qoc_ocrDictionaryChar_removeDup(matches);
}

qsys_status qoc_ocrDictionaryPositionFielding_getAllFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qstd_vectorChar32 *characters) {
  if (!present({positionFielding, characters})) {
    return QSYS_STATUS_OK;
  }
  clear(*characters);
  if (answerOf<qoc_ocrDictionaryPositionFielding_isAnyCharacter>(*positionFielding)) {
    const Char32 any = QOC_CHAR_ANY;
    return qstd_vectorChar32_pushBack(characters, &any);
  }
  if (answerOf<qoc_ocrDictionaryPositionFielding_isAnyNonspaceCharacter>(*positionFielding)) {
    const Char32 any = QOC_CHAR_ANY_NONSPACE;  // A listed space rules it out.
    return qstd_vectorChar32_pushBack(characters, &any);
  }
  QOC_TRY(qstd_vectorChar32_assign(characters, &positionFielding->fieldingCharacters));
  for (const CharacterClass &admitted : characterClasses) {
    // Any non-space, the class that is inverted, has been answered.
    const bool isAdmitted = (positionFielding->fieldingBits & admitted.bit) != 0;
    for (Char32 code = admitted.first; isAdmitted && code <= admitted.last; ++code) {
      QOC_TRY(qstd_vectorChar32_pushBack(characters, &code));
    }
  }
  return qstd_vectorChar32_sortUnique(characters, 1);
}
