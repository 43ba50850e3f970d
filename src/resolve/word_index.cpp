// The words of a dictionary in order.

#include "resolve/word_index.hpp"

#include <algorithm>
#include <new>

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"

namespace qoc {

void WordIndex::reserve(std::size_t numWords, std::size_t numCodes) {
  words_.reserve(numWords);
  codes_.reserve(numCodes);
}

void WordIndex::add(const qoc_ocrDictionaryLexicon &lexicon) {
  WorkMeter meter;
  const auto number = static_cast<std::int32_t>(lists_.size());
  const std::size_t first = words_.size();
  for (const qoc_ocrDictionaryString &string : viewAs<qoc_ocrDictionaryString>(lexicon.strings)) {
    const auto word = viewAs<qoc_ocrDictionaryChar>(string.characters);
    meter.spend(8 + word.size());
    // In a lexicon so many characters take 32 GiB.
    if (QOC_NEVER(word.size() > UINT32_MAX - codes_.size())) {
      throw std::bad_alloc();  // More than words can tell apart.
    }
    words_.push_back({static_cast<std::uint32_t>(codes_.size()), static_cast<std::uint32_t>(word.size()), number});
    for (const qoc_ocrDictionaryChar &character : word) codes_.push_back(character.code);
  }
  lists_.push_back({first, words_.size(), holdIndex(lexicon)});
  hasIndexes_ = hasIndexes_ && (lists_.back().index != nullptr || first == words_.size());
}

void WordIndex::finish() {
  // Most words differ in their first characters, which are compared at once.
  struct Entry {
    std::uint64_t key;
    std::uint32_t number;
  };
  WorkMeter meter;
  std::vector<Entry> entries;
  entries.reserve(words_.size());
  for (std::uint32_t number = 0; number < words_.size(); ++number) {
    meter.spend(8);
    std::uint64_t key = 0;
    int shift = 64;
    for (const Char32 code : codes(number)) {
      shift -= 8;
      key |= static_cast<std::uint64_t>(std::min<Char32>(code, 0xFE) + 1) << shift;  // 0 is the end.
      if (shift == 0 || code >= 0xFE) {
        break;
      }
    }
    entries.push_back({key, number});
  }
  const auto comesBefore = [&](const Entry &a, const Entry &b) {
    meter.spend(2);
    if (a.key != b.key) {
      return a.key < b.key;
    }
    const auto first = codes(a.number), second = codes(b.number);
    meter.spend(8 + std::min(first.size(), second.size()) / 4);
    const auto order = std::lexicographical_compare_three_way(first.begin(), first.end(), second.begin(), second.end());
    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the zero of a three-way comparison for a pointer.
    return order != 0 ? order < 0 : a.number < b.number;
  };
  std::sort(entries.begin(), entries.end(), comesBefore);
  order_.reserve(entries.size());
  places_.resize(entries.size());
  numShared_.reserve(entries.size());
  std::span<const Char32> before;
  for (const Entry &entry : entries) {
    const auto word = codes(entry.number);
    const auto differing = std::mismatch(before.begin(), before.end(), word.begin(), word.end()).first;
    meter.spend(8 + static_cast<std::size_t>(differing - before.begin()) / 4);
    places_[entry.number] = static_cast<std::uint32_t>(order_.size());
    order_.push_back(entry.number);
    numShared_.push_back(static_cast<std::uint32_t>(differing - before.begin()));
    before = word;
  }
}

std::size_t WordIndex::find(std::span<const Char32> sought) const {
  const auto comesBefore = [&](std::uint32_t number, std::span<const Char32> other) {
    const auto known = codes(number);
    return std::lexicographical_compare(known.begin(), known.end(), other.begin(), other.end());
  };
  const auto found = std::lower_bound(order_.begin(), order_.end(), sought, comesBefore);
  if (found == order_.end()) {
    return size();
  }
  const auto known = codes(*found);
  const bool isIt = std::equal(known.begin(), known.end(), sought.begin(), sought.end());
  return isIt ? static_cast<std::size_t>(found - order_.begin()) : size();
}

std::int32_t WordIndex::numShorter(const List &list, std::int64_t length) const {
  const std::span<const Word> words = std::span(words_).subspan(list.first, list.end - list.first);
  const auto longer =
      std::partition_point(words.begin(), words.end(), [&](const Word &word) { return word.length < length; });
  return static_cast<std::int32_t>(longer - words.begin());
}

}  // namespace qoc
