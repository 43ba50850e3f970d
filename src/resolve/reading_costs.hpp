#pragma once
// What a reading says about every character that a text may have at one of its positions, in points that it loses.

#include <qoc/resolver.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace qoc {

/// A loss; totals of long readings do not fit 32 bits.
using Cost = std::int64_t;
inline constexpr Cost noWay = std::numeric_limits<Cost>::max() / 4;

/// What a difference from a reading without scores loses before anything else: more than all penalties of a text.
inline constexpr Cost differenceCost = Cost{1} << 42;

/// One character that a text may have at a position.
struct Choice {
  Char32 code;
  Cost cost;               ///< What it loses against the position's first candidate.
  std::int32_t candidate;  ///< The candidate that it is or stands for, or -1.
  std::int32_t score;      ///< What it counts before penalties.
};

/// The confusions of some rules, ready to be looked up. Immutable once made.
class Confusions {
 public:
  Confusions() = default;
  explicit Confusions(const qoc_ocrDictionaryResolverRules &rules);

  const qoc_ocrDictionaryConfusion *find(Char32 read, Char32 meant) const;
  /// Whether some missing character has a penalty of its own.
  bool haveMissing() const { return haveMissing_; }

 private:
  struct Entry {
    std::uint64_t key;
    std::size_t place;  // In the list.
    qoc_ocrDictionaryConfusion confusion;
  };
  std::vector<Entry> entries_;  // By rising key.
  bool haveMissing_ = false;
};

/// What differences from a reading lose under some rules.
class Penalties {
 public:
  /// @param confusions those of the rules; both outlive this
  Penalties(const qoc_ocrDictionaryResolverRules &rules, const Confusions &confusions, bool hasScores)
      : rules_(rules), confusions_(confusions), difference_(hasScores ? 0 : differenceCost) {}

  const qoc_ocrDictionaryResolverRules &rules() const { return rules_; }
  bool hasScores() const { return difference_ == 0; }
  /// Another candidate than the first, `gap` behind it.
  Cost listed(Char32 first, Char32 meant, Cost gap) const;
  Cost swapped(Char32 read, Char32 meant) const;
  /// A swap of several characters.
  Cost swappedTogether() const { return difference_ + rules_.swapPenalty; }
  Cost substituted(Cost score) const { return difference_ + std::max<Cost>(score + rules_.substitutedPenalty, 0); }
  /// What leaving the character out costs in all.
  Cost extra(Char32 read, Cost score) const;
  Cost doubled() const { return difference_ + rules_.doubledPenalty; }
  Cost missing(Char32 meant) const {
    const auto *confusion = confusions_.haveMissing() ? confusions_.find(QOC_CHAR_EMPTY, meant) : nullptr;
    return difference_ + (confusion != nullptr ? confusion->swapPenalty : rules_.missingPenalty);
  }
  /// The least that any missing character costs.
  Cost leastMissing() const;

 private:
  const qoc_ocrDictionaryResolverRules &rules_;
  const Confusions &confusions_;
  Cost difference_;
};

/// A reading under rules and swaps. Throws std::bad_alloc.
class ReadingCosts {
 public:
  ReadingCosts(const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryResolverRules &rules,
               const Confusions &confusions, const qoc_swapCharSet *set);

  const Penalties &penalties() const { return penalties_; }
  std::int32_t size() const { return static_cast<std::int32_t>(positions_.size()); }
  /// The first candidate's score; 0 where there is none.
  Cost firstScore(std::int32_t position) const { return at(position).firstScore; }
  /// The sum of the first candidates' scores.
  Cost sumOfFirst() const { return sumOfFirst_; }
  /// Everything that the position shows, each character once, by code; a wildcard among it shows every other one.
  std::span<const Choice> choices(std::int32_t position) const {
    return std::span(choices_).subspan(at(position).begin, at(position).size);
  }
  /// How the position can be the character: as a candidate or as a swap equivalent. False where it cannot.
  bool find(std::int32_t position, Char32 code, Choice &choice) const;
  /// The cost of a character that the position does not show.
  Cost substituted(std::int32_t position) const { return penalties_.substituted(firstScore(position)); }
  /// The cost of leaving the position out; `before` and `behind` stand beside it in the text (QOC_CHAR_EMPTY for none).
  Cost extra(std::int32_t position, Char32 before, Char32 behind) const;
  /// The least that leaving the position out can cost.
  Cost leastExtra(std::int32_t position) const { return std::min(at(position).extra, penalties_.doubled()); }
  /// Makes the table that `match` looks plain characters up in; worth its time where many are asked.
  void makeTable();
  /// What the character costs there; noWay where the position cannot be it.
  Cost match(std::int32_t position, Char32 code) const {
    return code < tableWidth && !table_.empty() ? table_[static_cast<std::size_t>(position) * tableWidth + code]
                                                : matchAny(position, code);
  }
  /// Whether a candidate of the position is the character or a swap equivalent of it.
  bool shows(std::int32_t position, Char32 code) const { return match(position, code) < noWay; }
  /// What the reading loses as a text that the dictionary does not describe.
  Cost freeText(const qoc_ocrDictionaryFreeText &freeText) const;

 private:
  static constexpr std::size_t tableWidth = 128;

  struct Position {
    std::size_t begin = 0, size = 0;  // Its choices.
    Cost firstScore = 0, lead = 0;
    Char32 firstCode = QOC_CHAR_EMPTY;
    Choice any = {QOC_CHAR_EMPTY, noWay, -1, 0};  // A candidate that matches every character.
    Cost extra = 0;                               // Of leaving it out.
  };

  const Position &at(std::int32_t position) const { return positions_[static_cast<std::size_t>(position)]; }
  Cost matchAny(std::int32_t position, Char32 code) const;
  void addPosition(const qoc_ocrDictionaryCharMulti &multi, const qoc_swapCharSet *set);

  Penalties penalties_;
  std::vector<Position> positions_;
  std::vector<Choice> choices_;
  std::vector<Cost> table_;
  Cost sumOfFirst_ = 0;
};

}  // namespace qoc
