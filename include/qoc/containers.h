#ifndef QOC_CONTAINERS_H
#define QOC_CONTAINERS_H

/** @file The plain vector families: numbers, character codes, flags, texts, and vectors of them; spans. */

#include <qoc/vector.h>

QOC_BEGIN_DECLS

QOC_DECLARE_VECTOR_FAMILY(qstd_vector32s, int32_t)
QOC_DECLARE_VECTOR_FAMILY(qstd_vectorChar32, Char32)
QOC_DECLARE_VECTOR_FAMILY(qstd_vectorb, uint8_t) /* Flags, one byte each, 0 or 1. */
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_tchar, CharT)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_vector32s, qstd_vector32s)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_vectorChar32, qstd_vectorChar32)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_vectorb, qstd_vectorb)

/* An owned 8-bit text: its characters in order, without a terminating zero, which they may contain. */
QOC_DECLARE_VECTOR_FAMILY(qstd_string, CharT)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_string, qstd_string)

/* An owned wide text: each element is one character code. */
QOC_DECLARE_VECTOR_FAMILY(qstd_wstring, wchar_t)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_wstring, qstd_wstring)

QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector32s)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vectorChar32)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vectorb)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_tchar)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_vector32s)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_vectorChar32)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_vectorb)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_string)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_string)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_wstring)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_wstring)

/** Finds the first element equal to the value. @param[out] element its address, or null @return 0 */
QOC_API qsys_status qstd_vector32s_find(const qstd_vector32s *vector, int32_t value, const int32_t **element);
/** Finds the first element equal to the code. @param[out] element its address, or null @return 0 */
QOC_API qsys_status qstd_vectorChar32_find(const qstd_vectorChar32 *vector, Char32 value, const Char32 **element);
/** Sorts the codes, ascending (1) or descending (0), and keeps one of each. @return 0 */
QOC_API qsys_status qstd_vectorChar32_sortUnique(qstd_vectorChar32 *vector, qsys_bool isAscending);

/** Constructs a text of a zero-terminated one. */
QOC_API qsys_status qstd_string_constructString(qstd_string *string, const CharT *text);
/** Replaces the text by a zero-terminated one. */
QOC_API qsys_status qstd_string_assignString(qstd_string *string, const CharT *text);
/** Constructs a wide text of a zero-terminated one. */
QOC_API qsys_status qstd_wstring_constructString(qstd_wstring *string, const wchar_t *text);

/** The positions from begin to end - 1. Owns nothing. */
typedef struct qstd_span32 {
  int32_t begin, end;
} qstd_span32;

QOC_DECLARE_OBJECT(qstd_span32)
/** *isEqual becomes 1 when both ends are equal, else 0. */
QOC_API qsys_status qstd_span32_compareEqual(const qstd_span32 *a, const qstd_span32 *b, qsys_bool *isEqual);
/** The number of positions, 0 for a span whose end does not lie behind its begin. */
QOC_API qsys_status qstd_span32_getSize(const qstd_span32 *span, int32_t *size);
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_span32, qstd_span32)

/** The smaller of two numbers. */
QOC_API int32_t qxfIMin(int32_t a, int32_t b);
/** The larger of two numbers. */
QOC_API int32_t qxfIMax(int32_t a, int32_t b);

QOC_END_DECLS

#endif
