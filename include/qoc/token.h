#ifndef QOC_TOKEN_H
#define QOC_TOKEN_H

/** @file Tokens: what regular expressions match, one or several to choose from at every position of a sequence. */

#include <qoc/containers.h>

QOC_BEGIN_DECLS

/**
 * One character code, or a wildcard, which stands for any character. Owns no memory.
 *
 * A wildcard is a token whose flag word is not 0; its code then says nothing. The code 0xF800 is accepted by nothing.
 */
typedef struct qstd_token {
  Char32 code;          /**< The character code. */
  uint32_t reserved[5]; /**< 0; nothing reads it. */
  uint32_t flags;       /**< Not 0: a wildcard. */
} qstd_token;

/** Constructs a wildcard. */
QOC_DECLARE_OBJECT(qstd_token)

/** Makes the token that of a code; the code 0xF801 makes a wildcard. @return 0 */
QOC_API qsys_status qstd_token_setChar32(qstd_token *token, Char32 code);
/** Gives the token's code, or 0xF801 of a wildcard. @return 0 */
QOC_API qsys_status qstd_token_getChar(const qstd_token *token, Char32 *code);
/** *isEqual becomes 1 when qstd_token_getChar gives the same of both, else 0. */
QOC_API qsys_status qstd_token_compareEqual(const qstd_token *a, const qstd_token *b, qsys_bool *isEqual);

QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_token, qstd_token)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_token)

/**
 * One position of a sequence: a primary token and alternatives to it, in order.
 *
 * Until it is set, the primary token is a wildcard and there are no alternatives: it stands for any one character.
 */
typedef struct qstd_tokenMulti {
  qstd_token primary;
  qstd_vector_qstd_token alternatives;
} qstd_tokenMulti;

QOC_DECLARE_OBJECT(qstd_tokenMulti)

/** Makes a code the primary token, as qstd_token_setChar32 does, and removes the alternatives. @return 0 */
QOC_API qsys_status qstd_tokenMulti_setChar32(qstd_tokenMulti *multi, Char32 code);
/** Copies the primary token in. @return 0 */
QOC_API qsys_status qstd_tokenMulti_setPrimary(qstd_tokenMulti *multi, const qstd_token *primary);
/** Copies the alternatives in. @return 0 or QSYS_STATUS_OUT_OF_MEMORY */
QOC_API qsys_status qstd_tokenMulti_setAlternatives(qstd_tokenMulti *multi, const qstd_vector_qstd_token *alternatives);
/** Gives the address of the primary token, which stays the multi's. @return 0 */
QOC_API qsys_status qstd_tokenMulti_getPrimary(const qstd_tokenMulti *multi, const qstd_token **primary);
/** Gives the address of the alternatives, which stay the multi's. @return 0 */
QOC_API qsys_status qstd_tokenMulti_getAlternatives(const qstd_tokenMulti *multi,
                                                    const qstd_vector_qstd_token **alternatives);
/** *isEqual becomes 1 when the primary tokens and the alternatives are equal, else 0. */
QOC_API qsys_status qstd_tokenMulti_compareEqual(const qstd_tokenMulti *a, const qstd_tokenMulti *b,
                                                 qsys_bool *isEqual);

QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_tokenMulti, qstd_tokenMulti)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_tokenMulti)

/** How one position of a sequence was matched. Nothing, after construction. */
typedef struct qstd_tokenMatcherResult {
  qstd_vector_qstd_token tokens; /**< The position's tokens that matched, primary first, then in their order. */
  qsys_bool isPrimary;           /**< 1 when the primary token is among them. */
} qstd_tokenMatcherResult;

QOC_DECLARE_OBJECT(qstd_tokenMatcherResult)

/** Gives the address of the matched tokens, which stay the result's. @return 0 */
QOC_API qsys_status qstd_tokenMatcherResult_getTokens(const qstd_tokenMatcherResult *result,
                                                      const qstd_vector_qstd_token **tokens);
/** Gives whether the primary token matched. @return 0 */
QOC_API qsys_status qstd_tokenMatcherResult_getIsPrimary(const qstd_tokenMatcherResult *result, qsys_bool *isPrimary);
/** *isEqual becomes 1 when tokens and flags are equal, else 0. */
QOC_API qsys_status qstd_tokenMatcherResult_compareEqual(const qstd_tokenMatcherResult *a,
                                                         const qstd_tokenMatcherResult *b, qsys_bool *isEqual);

QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_tokenMatcherResult, qstd_tokenMatcherResult)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_tokenMatcherResult)

/** One complete way of matching a sequence: how each of its positions was matched, in order. */
typedef struct qstd_tokenMatcherResultWord {
  qstd_vector_qstd_tokenMatcherResult positions;
} qstd_tokenMatcherResultWord;

QOC_DECLARE_OBJECT(qstd_tokenMatcherResultWord)

/** Gives the address of the positions, which stay the word's. @return 0 */
QOC_API qsys_status qstd_tokenMatcherResultWord_getPositions(const qstd_tokenMatcherResultWord *word,
                                                             const qstd_vector_qstd_tokenMatcherResult **positions);
/** *isEqual becomes 1 when the words are equal position by position, else 0. */
QOC_API qsys_status qstd_tokenMatcherResultWord_compareEqual(const qstd_tokenMatcherResultWord *a,
                                                             const qstd_tokenMatcherResultWord *b, qsys_bool *isEqual);

QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qstd_tokenMatcherResultWord, qstd_tokenMatcherResultWord)
QOC_DECLARE_VECTOR_COMPARE_EQUAL(qstd_vector_qstd_tokenMatcherResultWord)

QOC_END_DECLS

#endif
