#ifndef QOC_SWAP_CHAR_SET_H
#define QOC_SWAP_CHAR_SET_H

/** @file What the reader confuses: groups of interchangeable characters, and multi-character swaps. */

#include <qoc/string_expand.h>
#include <qoc/swap_char.h>

QOC_BEGIN_DECLS

/** The characters that a reader confuses. Empty after construction. */
struct qoc_swapCharSet {
  qstd_vector_qoc_swapChar swaps;             /**< The multi-character swaps. */
  qstd_vector_vectorChar32 groups;            /**< The groups, as they were given. */
  qstd_vector32s swapCharCodeToIndexLUT;      /**< By code: the index among the distinct characters, or -1. */
  qstd_vectorChar32 distinctCharacters;       /**< Every character of the groups once, ascending. */
  qstd_vector_vectorb swapCharEquivalenceTable; /**< By index and index: 1 where the characters are equivalent. */
  qstd_vector_vectorChar32 equivalentsCacheLists; /**< By index: the character's equivalents. */
  qstd_vectorb equivalentsCacheFlags;             /**< By index: 1 when the list is there. */
  qoc_stringExpand_ *expansion;                   /**< The multi-character swaps as records; owned. */
  qsys_bool isEmpty;                              /**< 1 when no group has a character. */
  qstd_vectorb pairFilter;                        /**< Hash set of the ordered pairs that stand in one group. */
  const uint8_t *pairFilterData;                  /**< The filter's first entry, or null. */
};

QOC_DECLARE_OBJECT(qoc_swapCharSet)

/** Removes all groups and swaps. */
QOC_API qsys_status qoc_swapCharSet_reset(qoc_swapCharSet *set);
/** *isEqual becomes 1 when the multi-character swaps and the groups are equal, in order; else 0. */
QOC_API qsys_status qoc_swapCharSet_compareEqual(const qoc_swapCharSet *a, const qoc_swapCharSet *b,
                                                 qsys_bool *isEqual);
/** *isEmpty becomes 1 when no group has a character, else 0. */
QOC_API qsys_status qoc_swapCharSet_getIsEmpty(const qoc_swapCharSet *set, qsys_bool *isEmpty);
/**
 * Tells whether one character may stand for another.
 *
 * The empty character 0xF800 matches nothing; 0xF801 matches everything else; equal codes match; otherwise the set decides.
 *
 * @param[in] set may be null: no swaps
 */
QOC_API qsys_status qoc_swapCharSet_isMatchChar(const qoc_swapCharSet *set, const qoc_ocrDictionaryChar *a,
                                                const qoc_ocrDictionaryChar *b, qsys_bool *isMatch);
/** *isMatch becomes 1 when one of the candidates and b satisfy isMatchChar, else 0. @param[in] set may be null */
QOC_API qsys_status qoc_swapCharSet_isMatchCharMultiChar(const qoc_swapCharSet *set,
                                                         const qstd_vector_qoc_ocrDictionaryChar *candidates,
                                                         const qoc_ocrDictionaryChar *b, qsys_bool *isMatch);
/** *hasMultiSwap becomes 1 when the set holds one-to-two or two-to-two swaps, else 0. */
QOC_API qsys_status qoc_swapCharSet_hasMultiSwap(const qoc_swapCharSet *set, qsys_bool *hasMultiSwap);

QOC_END_DECLS

#endif
