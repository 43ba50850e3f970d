#pragma once
// The words of a list as letters, one behind the other in the list's order: shortest first.

#include <cstdint>
#include <span>
#include <vector>

#include "kinds/letter_table.hpp"

namespace qoc {

class WordLetters {
 public:
  /// Words of one length stand together: `first` is the first of them, `place` that of its first letter.
  struct Group {
    std::int32_t length, first;
    std::size_t place;
  };

  WordLetters(std::span<const qoc_ocrDictionaryString> words, const LetterTable &table, WorkMeter &meter);

  std::int32_t numWords() const noexcept { return numWords_; }
  /// The groups, shortest first.
  std::span<const Group> groups() const noexcept { return groups_; }
  /// The end of group g: the first word of the next, or the number of words.
  std::int32_t endOf(std::size_t g) const noexcept { return g + 1 < groups_.size() ? groups_[g + 1].first : numWords_; }
  /// The letters of the words of a group from the given word on; one word's follow the other's.
  const Letter *lettersOf(const Group &group, std::int32_t word) const noexcept {
    return letters_.data() + group.place +
           static_cast<std::size_t>(word - group.first) * static_cast<std::size_t>(group.length);
  }
  std::size_t numLetters() const noexcept { return letters_.size(); }

 private:
  std::vector<Letter> letters_;
  std::vector<Group> groups_;
  std::int32_t numWords_;
};

}  // namespace qoc
