#ifndef QOC_SWAP_CHAR_SET_H
#define QOC_SWAP_CHAR_SET_H

/** @file What the reader confuses: groups of interchangeable characters, and multi-character swaps. */

#include <qoc/string_expand.h>
#include <qoc/swap_char.h>

#include <stdio.h>

QOC_BEGIN_DECLS

/**
 * The characters that a reader confuses. Empty after construction.
 *
 * Single characters stand in groups; the members of a group are equivalent, and so are those of groups that share a
 * character. Multi-character swaps ("rn" for "m") stand beside them and are applied by expanding the reading.
 *
 * No query changes a set: any number of threads may query one at once, as long as none changes it.
 */
struct qoc_swapCharSet {
  qstd_vector_qoc_swapChar swaps;             /**< The multi-character swaps. */
  qstd_vector_vectorChar32 groups;            /**< The groups, as they were given. */
  qstd_vector32s swapCharCodeToIndexLUT;      /**< By code: the index among the distinct characters, or -1. */
  qstd_vectorChar32 distinctCharacters;       /**< Every character of the groups once, ascending. */
  qstd_vector_vectorb swapCharEquivalenceTable; /**< By index and index: 1 where the characters are equivalent. */
  qstd_vector_vectorChar32 equivalentsCacheLists; /**< By index: the character's equivalents, ascending. */
  qstd_vectorb equivalentsCacheFlags;             /**< By index: 1 when the list is there; 0 in very large groups. */
  qoc_stringExpand_ *expansion;                   /**< The multi-character swaps as records; owned. */
  qsys_bool isEmpty;                              /**< 1 when no group has a character. */
  qstd_vectorb pairFilter;                        /**< Hash set of the ordered pairs that stand in one group. */
  const uint8_t *pairFilterData;                  /**< The filter's first entry, or null. */
};

QOC_DECLARE_OBJECT(qoc_swapCharSet)

/** Removes all groups and swaps. @return 0 */
QOC_API qsys_status qoc_swapCharSet_reset(qoc_swapCharSet *set);

/**
 * Sets the groups of interchangeable characters; groups and multi-character swaps that were there are dropped.
 *
 * A character may stand in several groups: they then count as one, except to qoc_swapCharSet_isMatch. No groups make an
 * empty set. The table from code to index has an entry for every code up to the largest: 4 bytes each. The equivalence
 * table has one byte for each pair of distinct characters.
 *
 * @param[in] groups copied; may be the set's own
 * @return 0. With the set unchanged, for the first group at fault: QOC_STATUS_GROUP_EMPTY, QOC_STATUS_GROUP_SINGLE,
 *         QOC_STATUS_GROUP_RESERVED (a code in 0xF800 to 0xF8FF or 0xFF000 to 0xFFFFD), QOC_STATUS_GROUP_DUPLICATE (a
 *         character twice in one group), QSYS_STATUS_OUT_OF_MEMORY. With the set reset: QSTD_STATUS_SIZE_INVALID (a
 *         code of 0x7FFFFFFF or more), QSYS_STATUS_OUT_OF_MEMORY. The attention status when interrupted, which large
 *         groups and codes ask for: unchanged while they are checked, and else reset
 */
QOC_API qsys_status qoc_swapCharSet_setEquiv(qoc_swapCharSet *set, const qstd_vector_vectorChar32 *groups);
/** Constructs, then qoc_swapCharSet_setEquiv; unconstructed on failure. */
QOC_API qsys_status qoc_swapCharSet_constructEquiv(qoc_swapCharSet *set, const qstd_vector_vectorChar32 *groups);
/**
 * As qoc_swapCharSet_setEquiv: each text is a group, each byte a member, sign-extended to a code. A byte of 0x80 or
 * more so becomes 0xFFFFFF80 or more, for which there can be no table: QSTD_STATUS_SIZE_INVALID, and the set is reset.
 */
QOC_API qsys_status qoc_swapCharSet_setEquivStdStrings(qoc_swapCharSet *set, const qstd_vector_qstd_string *groups);
/** Constructs, then qoc_swapCharSet_setEquivStdStrings; unconstructed on failure. */
QOC_API qsys_status qoc_swapCharSet_constructEquivStdStrings(qoc_swapCharSet *set,
                                                             const qstd_vector_qstd_string *groups);
/** As qoc_swapCharSet_setEquiv: each wide text is a group, each of its elements the code of a member. */
QOC_API qsys_status qoc_swapCharSet_setEquivStringTs(qoc_swapCharSet *set, const qstd_vector_qstd_wstring *groups);
/** Constructs, then qoc_swapCharSet_setEquivStringTs; unconstructed on failure. */
QOC_API qsys_status qoc_swapCharSet_constructEquivStringTs(qoc_swapCharSet *set,
                                                           const qstd_vector_qstd_wstring *groups);
/** Constructs, then as qoc_swapCharSet_setEquiv with the codes of the characters; unconstructed on failure. */
QOC_API qsys_status qoc_swapCharSet_constructEquivDictChar(qoc_swapCharSet *set,
                                                           const qstd_vector_vector_qoc_ocrDictionaryChar *groups);
/**
 * Sets groups made of the swaps of one character for one character, and keeps the others as multi-character swaps.
 *
 * Each swap of single characters merges the groups of its two characters. When the first character's group is the last
 * of them, it is appended to the second's but also stays; a single character that is left over is refused. So ("x","y")
 * with ("y","z") is accepted, and ("x","y") with ("z","w") is not: set such groups with qoc_swapCharSet_setEquiv.
 *
 * A swap of one for two characters works in both directions, one of two for two only from its first sequence to its
 * second; a swap with a longer sequence is kept and has no effect.
 *
 * @param[in] swaps copied; may be the set's own
 * @return 0; a status of qoc_swapCharSet_setEquiv for the merged groups, or the attention status when interrupted: the
 *         set, its swaps included, is unchanged where qoc_swapCharSet_setEquiv leaves it so, and else reset
 */
QOC_API qsys_status qoc_swapCharSet_setSwapCharacters(qoc_swapCharSet *set, const qstd_vector_qoc_swapChar *swaps);
/**
 * Sets two interchangeable characters as the only group.
 *
 * @return 0; QOC_STATUS_SINGLE_SWAP_EQUAL when the codes are equal (the set is unchanged); or a status of
 *         qoc_swapCharSet_setEquiv
 */
QOC_API qsys_status qoc_swapCharSet_setSingleSwap(qoc_swapCharSet *set, Char32 first, Char32 second);
/** As qoc_swapCharSet_setSingleSwap, behind the groups that are there; multi-character swaps are dropped. */
QOC_API qsys_status qoc_swapCharSet_appendSingleSwap(qoc_swapCharSet *set, Char32 first, Char32 second);

/** *isEmpty becomes 1 when no group has a character, else 0; multi-character swaps do not count. @return 0 */
QOC_API qsys_status qoc_swapCharSet_getIsEmpty(const qoc_swapCharSet *set, qsys_bool *isEmpty);
/** *isEqual becomes 1 when the multi-character swaps and the groups are equal, in order; else 0. @return 0 */
QOC_API qsys_status qoc_swapCharSet_compareEqual(const qoc_swapCharSet *a, const qoc_swapCharSet *b,
                                                 qsys_bool *isEqual);
/** *isContained becomes 1 when the code stands in a group, else 0. @return 0 */
QOC_API qsys_status qoc_swapCharSet_contains(const qoc_swapCharSet *set, Char32 code, qsys_bool *isContained);
/** Copies the groups out, as they were set. @return 0, or a container's failure */
QOC_API qsys_status qoc_swapCharSet_getEquiv(const qoc_swapCharSet *set, qstd_vector_vectorChar32 *groups);
/**
 * Gives the code's equivalents, ascending, and behind them the code itself; nothing for a code in no group.
 *
 * @return 0, or a container's failure
 */
QOC_API qsys_status qoc_swapCharSet_getGroup(const qoc_swapCharSet *set, Char32 code, qstd_vectorChar32 *group);
/** The character's equivalents, ascending, without itself, each with score 0. @return 0, or a container's failure */
QOC_API qsys_status qoc_swapCharSet_getEquivalentCharacters(const qoc_swapCharSet *set,
                                                            const qoc_ocrDictionaryChar *character,
                                                            qstd_vector_qoc_ocrDictionaryChar *equivalents);
/**
 * Gives what the candidates of one position may be confused with.
 *
 * First the equivalents of the first candidate; then, for each further one, the candidate itself and its equivalents,
 * as far as they are not there yet. The first candidate does not come back among anyone's equivalents.
 *
 * @param[in]  candidates  may be empty: nothing comes of it
 * @param[out] equivalents may be the candidates
 * @return 0, or a container's failure
 */
QOC_API qsys_status qoc_swapCharSet_getEquivalentCharactersMulti(const qoc_swapCharSet *set,
                                                                 const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                                 qstd_vector_qoc_ocrDictionaryChar *equivalents);
/**
 * Tells whether two different codes are equivalent and stood together in one group.
 *
 * The second is asked of a small hash set: a pair that is equivalent only through a chain of groups is not a match,
 * unless it collides there with one that is. A code does not match itself, and there are no wildcards; see
 * qoc_swapCharSet_isMatchChar for those.
 *
 * @param[in] set may be null: no match
 * @return 0
 */
QOC_API qsys_status qoc_swapCharSet_isMatch(const qoc_swapCharSet *set, Char32 a, Char32 b, qsys_bool *isMatch);
/**
 * Tells whether one character may stand for another.
 *
 * The empty character 0xF800 matches nothing; 0xF801 matches everything else; equal codes match; otherwise the set
 * decides, chains of groups included.
 *
 * @param[in] set may be null: no swaps
 * @return 0
 */
QOC_API qsys_status qoc_swapCharSet_isMatchChar(const qoc_swapCharSet *set, const qoc_ocrDictionaryChar *a,
                                                const qoc_ocrDictionaryChar *b, qsys_bool *isMatch);
/** *isMatch becomes 1 when a candidate of a and one of b satisfy isMatchChar, else 0. @param[in] set may be null */
QOC_API qsys_status qoc_swapCharSet_isMatchCharMulti(const qoc_swapCharSet *set,
                                                     const qstd_vector_qoc_ocrDictionaryChar *a,
                                                     const qstd_vector_qoc_ocrDictionaryChar *b, qsys_bool *isMatch);
/** *isMatch becomes 1 when one of the candidates and b satisfy isMatchChar, else 0. @param[in] set may be null */
QOC_API qsys_status qoc_swapCharSet_isMatchCharMultiChar(const qoc_swapCharSet *set,
                                                         const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                         const qoc_ocrDictionaryChar *b, qsys_bool *isMatch);
/** *hasMultiSwap becomes 1 when the set holds one-to-two or two-to-two swaps, else 0. @return 0 */
QOC_API qsys_status qoc_swapCharSet_hasMultiSwap(const qoc_swapCharSet *set, qsys_bool *hasMultiSwap);
/** qoc_stringExpand__mapStringMulti with the set's multi-character swaps and the set itself. */
QOC_API qsys_status qoc_swapCharSet_multiSwapStrings(const qoc_swapCharSet *set,
                                                     const qoc_ocrDictionaryStringMulti *input,
                                                     qstd_vector_qoc_ocrDictionaryStringMulti *variants,
                                                     qstd_vector_vector32s *positions);

/**
 * Prints the groups, the table from code to index and the equivalence table to a stream.
 *
 * @param[in] set null is reported, and printed as "qoc_swapCharSet : NULL"
 * @return 0 or more, or QSYS_STATUS_PRINT_FAILED
 */
QOC_API qsys_status qoc_swapCharSet_print(const qoc_swapCharSet *set, FILE *stream);

QOC_END_DECLS

#endif
