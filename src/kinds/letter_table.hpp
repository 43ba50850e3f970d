#pragma once
// The letters of a word list: its character codes, numbered so that a letter is one byte.

#include <qoc/dictionary_string.h>

#include <array>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/system/work_meter.hpp"
#include "text/reading_matches.hpp"

namespace qoc {

/// A letter of a word list: 1 to 255; 0 is the end of a word.
using Letter = std::uint8_t;

/// For every letter of a list the positions of a reading that it matches, a bit each.
using LetterMatches = std::array<std::uint64_t, 256>;

/// What going through a word once costs, in a meter's units.
inline std::size_t unitsOf(const qoc_ocrDictionaryString &word) noexcept { return 4 + view(word).size(); }

/// Numbers codes. In lists of more different codes than there are letters the rarest share letters; such a letter
/// matches where one of its codes does. Whatever is looked up by letters then finds at least what it would find by
/// codes.
class LetterTable {
 public:
  /// Throws Interrupted, as all that makes an index does, when the meter's check says so.
  LetterTable(std::span<const qoc_ocrDictionaryString> words, WorkMeter &meter);

  /// The letter of a code; 0 for those that the list does not have.
  Letter letterOf(Char32 code) const noexcept {
    if (code < small_.size()) {
      return small_[code];
    }
    const auto found = others_.find(code);
    return found != others_.end() ? found->second : Letter{0};
  }

  /// Letters are at most this.
  std::size_t maxLetter() const noexcept { return maxLetter_; }
  /// The rows of a window of at most 63 positions, by letter; bit 0 is the window's first position.
  void fill(const ReadingMatches &matches, Window window, LetterMatches &rows) const;
  /// The bits (see signatureBit) of the letters that match some position of a reading of any length.
  std::uint64_t coveredBits(const ReadingMatches &matches) const;

  /// The letter's bit in a word's signature; frequent letters have bits of their own.
  static std::uint64_t signatureBit(Letter letter) noexcept { return std::uint64_t{1} << (letter % 64); }

  std::size_t numBytes() const noexcept {
    return codes_.capacity() * sizeof(Code) + others_.size() * (sizeof(Char32) + 3 * sizeof(void *));
  }

 private:
  struct Code {
    Char32 code;
    Letter letter;
  };
  std::vector<Code> codes_;  // Most frequent first.
  std::size_t maxLetter_ = 0;
  std::array<Letter, 256> small_ = {};
  std::unordered_map<Char32, Letter> others_;
};

}  // namespace qoc
