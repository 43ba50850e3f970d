#ifndef QOC_DICTIONARY_CHAR_H
#define QOC_DICTIONARY_CHAR_H

/** @file Dictionary characters and multi-candidate characters. */

#include <qoc/containers.h>
#include <qoc/position_status.h>

QOC_BEGIN_DECLS

typedef struct qoc_swapCharSet qoc_swapCharSet;

/** One character of a dictionary string, or one scored candidate of a reading. Owns no memory. */
typedef struct qoc_ocrDictionaryChar {
  Char32 code;   /**< Character code; 0xF800 is the empty character, which matches nothing, not even itself. */
  int32_t score; /**< The reader's score; higher is better, the scale is the reader's own. Default 0. */
} qoc_ocrDictionaryChar;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryChar)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryChar, qoc_ocrDictionaryChar)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryChar)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_vector_qoc_ocrDictionaryChar, qstd_vector_qoc_ocrDictionaryChar)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_vector_qoc_ocrDictionaryChar)

/** Sets the code, not 0, and leaves the score as the storage holds it: set a score afterwards where one is needed. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryChar_constructCharCode(qoc_ocrDictionaryChar *character, Char32 code);
/** Sets the code to the sign-extended text character, not 0, and leaves the score as the storage holds it. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryChar_constructCharT(qoc_ocrDictionaryChar *character, CharT text);
/** Back to the empty character with score 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryChar_reset(qoc_ocrDictionaryChar *character);

/**
 * Gives a character as a text character: the low byte of its code.
 *
 * Only codes that are the sign extension of one byte convert: 0 to 0x7F, and 0xFFFFFF80 to 0xFFFFFFFF. So 'A' gives 'A', and the
 * empty character fails.
 *
 * @param[in]  character  a constructed character
 * @param[out] text       the text character; as it was when the call fails
 * @return 0, or QOC_STATUS_NO_SUCH_VALUE when the code does not convert
 */
QOC_API qsys_status qoc_ocrDictionaryChar_getCharT(const qoc_ocrDictionaryChar *character, CharT *text);
/** Sets the code to the sign-extended text character, not 0; the score is kept. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryChar_setCharT(qoc_ocrDictionaryChar *character, CharT text);
/** *isEqual becomes 1 when the codes are equal, else 0; scores are not compared. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryChar_compareEqual(const qoc_ocrDictionaryChar *a, const qoc_ocrDictionaryChar *b,
                                                       qsys_bool *isEqual);
/** For C's qsort, ascending by code (unsigned). @return 1, 0 or -1 */
QOC_API int qoc_ocrDictionaryChar_compareQsort(const void *a, const void *b);
/** For C's qsort, descending by score, ties ascending by code. @return 1, 0 or -1 */
QOC_API int qoc_ocrDictionaryChar_compareScoresQsort(const void *a, const void *b);

/** *isMatch becomes 1 when a may stand for b: what qoc_swapCharSet_isMatchChar says. @param[in] set may be null: no swaps */
QOC_API qsys_status qoc_ocrDictionaryChar_isMatch(const qoc_ocrDictionaryChar *a, const qoc_ocrDictionaryChar *b,
                                                  const qoc_swapCharSet *set, qsys_bool *isMatch);
/** *isMatch becomes 1 when a matches one of the candidates. @param[in] set may be null: no swaps */
QOC_API qsys_status qoc_ocrDictionaryChar_isMatchMulti(const qoc_ocrDictionaryChar *a,
                                                       const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                       const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * Grades how one position of a reading meets a dictionary character.
 *
 * An exact match on the first candidate is primary; a swap on it primarySwap; an exact match on any other candidate secondary; a
 * swap on one secondarySwap; otherwise the status is noMatch and *isMatch 0.
 *
 * @param[in] set may be null: no swaps
 * @return 0, or a failure of the set; *status then holds what the last completed step set
 */
QOC_API qsys_status qoc_ocrDictionaryChar_isMatchMultiStatus(const qoc_ocrDictionaryChar *a,
                                                             const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                             const qoc_swapCharSet *set, qsys_bool *isMatch,
                                                             qoc_ocrDictionaryPositionStatus *status);
/** As isMatch, with a bare code. @param[in] set may be null: no swaps */
QOC_API qsys_status qoc_ocrDictionaryChar_isMatchChar32(const qoc_ocrDictionaryChar *a, Char32 code,
                                                        const qoc_swapCharSet *set, qsys_bool *isMatch);

/** Finds the first character with the same code. @param[out] element its address in the vector, or null @return 0 */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryChar_find(const qstd_vector_qoc_ocrDictionaryChar *vector,
                                                           const qoc_ocrDictionaryChar *character,
                                                           const qoc_ocrDictionaryChar **element);
/** Keeps the first character of every code, in order. @return 0 */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryChar_removeDup(qstd_vector_qoc_ocrDictionaryChar *vector);
/** Constructs one character for each byte of a zero-terminated text, scores 0. */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryChar_constructStringT(qstd_vector_qoc_ocrDictionaryChar *vector,
                                                                       const CharT *text);
/** Sets the characters from the bytes of a zero-terminated text; characters that were there keep their scores. */
QOC_API qsys_status qstd_vector_qoc_ocrDictionaryChar_setStringT(qstd_vector_qoc_ocrDictionaryChar *vector,
                                                                 const CharT *text);
/** Constructs one string of characters for each text. */
QOC_API qsys_status qstd_vector_vector_qoc_ocrDictionaryChar_constructStdStrings(
    qstd_vector_vector_qoc_ocrDictionaryChar *vector, const qstd_vector_qstd_string *strings);
/** Replaces the strings by one for each text. */
QOC_API qsys_status qstd_vector_vector_qoc_ocrDictionaryChar_setStdStrings(
    qstd_vector_vector_qoc_ocrDictionaryChar *vector, const qstd_vector_qstd_string *strings);

/** One position of a reading: its candidates in the caller's order, the first being the primary one. */
typedef struct qoc_ocrDictionaryCharMulti {
  qstd_vector_qoc_ocrDictionaryChar candidates; /**< Empty after construction. Never sorted, never freed of duplicates. */
} qoc_ocrDictionaryCharMulti;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryCharMulti)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryCharMulti, qoc_ocrDictionaryCharMulti)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryCharMulti)

/** Constructs with a copy of the candidates. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_constructCharacters(qoc_ocrDictionaryCharMulti *multi,
                                                                   const qstd_vector_qoc_ocrDictionaryChar *characters);
/** Constructs with one candidate of the text character, not 0, and score 0. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_constructCharT(qoc_ocrDictionaryCharMulti *multi, CharT text);
/** Constructs with one candidate of the code and score 0. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_constructCharCode(qoc_ocrDictionaryCharMulti *multi, Char32 code);
/** *isEmpty becomes 1 when there is no candidate, else 0. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_getIsEmpty(const qoc_ocrDictionaryCharMulti *multi, qsys_bool *isEmpty);
/** The number of candidates. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_getNumCharacters(const qoc_ocrDictionaryCharMulti *multi, int32_t *n);
/** Copies out the only candidate. @return 0, or QOC_STATUS_NO_SUCH_VALUE when there is not exactly one */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_getSingleCharacter(const qoc_ocrDictionaryCharMulti *multi,
                                                                  qoc_ocrDictionaryChar *character);
/** Copies out the first candidate. @return 0, or QOC_STATUS_NO_SUCH_VALUE when there is none */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_getPrimaryCharacter(const qoc_ocrDictionaryCharMulti *multi,
                                                                   qoc_ocrDictionaryChar *character);
/** Makes the character the only candidate. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_setChar(qoc_ocrDictionaryCharMulti *multi,
                                                       const qoc_ocrDictionaryChar *character);
/** Leaves one candidate, with this code and score. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_setCharacterCodeScore(qoc_ocrDictionaryCharMulti *multi, Char32 code,
                                                                     int32_t score);
/** Replaces the candidates by copies. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_setCharacters(qoc_ocrDictionaryCharMulti *multi,
                                                             const qstd_vector_qoc_ocrDictionaryChar *characters);
/** The only candidate as a text character. @return 0, or QOC_STATUS_NO_SUCH_VALUE when there is not one, or it does not convert */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_getCharT(const qoc_ocrDictionaryCharMulti *multi, CharT *text);
/** Leaves one candidate, of the text character (not 0); a first candidate that was there keeps its score. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_setCharT(qoc_ocrDictionaryCharMulti *multi, CharT text);
/** *isEqual becomes 1 when there are the same codes in the same order, else 0. */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_compareEqual(const qoc_ocrDictionaryCharMulti *a,
                                                            const qoc_ocrDictionaryCharMulti *b, qsys_bool *isEqual);
/** *isMatch becomes 1 when the code matches a candidate. @param[in] set may be null: no swaps */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_isMatchChar32(const qoc_ocrDictionaryCharMulti *multi, Char32 code,
                                                             const qoc_swapCharSet *set, qsys_bool *isMatch);
/** Prints the candidates as "[a b ]". */
QOC_API qsys_status qoc_ocrDictionaryCharMulti_print(const qoc_ocrDictionaryCharMulti *multi);

QOC_END_DECLS

#endif
