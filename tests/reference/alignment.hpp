#ifndef QOC_TESTS_REFERENCE_ALIGNMENT_HPP
#define QOC_TESTS_REFERENCE_ALIGNMENT_HPP

/** @file Reference model of characters' matching, edit distance, match test and the two alignments. */

#include "reference/records.hpp"

namespace reference {

/** The characters that can be reached from a code through groups, ascending and without the code itself.
 * @param[in] swaps may be null, here and below: no swaps */
std::vector<uint32_t> equivalents(uint32_t code, const Swaps *swaps);
/** The equivalents of the first candidate, then the other candidates and their equivalents, each once and the first
 * candidate's code never through an equivalence. */
std::vector<uint32_t> equivalentsMulti(const Position &candidates, const Swaps *swaps);
bool isMatch(const Character &a, const Character &b, const Swaps *swaps);
bool isMatchMulti(const Character &a, const Position &candidates, const Swaps *swaps);
/** Grades a match; noMatch where there is none. */
int32_t matchStatus(const Character &a, const Position &candidates, const Swaps *swaps);

bool satisfiesStringLength(const RunParams *params, int32_t length);

/** The window of `length` elements from `start` on, padded behind the end with its own first element. */
template <typename T>
std::vector<T> substrExtend(const std::vector<T> &string, int32_t start, int32_t length) {
  std::vector<T> out;
  int32_t size = static_cast<int32_t>(string.size());
  if (length <= 0) return out;
  if (start >= size) {
    out.resize(static_cast<size_t>(length));
    return out;
  }
  for (int32_t i = start; i < start + length; ++i) out.push_back(string[static_cast<size_t>(i < size ? i : start)]);
  return out;
}

/** One position with the single candidate for each character. */
Reading toReading(const Word &string);

int32_t editDistance(const Word &first, const Word &second, const Swaps *swaps);

/** Whether some window of the reading is the word within the allowed edits. @param[in] params may be null, here and
 * below */
bool isMatchMulti(const Word &word, const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls);
bool isMatch(const Word &word, const Word &input, const RunParams *params, const Swaps *swaps, Polls &polls);

/** The alignments of a word with a plain input. */
ResultSet match(const Word &word, const Word &input, const RunParams *params, const Swaps *swaps, Polls &polls);
/** The alignments of a word with a reading. */
ResultSet matchMulti(const Word &word, const Reading &reading, const RunParams *params, const Swaps *swaps,
                     Polls &polls);

}  // namespace reference

#endif
