#ifndef QOC_REGULAR_EXPRESSION_H
#define QOC_REGULAR_EXPRESSION_H

/** @file Regular expressions as dictionary entries. */

#include <qoc/regex.h>
#include <qoc/result_set.h>
#include <qoc/swap_char_set.h>

QOC_BEGIN_DECLS

/**
 * A regular expression as a dictionary entry: it admits every text that the expression matches as a whole. What an
 * expression may hold stands in regex.h. Empty after construction.
 */
typedef struct qoc_ocrDictionaryRegularExpression {
  qstd_regex regex;
} qoc_ocrDictionaryRegularExpression;

QOC_DECLARE_OBJECT(qoc_ocrDictionaryRegularExpression)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryRegularExpression)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qoc_ocrDictionaryRegularExpression)

/**
 * Constructs an entry of an expression's source.
 *
 * @param[out] expression unconstructed storage; it stays so on failure
 * @param[in]  source     the source; each byte is a code by sign extension
 * @return 0; QOC_STATUS_EXPRESSION_SYNTAX, QOC_STATUS_EXPRESSION_PARENTHESIS, QOC_STATUS_EXPRESSION_CLASS_OPEN,
 *         QOC_STATUS_EXPRESSION_CLASS, QOC_STATUS_EXPRESSION_ESCAPE, QOC_STATUS_EXPRESSION_REPEAT_ALONE,
 *         QOC_STATUS_EXPRESSION_REPEAT_INVALID, QOC_STATUS_EXPRESSION_TOO_LARGE: that of the first error in the source,
 *         whose place qstd_regex_findError tells; QSYS_STATUS_OUT_OF_MEMORY; the failure of qsys_attention_check
 */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_constructString(qoc_ocrDictionaryRegularExpression *expression,
                                                                       const qstd_string *source);
/** The same of a zero-terminated wide source, each of whose characters is a code. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_constructStringT(qoc_ocrDictionaryRegularExpression *expression,
                                                                        const wchar_t *source);

/** Replaces the expression; on failure, which is as for the constructor, it stays as it was. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_setString(qoc_ocrDictionaryRegularExpression *expression,
                                                                 const qstd_string *source);
/** The same of a zero-terminated wide source, each of whose characters is a code. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_setStringT(qoc_ocrDictionaryRegularExpression *expression,
                                                                  const wchar_t *source);

/** Gives the source back, as qstd_regex_getString does. @return 0 or QSYS_STATUS_OUT_OF_MEMORY */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_getString(const qoc_ocrDictionaryRegularExpression *expression,
                                                                 qstd_string *source);

/** *isEmpty becomes 1 when the expression's source is empty, else 0. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_getIsEmpty(const qoc_ocrDictionaryRegularExpression *expression,
                                                                  qsys_bool *isEmpty);

/** *isEqual becomes 1 when the sources are equal, else 0. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_compareEqual(const qoc_ocrDictionaryRegularExpression *a,
                                                                    const qoc_ocrDictionaryRegularExpression *b,
                                                                    qsys_bool *isEqual);

/**
 * Whether a reading matches the expression.
 *
 * A position of the reading is what any of its candidates is, or any equivalent of one under the swap set; one without
 * candidates is nothing that matches. Where the set has multi-character swaps, every variant of the reading is tried.
 *
 * With params, one edit is allowed when maxEdits is not 0, however large it is: a substitution with matchOption1, a
 * character that the reading lacks with matchOption2, one that it has too many with matchOption4. The length of the
 * matched text must lie within minStringLength and maxStringLength. With matchOption9 the spans of the reading are tried
 * after the whole.
 *
 * @param[in]  params  may be null: no edit, no spans
 * @param[in]  set     may be null: no swaps
 * @param[out] isMatch 1 or 0
 * @return 0, QSYS_STATUS_OUT_OF_MEMORY, or the failure of qsys_attention_check, which is asked once for every variant
 *         of the reading, at every start of its spans, and now and then in work that is long
 */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_isMatchMulti(
    const qoc_ocrDictionaryRegularExpression *expression, const qoc_ocrDictionaryStringMulti *reading,
    const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set, qsys_bool *isMatch);
/** The same of a plain string, as a reading with one candidate at every position. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_isMatch(const qoc_ocrDictionaryRegularExpression *expression,
                                                               const qoc_ocrDictionaryString *input,
                                                               const qoc_ocrDictionaryRunParams *params,
                                                               const qoc_swapCharSet *set, qsys_bool *isMatch);

/**
 * Gives every way in which a reading matches the expression, ranked.
 *
 * A result's `valid` holds at every position the characters that matched there: of the first candidate (status primary),
 * of others and of equivalents (secondary), or QOC_CHAR_ANY where the edit put any character in (inserted, substituted).
 * The index of a deleted position stands in `deleted`. mode is that of regular expressions.
 *
 * @param[in]  params  may be null: no edit, no spans; otherwise as for qoc_ocrDictionaryRegularExpression_isMatchMulti.
 *                     With returnBestOnly and a maxEdits of 1, spans and variants are tried until there is a result
 *                     without an edit
 * @param[in]  set     may be null: no swaps
 * @param[out] results reset first; on success computed
 * @return 0, QSYS_STATUS_OUT_OF_MEMORY, or the failure of qsys_attention_check, which is asked at every start of a span
 *         and now and then in work that is long
 */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_matchMulti(const qoc_ocrDictionaryRegularExpression *expression,
                                                                  const qoc_ocrDictionaryStringMulti *reading,
                                                                  const qoc_ocrDictionaryRunParams *params,
                                                                  const qoc_swapCharSet *set,
                                                                  qoc_ocrDictionaryResultSet *results);
/** The same of a plain string, as a reading with one candidate at every position. */
QOC_API qsys_status qoc_ocrDictionaryRegularExpression_match(const qoc_ocrDictionaryRegularExpression *expression,
                                                             const qoc_ocrDictionaryString *input,
                                                             const qoc_ocrDictionaryRunParams *params,
                                                             const qoc_swapCharSet *set,
                                                             qoc_ocrDictionaryResultSet *results);

QOC_END_DECLS

#endif
