#pragma once
// What a reading says about every character that a text may have at one of its positions, in points that it loses.

#include <qoc/resolver.h>

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

namespace qoc {

/// A loss; totals of long readings do not fit 32 bits.
using Cost = std::int64_t;
inline constexpr Cost noWay = std::numeric_limits<Cost>::max() / 4;

/// One character that a text may have at a position.
struct Choice {
  Char32 code;
  Cost cost;               ///< What it loses against the position's first candidate.
  std::int32_t candidate;  ///< The candidate that it is or stands for, or -1.
  std::int32_t score;      ///< What it counts before penalties.
};

/// The rules, ready for looking up confusions.
class Penalties {
 public:
  explicit Penalties(const qoc_ocrDictionaryResolverRules &rules);

  const qoc_ocrDictionaryResolverRules &rules() const { return rules_; }
  Cost listed(Char32 first, Char32 meant) const;
  Cost swapped(Char32 read, Char32 meant) const;
  /// What leaving the character out costs in all, where it has a penalty of its own.
  std::optional<Cost> extra(Char32 read) const;
  Cost missing(Char32 meant) const;

 private:
  const qoc_ocrDictionaryConfusion *find(Char32 read, Char32 meant) const;

  const qoc_ocrDictionaryResolverRules &rules_;
  std::unordered_map<std::uint64_t, const qoc_ocrDictionaryConfusion *> confusions_;
};

/// A reading under rules and swaps. Throws std::bad_alloc; a failure of the swap set is in status().
class ReadingCosts {
 public:
  ReadingCosts(const qoc_ocrDictionaryStringMulti &reading, const Penalties &penalties, const qoc_swapCharSet *set);

  qsys_status status() const { return status_; }
  const Penalties &penalties() const { return penalties_; }
  std::int32_t size() const { return static_cast<std::int32_t>(positions_.size()); }
  /// The first candidate's score; 0 where there is none.
  Cost firstScore(std::int32_t position) const { return positions_[static_cast<std::size_t>(position)].firstScore; }
  /// The sum of the first candidates' scores.
  Cost sumOfFirst() const { return sumOfFirst_; }
  /// How the position can be the character: as a candidate or as a swap equivalent. False where it cannot.
  bool find(std::int32_t position, Char32 code, Choice &choice) const;
  /// The cost of a character that the position does not show.
  Cost substituted(std::int32_t position) const;
  /// The cost of leaving the position out; `before` and `behind` stand beside it in the text (QOC_CHAR_EMPTY for none).
  Cost extra(std::int32_t position, Char32 before, Char32 behind) const;
  /// What the character costs there; noWay where the position cannot be it.
  Cost match(std::int32_t position, Char32 code) const {
    const Position &at = positions_[static_cast<std::size_t>(position)];
    return code < at.plain.size() ? at.plain[code] : matchAny(position, code);
  }
  /// Whether a candidate of the position is the character or a swap equivalent of it.
  bool shows(std::int32_t position, Char32 code) const { return match(position, code) < noWay; }
  /// What the reading loses as a text that the dictionary does not describe.
  Cost freeText(const qoc_ocrDictionaryFreeText &freeText) const;

 private:
  struct Position {
    std::vector<Choice> choices;  // By code, each once.
    Cost firstScore = 0, lead = 0;
    Char32 firstCode = QOC_CHAR_EMPTY;
    Choice any = {QOC_CHAR_EMPTY, noWay, -1, 0};  // A candidate that matches every character.
    std::array<Cost, 128> plain;                  // The costs of the plain characters, which are asked most.
    Cost extra = 0;                               // Of leaving it out.
  };

  Cost matchAny(std::int32_t position, Char32 code) const;
  qsys_status addPosition(const qoc_ocrDictionaryCharMulti &multi, const qoc_swapCharSet *set);

  const Penalties &penalties_;
  std::vector<Position> positions_;
  Cost sumOfFirst_ = 0;
  qsys_status status_ = QSYS_STATUS_OK;
};

}  // namespace qoc
