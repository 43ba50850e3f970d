// Dictionary strings.

#include <cstring>

#include "frame/frame.hpp"
#include "platform/system/certain.hpp"
#include "text/substring.hpp"
#include "text/views.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::view;

namespace {

/// Sets one character for each of n text characters; those that were there keep their scores.
qsys_status setTexts(qstd_vector_qoc_ocrDictionaryChar &characters, const CharT *text, std::size_t n) {
  if (n > INT32_MAX) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_resize(&characters, static_cast<std::int32_t>(n)));
  const auto edited = qoc::editAs<qoc_ocrDictionaryChar>(characters);
  for (std::size_t i = 0; i < n; ++i) {
    edited[i].code = qoc::codeOf(text[i]);
    // A new character comes with score 0 from its construction.
  }
  return QSYS_STATUS_OK;
}

qsys_status setText(qstd_vector_qoc_ocrDictionaryChar &characters, const qstd_string &text) {
  const auto bytes = qoc::viewAs<CharT>(text);
  return setTexts(characters, bytes.data(), bytes.size());
}

template <class Fill>
qsys_status constructFilled(qstd_vector_qoc_ocrDictionaryChar *characters, Fill fill) {
  return qoc::constructThen<qstd_vector_qoc_ocrDictionaryChar_constructEmpty,
                            qstd_vector_qoc_ocrDictionaryChar_destruct>(characters, fill);
}

}  // namespace

qsys_status qstd_vector_qoc_ocrDictionaryChar_constructStringT(qstd_vector_qoc_ocrDictionaryChar *vector,
                                                               const CharT *text) {
  if (!present({vector, text})) {
    return QSYS_STATUS_OK;
  }
  return constructFilled(vector, [&] { return setTexts(*vector, text, std::strlen(text)); });
}

qsys_status qstd_vector_qoc_ocrDictionaryChar_setStringT(qstd_vector_qoc_ocrDictionaryChar *vector, const CharT *text) {
  return present({vector, text}) ? setTexts(*vector, text, std::strlen(text)) : QSYS_STATUS_OK;
}

qsys_status qstd_vector_vector_qoc_ocrDictionaryChar_constructStdStrings(
    qstd_vector_vector_qoc_ocrDictionaryChar *vector, const qstd_vector_qstd_string *strings) {
  if (!present({vector, strings})) {
    return QSYS_STATUS_OK;
  }
  return qoc::constructThen<qstd_vector_vector_qoc_ocrDictionaryChar_constructEmpty,
                            qstd_vector_vector_qoc_ocrDictionaryChar_destruct>(
      vector, [&] { return qstd_vector_vector_qoc_ocrDictionaryChar_setStdStrings(vector, strings); });
}

qsys_status qstd_vector_vector_qoc_ocrDictionaryChar_setStdStrings(qstd_vector_vector_qoc_ocrDictionaryChar *vector,
                                                                   const qstd_vector_qstd_string *strings) {
  if (!present({vector, strings})) {
    return QSYS_STATUS_OK;
  }
  const auto texts = qoc::viewAs<qstd_string>(*strings);
  QOC_TRY(qstd_vector_vector_qoc_ocrDictionaryChar_resize(vector, static_cast<std::int32_t>(texts.size())));
  const auto edited = qoc::editAs<qstd_vector_qoc_ocrDictionaryChar>(*vector);
  qoc_ocrDictionaryString local;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryString_construct, qoc_ocrDictionaryString_destruct>(&local);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      QOC_TRY(qoc_ocrDictionaryString_setStdString(&local, &texts[i]));
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assign(&edited[i], &local.characters));
    }
    return QSYS_STATUS_OK;
  });
}

qsys_status qoc_ocrDictionaryString_construct(qoc_ocrDictionaryString *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryChar_constructEmpty(&object->characters) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_constructCopy(qoc_ocrDictionaryString *object,
                                                  const qoc_ocrDictionaryString *source) {
  return present({object, source})
             ? qstd_vector_qoc_ocrDictionaryChar_constructCopy(&object->characters, &source->characters)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_assign(qoc_ocrDictionaryString *object, const qoc_ocrDictionaryString *source) {
  return present({object, source}) ? qstd_vector_qoc_ocrDictionaryChar_assign(&object->characters, &source->characters)
                                   : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_destruct(qoc_ocrDictionaryString *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryChar_destruct(&object->characters) : QSYS_STATUS_OK;
}

qsys_status qstd_vector_qoc_ocrDictionaryString_find(const qstd_vector_qoc_ocrDictionaryString *vector,
                                                     const qoc_ocrDictionaryString *string,
                                                     const qoc_ocrDictionaryString **element) {
  if (!present({vector, string, element})) {
    return QSYS_STATUS_OK;
  }
  *element = nullptr;
  for (const qoc_ocrDictionaryString &candidate : view(*vector)) {
    if (qoc::answerOf<qoc_ocrDictionaryString_compareEqual>(candidate, *string)) {
      *element = &candidate;
      break;
    }
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_constructCharacters(qoc_ocrDictionaryString *string,
                                                        const qstd_vector_qoc_ocrDictionaryChar *characters) {
  return present({string, characters})
             ? qstd_vector_qoc_ocrDictionaryChar_constructCopy(&string->characters, characters)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_constructStringT(qoc_ocrDictionaryString *string, const CharT *text) {
  return present({string, text}) ? qstd_vector_qoc_ocrDictionaryChar_constructStringT(&string->characters, text)
                                 : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_constructStdString(qoc_ocrDictionaryString *string, const qstd_string *text) {
  if (!present({string, text})) {
    return QSYS_STATUS_OK;
  }
  return constructFilled(&string->characters, [&] { return setText(string->characters, *text); });
}

qsys_status qoc_ocrDictionaryString_setStringT(qoc_ocrDictionaryString *string, const CharT *text) {
  return present({string, text}) ? setTexts(string->characters, text, std::strlen(text)) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_setStdString(qoc_ocrDictionaryString *string, const qstd_string *text) {
  return present({string, text}) ? setText(string->characters, *text) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_getStdString(const qoc_ocrDictionaryString *string, qstd_string *text) {
  if (!present({string, text})) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_tchar buffer;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    const auto characters = view(*string);
    QOC_TRY(qstd_vector_tchar_construct(&buffer, qoc::sizeOf(*string) + 1));
    frame.local<qstd_vector_tchar_destruct>(&buffer);
    const auto bytes = qoc::editAs<CharT>(buffer);
    for (std::size_t i = 0; i < characters.size(); ++i) {
      QOC_TRY(qoc_ocrDictionaryChar_getCharT(&characters[i], &bytes[i]));
    }
    return qstd_string_assignString(text, bytes.data());
  });
}

qsys_status qoc_ocrDictionaryString_getIsEmpty(const qoc_ocrDictionaryString *string, qsys_bool *isEmpty) {
  if (present({string, isEmpty})) {
    *isEmpty = qoc::sizeOf(*string) == 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_getSize(const qoc_ocrDictionaryString *string, int32_t *size) {
  return present({string, size}) ? qstd_vector_qoc_ocrDictionaryChar_getSize(&string->characters, size)
                                 : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_compareEqual(const qoc_ocrDictionaryString *a, const qoc_ocrDictionaryString *b,
                                                 qsys_bool *isEqual) {
  return present({a, b, isEqual})
             ? qstd_vector_qoc_ocrDictionaryChar_compareEqual(&a->characters, &b->characters, isEqual)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_setCharacters(qoc_ocrDictionaryString *string,
                                                  const qstd_vector_qoc_ocrDictionaryChar *characters) {
  return present({string, characters}) ? qstd_vector_qoc_ocrDictionaryChar_assign(&string->characters, characters)
                                       : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_getCharacters(const qoc_ocrDictionaryString *string,
                                                  qstd_vector_qoc_ocrDictionaryChar *characters) {
  return present({string, characters}) ? qstd_vector_qoc_ocrDictionaryChar_assign(characters, &string->characters)
                                       : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryString_getSubstrExtend(const qoc_ocrDictionaryString *string, int32_t start,
                                                    int32_t length, qstd_vector_qoc_ocrDictionaryChar *window) {
  if (!present({string, window})) {
    return QSYS_STATUS_OK;
  }
  return qoc::getSubstrExtend<qstd_vector_qoc_ocrDictionaryChar_resize, qstd_vector_qoc_ocrDictionaryChar_reserve,
                              qstd_vector_qoc_ocrDictionaryChar_pushBack>(view(*string), start, length, window);
}

qsys_status qoc_ocrDictionaryString_concatenate(const qoc_ocrDictionaryString *a, const qoc_ocrDictionaryString *b,
                                                qoc_ocrDictionaryString *out) {
  if (!present({a, b, out})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryString joined;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    // Built beside the output, which may be one of the inputs.
    QOC_TRY(qoc_ocrDictionaryString_constructCopy(&joined, a));
    frame.local<qoc_ocrDictionaryString_destruct>(&joined);
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_append(&joined.characters, &b->characters));
    return qstd_vector_qoc_ocrDictionaryChar_swap(&out->characters, &joined.characters);
  });
}
