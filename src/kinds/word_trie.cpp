#include "kinds/word_trie.hpp"

#include <algorithm>
#include <bit>
#include <utility>

namespace qoc {

/// Sorts the words, then writes the nodes from the root down.
class WordTrie::Builder {
 public:
  Builder(const WordLetters &words, Direction direction, WorkMeter &meter) : direction_(direction), meter_(meter) {
    std::size_t numWords = 0;
    const auto groups = words.groups();
    for (std::size_t g = 0; g < groups.size() && groups[g].length <= maxLength; ++g) {
      numWords = static_cast<std::size_t>(words.endOf(g));
    }
    entries_.reserve(numWords);
    for (std::size_t g = 0; g < groups.size() && groups[g].length <= maxLength; ++g) {
      for (std::int32_t word = groups[g].first; word < words.endOf(g); ++word) {
        meter_.spend(8);
        entries_.push_back(makeEntry(words.lettersOf(groups[g], word), groups[g].length, word));
      }
    }
    std::ranges::sort(entries_, [this](const Entry &a, const Entry &b) {
      meter_.spend(2);
      return isBefore(a, b);
    });
  }

  void removeEquals(std::vector<std::pair<std::int32_t, std::int32_t>> *equals) {
    std::size_t numKept = 0;
    for (const Entry &entry : entries_) {
      meter_.spend(4);
      if (numKept > 0 && haveSameLetters(entries_[numKept - 1], entry)) {
        if (equals != nullptr) {
          equals->emplace_back(entries_[numKept - 1].word, entry.word);
        }
      } else {
        entries_[numKept++] = entry;
      }
    }
    entries_.resize(numKept);
  }

  std::vector<std::uint8_t> write() {
    nodes_.reserve(20 * entries_.size() + 64);
    if (!entries_.empty()) {
      writeNode(0, entries_.size(), 0);
    }
    nodes_.shrink_to_fit();
    return std::move(nodes_);
  }

 private:
  /// A word; the first eight letters in the trie's direction make a number that sorts as they do.
  struct Entry {
    std::uint64_t head;
    const Letter *letters;
    std::int32_t length, word;
  };

  Letter letterAt(const Entry &entry, std::int32_t depth) const noexcept {
    if (depth < 8) {
      return static_cast<Letter>(entry.head >> (56 - 8 * depth));
    }
    return depth >= entry.length ? Letter{0}
                                 : entry.letters[direction_ == Direction::forward ? depth : entry.length - 1 - depth];
  }

  Entry makeEntry(const Letter *letters, std::int32_t length, std::int32_t word) const noexcept {
    Entry entry = {0, letters, length, word};
    for (std::int32_t i = 0; i < std::min(length, 8); ++i) {
      const Letter letter = letters[direction_ == Direction::forward ? i : length - 1 - i];
      entry.head |= std::uint64_t{letter} << (56 - 8 * i);
    }
    return entry;
  }

  bool isBefore(const Entry &a, const Entry &b) const noexcept {
    if (a.head != b.head) {
      return a.head < b.head;
    }
    for (std::int32_t depth = 8; depth < std::min(a.length, b.length); ++depth) {
      if (letterAt(a, depth) != letterAt(b, depth)) {
        return letterAt(a, depth) < letterAt(b, depth);
      }
    }
    return a.length != b.length ? a.length < b.length : a.word < b.word;
  }

  bool haveSameLetters(const Entry &a, const Entry &b) const noexcept {
    return a.head == b.head && a.length == b.length && std::equal(a.letters, a.letters + a.length, b.letters);
  }

  /// Writes the node of entries [first, end), which have their first `depth` letters in common.
  void writeNode(std::size_t first, std::size_t end, std::int32_t depth) {
    std::int32_t fork = depth;
    // Entries are sorted and different: what the first and the last have in common, all have.
    const Entry &low = entries_[first];
    const Entry &high = entries_[end - 1];
    const std::int32_t shorter = std::min(low.length, high.length);
    while (fork < shorter && letterAt(low, fork) == letterAt(high, fork)) {
      ++fork;
    }
    const bool isLeaf = end - first == 1;
    meter_.spend(8 + 2 * (end - first));  // Every node goes through its entries, to find its branches.
    nodes_.push_back(static_cast<std::uint8_t>((fork - depth) | (isLeaf ? leafFlag : 0)));
    for (std::int32_t i = depth; i < fork; ++i) {
      nodes_.push_back(letterAt(low, i));
    }
    if (isLeaf) {
      append(static_cast<std::uint32_t>(low.word));
      return;
    }
    const std::size_t countPlace = nodes_.size();
    nodes_.push_back(0);
    std::size_t numBranches = 0;
    for (std::size_t i = first; i < end; ++i) {
      if (const Letter letter = letterAt(entries_[i], fork); i == first || nodes_.back() != letter) {
        nodes_.push_back(letter);
        ++numBranches;
      }
    }
    nodes_[countPlace] = static_cast<std::uint8_t>(numBranches - 1);
    std::size_t target = nodes_.size();
    nodes_.resize(nodes_.size() + 4 * numBranches);
    for (std::size_t i = first; i < end; target += 4) {
      const Letter letter = letterAt(entries_[i], fork);
      std::size_t next = i + 1;
      while (next < end && letterAt(entries_[next], fork) == letter) {
        ++next;
      }
      const auto value =
          letter == 0 ? static_cast<std::uint32_t>(entries_[i].word) : static_cast<std::uint32_t>(nodes_.size());
      std::memcpy(nodes_.data() + target, &value, sizeof value);
      if (letter != 0) {
        writeNode(i, next, fork + 1);
      }
      i = next;
    }
  }

  void append(std::uint32_t value) {
    nodes_.resize(nodes_.size() + sizeof value);
    std::memcpy(nodes_.data() + nodes_.size() - sizeof value, &value, sizeof value);
  }

  Direction direction_;
  WorkMeter &meter_;
  std::vector<Entry> entries_;
  std::vector<std::uint8_t> nodes_;
};

WordTrie::WordTrie(const WordLetters &words, Direction direction, WorkMeter &meter,
                   std::vector<std::pair<std::int32_t, std::int32_t>> *equals) {
  Builder builder(words, direction, meter);
  builder.removeEquals(equals);
  nodes_ = builder.write();
}

}  // namespace qoc
