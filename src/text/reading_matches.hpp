#pragma once
// Which positions of a reading a character matches, as bits, worked out once for the reading.
//
// A character matches a position when it equals a candidate, or is equivalent to one under the swap set. Equivalence is
// transitive, so the codes fall into classes, and every class has one code that stands for it. The reading is gone
// through once: each candidate sets its position in the row of its class. What a character matches is then the row of
// its class. The reserved codes have rows of their own: the empty code matches nothing; the code that matches anything,
// as a candidate, sets its position in every row but that one.
//
// Very long readings may hold so many classes that their rows would take much memory; of those a row is made only when
// it is asked for.

#include <qoc/swap_char_set.h>

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "text/views.hpp"

namespace qoc {

/// A window of a reading: positions [start, end).
struct Window {
  std::int32_t start, end;
  std::int32_t size() const noexcept { return end - start; }
};

/// The answers of qoc_ocrDictionaryChar_isMatchMulti for a reading, a bit for every position, by character code.
///
/// Neither the reading nor the set may change while the object lives.
class ReadingMatches {
 public:
  ReadingMatches(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set);
  ReadingMatches(const ReadingMatches &) = delete;
  ReadingMatches &operator=(const ReadingMatches &) = delete;

  /// The positions that match a code, as numWords() words of bits; valid until the object dies.
  const std::uint64_t *row(Char32 code) const {
    if (isLong_) {
      return rowOnDemand(code);
    }
    const std::size_t index = code < std::size(small_) && small_[code] != 0 ? small_[code] : findRow(code);
    return rows_.data() + index * numWords_;
  }

  static bool test(const std::uint64_t *bits, std::int32_t position) noexcept {
    return (bits[position / 64] >> (position % 64) & 1u) != 0;
  }

  /// The bit of a code in signatures that readings and words have in common.
  static std::uint64_t codeBit(Char32 code) noexcept { return std::uint64_t{1} << (code * 0x9E3779B1u >> 26); }
  /// The bits of all codes that match some position, and perhaps of others; worked out when it is asked for first.
  std::uint64_t coveredCodes() const {
    if (!hasCoveredCodes_) {
      coveredCodes_ = findCoveredCodes();
      hasCoveredCodes_ = true;
    }
    return coveredCodes_;
  }

  const qoc_ocrDictionaryStringMulti &reading() const noexcept { return reading_; }
  const qoc_swapCharSet *set() const noexcept { return set_; }
  std::int32_t size() const noexcept { return sizeOf(reading_); }
  std::size_t numWords() const noexcept { return numWords_; }

 private:
  /// The first rows; those of the classes that the reading holds stand behind them.
  enum : std::uint32_t { rowOfEmpty = 0, rowOfAny = 1, rowOfOthers = 2, numFixedRows = 3 };

  void fillRows();
  std::uint64_t findCoveredCodes() const;
  const std::uint64_t *rowOnDemand(Char32 code) const;
  std::size_t findRow(Char32 code) const noexcept;
  std::uint32_t addRow(Char32 representative);
  Char32 representativeOf(Char32 code) const noexcept;
  std::uint32_t *slotOf(Char32 representative) noexcept;
  const std::uint32_t *slotOf(Char32 representative) const noexcept;
  void growSlots();

  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;  // Null where no group has a character.
  std::size_t numWords_;
  bool isLong_;
  std::vector<std::uint64_t> rows_;
  std::uint32_t small_[128] = {};        // The rows of 7-bit codes that stand for their class; 0 where there is none.
  std::vector<Char32> representatives_;  // Of the rows behind the fixed ones.
  std::vector<std::uint32_t> slots_;  // Hash table of the rows whose representatives have more than 7 bits; 0 is free.
  mutable std::uint64_t coveredCodes_ = 0;
  mutable bool hasCoveredCodes_ = false;
  mutable std::unordered_map<Char32, std::vector<std::uint64_t>> onDemand_;  // Rows of a long reading, by code.
};

/// A dictionary string beside a reading: for each of its characters the positions that match it.
class WordRows {
 public:
  void set(Characters word, const ReadingMatches &matches);
  std::int32_t size() const noexcept { return static_cast<std::int32_t>(rows_.size()); }
  bool isMatch(std::int32_t i, std::int32_t position) const noexcept {
    return ReadingMatches::test(rows_[static_cast<std::size_t>(i)], position);
  }
  /// What character i matches in a window of at most 64 positions, the first of which is bit 0; the bits behind the
  /// window's are of no meaning.
  std::uint64_t matchesIn(std::int32_t i, Window window) const noexcept {
    const std::uint64_t *row = rows_[static_cast<std::size_t>(i)] + window.start / 64;
    const int shift = window.start % 64;
    const bool isSplit = shift + window.size() > 64;
    return window.size() == 0 ? 0 : row[0] >> shift | (isSplit ? row[1] << (64 - shift) : 0);
  }

 private:
  std::vector<const std::uint64_t *> rows_;
};

}  // namespace qoc
