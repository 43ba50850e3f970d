#ifndef QOC_BASE_H
#define QOC_BASE_H

/** @file
 * What every other header needs: the export macro, the plain types of the interface, and the statuses.
 *
 * Conventions of the whole interface:
 * - Every operation returns a qsys_status; 0 or more is success, negative is failure. Results come through out-parameters.
 * - A required argument that is null is reported through qstd_assert_; the operation then ends with status 0 and touches nothing.
 * - Objects live in storage of the caller, between a successful construct and its destruct.
 * - Distinct objects may be used from different threads at once.
 */

#include <stddef.h>
#include <stdint.h>

#ifndef QOC_API
#if defined(_WIN32)
#if defined(QOC_STATIC)
#define QOC_API
#elif defined(QOC_BUILDING)
#define QOC_API __declspec(dllexport)
#else
#define QOC_API __declspec(dllimport)
#endif
#else
#define QOC_API __attribute__((visibility("default")))
#endif
#endif

#ifdef __cplusplus
#define QOC_BEGIN_DECLS extern "C" {
#define QOC_END_DECLS }
#else
#define QOC_BEGIN_DECLS
#define QOC_END_DECLS
#endif

QOC_BEGIN_DECLS

typedef int32_t qsys_status; /**< Outcome of an operation: 0 or more is success, negative is failure. */
typedef uint32_t qsys_bool;  /**< A flag, 0 or 1. */
typedef uint32_t Char32;     /**< A character code. */
typedef char CharT;          /**< A character of an 8-bit text, always read as a signed 8-bit value. */

#define QOC_CHAR_EMPTY 0xF800u        /**< The empty character: matches nothing, not even itself. */
#define QOC_CHAR_ANY 0xF801u          /**< Matches every character but the empty one. */
#define QOC_CHAR_ANY_NONSPACE 0xF802u /**< Matches every character but the space and the empty one; fieldings only. */

/**
 * Every status: name, value, sentence. The constants and qoc_status_getText both come from this list.
 */
#define QOC_STATUS_LIST(X)                                                                                             \
  X(QSYS_STATUS_OK, 0u, "success")                                                                                     \
  X(QSYS_STATUS_INTERRUPTED, 0x80000101u, "the work was interrupted on request")                                       \
  X(QSYS_STATUS_OUT_OF_MEMORY, 0x80000102u, "there is not enough memory")                                              \
  X(QSYS_STATUS_PRINT_FAILED, 0x80000103u, "the output could not be written")                                          \
  X(QSYS_STATUS_INTERNAL, 0x80000104u, "an internal error occurred")                                                   \
  X(QSTD_STATUS_SIZE_INVALID, 0x80000201u, "the size is negative or larger than a container can be")                   \
  X(QSTD_STATUS_INDEX_INVALID, 0x80000202u, "the index or range does not lie within the container")                    \
  X(QSTD_STATUS_CONTAINER_EMPTY, 0x80000203u, "the container is empty")                                                \
  X(QSTD_STATUS_REGEX_PARENTHESIS, 0x80001381u, "a parenthesis is opened and not closed, or closed and not opened")    \
  X(QSTD_STATUS_REGEX_TOO_LARGE, 0x80001382u, "the expression is too large once its counts are written out")           \
  X(QSTD_STATUS_REGEX_SYNTAX, 0x80001383u, "the expression contains something that is not understood")                 \
  X(QSTD_STATUS_REGEX_CLASS_OPEN, 0x80001384u, "a character class is opened and not closed")                           \
  X(QSTD_STATUS_REGEX_RANGE_REVERSED, 0x80001385u, "a range of a character class is in falling order")                 \
  X(QSTD_STATUS_REGEX_CLASS_EMPTY, 0x80001386u, "a character class is empty")                                          \
  X(QSTD_STATUS_REGEX_ESCAPE, 0x80001387u, "a backslash is followed by nothing, or by something that it cannot mark")  \
  X(QSTD_STATUS_REGEX_REPEAT_ALONE, 0x80001388u, "a repetition has nothing to repeat")                                 \
  X(QSTD_STATUS_REGEX_REPEAT_INVALID, 0x80001389u, "the counts of a repetition are falling or too large")              \
  X(QOC_STATUS_NO_SUCH_VALUE, 0x800013A0u, "the value does not exist in the requested form")                           \
  X(QOC_STATUS_SWAP_CONTAINED, 0x800013A1u, "the sequences of the swap are equal, or one contains the other")          \
  X(QOC_STATUS_SWAP_SAME_CHARACTER, 0x800013A2u, "the two characters of the swap are the same")                        \
  X(QOC_STATUS_INDEX_NEGATIVE, 0x800013A4u, "the index is negative")                                                   \
  X(QOC_STATUS_INDEX_TOO_BIG, 0x800013A5u, "the index is not below the number of elements")                            \
  X(QOC_STATUS_STRING_DUPLICATE, 0x800013A7u, "the string is present already, or twice in the list")                   \
  X(QOC_STATUS_STRING_EMPTY, 0x800013A8u, "the string is empty")                                                       \
  X(QOC_STATUS_STRING_ABSENT, 0x800013A9u, "the string is not present")                                                \
  X(QOC_STATUS_FIELDING_BITS_INVALID, 0x800013ABu, "the fielding bits name a class that does not exist")               \
  X(QOC_STATUS_FIELDING_POSITION_EMPTY, 0x800013ACu, "a position of the line fielding admits nothing")                 \
  X(QOC_STATUS_NOT_COMPUTED, 0x800013ADu, "the result holds no finished match")                                        \
  X(QOC_STATUS_POSITION_NEGATIVE, 0x800013AFu, "the position is negative")                                             \
  X(QOC_STATUS_POSITION_TOO_BIG, 0x800013B0u, "the position lies beyond the string")                                   \
  X(QOC_STATUS_EXPRESSION_SYNTAX, 0x800013B1u, "the regular expression contains something that is not understood")     \
  X(QOC_STATUS_EXPRESSION_PARENTHESIS, 0x800013B2u, "the regular expression has an unbalanced parenthesis")            \
  X(QOC_STATUS_EXPRESSION_CLASS_OPEN, 0x800013B3u, "the regular expression opens a class and does not close it")       \
  X(QOC_STATUS_EXPRESSION_CLASS, 0x800013B4u, "the regular expression has an empty class or a falling range")          \
  X(QOC_STATUS_EXPRESSION_ESCAPE, 0x800013B5u, "the regular expression has a malformed backslash sequence")            \
  X(QOC_STATUS_EXPRESSION_REPEAT_ALONE, 0x800013B6u, "the regular expression repeats nothing")                         \
  X(QOC_STATUS_EXPRESSION_REPEAT_INVALID, 0x800013B7u, "the regular expression has falling or too large counts")       \
  X(QOC_STATUS_EXPRESSION_TOO_LARGE, 0x800013B8u, "the regular expression is too large")                               \
  X(QOC_STATUS_LENGTHS_REVERSED, 0x800013B9u, "the smallest length is greater than the largest")                       \
  X(QOC_STATUS_MIN_LENGTH_INVALID, 0x800013BAu, "the smallest length is less than 1")                                  \
  X(QOC_STATUS_CANDIDATES_MISSING, 0x800013BEu, "a position of the reading has no candidate")                          \
  X(QOC_STATUS_LIMIT_NEGATIVE, 0x800013BFu, "a limit is negative")                                                     \
  X(QOC_STATUS_LIMIT_A_NEGATIVE, 0x800013C0u, "the first limit is negative")                                           \
  X(QOC_STATUS_LIMIT_B_NEGATIVE, 0x800013C1u, "the second limit is negative")                                          \
  X(QOC_STATUS_GROUP_RESERVED, 0x800013C2u, "a group of the swap set holds a reserved character code")                 \
  X(QOC_STATUS_GROUP_DUPLICATE, 0x800013C3u, "a group of the swap set holds a character twice")                        \
  X(QOC_STATUS_GROUP_EMPTY, 0x800013C4u, "a group of the swap set is empty")                                           \
  X(QOC_STATUS_GROUP_SINGLE, 0x800013C5u, "a group of the swap set has a single character")                            \
  X(QOC_STATUS_CHARACTER_EMPTY, 0x80001405u, "the list holds the empty character")                                     \
  X(QOC_STATUS_CHARACTER_DUPLICATE, 0x80001406u, "the list holds a character twice")                                   \
  X(QOC_STATUS_SINGLE_SWAP_EQUAL, 0x8000140Au, "the two characters of the single swap are equal")                      \
  X(QOC_STATUS_CHECK_METHOD_INVALID, 0x80001421u, "the method of the check digit does not exist")                      \
  X(QOC_STATUS_CHECK_PARTS_INVALID, 0x80001422u, "a part that the check digit covers is empty or leaves the text")     \
  X(QOC_STATUS_CHECK_LENGTH_INVALID, 0x80001423u, "the check digit's method does not take a text of this length")      \
  X(QOC_STATUS_PENALTY_NEGATIVE, 0x80001424u, "a penalty of the resolver is negative")                                 \
  X(QOC_STATUS_TEXTS_INVALID, 0x80001425u, "the resolver is to give no text, or too many")                             \
  X(QOC_STATUS_FIELDING_TOO_SHORT_FOR_LIMIT, 0x80001441u, "the line fielding is not longer than its limit")            \
  X(QOC_STATUS_FIELDING_TOO_SHORT, 0x80001442u, "the line fielding is shorter than the smallest length")               \
  X(QOC_STATUS_RANKING_VARIANT_INVALID, 0x80001445u, "the ranking variant is neither 3 nor 15")

#define QOC_STATUS_CONSTANT(name, value, text) name = (int32_t)(value),
enum qoc_statusCode { QOC_STATUS_LIST(QOC_STATUS_CONSTANT) };
#undef QOC_STATUS_CONSTANT

/**
 * Gives the sentence that describes a status.
 *
 * @param[in] status any number
 * @return a constant text: the sentence of a listed status, "success" for any other number from 0 on, "unknown status" for the rest
 */
QOC_API const char *qoc_status_getText(qsys_status status);

/** Gives the name of a listed status's constant, such as "QOC_STATUS_INDEX_NEGATIVE"; "" for a number that is not listed. */
QOC_API const char *qoc_status_getName(qsys_status status);

QOC_END_DECLS

#endif
