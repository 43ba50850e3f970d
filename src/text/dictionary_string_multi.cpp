// Readings: strings whose positions hold several candidates.

#include <cstring>

#include "frame/frame.hpp"
#include "text/substring.hpp"
#include "text/views.hpp"

using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::view;

namespace {

template <class Fill>
qsys_status constructFilled(qoc_ocrDictionaryStringMulti *multi, Fill fill) {
  return qoc::constructThen<qoc_ocrDictionaryStringMulti_construct, qoc_ocrDictionaryStringMulti_destruct>(multi, fill);
}

/// Resizes to n positions and lets `set(position, index)` fill each.
template <class Set>
qsys_status setEach(qoc_ocrDictionaryStringMulti &multi, std::int32_t n, Set set) {
  QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&multi.positions, n));
  const auto positions = qoc::editAs<qoc_ocrDictionaryCharMulti>(multi.positions);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    QOC_TRY(set(&positions[i], i));
  }
  return QSYS_STATUS_OK;
}

template <class Construct>
qsys_status compareWithLocal(const qoc_ocrDictionaryStringMulti &multi, qsys_bool *isEqual, Construct construct) {
  qoc_ocrDictionaryStringMulti local;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(construct(&local));
    frame.local<qoc_ocrDictionaryStringMulti_destruct>(&local);
    return qoc_ocrDictionaryStringMulti_compareEqual(&multi, &local, isEqual);
  });
}

}  // namespace

qsys_status qoc_ocrDictionaryStringMulti_construct(qoc_ocrDictionaryStringMulti *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryCharMulti_constructEmpty(&object->positions) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_constructCopy(qoc_ocrDictionaryStringMulti *object,
                                                       const qoc_ocrDictionaryStringMulti *source) {
  return present({object, source})
             ? qstd_vector_qoc_ocrDictionaryCharMulti_constructCopy(&object->positions, &source->positions)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_assign(qoc_ocrDictionaryStringMulti *object,
                                                const qoc_ocrDictionaryStringMulti *source) {
  return present({object, source})
             ? qstd_vector_qoc_ocrDictionaryCharMulti_assign(&object->positions, &source->positions)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_destruct(qoc_ocrDictionaryStringMulti *object) {
  return present({object}) ? qstd_vector_qoc_ocrDictionaryCharMulti_destruct(&object->positions) : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_constructCharacters(qoc_ocrDictionaryStringMulti *multi,
                                                             const qstd_vector_qoc_ocrDictionaryCharMulti *characters) {
  return present({multi, characters})
             ? qstd_vector_qoc_ocrDictionaryCharMulti_constructCopy(&multi->positions, characters)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_constructString(qoc_ocrDictionaryStringMulti *multi,
                                                         const qoc_ocrDictionaryString *string) {
  if (!present({multi, string})) {
    return QSYS_STATUS_OK;
  }
  return constructFilled(multi, [&] { return qoc_ocrDictionaryStringMulti_setString(multi, string); });
}

qsys_status qoc_ocrDictionaryStringMulti_constructStringT(qoc_ocrDictionaryStringMulti *multi, const CharT *text) {
  if (!present({multi, text})) {
    return QSYS_STATUS_OK;
  }
  return constructFilled(multi, [&] { return qoc_ocrDictionaryStringMulti_setStringT(multi, text); });
}

qsys_status qoc_ocrDictionaryStringMulti_setString(qoc_ocrDictionaryStringMulti *multi,
                                                   const qoc_ocrDictionaryString *string) {
  if (!present({multi, string})) {
    return QSYS_STATUS_OK;
  }
  const auto characters = view(*string);
  return setEach(*multi, qoc::sizeOf(*string), [&](qoc_ocrDictionaryCharMulti *position, std::size_t i) {
    return qoc_ocrDictionaryCharMulti_setChar(position, &characters[i]);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_setStringT(qoc_ocrDictionaryStringMulti *multi, const CharT *text) {
  if (!present({multi, text})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryString string;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qoc_ocrDictionaryString_constructStringT(&string, text));
    frame.local<qoc_ocrDictionaryString_destruct>(&string);
    return qoc_ocrDictionaryStringMulti_setString(multi, &string);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_setStdString(qoc_ocrDictionaryStringMulti *multi, const qstd_string *text) {
  if (!present({multi, text})) {
    return QSYS_STATUS_OK;
  }
  const auto bytes = qoc::viewAs<CharT>(*text);
  return setEach(*multi, qoc::sizeOf(*text), [&](qoc_ocrDictionaryCharMulti *position, std::size_t i) {
    return qoc_ocrDictionaryCharMulti_setCharT(position, bytes[i]);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_getString(const qoc_ocrDictionaryStringMulti *multi,
                                                   qoc_ocrDictionaryString *string) {
  if (!present({multi, string})) {
    return QSYS_STATUS_OK;
  }
  const auto positions = view(*multi);
  QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_resize(&string->characters, qoc::sizeOf(*multi)));
  const auto characters = qoc::editAs<qoc_ocrDictionaryChar>(string->characters);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    QOC_TRY(qoc_ocrDictionaryCharMulti_getSingleCharacter(&positions[i], &characters[i]));
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_getStdString(const qoc_ocrDictionaryStringMulti *multi, qstd_string *text) {
  if (!present({multi, text})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryString string;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qoc_ocrDictionaryString_construct, qoc_ocrDictionaryString_destruct>(&string);
    QOC_TRY(qoc_ocrDictionaryStringMulti_getString(multi, &string));
    return qoc_ocrDictionaryString_getStdString(&string, text);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_getSize(const qoc_ocrDictionaryStringMulti *multi, int32_t *size) {
  return present({multi, size}) ? qstd_vector_qoc_ocrDictionaryCharMulti_getSize(&multi->positions, size)
                                : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_getIsEmpty(const qoc_ocrDictionaryStringMulti *multi, qsys_bool *isEmpty) {
  if (present({multi, isEmpty})) {
    *isEmpty = qoc::sizeOf(*multi) == 0 ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_setCharacters(qoc_ocrDictionaryStringMulti *multi,
                                                       const qstd_vector_qoc_ocrDictionaryCharMulti *characters) {
  return present({multi, characters}) ? qstd_vector_qoc_ocrDictionaryCharMulti_assign(&multi->positions, characters)
                                      : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_compareEqual(const qoc_ocrDictionaryStringMulti *a,
                                                      const qoc_ocrDictionaryStringMulti *b, qsys_bool *isEqual) {
  return present({a, b, isEqual})
             ? qstd_vector_qoc_ocrDictionaryCharMulti_compareEqual(&a->positions, &b->positions, isEqual)
             : QSYS_STATUS_OK;
}

qsys_status qoc_ocrDictionaryStringMulti_compareEqualToString(const qoc_ocrDictionaryStringMulti *multi,
                                                              const qoc_ocrDictionaryString *string,
                                                              qsys_bool *isEqual) {
  if (!present({multi, string, isEqual})) {
    return QSYS_STATUS_OK;
  }
  return compareWithLocal(*multi, isEqual, [&](qoc_ocrDictionaryStringMulti *local) {
    return qoc_ocrDictionaryStringMulti_constructString(local, string);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_compareEqualToTString(const qoc_ocrDictionaryStringMulti *multi,
                                                               const CharT *text, qsys_bool *isEqual) {
  if (!present({multi, text, isEqual})) {
    return QSYS_STATUS_OK;
  }
  return compareWithLocal(*multi, isEqual, [&](qoc_ocrDictionaryStringMulti *local) {
    return qoc_ocrDictionaryStringMulti_constructStringT(local, text);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_appendChar(qoc_ocrDictionaryStringMulti *multi,
                                                    const qoc_ocrDictionaryChar *character) {
  if (!present({multi, character})) {
    return QSYS_STATUS_OK;
  }
  qoc_ocrDictionaryCharMulti position;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    // cppcheck-suppress uninitStructMember ; this is what constructs it
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_constructFromBlock(&position.candidates, character, 1));
    frame.local<qoc_ocrDictionaryCharMulti_destruct>(&position);
    return qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&multi->positions, &position);
  });
}

qsys_status qoc_ocrDictionaryStringMulti_getSubstrExtend(const qoc_ocrDictionaryStringMulti *multi, int32_t start,
                                                         int32_t length,
                                                         qstd_vector_qoc_ocrDictionaryCharMulti *window) {
  if (!present({multi, window})) {
    return QSYS_STATUS_OK;
  }
  return qoc::getSubstrExtend<qstd_vector_qoc_ocrDictionaryCharMulti_resize,
                              qstd_vector_qoc_ocrDictionaryCharMulti_reserve,
                              qstd_vector_qoc_ocrDictionaryCharMulti_pushBack>(view(*multi), start, length, window);
}

qsys_status qoc_ocrDictionaryStringMulti_print(const qoc_ocrDictionaryStringMulti *multi) {
  if (!present({multi})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qsys_printfA("["));
  for (const qoc_ocrDictionaryCharMulti &position : view(*multi)) {
    QOC_TRY(qoc_ocrDictionaryCharMulti_print(&position));
  }
  return qsys_printfA("]");
}
