#ifndef QOC_TESTS_REFERENCE_RECORDS_HPP
#define QOC_TESTS_REFERENCE_RECORDS_HPP

/** @file
 * The values of the reference model: the slow, literal writing of the matching, with which the library is compared.
 *
 * The model shares nothing with the library but the record of run parameters. Every value is a plain C++ value that
 * copies.
 */

#include <cstdint>
#include <vector>

#include <qoc/run_params.h>

namespace reference {

inline constexpr uint32_t emptyCode = 0xF800;
inline constexpr uint32_t anyCode = 0xF801;
inline constexpr uint32_t anyNonspaceCode = 0xF802;
inline constexpr uint32_t space = 32;

/** Position statuses. */
enum : int32_t {
  primary = 1,
  primarySwap = 2,
  secondary = 3,
  secondarySwap = 4,
  substituted = 5,
  substitutedSpace = 6,
  noMatch = 7,
  inserted = 8,
  deleted = 9,
  deletedIgnored = 10
};

/** Modes of a result. */
enum : int32_t { modeFielding = 1, modeLexicon = 2 };

struct Character {
  uint32_t code = emptyCode;
  int32_t score = 0;
};

using Word = std::vector<Character>;      ///< A dictionary string.
using Position = std::vector<Character>;  ///< The candidates of one position, the primary one first.
using Reading = std::vector<Position>;
using RunParams = qoc_ocrDictionaryRunParams;

/** Equality of characters is that of their codes. */
inline bool sameCodes(const std::vector<Character> &a, const std::vector<Character> &b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].code != b[i].code) return false;
  return true;
}

inline bool sameCodes(const Reading &a, const Reading &b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (!sameCodes(a[i], b[i])) return false;
  return true;
}

/** One way in which a reading is a dictionary string, with the defaults of a constructed result. */
struct Result {
  bool isComputed = false;
  Reading given;
  Word dictionaryString;
  std::vector<int32_t> resultStringStatus;
  std::vector<int32_t> statusWRTInputStringSwapChar;
  int32_t resultStringLineStatus = noMatch;
  std::vector<int32_t> deleted;
  int32_t numIgnoredPrefixCharacters = 0;
  int32_t numIgnoredSuffixCharacters = 0;
  int32_t startFieldIndex = 0;
  int32_t scoreStatusMask = 3;
  int32_t mode = modeFielding;
  Reading givenSwap;
  std::vector<int32_t> inputIndices;
  Reading valid;
  int32_t numEdits = 0;
  bool ignoreDeletedSpaces = true;
  bool scoreIsCached = false;
  int32_t score = 0;
  int32_t overlapInputString = 0;
  bool numInsertedIsCached = false;
  int32_t numInserted = 0;
  int32_t orderIndex = 0;
  bool numMatchedPositionsIsCached = false;
  int32_t numMatchedPositions = 0;
};

using Results = std::vector<Result>;
using Buckets = std::vector<Results>;  ///< By number of edits.

struct ResultSet {
  bool isComputed = false;
  Results results;
};

/** One confusion of two sequences. */
struct Swap {
  std::vector<uint32_t> first, second;
};

/** What the reader confuses. */
struct Swaps {
  std::vector<std::vector<uint32_t>> groups;  ///< Of characters of which each may stand for each other.
  std::vector<Swap> swaps;                    ///< What the set was made of, where it was made of swaps.
};

/** Thrown when a poll says that the work is to end. */
struct Interrupted {};

/** Thrown where an operation fails. */
struct Failed {
  int32_t status;
};

/** Counts the polls of the attention check; the poll number `limit` (from 1) interrupts. */
struct Polls {
  int64_t count = 0;
  int64_t limit = 0;

  void poll() {
    ++count;
    if (limit > 0 && count >= limit) throw Interrupted();
  }
};

/** 32-bit sums and differences that wrap around. */
constexpr int32_t wrap(int64_t value) { return static_cast<int32_t>(static_cast<uint32_t>(value)); }

/** The size and the elements of a vector by the signed numbers that the operations count in. */
int32_t sizeOf(const auto &vector) { return static_cast<int32_t>(vector.size()); }
auto &at(auto &vector, int32_t i) { return vector[static_cast<size_t>(i)]; }

/** Whether a > b where both are read as unsigned 32-bit numbers. */
inline bool aboveUnsigned(int32_t a, int32_t b) { return static_cast<uint32_t>(a) > static_cast<uint32_t>(b); }

}  // namespace reference

#endif
