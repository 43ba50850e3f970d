#ifndef QOC_LEXICON_H
#define QOC_LEXICON_H

/** @file Word lists. */

#include <qoc/result_set.h>
#include <qoc/swap_char_set.h>

QOC_BEGIN_DECLS

/** A word list, kept by length, shortest first. */
typedef struct qoc_ocrDictionaryLexicon {
  qstd_vector_qoc_ocrDictionaryString strings; /**< The words. To be changed through the operations only. */
  void *index;                                 /**< The library's own search index over the words; shared between copies. */
} qoc_ocrDictionaryLexicon;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryLexicon)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryLexicon)

/** Constructs with the words, checked as by setStrings. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_constructStrings(qoc_ocrDictionaryLexicon *lexicon,
                                                              const qstd_vector_qoc_ocrDictionaryString *strings);
/**
 * Replaces the words.
 *
 * @return 0; QOC_STATUS_STRING_EMPTY when a word is empty; QOC_STATUS_STRING_DUPLICATE when two are equal; or the
 *         attention status when interrupted, which long lists ask for. The lexicon is unchanged then, as it is when any
 *         other operation that changes the words fails.
 */
QOC_API qsys_status qoc_ocrDictionaryLexicon_setStrings(qoc_ocrDictionaryLexicon *lexicon,
                                                        const qstd_vector_qoc_ocrDictionaryString *strings);
/** Replaces the words, passing over empty ones and all but the first of equal ones. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_setStringsSafe(qoc_ocrDictionaryLexicon *lexicon,
                                                            const qstd_vector_qoc_ocrDictionaryString *strings);
/** Copies the words out, shortest first. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_getStrings(const qoc_ocrDictionaryLexicon *lexicon,
                                                        qstd_vector_qoc_ocrDictionaryString *strings);
/** *isEmpty becomes 1 when there is no word, else 0. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_getIsEmpty(const qoc_ocrDictionaryLexicon *lexicon, qsys_bool *isEmpty);
/** *isEqual becomes 1 when the words are equal, in order; else 0. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_compareEqual(const qoc_ocrDictionaryLexicon *a,
                                                          const qoc_ocrDictionaryLexicon *b, qsys_bool *isEqual);
/** Adds a word, which may be empty. @return 0, or QOC_STATUS_STRING_DUPLICATE when it is there already (nothing changes) */
QOC_API qsys_status qoc_ocrDictionaryLexicon_addString(qoc_ocrDictionaryLexicon *lexicon,
                                                       const qoc_ocrDictionaryString *string);
/** addString with a zero-terminated text. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_addStringT(qoc_ocrDictionaryLexicon *lexicon, const CharT *text);
/** addString with a text. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_addStdString(qoc_ocrDictionaryLexicon *lexicon, const qstd_string *text);
/** Removes every word equal to the string. @return 0, or QOC_STATUS_STRING_ABSENT when there is none */
QOC_API qsys_status qoc_ocrDictionaryLexicon_removeString(qoc_ocrDictionaryLexicon *lexicon,
                                                          const qoc_ocrDictionaryString *string);
/** isMatchMulti on a plain input. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_isMatch(const qoc_ocrDictionaryLexicon *lexicon,
                                                     const qoc_ocrDictionaryString *input,
                                                     const qoc_ocrDictionaryRunParams *params,
                                                     const qoc_swapCharSet *set, qsys_bool *isMatch);
/**
 * Tells whether some word can be read in the reading within the params; without matchOption9 also in a part of it.
 *
 * @param[in]  params  may be null: no edits, parts of at least one position
 * @param[in]  set     may be null: no swaps
 * @param[out] isMatch 1 or 0
 * @return 0, or the attention status when interrupted
 */
QOC_API qsys_status qoc_ocrDictionaryLexicon_isMatchMulti(const qoc_ocrDictionaryLexicon *lexicon,
                                                          const qoc_ocrDictionaryStringMulti *reading,
                                                          const qoc_ocrDictionaryRunParams *params,
                                                          const qoc_swapCharSet *set, qsys_bool *isMatch);
/** matchMulti on a plain input. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_match(const qoc_ocrDictionaryLexicon *lexicon,
                                                   const qoc_ocrDictionaryString *input,
                                                   const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                                   qoc_ocrDictionaryResultSet *results);
/**
 * Finds every word that can be read in the reading within the params, ranked.
 *
 * @param[in]  params may be null: no edits
 * @param[in]  set    may be null: no swaps
 * @param[out] results reset first; computed afterwards, also when empty
 * @return 0, or the attention status when interrupted
 */
QOC_API qsys_status qoc_ocrDictionaryLexicon_matchMulti(const qoc_ocrDictionaryLexicon *lexicon,
                                                        const qoc_ocrDictionaryStringMulti *reading,
                                                        const qoc_ocrDictionaryRunParams *params,
                                                        const qoc_swapCharSet *set,
                                                        qoc_ocrDictionaryResultSet *results);
/** Matches every input in order; each result's inputIndices holds the one index of its input. All results, ranked together. */
QOC_API qsys_status qoc_ocrDictionaryLexicon_matchStrings(const qoc_ocrDictionaryLexicon *lexicon,
                                                          const qstd_vector_qoc_ocrDictionaryString *inputs,
                                                          const qoc_ocrDictionaryRunParams *params,
                                                          const qoc_swapCharSet *set,
                                                          qoc_ocrDictionaryResultSet *results);

QOC_END_DECLS

#endif
