// Tokens, and the records that tell how tokens matched.

#include <qoc/token.h>

#include "platform/containers/vector_family.hpp"
#include "platform/regex/records.hpp"

using qoc::present;

namespace {

constexpr qstd_token wildcard = {QOC_CHAR_ANY, {0, 0, 0, 0, 0}, 1};

Char32 codeOf(const qstd_token &token) noexcept { return qoc::isWildcard(token) ? QOC_CHAR_ANY : token.code; }

}  // namespace

QOC_DEFINE_TYPE_CHECKS(qstd_token)
QOC_DEFINE_TYPE_CHECKS(qstd_tokenMulti)
QOC_DEFINE_TYPE_CHECKS(qstd_tokenMatcherResult)
QOC_DEFINE_TYPE_CHECKS(qstd_tokenMatcherResultWord)

QOC_DEFINE_VECTOR_FAMILY(qstd_vector_qstd_token, qstd_token,
                         (qoc::plainElementTableWithDefault<qstd_token, qstd_token_construct>))
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qstd_tokenMulti, qstd_tokenMulti, qstd_tokenMulti, construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qstd_tokenMatcherResult, qstd_tokenMatcherResult, qstd_tokenMatcherResult,
                         construct)
QOC_DEFINE_OBJECT_FAMILY(qstd_vector_qstd_tokenMatcherResultWord, qstd_tokenMatcherResultWord,
                         qstd_tokenMatcherResultWord, construct)

#define QOC_COMPARE_EQUAL_BY_ELEMENT(T) \
  QOC_DEFINE_VECTOR_COMPARE_EQUAL(qstd_vector_##T, (qoc::compareElements<T, T##_compareEqual>))
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_token)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_tokenMulti)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_tokenMatcherResult)
QOC_COMPARE_EQUAL_BY_ELEMENT(qstd_tokenMatcherResultWord)

// A token -------------------------------------------------------------------------------------------------------------

qsys_status qstd_token_construct(qstd_token *object) {
  if (present({object})) {
    *object = wildcard;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_token_constructCopy(qstd_token *object, const qstd_token *source) {
  return qstd_token_assign(object, source);
}

qsys_status qstd_token_assign(qstd_token *object, const qstd_token *source) {
  if (present({object, source})) {
    *object = *source;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_token_destruct(qstd_token *object) {
  present({object});
  return QSYS_STATUS_OK;
}

qsys_status qstd_token_setChar32(qstd_token *token, Char32 code) {
  if (present({token})) {
    *token = wildcard;
    token->code = code;
    token->flags = code == QOC_CHAR_ANY ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_token_getChar(const qstd_token *token, Char32 *code) {
  if (present({token, code})) {
    *code = codeOf(*token);
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_token_compareEqual(const qstd_token *a, const qstd_token *b, qsys_bool *isEqual) {
  if (present({a, b, isEqual})) {
    *isEqual = codeOf(*a) == codeOf(*b) ? 1 : 0;
  }
  return QSYS_STATUS_OK;
}

// Several to choose from ----------------------------------------------------------------------------------------------

qsys_status qstd_tokenMulti_construct(qstd_tokenMulti *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  object->primary = wildcard;
  return qstd_vector_qstd_token_constructEmpty(&object->alternatives);
}

qsys_status qstd_tokenMulti_constructCopy(qstd_tokenMulti *object, const qstd_tokenMulti *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  object->primary = source->primary;
  return qstd_vector_qstd_token_constructCopy(&object->alternatives, &source->alternatives);
}

qsys_status qstd_tokenMulti_assign(qstd_tokenMulti *object, const qstd_tokenMulti *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qstd_token_assign(&object->alternatives, &source->alternatives));
  object->primary = source->primary;
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMulti_destruct(qstd_tokenMulti *object) {
  return present({object}) ? qstd_vector_qstd_token_destruct(&object->alternatives) : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMulti_setChar32(qstd_tokenMulti *multi, Char32 code) {
  if (!present({multi})) {
    return QSYS_STATUS_OK;
  }
  qoc::clear(multi->alternatives);
  return qstd_token_setChar32(&multi->primary, code);
}

qsys_status qstd_tokenMulti_setPrimary(qstd_tokenMulti *multi, const qstd_token *primary) {
  return present({multi, primary}) ? qstd_token_assign(&multi->primary, primary) : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMulti_setAlternatives(qstd_tokenMulti *multi, const qstd_vector_qstd_token *alternatives) {
  return present({multi, alternatives}) ? qstd_vector_qstd_token_assign(&multi->alternatives, alternatives)
                                        : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMulti_getPrimary(const qstd_tokenMulti *multi, const qstd_token **primary) {
  if (present({multi, primary})) {
    *primary = &multi->primary;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMulti_getAlternatives(const qstd_tokenMulti *multi, const qstd_vector_qstd_token **alternatives) {
  if (present({multi, alternatives})) {
    *alternatives = &multi->alternatives;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMulti_compareEqual(const qstd_tokenMulti *a, const qstd_tokenMulti *b, qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  *isEqual = codeOf(a->primary) == codeOf(b->primary) ? 1 : 0;
  return *isEqual != 0 ? qstd_vector_qstd_token_compareEqual(&a->alternatives, &b->alternatives, isEqual)
                       : QSYS_STATUS_OK;
}

// How tokens matched --------------------------------------------------------------------------------------------------

qsys_status qstd_tokenMatcherResult_construct(qstd_tokenMatcherResult *object) {
  if (!present({object})) {
    return QSYS_STATUS_OK;
  }
  object->isPrimary = 0;
  return qstd_vector_qstd_token_constructEmpty(&object->tokens);
}

qsys_status qstd_tokenMatcherResult_constructCopy(qstd_tokenMatcherResult *object,
                                                  const qstd_tokenMatcherResult *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  object->isPrimary = source->isPrimary;
  return qstd_vector_qstd_token_constructCopy(&object->tokens, &source->tokens);
}

qsys_status qstd_tokenMatcherResult_assign(qstd_tokenMatcherResult *object, const qstd_tokenMatcherResult *source) {
  if (!present({object, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qstd_token_assign(&object->tokens, &source->tokens));
  object->isPrimary = source->isPrimary;
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResult_destruct(qstd_tokenMatcherResult *object) {
  return present({object}) ? qstd_vector_qstd_token_destruct(&object->tokens) : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResult_getTokens(const qstd_tokenMatcherResult *result,
                                              const qstd_vector_qstd_token **tokens) {
  if (present({result, tokens})) {
    *tokens = &result->tokens;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResult_getIsPrimary(const qstd_tokenMatcherResult *result, qsys_bool *isPrimary) {
  if (present({result, isPrimary})) {
    *isPrimary = result->isPrimary;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResult_compareEqual(const qstd_tokenMatcherResult *a, const qstd_tokenMatcherResult *b,
                                                 qsys_bool *isEqual) {
  if (!present({a, b, isEqual})) {
    return QSYS_STATUS_OK;
  }
  *isEqual = (a->isPrimary != 0) == (b->isPrimary != 0) ? 1 : 0;
  return *isEqual != 0 ? qstd_vector_qstd_token_compareEqual(&a->tokens, &b->tokens, isEqual) : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResultWord_construct(qstd_tokenMatcherResultWord *object) {
  return present({object}) ? qstd_vector_qstd_tokenMatcherResult_constructEmpty(&object->positions) : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResultWord_constructCopy(qstd_tokenMatcherResultWord *object,
                                                      const qstd_tokenMatcherResultWord *source) {
  return present({object, source})
             ? qstd_vector_qstd_tokenMatcherResult_constructCopy(&object->positions, &source->positions)
             : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResultWord_assign(qstd_tokenMatcherResultWord *object,
                                               const qstd_tokenMatcherResultWord *source) {
  return present({object, source}) ? qstd_vector_qstd_tokenMatcherResult_assign(&object->positions, &source->positions)
                                   : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResultWord_destruct(qstd_tokenMatcherResultWord *object) {
  return present({object}) ? qstd_vector_qstd_tokenMatcherResult_destruct(&object->positions) : QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResultWord_getPositions(const qstd_tokenMatcherResultWord *word,
                                                     const qstd_vector_qstd_tokenMatcherResult **positions) {
  if (present({word, positions})) {
    *positions = &word->positions;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_tokenMatcherResultWord_compareEqual(const qstd_tokenMatcherResultWord *a,
                                                     const qstd_tokenMatcherResultWord *b, qsys_bool *isEqual) {
  return present({a, b, isEqual})
             ? qstd_vector_qstd_tokenMatcherResult_compareEqual(&a->positions, &b->positions, isEqual)
             : QSYS_STATUS_OK;
}
