#ifndef QOC_POSITION_FIELDING_H
#define QOC_POSITION_FIELDING_H

/** @file Which characters one position of a line may hold. */

#include <qoc/swap_char_set.h>

QOC_BEGIN_DECLS

#define QOC_FIELDING_UPPER 1u     /**< 'A' to 'Z'. */
#define QOC_FIELDING_LOWER 2u     /**< 'a' to 'z'. */
#define QOC_FIELDING_DIGIT 4u     /**< '0' to '9'. */
#define QOC_FIELDING_SPACE 8u     /**< The space. */
#define QOC_FIELDING_NONSPACE 16u /**< Everything but the space. */

/** The characters that one position admits: by class, and by list. After construction, everything but the space. */
typedef struct qoc_ocrDictionaryPositionFielding {
  uint32_t fieldingBits;                /**< Sum of QOC_FIELDING_… bits. */
  qstd_vectorChar32 fieldingCharacters; /**< Further codes, 0xF801 and 0xF802 among them as wildcards. */
} qoc_ocrDictionaryPositionFielding;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryPositionFielding)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryPositionFielding, qoc_ocrDictionaryPositionFielding)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryPositionFielding)

/** *isEqual becomes 1 when the bits are equal and the lists too, in order; else 0. */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_compareEqual(const qoc_ocrDictionaryPositionFielding *a,
                                                                   const qoc_ocrDictionaryPositionFielding *b,
                                                                   qsys_bool *isEqual);

/**
 * Constructs with the given bits and no listed characters.
 *
 * @return 0, or QOC_STATUS_FIELDING_BITS_INVALID (nothing stays constructed)
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_constructFieldingBits(
    qoc_ocrDictionaryPositionFielding *positionFielding, uint32_t bits);

/** Sets the bits, 0 to 31. @return 0, or QOC_STATUS_FIELDING_BITS_INVALID (the bits stay) */
QOC_API qsys_status
qoc_ocrDictionaryPositionFielding_setFieldingBits(qoc_ocrDictionaryPositionFielding *positionFielding, uint32_t bits);
/** The bits. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getFielding(
    const qoc_ocrDictionaryPositionFielding *positionFielding, uint32_t *bits);
/** The bits; the same as qoc_ocrDictionaryPositionFielding_getFielding. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getFieldingBits(
    const qoc_ocrDictionaryPositionFielding *positionFielding, uint32_t *bits);
/**
 * Replaces the listed characters by copies, in the order given.
 *
 * @return 0; QOC_STATUS_CHARACTER_DUPLICATE when a code stands twice in the list; else QOC_STATUS_CHARACTER_EMPTY when
 * 0xF800 does. The stored list stays when the call fails on either.
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_setFieldingCharacters(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vectorChar32 *characters);
/** setFieldingBits, then setFieldingCharacters: a refused list leaves the new bits stored. @return the first failure,
 * or 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vectorChar32 *characters, uint32_t bits);
/**
 * Replaces the listed characters by the codes of dictionary characters, without looking for duplicates or the empty
 * character.
 *
 * @return 0, or QOC_STATUS_NO_SUCH_VALUE when a code other than 0xF800 is no text character (the list stays)
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_setDictCharacters(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vector_qoc_ocrDictionaryChar *characters);
/**
 * setFieldingCharactersAndFieldingBits with the codes of dictionary characters.
 *
 * @return 0; QOC_STATUS_NO_SUCH_VALUE when a code other than 0xF800 is no text character (nothing changes); or a
 * failure of setFieldingCharactersAndFieldingBits
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(
    qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vector_qoc_ocrDictionaryChar *characters,
    uint32_t bits);
/** Hands out the stored list, which stays the position fielding's; no copy. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qstd_vectorChar32 **characters);

/** *has becomes 1 when a bit is set, else 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_hasFieldingBits(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *has);
/** *has becomes 1 when a character is listed, else 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_hasFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *has);
/** *isEmpty becomes 1 when neither a bit is set nor a character listed, else 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_isEmpty(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                              qsys_bool *isEmpty);
/**
 * *isAny becomes 1 when the position admits every character, else 0.
 *
 * That is: space and non-space are both set; or 0xF801 is listed; or the space is listed, and non-space set or 0xF802
 * listed.
 *
 * @return 0
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_isAnyCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isAny);
/**
 * *isAny becomes 1 when the position admits every character but the space, and not the space, else 0.
 *
 * That is: the space is neither set nor listed, and non-space is set or 0xF802 listed. A listed 0xF801 does not count.
 *
 * @return 0
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_isAnyNonspaceCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isAny);
/** *isSingle becomes 1 for the bit QOC_FIELDING_SPACE alone, or for one listed character alone; else 0. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getIsSingleCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *isSingle);
/** The one admitted code where qoc_ocrDictionaryPositionFielding_getIsSingleCharacter says 1, else 0xF800. @return 0 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getSingleCharacter(
    const qoc_ocrDictionaryPositionFielding *positionFielding, Char32 *code);
/** *allows becomes 1 when the space is set as a bit or listed, else 0; non-space and wildcards do not count. @return 0
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getAllowsSpace(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qsys_bool *allows);

/**
 * Tells whether the position admits a character of a reading, itself or by a swap.
 *
 * The empty character 0xF800 is never admitted. Any other character, and every swap equivalent that has to be asked,
 * must be a text character: position fieldings know 7-bit characters only.
 *
 * @param[in]  set     may be null: no swaps
 * @param[out] isMatch 1 or 0
 * @return 0, or QOC_STATUS_NO_SUCH_VALUE for a character that is no text character, whatever the position admits
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_isMatch(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                              const qoc_ocrDictionaryChar *character,
                                                              const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * *isMatch becomes 1 when a candidate is admitted, else 0; the candidates are asked in order, up to the first that is.
 *
 * @param[in] set may be null: no swaps
 * @return 0, or the failure of qoc_ocrDictionaryPositionFielding_isMatch
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_isMatchMulti(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qoc_ocrDictionaryCharMulti *multi,
    const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * Tells whether a candidate is admitted, and which.
 *
 * A position that admits every character takes any candidates without asking them. Swaps have no status of their own
 * here.
 *
 * @param[in]  set     may be null: no swaps
 * @param[out] isMatch 1 or 0
 * @param[out] status  primary when the first candidate is admitted, else secondary, also where none is; not written
 * where there are no candidates
 * @return 0, or the failure of qoc_ocrDictionaryPositionFielding_isMatch
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qoc_ocrDictionaryCharMulti *multi,
    const qoc_swapCharSet *set, qsys_bool *isMatch, qoc_ocrDictionaryPositionStatus *status);
/**
 * Lists what the position admits of a character: itself, then its swap equivalents, each without a further swap.
 *
 * @param[in]  set     may be null: no swaps
 * @param[out] matches cleared first; the character with its score, the equivalents with score 0. Partly filled after a
 * failure.
 * @return 0, or the failure of qoc_ocrDictionaryPositionFielding_isMatch
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_match(const qoc_ocrDictionaryPositionFielding *positionFielding,
                                                            const qoc_ocrDictionaryChar *character,
                                                            const qoc_swapCharSet *set,
                                                            qstd_vector_qoc_ocrDictionaryChar *matches);
/** The same for every candidate in order; of equal codes the first is kept. See
 * qoc_ocrDictionaryPositionFielding_match. */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_matchMulti(
    const qoc_ocrDictionaryPositionFielding *positionFielding, const qoc_ocrDictionaryCharMulti *multi,
    const qoc_swapCharSet *set, qstd_vector_qoc_ocrDictionaryChar *matches);
/**
 * Lists all that the position admits, ascending and each once; 0xF801 alone for every character, 0xF802 alone for every
 * character but the space.
 *
 * So the bits upper and digit with the list "-" give '-', '0' to '9', 'A' to 'Z'.
 *
 * @param[out] characters replaced; not the position fielding's own list
 * @return 0
 */
QOC_API qsys_status qoc_ocrDictionaryPositionFielding_getAllFieldingCharacters(
    const qoc_ocrDictionaryPositionFielding *positionFielding, qstd_vectorChar32 *characters);

QOC_END_DECLS

#endif
