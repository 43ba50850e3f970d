#pragma once
// What a reading says about every character that a text may have at one of its positions, in points that it loses.

#include <qoc/resolver.h>

#include <algorithm>
#include <array>
#include <bitset>
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

  const qoc_ocrDictionaryConfusion *find(Char32 read, Char32 meant) const {
    return read < numPlain && !isRead_[read] ? nullptr : findAny(read, meant);
  }
  /// Whether some missing character has a penalty of its own.
  bool haveMissing() const { return haveMissing_; }
  /// The least that a confusion of two characters costs as a swap; INT32_MAX where there is none.
  std::int32_t leastSwap() const { return leastSwap_; }

 private:
  struct Entry {
    std::uint64_t key;
    std::size_t place;  // In the list.
    qoc_ocrDictionaryConfusion confusion;
  };
  static constexpr std::size_t numPlain = 128;

  const qoc_ocrDictionaryConfusion *findAny(Char32 read, Char32 meant) const;

  std::vector<Entry> entries_;    // By rising key.
  std::bitset<numPlain> isRead_;  // Of the first characters, which are read for others.
  bool haveMissing_ = false;
  std::int32_t leastSwap_ = INT32_MAX;
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
  /// The least that any swap of single characters costs.
  Cost leastSwapped() const { return difference_ + std::min(rules_.swapPenalty, confusions_.leastSwap()); }
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
///
/// Most readings need no more than their candidates to be resolved; a list of what the positions show, with the
/// equivalents of their candidates, is made by `show`, as far as it is asked for.
class ReadingCosts {
 public:
  /// All arguments outlive this; the set may be null.
  ReadingCosts(const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryResolverRules &rules,
               const Confusions &confusions, const qoc_swapCharSet *set);

  const Penalties &penalties() const { return penalties_; }
  std::int32_t size() const { return static_cast<std::int32_t>(positions_.size()); }
  /// The first candidate's score; 0 where there is none.
  Cost firstScore(std::int32_t position) const { return at(position).firstScore; }
  /// The sum of the first candidates' scores.
  Cost sumOfFirst() const { return sumOfFirst_; }
  /// What the reading loses as a text that the dictionary does not describe.
  Cost freeText(const qoc_ocrDictionaryFreeText &freeText) const;
  /// The cost of a character that the position does not show.
  Cost substituted(std::int32_t position) const { return penalties_.substituted(firstScore(position)); }
  /// The least that leaving the position out can cost.
  Cost leastExtra(std::int32_t position) const { return std::min(at(position).extra, penalties_.doubled()); }
  /// The candidates of a position as the reader gave them.
  std::span<const qoc_ocrDictionaryChar> candidates(std::int32_t position) const { return at(position).candidates; }
  /// A candidate of a position as a choice.
  Choice candidate(std::int32_t position, std::size_t k) const;
  /// How the position can be the character: as a candidate or as a swap equivalent. False where it cannot.
  bool find(std::int32_t position, Char32 code, Choice &choice) const;
  /// Whether a candidate of the position is the character or a swap equivalent of it.
  bool shows(std::int32_t position, Char32 code) const {
    return code < tableWidth && !isShown_.empty()
               ? (isShown_[static_cast<std::size_t>(position)][code / 64] >> (code % 64) & 1) != 0
               : matchAny(position, code) < noWay;
  }
  /// The cost of leaving the position out; `before` and `behind` stand beside it in the text (QOC_CHAR_EMPTY for none).
  Cost extra(std::int32_t position, Char32 before, Char32 behind) const;

  /// Lists what the positions show at no more than a cost.
  void show(Cost limit);
  /// Makes the tables that `match` and `shows` look plain characters up in; worth its time where many are asked.
  void makeTable();
  /// Everything that was listed of the position, each character once, by code; a wildcard among it shows every other
  /// one.
  std::span<const Choice> choices(std::int32_t position) const {
    return std::span(choices_).subspan(at(position).begin, at(position).size);
  }
  /// Writes what was listed, as far as it costs no more than the limit, as a reading; what costs least comes first.
  qsys_status write(Cost limit, qoc_ocrDictionaryStringMulti &reading) const;
  /// What the character costs there; noWay where the position cannot be it, or not at what was listed.
  Cost match(std::int32_t position, Char32 code) const {
    if (code >= tableWidth || table_.empty()) {
      return matchAny(position, code);
    }
    const std::uint8_t number = table_[static_cast<std::size_t>(position)][code];
    return number > 0 ? choices(position)[number - 1u].cost : at(position).any;
  }

 private:
  static constexpr std::size_t tableWidth = 128;

  struct Position {
    std::span<const qoc_ocrDictionaryChar> candidates;
    std::size_t begin = 0, size = 0;  // Its choices.
    Cost firstScore = 0, lead = 0;
    Char32 firstCode = QOC_CHAR_EMPTY;
    Cost any = noWay;  // Of a candidate that matches every character, if it is listed.
    Cost extra = 0;    // Of leaving it out.
  };

  const Position &at(std::int32_t position) const { return positions_[static_cast<std::size_t>(position)]; }
  Cost matchAny(std::int32_t position, Char32 code) const;
  void addPosition(std::span<const qoc_ocrDictionaryChar> candidates);
  void list(Position &position, std::int32_t index);

  Penalties penalties_;
  const qoc_swapCharSet *set_;
  Cost shown_ = -1;  // As far as is listed.
  std::vector<Position> positions_;
  std::vector<Choice> choices_;
  // By position, of the first characters there are:
  std::vector<std::array<std::uint8_t, tableWidth>> table_;  // which of the choices it is, from 1; 0 for none of them;
  std::vector<std::array<std::uint64_t, tableWidth / 64>> isShown_;  // a bit each, at whatever cost.
  Cost sumOfFirst_ = 0;
};

}  // namespace qoc
