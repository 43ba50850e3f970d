// The words of a dictionary in order, and the trie of their beginnings.

#include "resolve/word_index.hpp"

#include <algorithm>
#include <new>
#include <numeric>

namespace qoc {

void WordIndex::add(std::span<const qoc_ocrDictionaryChar> word, std::int32_t lexicon) {
  if (word.size() > UINT32_MAX - codes_.size()) {
    throw std::bad_alloc();  // More than nodes can tell apart.
  }
  words_.push_back({codes_.size(), word.size(), lexicon});
  for (const qoc_ocrDictionaryChar &character : word) codes_.push_back(character.code);
}

void WordIndex::finish() {
  WorkMeter meter;
  const auto codesOf = [&](std::uint32_t i) { return std::span(codes_).subspan(words_[i].begin, words_[i].length); };
  order_ = sorted(Direction::forward, codesOf, meter);
  if (words_.empty()) {
    return;
  }
  std::vector<std::uint32_t> places(size());
  std::iota(places.begin(), places.end(), 0u);
  forward_ = makeNodes(places, Direction::forward, meter);
  places = sorted(
      Direction::backward, [&](std::uint32_t k) { return word(k); }, meter);
  backward_ = makeNodes(places, Direction::backward, meter);
}

/// The numbers of all words in the order of what codesOf(number) gives, read in the direction; equal ones by number.
template <class CodesOf>
std::vector<std::uint32_t> WordIndex::sorted(Direction direction, CodesOf codesOf, WorkMeter &meter) const {
  // Most words differ in their first characters, which are compared at once.
  struct Entry {
    std::uint64_t key;
    std::uint32_t number;
  };
  const auto forEachCode = [&](std::span<const Char32> codes, auto visit) {
    for (std::size_t i = 0; i < codes.size(); ++i) {
      if (!visit(codes[direction == Direction::forward ? i : codes.size() - 1 - i])) break;
    }
  };
  std::vector<Entry> entries;
  entries.reserve(words_.size());
  for (std::uint32_t number = 0; number < words_.size(); ++number) {
    meter.spend(8);
    std::uint64_t key = 0;
    int shift = 64;
    forEachCode(codesOf(number), [&](Char32 code) {
      shift -= 8;
      key |= static_cast<std::uint64_t>(std::min<Char32>(code, 0xFE) + 1) << shift;  // 0 is the end.
      return shift > 0 && code < 0xFE;
    });
    entries.push_back({key, number});
  }
  const auto comesBefore = [&](const Entry &a, const Entry &b) {
    meter.spend(2);
    if (a.key != b.key) {
      return a.key < b.key;
    }
    const auto first = codesOf(a.number), second = codesOf(b.number);
    meter.spend(8 + std::min(first.size(), second.size()) / 4);
    const auto order =
        direction == Direction::forward
            ? std::lexicographical_compare_three_way(first.begin(), first.end(), second.begin(), second.end())
            : std::lexicographical_compare_three_way(first.rbegin(), first.rend(), second.rbegin(), second.rend());
    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the zero of a three-way comparison for a pointer.
    return order != 0 ? order < 0 : a.number < b.number;
  };
  std::sort(entries.begin(), entries.end(), comesBefore);
  std::vector<std::uint32_t> numbers;
  numbers.reserve(entries.size());
  for (const Entry &entry : entries) numbers.push_back(entry.number);
  return numbers;
}

WordIndex::Nodes WordIndex::makeNodes(std::span<const std::uint32_t> order, Direction direction,
                                      WorkMeter &meter) const {
  struct Range {
    std::size_t begin, end;  // Of the words in the order that begin as the node says.
    std::size_t depth;       // The characters of the beginning.
  };
  Nodes nodes(1);
  nodes[0].word = order[0];
  std::vector<Range> ranges = {{0, order.size(), 0}};
  for (std::size_t at = 0; at < nodes.size(); ++at) {
    auto [k, end, depth] = ranges[at];
    meter.spend(8 + 4 * (end - k));
    if (end - k == 1) {
      continue;
    }
    while (k < end && word(order[k]).size() == depth) ++k;
    nodes[at].firstChild = static_cast<std::uint32_t>(nodes.size());
    while (k < end) {
      WordNode child;
      child.code = code(order[k], depth, direction);
      child.word = order[k];
      const std::size_t begin = k;
      while (k < end && code(order[k], depth, direction) == child.code) ++k;
      nodes.push_back(child);
      ranges.push_back({begin, k, depth + 1});
      ++nodes[at].numChildren;
    }
  }
  // What lies below a node is known when it is known of all that go on from it.
  const auto counted = [](std::size_t n) {
    return static_cast<std::uint16_t>(std::min<std::size_t>(n, WordNode::maxCounted));
  };
  for (std::size_t at = nodes.size(); at-- > 0;) {
    WordNode &node = nodes[at];
    const std::size_t depth = ranges[at].depth, length = word(node.word).size();
    meter.spend(8 + (node.numChildren == 0 ? length - depth : node.numChildren));
    node.shortest = node.longest = counted(length - depth);
    if (node.numChildren == 0) {
      const std::size_t begin = words_[order_[node.word]].begin;
      node.firstChild =
          static_cast<std::uint32_t>(direction == Direction::forward ? begin + depth : begin + length - depth - 1);
      for (std::size_t i = 0; depth + i < length; ++i) node.below |= maskOf(tail(node, i, direction));
      continue;
    }
    for (const WordNode &child : std::span(nodes).subspan(node.firstChild, node.numChildren)) {
      node.below |= maskOf(child.code) | child.below;
      node.shortest = std::min(node.shortest, counted(child.shortest + std::size_t{1}));
      node.longest = std::max(node.longest, counted(child.longest + std::size_t{1}));
    }
  }
  return nodes;
}

std::span<const Char32> WordIndex::word(std::size_t k) const {
  const Word &word = words_[order_[k]];
  return {codes_.data() + word.begin, word.length};
}

std::size_t WordIndex::find(std::span<const Char32> sought) const {
  const auto comesBefore = [&](std::uint32_t k, std::span<const Char32> other) {
    const Char32 *first = codes_.data() + words_[k].begin;
    return std::lexicographical_compare(first, first + words_[k].length, other.begin(), other.end());
  };
  const auto found = std::lower_bound(order_.begin(), order_.end(), sought, comesBefore);
  if (found == order_.end()) {
    return size();
  }
  const auto place = static_cast<std::size_t>(found - order_.begin());
  const auto known = word(place);
  return std::equal(known.begin(), known.end(), sought.begin(), sought.end()) ? place : size();
}

}  // namespace qoc
