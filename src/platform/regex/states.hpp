#pragma once
// Sets of an automaton's positions and the steps from set to set, in two forms with one face: a word for up to 64
// positions, words for more. Everything that matches is written once, for either.

#include <bit>
#include <utility>

#include "platform/regex/expression.hpp"
#include "platform/regex/tree_walk.hpp"

namespace qoc {

/// A set of any number of positions.
class WideSet {
 public:
  explicit WideSet(std::size_t numWords = 0) : words_(numWords, 0) {}

  WideSet &operator&=(const WideSet &other) noexcept {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      words_[i] &= other.words_[i];
    }
    return *this;
  }
  WideSet &operator|=(const WideSet &other) noexcept {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      words_[i] |= other.words_[i];
    }
    return *this;
  }
  friend WideSet operator&(WideSet a, const WideSet &b) noexcept {
    a &= b;
    return a;
  }
  friend WideSet operator|(WideSet a, const WideSet &b) noexcept {
    a |= b;
    return a;
  }

  void insert(std::int32_t position) noexcept { word(position) |= std::uint64_t{1} << (position % 64); }
  bool contains(std::int32_t position) const noexcept {
    return (words_[static_cast<std::size_t>(position) / 64] >> (position % 64) & 1) != 0;
  }
  bool isEmpty() const noexcept {
    for (const std::uint64_t bits : words_) {
      if (bits != 0) {
        return false;
      }
    }
    return true;
  }
  bool intersects(const WideSet &other) const noexcept {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      if ((words_[i] & other.words_[i]) != 0) {
        return true;
      }
    }
    return false;
  }
  /// With every position moved on by one; the last one of all words goes.
  WideSet movedUp() const {
    WideSet moved(words_.size());
    for (std::size_t i = 0; i < words_.size(); ++i) {
      moved.words_[i] = words_[i] << 1 | (i > 0 ? words_[i - 1] >> 63 : 0);
    }
    return moved;
  }
  /// With every position moved back by one; the first one goes.
  WideSet movedDown() const {
    WideSet moved(words_.size());
    for (std::size_t i = 0; i < words_.size(); ++i) {
      moved.words_[i] = words_[i] >> 1 | (i + 1 < words_.size() ? words_[i + 1] << 63 : 0);
    }
    return moved;
  }
  template <class Visit>
  void forEach(Visit visit) const noexcept(noexcept(visit(0))) {
    for (std::size_t i = 0; i < words_.size(); ++i) {
      for (std::uint64_t bits = words_[i]; bits != 0; bits &= bits - 1) {
        visit(static_cast<std::int32_t>(i * 64) + std::countr_zero(bits));
      }
    }
  }

 private:
  std::uint64_t &word(std::int32_t position) noexcept { return words_[static_cast<std::size_t>(position) / 64]; }
  std::vector<std::uint64_t> words_;
};

// A word with the same operations, as free functions, because a word is no class.
inline void insert(std::uint64_t &set, std::int32_t position) noexcept { set |= std::uint64_t{1} << position; }
inline bool contains(std::uint64_t set, std::int32_t position) noexcept { return (set >> position & 1) != 0; }
inline bool isEmpty(std::uint64_t set) noexcept { return set == 0; }
inline bool intersects(std::uint64_t a, std::uint64_t b) noexcept { return (a & b) != 0; }
inline std::uint64_t movedUp(std::uint64_t set) noexcept { return set << 1; }
inline std::uint64_t movedDown(std::uint64_t set) noexcept { return set >> 1; }
template <class Visit>
void forEach(std::uint64_t set, Visit visit) {
  for (; set != 0; set &= set - 1) {
    visit(std::countr_zero(set));
  }
}
inline void insert(WideSet &set, std::int32_t position) noexcept { set.insert(position); }
inline bool contains(const WideSet &set, std::int32_t position) noexcept { return set.contains(position); }
inline bool isEmpty(const WideSet &set) noexcept { return set.isEmpty(); }
inline bool intersects(const WideSet &a, const WideSet &b) noexcept { return a.intersects(b); }
inline WideSet movedUp(const WideSet &set) { return set.movedUp(); }
inline WideSet movedDown(const WideSet &set) { return set.movedDown(); }
template <class Visit>
void forEach(const WideSet &set, Visit visit) {
  set.forEach(visit);
}

/// The automaton of an expression of up to 64 positions.
class NarrowStates {
 public:
  using Set = std::uint64_t;

  explicit NarrowStates(const Expression &expression) : expression_(expression), tables_(expression.narrow()) {}

  const Expression &expression() const noexcept { return expression_; }
  std::int32_t numPositions() const noexcept { return expression_.numPositions(); }
  bool isNullable() const noexcept { return expression_.isNullable(); }
  Set none() const noexcept { return 0; }
  Set all() const noexcept { return tables_.all; }
  Set first() const noexcept { return tables_.first; }
  Set last() const noexcept { return tables_.last; }

  /// Adds the positions that accept a code.
  void addAccepting(Char32 code, Set &set) const {
    if (code < NarrowTables::numQuick) {
      set |= tables_.quick[code];
    } else {
      addRare(code, set);
    }
  }

  Set followersOf(Set set) const noexcept {
    Set followers = (set & tables_.chained) << 1;
    for (Set rest = set & tables_.branching; rest != 0; rest &= rest - 1) {
      followers |= tables_.followers[std::countr_zero(rest)];
    }
    return followers;
  }
  Set predecessorsOf(Set set) const noexcept {
    Set predecessors = set >> 1 & tables_.chained;
    for (Set rest = set & tables_.joining; rest != 0; rest &= rest - 1) {
      predecessors |= tables_.predecessors[std::countr_zero(rest)];
    }
    return predecessors;
  }

  /// Says that the matcher has made a number of steps.
  qsys_status tick(std::size_t numSteps) { return meter_.add(4 * numSteps); }
  WorkMeter &meter() noexcept { return meter_; }

 private:
  void addRare(Char32 code, Set &set) const {
    if (code == QOC_CHAR_EMPTY) {
      return;
    }
    if (code == QOC_CHAR_ANY) {
      set |= tables_.all;
      return;
    }
    const std::vector<CodeSet> &sets = expression_.sets();
    for (std::size_t i = 0; i < sets.size(); ++i) {
      if (sets[i].contains(code)) {
        set |= tables_.positionsOfSet[i];
      }
    }
  }

  const Expression &expression_;
  const NarrowTables &tables_;
  WorkMeter meter_;
};

/// The automaton of an expression of any size.
class WideStates {
 public:
  using Set = WideSet;

  explicit WideStates(const Expression &expression)
      : expression_(expression),
        walk_(expression),
        none_(static_cast<std::size_t>(expression.numPositions()) / 64 + 1),
        all_(none_),
        first_(none_),
        last_(none_) {
    for (std::int32_t p = 0; p < expression.numPositions(); ++p) {
      all_.insert(p);
    }
    walk_.begin();
    walk_.pushBefore(0);
    walk_.forward([&](std::int32_t position) { first_.insert(position); });
    walk_.begin();
    walk_.pushBehind(0);
    walk_.backward([&](std::int32_t position) { last_.insert(position); });
  }

  const Expression &expression() const noexcept { return expression_; }
  std::int32_t numPositions() const noexcept { return expression_.numPositions(); }
  bool isNullable() const noexcept { return expression_.isNullable(); }
  const Set &none() const noexcept { return none_; }
  const Set &all() const noexcept { return all_; }
  const Set &first() const noexcept { return first_; }
  const Set &last() const noexcept { return last_; }

  /// Adds the positions that accept a code.
  void addAccepting(Char32 code, Set &set) const {
    if (code == QOC_CHAR_EMPTY) {
      return;
    }
    if (code == QOC_CHAR_ANY) {
      set |= all_;
      return;
    }
    const std::vector<CodeSet> &sets = expression_.sets();
    std::vector<bool> isAccepting(sets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
      isAccepting[i] = sets[i].contains(code);
    }
    for (std::int32_t p = 0; p < expression_.numPositions(); ++p) {
      if (isAccepting[static_cast<std::size_t>(expression_.setOf(p))]) {
        set.insert(p);
      }
    }
  }

  Set followersOf(const Set &set) {
    Set followers = none_;
    walk_.begin();
    set.forEach([&](std::int32_t p) noexcept { walk_.pushBehind(expression_.nodeOf(p)); });
    walk_.forward([&](std::int32_t p) { followers.insert(p); });
    return followers;
  }
  Set predecessorsOf(const Set &set) {
    Set predecessors = none_;
    walk_.begin();
    set.forEach([&](std::int32_t p) noexcept { walk_.pushBefore(expression_.nodeOf(p)); });
    walk_.backward([&](std::int32_t p) { predecessors.insert(p); });
    return predecessors;
  }

  /// Says that the matcher has made a number of steps.
  qsys_status tick(std::size_t numSteps) { return meter_.add(numSteps * expression_.nodes().size()); }
  WorkMeter &meter() noexcept { return meter_; }

 private:
  const Expression &expression_;
  SetWalk walk_;
  Set none_, all_, first_, last_;
  WorkMeter meter_;
};

/// Runs body(states) with the form of automaton that the expression needs.
template <class Body>
auto withStates(const Expression &expression, Body body) {
  if (expression.isNarrow()) {
    NarrowStates states(expression);
    return body(states);
  }
  WideStates states(expression);
  return body(states);
}

}  // namespace qoc
