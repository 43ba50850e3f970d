// The plain vector families, their searches, and spans.

#include <algorithm>
#include <functional>
#include <string>

#include "platform/containers/vector_family.hpp"

using qoc::present;

QOC_DEFINE_VECTOR_FAMILY(qstd_vector32s, int32_t, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_vectorChar32, Char32, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_vectorb, uint8_t, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_vector_tchar, CharT, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_string, CharT, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_wstring, wchar_t, qoc::plainElementTable)
QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qstd_span32, qstd_span32, qoc::plainElementTable)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_vector32s, qstd_vector32s, qstd_vector32s, constructEmpty)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_vectorChar32, qstd_vectorChar32, qstd_vectorChar32, constructEmpty)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_vectorb, qstd_vectorb, qstd_vectorb, constructEmpty)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qstd_string, qstd_string, qstd_string, constructEmpty)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qstd_wstring, qstd_wstring, qstd_wstring, constructEmpty)

QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector32s, qoc::comparePlainElements<int32_t>)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vectorChar32, qoc::comparePlainElements<Char32>)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vectorb, qoc::comparePlainElements<uint8_t>)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_tchar, qoc::comparePlainElements<CharT>)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_string, qoc::comparePlainElements<CharT>)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_wstring, qoc::comparePlainElements<wchar_t>)
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_vector32s,
                                (qoc::compareElements<qstd_vector32s, qstd_vector32s_compareEqual>))
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_vectorChar32,
                                (qoc::compareElements<qstd_vectorChar32, qstd_vectorChar32_compareEqual>))
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_vectorb, (qoc::compareElements<qstd_vectorb, qstd_vectorb_compareEqual>))
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_string,
                                (qoc::compareElements<qstd_string, qstd_string_compareEqual>))
QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_wstring,
                                (qoc::compareElements<qstd_wstring, qstd_wstring_compareEqual>))

namespace {

template <class V, class T>
qsys_status findValue(const V *vector, T value, const T **element) {
  if (!present({vector, element})) {
    return QSYS_STATUS_OK;
  }
  const T *first = static_cast<const T *>(vector->core.elements);
  const T *end = first + vector->core.size;
  const T *found = std::find(first, end, value);
  *element = found != end ? found : nullptr;
  return QSYS_STATUS_OK;
}

/// The length of a zero-terminated text, or -1 when it is beyond what a vector can hold.
template <class T>
std::int32_t lengthOf(const T *text) {
  const std::size_t length = std::char_traits<T>::length(text);
  return length <= INT32_MAX ? static_cast<std::int32_t>(length) : -1;
}

}  // namespace

qsys_status qstd_vector32s_find(const qstd_vector32s *vector, int32_t value, const int32_t **element) {
  return findValue(vector, value, element);
}

qsys_status qstd_vectorChar32_find(const qstd_vectorChar32 *vector, Char32 value, const Char32 **element) {
  return findValue(vector, value, element);
}

qsys_status qstd_vectorChar32_sortUnique(qstd_vectorChar32 *vector, qsys_bool isAscending) {
  if (!present({vector}) || vector->core.size == 0) {
    return QSYS_STATUS_OK;
  }
  auto *first = static_cast<Char32 *>(vector->core.elements);
  auto *end = first + vector->core.size;
  if (isAscending != 0) {
    std::sort(first, end);
  } else {
    std::sort(first, end, std::greater<>());
  }
  return qstd_vectorChar32_resize(vector, static_cast<std::int32_t>(std::unique(first, end) - first));
}

qsys_status qstd_string_constructString(qstd_string *string, const CharT *text) {
  return present({string, text}) ? qstd_string_constructFromBlock(string, text, lengthOf(text)) : QSYS_STATUS_OK;
}

qsys_status qstd_string_assignString(qstd_string *string, const CharT *text) {
  return present({string, text}) ? qstd_string_assignElements(string, text, lengthOf(text)) : QSYS_STATUS_OK;
}

qsys_status qstd_wstring_constructString(qstd_wstring *string, const wchar_t *text) {
  return present({string, text}) ? qstd_wstring_constructFromBlock(string, text, lengthOf(text)) : QSYS_STATUS_OK;
}

QOC_DEFINE_TYPE_CHECKS(qstd_span32)

qsys_status qstd_span32_construct(qstd_span32 *span) {
  if (present({span})) {
    *span = {0, 0};
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_span32_constructCopy(qstd_span32 *span, const qstd_span32 *source) {
  return qstd_span32_assign(span, source);
}

qsys_status qstd_span32_assign(qstd_span32 *span, const qstd_span32 *source) {
  if (present({span, source})) {
    *span = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_span32_destruct(qstd_span32 *span) {
  present({span});
  return QSYS_STATUS_OK;
}

qsys_status qstd_span32_compareEqual(const qstd_span32 *a, const qstd_span32 *b, qsys_bool *isEqual) {
  if (present({a, b, isEqual})) {
    *isEqual = a->begin == b->begin && a->end == b->end ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_span32_getSize(const qstd_span32 *span, int32_t *size) {
  if (present({span, size})) {
    const std::int64_t length = std::int64_t{span->end} - span->begin;
    *size = static_cast<std::int32_t>(std::clamp<std::int64_t>(length, 0, INT32_MAX));
  }
  return QSYS_STATUS_OK;
}
