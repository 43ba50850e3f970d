#ifndef QOC_DICTIONARY_H
#define QOC_DICTIONARY_H

/** @file The dictionary: word lists, line fieldings, regular expressions and what the reader confuses, and its runs. */

#include <qoc/lexicon.h>
#include <qoc/line_fielding.h>
#include <qoc/regular_expression.h>

QOC_BEGIN_DECLS

/** What a reading may legitimately be. Owns its entries, which are copied in and out. Empty after construction. */
typedef struct qoc_ocrDictionary {
  qoc_swapCharSet swapCharSet;
  qstd_vector_qoc_ocrDictionaryLexicon lexicons;
  qstd_vector_qoc_ocrDictionaryRegularExpression regularExpressions;
  qstd_vector_qoc_ocrDictionaryLineFielding fieldings;
} qoc_ocrDictionary;

QOC_DECLARE_OBJECT(qoc_ocrDictionary)

/** *isEqual becomes 1 when swap set, lexicons, line fieldings and regular expressions are equal, in order; else 0. */
QOC_API qsys_status qoc_ocrDictionary_compareEqual(const qoc_ocrDictionary *a, const qoc_ocrDictionary *b,
                                                   qsys_bool *isEqual);
/** *isEmpty becomes 1 when there is no entry of any kind, else 0; the swap set does not count. */
QOC_API qsys_status qoc_ocrDictionary_getIsEmpty(const qoc_ocrDictionary *dictionary, qsys_bool *isEmpty);
/** Copies the swap character set out. */
QOC_API qsys_status qoc_ocrDictionary_getSwapCharSet(const qoc_ocrDictionary *dictionary, qoc_swapCharSet *set);
/** Copies a swap character set in. */
QOC_API qsys_status qoc_ocrDictionary_setSwapCharSet(qoc_ocrDictionary *dictionary, const qoc_swapCharSet *set);

/**
 * The access to one kind of entry; X is its name in the operations, Xs its plural, V the vector of its type T.
 *
 * get…s and set…s copy the whole list out or in; get…I and set…I one entry, at an index from 0 to the count - 1; get…IExtend and
 * set…IExtend first grow the list with empty entries to hold the index.
 *
 * @return 0; QOC_STATUS_INDEX_NEGATIVE; QOC_STATUS_INDEX_TOO_BIG (not from …Extend)
 */
#define QOC_DECLARE_DICTIONARY_KIND(X, Xs, V, T)                                                                       \
  QOC_API qsys_status qoc_ocrDictionary_getNum##Xs(const qoc_ocrDictionary *dictionary, int32_t *n);                   \
  QOC_API qsys_status qoc_ocrDictionary_get##Xs(const qoc_ocrDictionary *dictionary, V *entries);                      \
  QOC_API qsys_status qoc_ocrDictionary_set##Xs(qoc_ocrDictionary *dictionary, const V *entries);                      \
  QOC_API qsys_status qoc_ocrDictionary_get##X##I(const qoc_ocrDictionary *dictionary, int32_t index, T *entry);       \
  QOC_API qsys_status qoc_ocrDictionary_set##X##I(qoc_ocrDictionary *dictionary, int32_t index, const T *entry);       \
  QOC_API qsys_status qoc_ocrDictionary_get##X##IExtend(qoc_ocrDictionary *dictionary, int32_t index, T *entry);       \
  QOC_API qsys_status qoc_ocrDictionary_set##X##IExtend(qoc_ocrDictionary *dictionary, int32_t index, const T *entry);

QOC_DECLARE_DICTIONARY_KIND(Lexicon, Lexicons, qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)
QOC_DECLARE_DICTIONARY_KIND(RegularExpression, RegularExpressions, qstd_vector_qoc_ocrDictionaryRegularExpression,
                            qoc_ocrDictionaryRegularExpression)
QOC_DECLARE_DICTIONARY_KIND(Fielding, Fieldings, qstd_vector_qoc_ocrDictionaryLineFielding,
                            qoc_ocrDictionaryLineFielding)

/** Removes a lexicon; later ones move down. @return 0, QOC_STATUS_INDEX_NEGATIVE or QOC_STATUS_INDEX_TOO_BIG */
QOC_API qsys_status qoc_ocrDictionary_removeLexiconI(qoc_ocrDictionary *dictionary, int32_t index);

/**
 * Matches a reading against every entry, lexicons first, then line fieldings, then regular expressions, and ranks the results.
 *
 * `run` and `runMulti` use the dictionary's own swap character set, the other two the one given, null for no swaps; `run`
 * and `runSwapCharSet` take a plain string, the other two a reading with candidates. Concurrent runs on one dictionary are
 * safe while nobody changes it.
 *
 * @param[in]  params  required
 * @param[out] results reset first; computed afterwards, also when empty. After a failure it may hold what was merged so far.
 * @return 0, the attention status when interrupted, or a matcher's failure
 */
QOC_API qsys_status qoc_ocrDictionary_run(const qoc_ocrDictionary *dictionary, const qoc_ocrDictionaryString *input,
                                          const qoc_ocrDictionaryRunParams *params,
                                          qoc_ocrDictionaryResultSet *results);
/** See qoc_ocrDictionary_run. */
QOC_API qsys_status qoc_ocrDictionary_runSwapCharSet(const qoc_ocrDictionary *dictionary,
                                                     const qoc_ocrDictionaryString *input,
                                                     const qoc_ocrDictionaryRunParams *params,
                                                     const qoc_swapCharSet *set, qoc_ocrDictionaryResultSet *results);
/** See qoc_ocrDictionary_run. */
QOC_API qsys_status qoc_ocrDictionary_runMulti(const qoc_ocrDictionary *dictionary,
                                               const qoc_ocrDictionaryStringMulti *reading,
                                               const qoc_ocrDictionaryRunParams *params,
                                               qoc_ocrDictionaryResultSet *results);
/** See qoc_ocrDictionary_run. */
QOC_API qsys_status qoc_ocrDictionary_runSwapCharSetMulti(const qoc_ocrDictionary *dictionary,
                                                          const qoc_ocrDictionaryStringMulti *reading,
                                                          const qoc_ocrDictionaryRunParams *params,
                                                          const qoc_swapCharSet *set,
                                                          qoc_ocrDictionaryResultSet *results);

QOC_END_DECLS

#endif
