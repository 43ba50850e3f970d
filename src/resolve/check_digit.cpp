// The methods of check digits as automata.

#include "resolve/check_digit.hpp"

#include <algorithm>

#include "platform/containers/view.hpp"

namespace qoc {

namespace {

constexpr std::int32_t containerLength = 11, vehicleLength = 17, vehicleCheckPosition = 8;

std::int32_t digitValue(Char32 code) { return code >= '0' && code <= '9' ? static_cast<std::int32_t>(code - '0') : -1; }

/// 0 to 9, then A to Z as 10 to 35.
std::int32_t alphanumericValue(Char32 code) {
  return code >= 'A' && code <= 'Z' ? static_cast<std::int32_t>(code - 'A') + 10 : digitValue(code);
}

/// A digit, or `ten` as 10 where it may stand.
std::int32_t digitOr(Char32 code, Char32 ten, bool isAllowed) {
  return isAllowed && code == ten ? 10 : digitValue(code);
}

/// ISO 6346: A is 10, and the multiples of 11 are left out.
std::int32_t containerValue(std::int32_t position, Char32 code) {
  const std::int32_t value = alphanumericValue(code);
  if (position < 4) {
    return value < 10 ? -1 : value + (value > 10 ? 1 : 0) + (value > 20 ? 1 : 0) + (value > 30 ? 1 : 0);
  }
  return value < 10 ? value : -1;
}

/// 49 CFR 565.15, table III; I, O and Q do not occur.
std::int32_t vehicleValue(Char32 code) {
  constexpr std::int8_t letters[] = {1, 2, 3, 4, 5, 6, 7, 8, -1, 1, 2, 3, 4, 5, -1, 7, -1, 9, 2, 3, 4, 5, 6, 7, 8, 9};
  return code >= 'A' && code <= 'Z' ? letters[code - 'A'] : digitValue(code);
}

/// Of a number below 100.
std::int32_t crossSum(std::int32_t number) { return number / 10 + number % 10; }

constexpr std::int8_t vehicleWeights[] = {8, 7, 6, 5, 4, 3, 2, 10, 0, 9, 8, 7, 6, 5, 4, 3, 2};
constexpr std::int8_t icaoWeights[] = {7, 3, 1};

/// What is left of a method that has read its check character: whether it agreed.
constexpr std::int32_t agreed = 11, disagreed = -1;

}  // namespace

bool takesLength(qoc_checkDigitMethod method, std::int32_t length) {
  switch (method) {
    case qoc_checkDigitMethod_container:
      return length == containerLength;
    case qoc_checkDigitMethod_vehicle:
      return length == vehicleLength;
    case qoc_checkDigitMethod_mod97:
      return length >= 3;
    default:
      return length >= 2;
  }
}

std::optional<CheckAutomaton> CheckAutomaton::make(qoc_checkDigitMethod method, std::int32_t length) {
  if (!takesLength(method, length)) {
    return std::nullopt;
  }
  return CheckAutomaton(method, length);
}

std::int32_t CheckAutomaton::start() const { return method_ == qoc_checkDigitMethod_mod37x36 ? 36 : 0; }

std::int32_t CheckAutomaton::numStates() const {
  switch (method_) {
    case qoc_checkDigitMethod_mod37x2:
    case qoc_checkDigitMethod_mod37x36:
      return 37;
    case qoc_checkDigitMethod_mod97:
      return 97;
    case qoc_checkDigitMethod_vehicle:
      return 11 * 12;
    default:
      return 12;
  }
}

std::int32_t CheckAutomaton::valueOf(std::int32_t position, Char32 code) const {
  const std::int32_t fromEnd = length_ - 1 - position;
  const bool isLast = fromEnd == 0;
  switch (method_) {
    case qoc_checkDigitMethod_luhn:
    case qoc_checkDigitMethod_gtin:
      return digitValue(code);
    case qoc_checkDigitMethod_isbn10:
    case qoc_checkDigitMethod_mod11x2:
      return digitOr(code, 'X', isLast);
    case qoc_checkDigitMethod_mod37x2:
      return isLast && code == '*' ? 36 : alphanumericValue(code);
    case qoc_checkDigitMethod_mod37x36:
      return alphanumericValue(code);
    case qoc_checkDigitMethod_mod97:
      return fromEnd < 2 ? digitValue(code) : alphanumericValue(code);
    case qoc_checkDigitMethod_container:
      return containerValue(position, code);
    case qoc_checkDigitMethod_vehicle:
      return position == vehicleCheckPosition ? digitOr(code, 'X', true) : vehicleValue(code);
    default:  // icao9303
      return code == '<' ? 0 : isLast ? digitValue(code) : alphanumericValue(code);
  }
}

std::int32_t CheckAutomaton::step(std::int32_t state, std::int32_t position, Char32 code) const {
  const std::int32_t value = valueOf(position, code);
  if (value < 0) {
    return -1;
  }
  const std::int32_t fromEnd = length_ - 1 - position;
  const bool isLast = fromEnd == 0;
  switch (method_) {
    case qoc_checkDigitMethod_luhn:
      return (state + crossSum(value * (fromEnd % 2 + 1))) % 10;
    case qoc_checkDigitMethod_gtin:
      return (state + value * (fromEnd % 2 * 2 + 1)) % 10;
    case qoc_checkDigitMethod_isbn10:
      return (state + value * (fromEnd % 11 + 1)) % 11;
    case qoc_checkDigitMethod_mod11x2:
      return (state * 2 + value) % 11;
    case qoc_checkDigitMethod_mod37x2:
      return (state * 2 + value) % 37;
    case qoc_checkDigitMethod_mod37x36:  // Before the last one a sum of 0 counts as 36.
      return isLast ? (state + value) % 36 : ((state + value + 35) % 36 + 1) * 2 % 37;
    case qoc_checkDigitMethod_mod97:
      return (state * (value < 10 ? 10 : 100) + value) % 97;
    case qoc_checkDigitMethod_container:
      return isLast ? (value == state % 10 ? agreed : disagreed) : (state + (value << position)) % 11;
    case qoc_checkDigitMethod_vehicle:  // The weighted sum and the check character's value.
      return position == vehicleCheckPosition ? state / 12 * 12 + value
                                              : (state / 12 + value * vehicleWeights[position]) % 11 * 12 + state % 12;
    default:  // icao9303
      return isLast ? (value == state ? agreed : disagreed) : (state + value * icaoWeights[position % 3]) % 10;
  }
}

bool CheckAutomaton::accepts(std::int32_t state) const {
  switch (method_) {
    case qoc_checkDigitMethod_luhn:
    case qoc_checkDigitMethod_gtin:
    case qoc_checkDigitMethod_isbn10:
      return state == 0;
    case qoc_checkDigitMethod_vehicle:
      return state / 12 == state % 12;
    case qoc_checkDigitMethod_container:
    case qoc_checkDigitMethod_icao9303:
      return state == agreed;
    default:
      return state == 1;
  }
}

bool isIgnored(const qoc_checkDigitRule &rule, Char32 code) {
  if (rule.ignoresSeparators != 0 && (code == ' ' || code == '-')) {
    return true;
  }
  if (rule.ignored.core.size == 0) {
    return false;
  }
  const auto ignored = viewAs<Char32>(rule.ignored);
  return std::find(ignored.begin(), ignored.end(), code) != ignored.end();
}

std::optional<std::vector<qstd_span32>> checkedParts(const qoc_checkDigitRule &rule, std::int32_t length) {
  constexpr qstd_span32 whole = {0, QOC_CHECK_DIGIT_END};
  const auto given = rule.parts.core.size > 0 ? viewAs<qstd_span32>(rule.parts) : std::span(&whole, 1);
  const std::int64_t size = length;  // Twice a length, either way, is more than 32 bits hold.
  std::vector<qstd_span32> parts;
  for (const qstd_span32 &part : given) {
    const std::int64_t begin = part.begin < 0 ? size + part.begin : part.begin;
    const std::int64_t end = part.end == QOC_CHECK_DIGIT_END ? size : part.end < 0 ? size + part.end : part.end;
    if (begin < 0 || begin >= end || end > size) {
      return std::nullopt;
    }
    parts.push_back({static_cast<std::int32_t>(begin), static_cast<std::int32_t>(end)});
  }
  return parts;
}

std::optional<std::vector<std::int32_t>> checkedPositions(const qoc_checkDigitRule &rule, std::int32_t length) {
  const auto parts = checkedParts(rule, length);
  if (!parts) {
    return std::nullopt;
  }
  std::vector<std::int32_t> positions;
  for (const qstd_span32 &part : *parts) {
    for (std::int32_t i = part.begin; i < part.end; ++i) positions.push_back(i);
  }
  return positions;
}

bool RuleChecker::passes(std::span<const Char32> text) {
  counted_.clear();
  for (const Char32 code : text) {
    if (!isIgnored(rule_, code)) counted_.push_back(code);
  }
  const auto length = static_cast<std::int32_t>(counted_.size());
  if (length != length_) {
    length_ = length;
    auto positions = checkedPositions(rule_, length);
    automaton_ =
        positions ? CheckAutomaton::make(rule_.method, static_cast<std::int32_t>(positions->size())) : std::nullopt;
    if (positions) positions_ = std::move(*positions);
  }
  if (!automaton_) {
    return false;
  }
  std::int32_t state = automaton_->start();
  for (std::size_t i = 0; i < positions_.size() && state >= 0; ++i) {
    state = automaton_->step(state, static_cast<std::int32_t>(i), counted_[static_cast<std::size_t>(positions_[i])]);
  }
  return state >= 0 && automaton_->accepts(state);
}

}  // namespace qoc
