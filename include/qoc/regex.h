#ifndef QOC_REGEX_H
#define QOC_REGEX_H

/** @file
 * Regular expressions over sequences of tokens.
 *
 * An expression matches a sequence as a whole. What it may hold:
 *
 * | | |
 * |---|---|
 * | `a` | the character itself; `]` and `}` alone too |
 * | `.` | any character, line ends included |
 * | `[a-z_]` `[^0-9]` | a class: any of these characters; any but these. `-` stands for itself first, last, behind a range or beside a class escape |
 * | `\d` `\w` `\s` | digits; letters, digits and `_`; blank, `\t`, `\n`, `\v`, `\f`, `\r`: of ASCII. `\D` `\W` `\S`: all others. In classes too |
 * | `\t` `\n` `\r` `\xHH` `\x{H...}` | a control character; a code of two hexadecimal digits; one of any number of them |
 * | `\.` | a backslash before any ASCII punctuation character: that character |
 * | `(...)` `(?:...)` | a group |
 * | `a|b` | either; an alternative may be empty |
 * | `*` `+` `?` `{n}` `{n,}` `{n,m}` | any number, at least one, at most one, or so many of what stands before; n and m up to 1000 |
 * | `^` `$` | at the very start and the very end; they add nothing |
 *
 * Codes are compared as they are. A byte of a narrow source is read as a signed one, as everywhere.
 */

#include <qoc/token.h>

QOC_BEGIN_DECLS

/** The most character positions that an expression may have once its counts are written out: `(ab){3}` has 6. */
#define QSTD_REGEX_MAX_POSITIONS 10000
/** The most characters that the source of an expression may have. A longer one is too large at its first character. */
#define QSTD_REGEX_MAX_SOURCE 1000000

/** A compiled regular expression: immutable once set, shared between copies. Empty after construction. */
typedef struct qstd_regex {
  const void *shared; /**< The compiled expression with its source, or null for the empty one. The library's. */
} qstd_regex;

/** The empty expression matches the empty sequence and no other. */
QOC_DECLARE_OBJECT(qstd_regex)

/**
 * Constructs an expression of a source.
 *
 * @param[out] regex  unconstructed storage; it stays so on failure
 * @param[in]  source the expression's text
 * @return 0; QSTD_STATUS_REGEX_PARENTHESIS, QSTD_STATUS_REGEX_TOO_LARGE, QSTD_STATUS_REGEX_SYNTAX,
 *         QSTD_STATUS_REGEX_CLASS_OPEN, QSTD_STATUS_REGEX_RANGE_REVERSED, QSTD_STATUS_REGEX_CLASS_EMPTY,
 *         QSTD_STATUS_REGEX_ESCAPE, QSTD_STATUS_REGEX_REPEAT_ALONE, QSTD_STATUS_REGEX_REPEAT_INVALID: that of the first
 *         error in the source; QSYS_STATUS_OUT_OF_MEMORY; or the failure of qsys_attention_check, which the compilation
 *         of a very large source asks
 */
QOC_API qsys_status qstd_regex_constructString(qstd_regex *regex, const qstd_string *source);
/** The same of a zero-terminated wide source, each of whose characters is a code. */
QOC_API qsys_status qstd_regex_constructStringT(qstd_regex *regex, const wchar_t *source);

/** Replaces an expression; on failure, which is as for the constructor, it stays as it was. */
QOC_API qsys_status qstd_regex_setString(qstd_regex *regex, const qstd_string *source);
/** The same of a zero-terminated wide source, each of whose characters is a code. */
QOC_API qsys_status qstd_regex_setStringT(qstd_regex *regex, const wchar_t *source);

/**
 * Gives the source back: its bytes, or, of a wide source, its characters, those that are not a CharT's code in UTF-8.
 *
 * @param[out] source a constructed string
 * @return 0 or QSYS_STATUS_OUT_OF_MEMORY
 */
QOC_API qsys_status qstd_regex_getString(const qstd_regex *regex, qstd_string *source);

/**
 * Tells where the error in a source is.
 *
 * @param[in]  source the source of an expression
 * @param[out] place  the index of the character of the source that the error is at, which may be that behind the last;
 *                    -1 when there is none
 * @return as qstd_regex_constructString for this source
 */
QOC_API qsys_status qstd_regex_findError(const qstd_string *source, int32_t *place);
/** The same of a zero-terminated wide source, each of whose characters is a code. */
QOC_API qsys_status qstd_regex_findErrorT(const wchar_t *source, int32_t *place);

/** *isEqual becomes 1 when the sources are equal, code by code, else 0. */
QOC_API qsys_status qstd_regex_compareEqual(const qstd_regex *a, const qstd_regex *b, qsys_bool *isEqual);

/**
 * Finds every way in which a sequence matches an expression.
 *
 * A way is a path through the expression's character positions on which each accepts at least one token of its place in
 * the sequence. What it tells of a place are the tokens there that are accepted: all of them, primary first.
 *
 * Ways come in the order in which a backtracking matcher finds them: leftmost alternative first, and a repeat tries one
 * more round before it goes on without. A round that consumes nothing ends its repeat, whatever its least count. Of ways
 * that tell the same only the first is there.
 *
 * The time is polynomial in the sequence, the expression and the number of ways, which itself may be exponential:
 * qsys_attention_check is asked now and then.
 *
 * @param[out] words the ways; none when the sequence does not match, or on failure
 * @return 0, QSYS_STATUS_OUT_OF_MEMORY, or the failure of qsys_attention_check
 */
QOC_API qsys_status qstd_regex_parseTokenMulti(const qstd_regex *regex, const qstd_vector_qstd_tokenMulti *sequence,
                                               qstd_vector_qstd_tokenMatcherResultWord *words);

QOC_END_DECLS

#endif
