#pragma once
// The edits between a word and a reading, followed letter by letter for all their alignments at once.
//
// State j holds, as bit i, whether what was read of the word so far can be made of the first i positions with at most j
// edits (Wu and Manber, 1992). A letter that matches position i moves the bit from i to i + 1; a letter without
// position keeps it, a substituted one moves it, and a position without letter moves it at once, each from the states
// of one edit less. A letter's matches are a row of bits, so candidates, equivalents and wildcards cost nothing.
//
//     reading "ac", one edit:   start {0} {0 1};  after 'a' {1} {0 1 2};  after 'b' {} {1 2};  after 'c' {} {2}: "abc"
//     takes one edit
//
// Which edits there may be can be narrowed down to some positions; where all may be everywhere that takes no
// instruction.
//
// A ceiling on the edits made before the reading's position i is a mask on state j: the bit i is kept only where j
// edits are allowed so early. The alignments that are left are those that stay below the ceiling; see WordTrie for what
// it is good for.

#include <array>
#include <bit>
#include <cstdint>

namespace qoc {

/// Every edit, at every position.
struct AllEdits {
  static constexpr std::uint64_t missing = ~std::uint64_t{0}, substituted = missing, extra = missing;
};

/// Some edits: bits of the positions that may be substituted, or extra, and of those in front of which a letter may be
/// missing.
struct SomeEdits {
  std::uint64_t missing = 0, substituted = 0, extra = 0;
};

/// The alignments of at most Edits edits, of the kinds that are allowed, with a reading of at most 63 positions.
template <int Edits, class Allowed = AllEdits>
class EditAutomaton {
 public:
  static constexpr int maxEdits = Edits;
  using State = std::array<std::uint64_t, Edits + 1>;

  /// Edits before position `middle` are at most `maxEarly`, and all of them at most Edits.
  EditAutomaton(int numPositions, int middle, int maxEarly, const Allowed &allowed = {}) noexcept
      : end_(std::uint64_t{1} << numPositions), allowed_(allowed) {
    const std::uint64_t all = (end_ << 1) - 1;
    const std::uint64_t early = (std::uint64_t{1} << middle) - 1;
    for (int j = 0; j <= Edits; ++j) {
      kept_[static_cast<std::size_t>(j)] = j <= maxEarly ? all : all & ~early;
    }
  }

  State start() const noexcept {
    State state;
    std::uint64_t bits = 1;
    for (std::size_t j = 0; j <= Edits; ++j) {
      state[j] = bits & kept_[j];
      bits |= (bits & allowed_.extra) << 1;
    }
    return state;
  }

  /// The state behind one more letter, whose matches are given. @return whether any alignment is left
  bool step(const State &from, std::uint64_t matches, State &to) const noexcept {
    std::uint64_t before = 0;  // The states of one edit less: as they were, and as they are now.
    std::uint64_t behind = 0;
    std::uint64_t any = 0;
    for (std::size_t j = 0; j <= Edits; ++j) {
      const std::uint64_t old = from[j];
      std::uint64_t bits = (old & matches) << 1;
      if (j > 0) {
        bits |= (before & allowed_.missing) | (before & allowed_.substituted) << 1 | (behind & allowed_.extra) << 1;
      }
      bits &= kept_[j];
      to[j] = bits;
      any |= bits;
      before = old;
      behind = bits;
    }
    return any != 0;
  }

  /// Whether some alignment may take another edit. Where none may, the last number of the state is all there is, and
  /// withoutEdits() follows it.
  bool hasEditsLeft(const State &state) const noexcept {
    std::uint64_t any = 0;
    for (std::size_t j = 0; j < Edits; ++j) {
      any |= state[j];
    }
    return any != 0;
  }
  EditAutomaton<0> withoutEdits() const noexcept { return {end_, kept_.back()}; }

  /// Whether the whole reading has been made. Under a ceiling state j need not hold what state j - 1 holds, so all are
  /// asked.
  bool accepts(const State &state) const noexcept {
    std::uint64_t any = 0;
    for (const std::uint64_t bits : state) {
      any |= bits;
    }
    return (any & end_) != 0;
  }

 private:
  template <int, class>
  friend class EditAutomaton;

  EditAutomaton(std::uint64_t end, std::uint64_t kept) noexcept : end_(end), kept_{kept} {}

  std::uint64_t end_;
  [[no_unique_address]] Allowed allowed_;
  std::array<std::uint64_t, Edits + 1> kept_;
};

}  // namespace qoc
