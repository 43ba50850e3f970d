// Multi-candidate characters.

#include "platform/system/present.hpp"
#include "qoc/swap_char_set.h"
#include "text/dictionary_char.hpp"
#include "text/views.hpp"

using qoc::present;
using qoc::view;

namespace {

/// Leaves one candidate, the first if there was one.
qsys_status keepOne(qoc_ocrDictionaryCharMulti &multi, qoc_ocrDictionaryChar *&candidate) {
  QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_resize(&multi.candidates, 1));
  return qstd_vector_qoc_ocrDictionaryChar_getElement(&multi.candidates, 0, &candidate);
}

}  // namespace

qsys_status qoc_ocrDictionaryCharMulti_construct(qoc_ocrDictionaryCharMulti *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryChar_constructEmpty(&object->candidates) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_constructCopy(qoc_ocrDictionaryCharMulti *object,
                                                     const qoc_ocrDictionaryCharMulti *source) {
  return present({object, source})
             ? qstd_vector_qoc_ocrDictionaryChar_constructCopy(&object->candidates, &source->candidates)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_assign(qoc_ocrDictionaryCharMulti *object,
                                              const qoc_ocrDictionaryCharMulti *source) {
  return present({object, source}) ? qstd_vector_qoc_ocrDictionaryChar_assign(&object->candidates, &source->candidates)
                                   : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_destruct(qoc_ocrDictionaryCharMulti *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryChar_destruct(&object->candidates) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_constructCharacters(qoc_ocrDictionaryCharMulti *multi,
                                                           const qstd_vector_qoc_ocrDictionaryChar *characters) {
  return present({multi, characters}) ? qstd_vector_qoc_ocrDictionaryChar_constructCopy(&multi->candidates, characters)
                                      : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_constructCharT(qoc_ocrDictionaryCharMulti *multi, CharT text) {
  if (!present({multi})) {
    return QSYS_STATUS_OK;
  }
  if (text == 0) {
    qstd_assert_(__LINE__);
    return QSYS_STATUS_OK;
  }
  return qoc_ocrDictionaryCharMulti_constructCharCode(multi, qoc::codeOf(text));
}

qsys_status qoc_ocrDictionaryCharMulti_constructCharCode(qoc_ocrDictionaryCharMulti *multi, Char32 code) {
  const qoc_ocrDictionaryChar character = {code, 0};
  return present({multi}) ? qstd_vector_qoc_ocrDictionaryChar_constructFromBlock(&multi->candidates, &character, 1)
                          : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_getIsEmpty(const qoc_ocrDictionaryCharMulti *multi, qsys_bool *isEmpty) {
  if (present({multi, isEmpty})) {
    *isEmpty = qoc::sizeOf(*multi) == 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_getNumCharacters(const qoc_ocrDictionaryCharMulti *multi, int32_t *n) {
  return present({multi, n}) ? qstd_vector_qoc_ocrDictionaryChar_getSize(&multi->candidates, n) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_getSingleCharacter(const qoc_ocrDictionaryCharMulti *multi,
                                                          qoc_ocrDictionaryChar *character) {
  if (!present({multi, character})) {
    return QSYS_STATUS_OK;
  }
  return qoc::sizeOf(*multi) == 1 ? qoc_ocrDictionaryChar_assign(character, &view(*multi).front())
                                  : QOC_STATUS_NO_SUCH_VALUE;
}

qsys_status qoc_ocrDictionaryCharMulti_getPrimaryCharacter(const qoc_ocrDictionaryCharMulti *multi,
                                                           qoc_ocrDictionaryChar *character) {
  if (!present({multi, character})) {
    return QSYS_STATUS_OK;
  }
  return qoc::sizeOf(*multi) >= 1 ? qoc_ocrDictionaryChar_assign(character, &view(*multi).front())
                                  : QOC_STATUS_NO_SUCH_VALUE;
}

qsys_status qoc_ocrDictionaryCharMulti_setChar(qoc_ocrDictionaryCharMulti *multi,
                                               const qoc_ocrDictionaryChar *character) {
  if (!present({multi, character})) {
    return QSYS_STATUS_OK;
  }
  const qoc_ocrDictionaryChar kept = *character;  // It may be one of the candidates.
  return qoc_ocrDictionaryCharMulti_setCharacterCodeScore(multi, kept.code, kept.score);
}

qsys_status qoc_ocrDictionaryCharMulti_setCharacterCodeScore(qoc_ocrDictionaryCharMulti *multi, Char32 code,
                                                             int32_t score) {
  if (!present({multi})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryChar *candidate = nullptr;
  QOC_TRY(keepOne(*multi, candidate));
  *candidate = {code, score};
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_setCharacters(qoc_ocrDictionaryCharMulti *multi,
                                                     const qstd_vector_qoc_ocrDictionaryChar *characters) {
  return present({multi, characters}) ? qstd_vector_qoc_ocrDictionaryChar_assign(&multi->candidates, characters)
                                      : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_getCharT(const qoc_ocrDictionaryCharMulti *multi, CharT *text) {
  if (!present({multi, text})) {
    return QSYS_STATUS_OK;
  }
  return qoc::sizeOf(*multi) == 1 ? qoc_ocrDictionaryChar_getCharT(&view(*multi).front(), text)
                                  : QOC_STATUS_NO_SUCH_VALUE;
}

qsys_status qoc_ocrDictionaryCharMulti_setCharT(qoc_ocrDictionaryCharMulti *multi, CharT text) {
  if (!present({multi})) {
    return QSYS_STATUS_OK;
  }
  if (text == 0) {
    qstd_assert_(__LINE__);
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryChar *candidate = nullptr;
  QOC_TRY(keepOne(*multi, candidate));
  return qoc_ocrDictionaryChar_setCharT(candidate, text);
}

qsys_status qoc_ocrDictionaryCharMulti_compareEqual(const qoc_ocrDictionaryCharMulti *a,
                                                    const qoc_ocrDictionaryCharMulti *b, qsys_bool *isEqual) {
  return present({a, b, isEqual})
             ? qstd_vector_qoc_ocrDictionaryChar_compareEqual(&a->candidates, &b->candidates, isEqual)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_isMatchChar32(const qoc_ocrDictionaryCharMulti *multi, Char32 code,
                                                     const qoc_swapCharSet *set, qsys_bool *isMatch) {
  const qoc_ocrDictionaryChar character = {code, 0};
  return present({multi, isMatch}) ? qoc_ocrDictionaryChar_isMatchMulti(&character, &multi->candidates, set, isMatch)
                                   : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryCharMulti_print(const qoc_ocrDictionaryCharMulti *multi) {
  if (!present({multi})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qsys_printfA("["));
  for (const qoc_ocrDictionaryChar &character : view(*multi)) {
    QOC_TRY(qoc::print(character));
  }
  return qsys_printfA("]");
}
