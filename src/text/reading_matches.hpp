#pragma once
// Which positions of a reading a character matches, worked out once for every character that is asked for.

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

/// The answers of qoc_ocrDictionaryChar_isMatchMulti for a reading, a bit for every position, kept by character code.
///
/// Neither the reading nor the set may change while the object lives.
class ReadingMatches {
 public:
  ReadingMatches(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set)
      : reading_(reading), set_(set), numWords_((view(reading).size() + 63) / 64) {}

  /// The positions that match a code, as bits; valid until the object dies.
  qsys_status row(Char32 code, const std::uint64_t *&bits);

  static bool test(const std::uint64_t *bits, std::int32_t position) noexcept {
    return (bits[position / 64] >> (position % 64) & 1u) != 0;
  }

  const qoc_ocrDictionaryStringMulti &reading() const noexcept { return reading_; }
  const qoc_swapCharSet *set() const noexcept { return set_; }
  std::int32_t size() const noexcept { return sizeOf(reading_); }

 private:
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_swapCharSet *set_;
  std::size_t numWords_;
  const std::uint64_t *small_[128] = {};  // The rows of 7-bit codes, which are most.
  std::unordered_map<Char32, std::vector<std::uint64_t>> rows_;
};

/// A dictionary string beside a reading: for each of its characters the positions that match it.
class WordRows {
 public:
  qsys_status set(Characters word, ReadingMatches &matches);
  std::int32_t size() const noexcept { return static_cast<std::int32_t>(rows_.size()); }
  bool isMatch(std::int32_t i, std::int32_t position) const noexcept {
    return ReadingMatches::test(rows_[static_cast<std::size_t>(i)], position);
  }

 private:
  std::vector<const std::uint64_t *> rows_;
};

}  // namespace qoc
