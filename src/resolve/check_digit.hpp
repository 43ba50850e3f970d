#pragma once
// Check digit rules as automata: they read what they check character by character, so that a search over many texts can
// carry their states along.

#include <qoc/check_digit.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace qoc {

/// A method as an automaton over a sequence of known length. States are numbers from 0 to numStates - 1.
class CheckAutomaton {
 public:
  /// Nothing where the method does not take the length.
  static std::optional<CheckAutomaton> make(qoc_checkDigitMethod method, std::int32_t length);

  std::int32_t start() const;
  std::int32_t numStates() const;
  /// The state after one more character, or -1 where the method does not take it there.
  std::int32_t step(std::int32_t state, std::int32_t position, Char32 code) const;
  bool accepts(std::int32_t state) const;

 private:
  CheckAutomaton(qoc_checkDigitMethod method, std::int32_t length) : method_(method), length_(length) {}
  /// What the character counts at the position, or -1 where it must not stand there.
  std::int32_t valueOf(std::int32_t position, Char32 code) const;

  qoc_checkDigitMethod method_;
  std::int32_t length_;
};

/// Whether a method takes a length.
bool takesLength(qoc_checkDigitMethod method, std::int32_t length);

bool isIgnored(const qoc_checkDigitRule &rule, Char32 code);

/// The rule's parts in a text of so many positions that count; nothing where one of them is empty or leaves the text.
std::optional<std::vector<qstd_span32>> checkedParts(const qoc_checkDigitRule &rule, std::int32_t length);

/// The positions that a rule checks, in its order, of a text with `length` positions that count; nothing where a part
/// does not lie within the text.
std::optional<std::vector<std::int32_t>> checkedPositions(const qoc_checkDigitRule &rule, std::int32_t length);

/// A rule that many texts are held against, most of them of one length.
class RuleChecker {
 public:
  /// @param rule outlives this
  explicit RuleChecker(const qoc_checkDigitRule &rule) : rule_(rule) {}

  bool passes(std::span<const Char32> text);

 private:
  const qoc_checkDigitRule &rule_;
  std::vector<Char32> counted_;  // The characters of the text at hand that count.
  // Of the length of which the last one was:
  std::int32_t length_ = -1;
  std::vector<std::int32_t> positions_;
  std::optional<CheckAutomaton> automaton_;
};

}  // namespace qoc
