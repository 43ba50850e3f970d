#ifndef QOC_DICTIONARY_STRING_H
#define QOC_DICTIONARY_STRING_H

/** @file Dictionary strings, readings (multi strings), and how one is matched with the other. */

#include <qoc/dictionary_char.h>
#include <qoc/run_params.h>

QOC_BEGIN_DECLS

typedef struct qoc_ocrDictionaryResultSet qoc_ocrDictionaryResultSet;

/** A string of dictionary characters. */
typedef struct qoc_ocrDictionaryString {
  qstd_vector_qoc_ocrDictionaryChar characters;
} qoc_ocrDictionaryString;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryString)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryString, qoc_ocrDictionaryString)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryString)

/** A reading: for every position its candidates. */
typedef struct qoc_ocrDictionaryStringMulti {
  qstd_vector_qoc_ocrDictionaryCharMulti positions;
} qoc_ocrDictionaryStringMulti;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryStringMulti)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryStringMulti, qoc_ocrDictionaryStringMulti)

/** Finds the first string with the same codes. @param[out] element its address in the vector, or null */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryString_find(const qstd_vector_qoc_ocrDictionaryString *vector,
                                                             const qoc_ocrDictionaryString *string,
                                                             const qoc_ocrDictionaryString **element);

/** Constructs with a copy of the characters. */
QOC_API qsys_status qoc_ocrDictionaryString_constructCharacters(qoc_ocrDictionaryString *string,
                                                                const qstd_vector_qoc_ocrDictionaryChar *characters);
/** Constructs one character for each byte of a zero-terminated text, sign-extended, scores 0. */
QOC_API qsys_status qoc_ocrDictionaryString_constructStringT(qoc_ocrDictionaryString *string, const CharT *text);
/** Constructs one character for each byte of the text, sign-extended, scores 0. */
QOC_API qsys_status qoc_ocrDictionaryString_constructStdString(qoc_ocrDictionaryString *string,
                                                               const qstd_string *text);
/** Sets the characters from a zero-terminated text; characters that were there keep their scores. */
QOC_API qsys_status qoc_ocrDictionaryString_setStringT(qoc_ocrDictionaryString *string, const CharT *text);
/** Sets the characters from a text; characters that were there keep their scores. */
QOC_API qsys_status qoc_ocrDictionaryString_setStdString(qoc_ocrDictionaryString *string, const qstd_string *text);
/** Writes the string as a text, up to its first zero. @return 0, or QOC_STATUS_NO_SUCH_VALUE for a code that does not convert (text untouched) */
QOC_API qsys_status qoc_ocrDictionaryString_getStdString(const qoc_ocrDictionaryString *string, qstd_string *text);
/** *isEmpty becomes 1 when there is no character, else 0. */
QOC_API qsys_status qoc_ocrDictionaryString_getIsEmpty(const qoc_ocrDictionaryString *string, qsys_bool *isEmpty);
/** The number of characters. */
QOC_API qsys_status qoc_ocrDictionaryString_getSize(const qoc_ocrDictionaryString *string, int32_t *size);
/** *isEqual becomes 1 when the codes are the same in the same order, else 0. */
QOC_API qsys_status qoc_ocrDictionaryString_compareEqual(const qoc_ocrDictionaryString *a,
                                                         const qoc_ocrDictionaryString *b, qsys_bool *isEqual);
/** Replaces the characters by copies. */
QOC_API qsys_status qoc_ocrDictionaryString_setCharacters(qoc_ocrDictionaryString *string,
                                                          const qstd_vector_qoc_ocrDictionaryChar *characters);
/** Copies the characters out. */
QOC_API qsys_status qoc_ocrDictionaryString_getCharacters(const qoc_ocrDictionaryString *string,
                                                          qstd_vector_qoc_ocrDictionaryChar *characters);
/**
 * Cuts out a window of exactly `length` characters.
 *
 * A window that runs past the end is filled up with copies of its own first character: from "abc", start 1 and length 4 give
 * "bcbb". A window that starts at or behind the end is made of empty characters. A length of 0 or less gives an empty window.
 *
 * @param[out] window becomes the window
 * @return 0, or QOC_STATUS_INDEX_NEGATIVE for a negative start
 */
QOC_API qsys_status qoc_ocrDictionaryString_getSubstrExtend(const qoc_ocrDictionaryString *string, int32_t start,
                                                            int32_t length, qstd_vector_qoc_ocrDictionaryChar *window);
/** out becomes a copy of a followed by b's characters; it may be either of them. */
QOC_API qsys_status qoc_ocrDictionaryString_concatenate(const qoc_ocrDictionaryString *a,
                                                        const qoc_ocrDictionaryString *b, qoc_ocrDictionaryString *out);
/**
 * The least number of characters to insert, delete or substitute to turn one string into the other (Levenshtein 1965, by the
 * dynamic programme of Wagner and Fischer 1974); a swap that the set allows costs nothing.
 *
 * @param[in] set may be null: no swaps
 * @return 0, QSYS_STATUS_OUT_OF_MEMORY, or the attention status when interrupted: asked where both strings are long
 */
QOC_API qsys_status qoc_ocrDictionaryString_editDistance(const qoc_ocrDictionaryString *a,
                                                         const qoc_ocrDictionaryString *b, const qoc_swapCharSet *set,
                                                         int32_t *distance);
/** isMatchMulti on a reading with one candidate at every position. */
QOC_API qsys_status qoc_ocrDictionaryString_isMatch(const qoc_ocrDictionaryString *string,
                                                    const qoc_ocrDictionaryString *input,
                                                    const qoc_ocrDictionaryRunParams *params,
                                                    const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * Tells whether the string can be read in the reading, or, with matchOption9, in a window of it, within maxEdits.
 *
 * @param[in]  params may be null: no edits, whole reading
 * @param[in]  set    may be null: no swaps
 * @param[out] isMatch 1 or 0
 * @return 0, or the attention status when interrupted
 */
QOC_API qsys_status qoc_ocrDictionaryString_isMatchMulti(const qoc_ocrDictionaryString *string,
                                                         const qoc_ocrDictionaryStringMulti *reading,
                                                         const qoc_ocrDictionaryRunParams *params,
                                                         const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * Aligns the string with a plain input in every way that needs at most maxEdits edits.
 *
 * Statuses and deleted are told from the input's side: an input character without counterpart is `inserted`; a dictionary
 * character that the input lacks adds its input index to `deleted`.
 *
 * @param[in]  params may be null: exact alignment of the whole input only
 * @param[in]  set    may be null: no swaps
 * @param[out] results reset, then the ranked, finished results
 * @return 0, or the attention status when interrupted
 */
QOC_API qsys_status qoc_ocrDictionaryString_match(const qoc_ocrDictionaryString *string,
                                                  const qoc_ocrDictionaryString *input,
                                                  const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                  qoc_ocrDictionaryResultSet *results);
/**
 * Aligns the string with a reading; a position matches when one of its candidates does.
 *
 * With exactly one edit allowed, statuses are told from the dictionary's side: a dictionary character that the reading lacks is
 * `inserted`; an extra position adds its index to `deleted`. With more edits they are as in qoc_ocrDictionaryString_match.
 *
 * @param[in]  params may be null: exact alignment of the whole reading only
 * @param[in]  set    may be null: no swaps
 * @param[out] results reset, then the ranked, finished results
 * @return 0, or the attention status when interrupted
 */
QOC_API qsys_status qoc_ocrDictionaryString_matchMulti(const qoc_ocrDictionaryString *string,
                                                       const qoc_ocrDictionaryStringMulti *reading,
                                                       const qoc_ocrDictionaryRunParams *params,
                                                       const qoc_swapCharSet *set, qoc_ocrDictionaryResultSet *results);

/** Constructs with a copy of the positions. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_constructCharacters(
    qoc_ocrDictionaryStringMulti *multi, const qstd_vector_qoc_ocrDictionaryCharMulti *characters);
/** Constructs one position for each character, with that character as its only candidate. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_constructString(qoc_ocrDictionaryStringMulti *multi,
                                                                 const qoc_ocrDictionaryString *string);
/** Constructs one position for each byte of a zero-terminated text, with that character as its only candidate. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_constructStringT(qoc_ocrDictionaryStringMulti *multi,
                                                                  const CharT *text);
/** Makes each character the only candidate of its position. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_setString(qoc_ocrDictionaryStringMulti *multi,
                                                           const qoc_ocrDictionaryString *string);
/** The same from a zero-terminated text. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_setStringT(qoc_ocrDictionaryStringMulti *multi, const CharT *text);
/** The same from a text; first candidates that were there keep their scores. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_setStdString(qoc_ocrDictionaryStringMulti *multi,
                                                              const qstd_string *text);
/** The reading as a plain string. @return 0, or QOC_STATUS_NO_SUCH_VALUE at a position without exactly one candidate (the string may have been resized) */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_getString(const qoc_ocrDictionaryStringMulti *multi,
                                                           qoc_ocrDictionaryString *string);
/** The reading as a text, up to its first zero. @return 0, or QOC_STATUS_NO_SUCH_VALUE (text untouched) */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_getStdString(const qoc_ocrDictionaryStringMulti *multi,
                                                              qstd_string *text);
/** The number of positions. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_getSize(const qoc_ocrDictionaryStringMulti *multi, int32_t *size);
/** *isEmpty becomes 1 when there is no position, else 0. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_getIsEmpty(const qoc_ocrDictionaryStringMulti *multi,
                                                            qsys_bool *isEmpty);
/** Replaces the positions by copies. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_setCharacters(
    qoc_ocrDictionaryStringMulti *multi, const qstd_vector_qoc_ocrDictionaryCharMulti *characters);
/** *isEqual becomes 1 when all candidates have the same codes in the same order, else 0. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_compareEqual(const qoc_ocrDictionaryStringMulti *a,
                                                              const qoc_ocrDictionaryStringMulti *b,
                                                              qsys_bool *isEqual);
/** compareEqual with a reading made of the string. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_compareEqualToString(const qoc_ocrDictionaryStringMulti *multi,
                                                                      const qoc_ocrDictionaryString *string,
                                                                      qsys_bool *isEqual);
/** compareEqual with a reading made of a zero-terminated text. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_compareEqualToTString(const qoc_ocrDictionaryStringMulti *multi,
                                                                       const CharT *text, qsys_bool *isEqual);
/** Appends a position with the character as its only candidate. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_appendChar(qoc_ocrDictionaryStringMulti *multi,
                                                            const qoc_ocrDictionaryChar *character);
/** As qoc_ocrDictionaryString_getSubstrExtend, over positions; a window behind the end is made of positions without candidates. */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_getSubstrExtend(const qoc_ocrDictionaryStringMulti *multi,
                                                                 int32_t start, int32_t length,
                                                                 qstd_vector_qoc_ocrDictionaryCharMulti *window);
/** Prints the positions as "[[a b ][c ]]". */
QOC_API qsys_status qoc_ocrDictionaryStringMulti_print(const qoc_ocrDictionaryStringMulti *multi);

QOC_END_DECLS

#endif
