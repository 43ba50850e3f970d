#ifndef QOC_CHECK_DIGIT_H
#define QOC_CHECK_DIGIT_H

/** @file Check digits: rules that tell a text that can be right from most of those that cannot. */

#include <qoc/dictionary_string.h>

QOC_BEGIN_DECLS

/**
 * Every method: name, value. The check character or characters stand last in what is checked, but for `vehicle`.
 *
 * Where a method counts letters, A is 10 and Z is 35 unless it says otherwise; only capital letters count.
 */
#define QOC_CHECK_DIGIT_METHOD_LIST(X)                                                                               \
  X(luhn, 1)      /* Modulo 10, every second digit doubled: payment cards, IMEI (ISO/IEC 7812-1, annex B). */        \
  X(gtin, 2)      /* Modulo 10, weights 3 and 1: GTIN, SSCC, ISBN-13 (GS1 General Specifications, 7.9). */           \
  X(isbn10, 3)    /* Modulo 11, weights 10 down to 1 for ten digits, X is 10: ISBN-10, ISSN (ISO 2108, ISO 3297). */ \
  X(mod11x2, 4)   /* MOD 11-2, X is 10: ISNI, ORCID (ISO/IEC 7064). */                                               \
  X(mod37x2, 5)   /* MOD 37-2 over digits and letters, * is 36: ISBT 128 (ISO/IEC 7064). */                          \
  X(mod37x36, 6)  /* MOD 37,36 over digits and letters: GRid (ISO/IEC 7064). */                                      \
  X(mod97, 7)     /* MOD 97-10 over digits and letters, two check digits: account codes, LEI (ISO/IEC 7064). */      \
  X(container, 8) /* Eleven characters, letter values without multiples of 11, modulo 11, 10 is 0 (ISO 6346). */     \
  X(vehicle, 9)   /* Seventeen characters, check character at the ninth, X is 10 (49 CFR 565.15, ISO 3779). */       \
  X(icao9303, 10) /* Modulo 10, weights 7 3 1, < is 0: travel documents (ICAO Doc 9303-3, 4.9). */

typedef int32_t qoc_checkDigitMethod; /**< One of QOC_CHECK_DIGIT_METHOD_LIST. */

#define QOC_CHECK_DIGIT_METHOD_CONSTANT(name, value) qoc_checkDigitMethod_##name = value,
enum { QOC_CHECK_DIGIT_METHOD_LIST(QOC_CHECK_DIGIT_METHOD_CONSTANT) };
#undef QOC_CHECK_DIGIT_METHOD_CONSTANT

/**
 * One check: a method over parts of a text put together.
 *
 * Characters that are ignored have no position. The parts are half-open spans of the positions that are left, put
 * together in their order; a negative bound counts from the end (-1 is before the last position), and an end of
 * QOC_CHECK_DIGIT_END is the end. No parts mean the whole text. So the parts {4, QOC_CHECK_DIGIT_END} and {0, 4} with
 * `mod97` are an account code's.
 */
typedef struct qoc_checkDigitRule {
  qoc_checkDigitMethod method;   /**< [luhn] */
  qstd_vector_qstd_span32 parts; /**< [empty] Owned. */
  qsys_bool ignoresSeparators;   /**< [1] 1: spaces and hyphens (U+0020, U+002D) do not count. */
  qstd_vectorChar32 ignored;     /**< [empty] Other characters that do not count. Owned. */
} qoc_checkDigitRule;

#define QOC_CHECK_DIGIT_END INT32_MAX /**< As the end of a part: the end of the text. */

QOC_DECLARE_OBJECT(qoc_checkDigitRule)
QOC_DECLARE_VECTOR_FAMILY(qstd_vector_qoc_checkDigitRule, qoc_checkDigitRule)

/** The method's name, such as "luhn"; "" for a number that is none. The text is constant. */
QOC_API const char *qoc_checkDigitMethod_getName(qoc_checkDigitMethod method);
/**
 * Tells whether the rule can pass any text.
 *
 * @return 0; QOC_STATUS_CHECK_METHOD_INVALID; QOC_STATUS_CHECK_PARTS_INVALID for a part that is empty whatever the
 * text; QOC_STATUS_CHECK_LENGTH_INVALID for parts that can never have the length that the method needs
 */
QOC_API qsys_status qoc_checkDigitRule_validate(const qoc_checkDigitRule *rule);
/**
 * Tells whether texts of one length can pass.
 *
 * @param[in]  length number of positions that are not ignored
 * @return 0, a status of qoc_checkDigitRule_validate, QOC_STATUS_CHECK_PARTS_INVALID where a part leaves the text, or
 *         QOC_STATUS_CHECK_LENGTH_INVALID where the parts have a length that the method does not take
 */
QOC_API qsys_status qoc_checkDigitRule_validateLength(const qoc_checkDigitRule *rule, int32_t length);
/** *isValid becomes 1 when the text passes the check; 0 when it does not, also where parts or characters do not fit.
 * @return 0 or a status of qoc_checkDigitRule_validate */
QOC_API qsys_status qoc_checkDigitRule_isValid(const qoc_checkDigitRule *rule, const qoc_ocrDictionaryString *text,
                                               qsys_bool *isValid);
/** isValid on a zero-terminated text. */
QOC_API qsys_status qoc_checkDigitRule_isValidT(const qoc_checkDigitRule *rule, const CharT *text, qsys_bool *isValid);

QOC_END_DECLS

#endif
