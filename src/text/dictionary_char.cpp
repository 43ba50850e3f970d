// Dictionary characters.

#include "text/dictionary_char.hpp"

#include <algorithm>
#include <unordered_set>

#include "frame/frame.hpp"
#include "qoc/swap_char_set.h"
#include "swap/match.hpp"
#include "text/views.hpp"

using qoc::present;
using qoc::view;

qsys_status qoc_ocrDictionaryChar_construct(qoc_ocrDictionaryChar *object) {
  if (present({object})) {
    *object = {QOC_CHAR_EMPTY, 0};
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_constructCopy(qoc_ocrDictionaryChar *object, const qoc_ocrDictionaryChar *source) {
  return qoc_ocrDictionaryChar_assign(object, source);
}

qsys_status qoc_ocrDictionaryChar_constructCharCode(qoc_ocrDictionaryChar *character, Char32 code) {
  if (!present({character})) {
    return QSYS_STATUS_OK;
  }
  if (code == 0) {
    qstd_assert_(__LINE__);
    return QSYS_STATUS_OK;
  }
  character->code = code;  // Deliberate: the score stays as the storage holds it.
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_constructCharT(qoc_ocrDictionaryChar *character, CharT text) {
  return qoc_ocrDictionaryChar_setCharT(character, text);  // Deliberate: the score stays as the storage holds it.
}

qsys_status qoc_ocrDictionaryChar_assign(qoc_ocrDictionaryChar *object, const qoc_ocrDictionaryChar *source) {
  if (present({object, source})) {
    *object = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_destruct(qoc_ocrDictionaryChar *object) {
  present({object});
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_reset(qoc_ocrDictionaryChar *character) {
  return qoc_ocrDictionaryChar_construct(character);
}

qsys_status qoc_ocrDictionaryChar_getCharT(const qoc_ocrDictionaryChar *character, CharT *text) {
  if (!present({character, text})) {
    return QSYS_STATUS_OK;
  }
  const auto low = static_cast<CharT>(static_cast<std::uint8_t>(character->code & 0xFFu));
  if (qoc::codeOf(low) != character->code) {
    return QOC_STATUS_NO_SUCH_VALUE;
  }
  *text = low;
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_setCharT(qoc_ocrDictionaryChar *character, CharT text) {
  if (!present({character})) {
    return QSYS_STATUS_OK;
  }
  if (text == 0) {
    qstd_assert_(__LINE__);
    return QSYS_STATUS_OK;
  }
  character->code = qoc::codeOf(text);
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_compareEqual(const qoc_ocrDictionaryChar *a, const qoc_ocrDictionaryChar *b,
                                               qsys_bool *isEqual) {
  if (present({a, b, isEqual})) {
    *isEqual = a->code == b->code ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

int qoc_ocrDictionaryChar_compareQsort(const void *a, const void *b) {
  if (!present({a, b})) {
    return 0;
  }
  const Char32 codeA = static_cast<const qoc_ocrDictionaryChar *>(a)->code;
  const Char32 codeB = static_cast<const qoc_ocrDictionaryChar *>(b)->code;
  return codeA > codeB ? 1 : codeA < codeB ? -1 : 0;
}

int qoc_ocrDictionaryChar_compareScoresQsort(const void *a, const void *b) {
  if (!present({a, b})) {
    return 0;
  }
  const std::int32_t scoreA = static_cast<const qoc_ocrDictionaryChar *>(a)->score;
  const std::int32_t scoreB = static_cast<const qoc_ocrDictionaryChar *>(b)->score;
  return scoreA < scoreB ? 1 : scoreA > scoreB ? -1 : qoc_ocrDictionaryChar_compareQsort(a, b);
}

qsys_status qoc_ocrDictionaryChar_isMatch(const qoc_ocrDictionaryChar *a, const qoc_ocrDictionaryChar *b,
                                          const qoc_swapCharSet *set, qsys_bool *isMatch) {
  return present({a, b, isMatch}) ? qoc_swapCharSet_isMatchChar(set, a, b, isMatch) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_isMatchMulti(const qoc_ocrDictionaryChar *a,
                                               const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                               const qoc_swapCharSet *set, qsys_bool *isMatch) {
  return present({a, candidates, isMatch}) ? qoc_swapCharSet_isMatchCharMultiChar(set, candidates, a, isMatch)
                                           : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_isMatchMultiStatus(const qoc_ocrDictionaryChar *a,
                                                     const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                     const qoc_swapCharSet *set, qsys_bool *isMatch,
                                                     qoc_ocrDictionaryPositionStatus *status) {
  if (!present({a, candidates, isMatch, status})) {
    return QSYS_STATUS_OK;
  }
  *status = qoc_ocrDictionaryPositionStatus_noMatch;
  const auto matchesAny = [&](const qoc_swapCharSet *swaps) {
    return std::ranges::any_of(view(*candidates), [&](const qoc_ocrDictionaryChar &candidate) {
      return qoc::isMatch(swaps, candidate.code, a->code);
    });
  };
  *isMatch = matchesAny(set) ? 1 : 0;
  if (*isMatch != 0) {
    // From the best grade down: the reader's first choice outranks its others, a plain match outranks a swap.
    const Char32 primary = view(*candidates).front().code;
    *status = qoc::isMatch(nullptr, a->code, primary) ? qoc_ocrDictionaryPositionStatus_primary
              : qoc::isMatch(set, a->code, primary)   ? qoc_ocrDictionaryPositionStatus_primarySwap
              : matchesAny(nullptr)                   ? qoc_ocrDictionaryPositionStatus_secondary
                                                      : qoc_ocrDictionaryPositionStatus_secondarySwap;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryChar_isMatchChar32(const qoc_ocrDictionaryChar *a, Char32 code, const qoc_swapCharSet *set,
                                                qsys_bool *isMatch) {
  const qoc_ocrDictionaryChar character = {code, 0};
  return qoc_ocrDictionaryChar_isMatch(a, &character, set, isMatch);
}

qsys_status qoc::print(const qoc_ocrDictionaryChar &character) {
  return qsys_printfA("%c ", static_cast<int>(character.code));
}

qsys_status qstd_vector_qoc_ocrDictionaryChar_find(const qstd_vector_qoc_ocrDictionaryChar *vector,
                                                   const qoc_ocrDictionaryChar *character,
                                                   const qoc_ocrDictionaryChar **element) {
  if (!present({vector, character, element})) {
    return QSYS_STATUS_OK;
  }
  const auto characters = view(*vector);
  const auto found =
      std::ranges::find_if(characters, [&](const auto &candidate) { return candidate.code == character->code; });
  *element = found != characters.end() ? &*found : nullptr;
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector_qoc_ocrDictionaryChar_removeDup(qstd_vector_qoc_ocrDictionaryChar *vector) {
  if (!present({vector}) || qoc::sizeOf(*vector) < 2) {
    return QSYS_STATUS_OK;
  }
  return qoc::inFrame<1>([&](qoc::Frame<1> &) -> qsys_status {
    const auto characters = qoc::editAs<qoc_ocrDictionaryChar>(*vector);
    std::unordered_set<Char32> seen;
    std::size_t numKept = 0;
    for (const qoc_ocrDictionaryChar character : characters) {
      if (seen.insert(character.code).second) {
        characters[numKept++] = character;
      }
    }
    return numKept == characters.size()
               ? static_cast<qsys_status>(QSYS_STATUS_OK)
               : qstd_vector_qoc_ocrDictionaryChar_resize(vector, static_cast<std::int32_t>(numKept));
  });
}
