#pragma once
// From the source of an expression to its syntax tree.

#include <qoc/base.h>

#include <cstdint>
#include <span>
#include <vector>

#include "platform/regex/code_set.hpp"

namespace qoc {

/// A part of an expression, its counts not yet written out. Trees are normalised as they are built: no part but the
/// whole expression and an alternative matches nothing but the empty sequence; a sequence has two or more parts, none a
/// sequence; no alternative is a choice; a repeat without counts above 1 repeats no such repeat.
struct SyntaxNode {
  enum class Kind : std::uint8_t { empty, character, sequence, choice, repeat };

  Kind kind = Kind::empty;
  bool isNullable = true;                     ///< Matches the empty sequence.
  bool isUnbounded = false;                   ///< A repeat whose last round may be repeated for ever.
  std::int32_t minRounds = 0, numRounds = 0;  ///< A repeat's least count, and the rounds that are written out.
  std::int32_t set = 0;                       ///< A character's code set.
  std::int32_t firstChild = -1, lastChild = -1, next = -1;
  std::int64_t numPositions = 0;              ///< Character positions with the counts written out.
  std::int64_t minLength = 0, maxLength = 0;  ///< Of the sequences matched; both stop rising at `farLength`.
};

inline constexpr std::int64_t farLength = std::int64_t{1} << 40;

struct Syntax {
  std::vector<SyntaxNode> nodes;
  std::vector<CodeSet> sets;
  std::int32_t root = -1;
};

/// What is wrong with a source, and the index of the character where.
struct SyntaxError {
  qsys_status status = QSYS_STATUS_OK;
  std::int32_t place = -1;
};

/// Parses a source. The depth of its groups costs memory, not stack.
SyntaxError parseExpression(std::span<const Char32> source, Syntax &syntax);

}  // namespace qoc
