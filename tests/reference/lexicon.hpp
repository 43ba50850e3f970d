#ifndef QOC_TESTS_REFERENCE_LEXICON_HPP
#define QOC_TESTS_REFERENCE_LEXICON_HPP

/** @file Reference model of the word list. */

#include "reference/records.hpp"

namespace reference {

/** A word list, kept by length. Operations give the library's statuses. */
struct Lexicon {
  std::vector<Word> strings;

  int32_t setStrings(const std::vector<Word> &list);
  int32_t setStringsSafe(const std::vector<Word> &list);
  int32_t addString(const Word &word);
  int32_t removeString(const Word &word);

  bool isMatchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) const;
  ResultSet matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) const;
  ResultSet matchStrings(const std::vector<Word> &inputs, const RunParams *params, const Swaps *swaps,
                         Polls &polls) const;
};

}  // namespace reference

#endif
