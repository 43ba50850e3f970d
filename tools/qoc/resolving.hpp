#pragma once

/// @file What resolving is told: points, ready confusions, methods of check digits.

#include "json_input.hpp"
#include "objects.hpp"

#include <span>
#include <string>

namespace qoc::program {

/// Points as the library gets them: hundredths, as with scores.
inline constexpr std::int32_t unitsPerPoint = 100;

/// Reads an object {"method": …, "parts": […], "ignored": …} into a rule; refuses one that no text can pass.
void readCheck(const JsonNode &node, qoc_checkDigitRule &rule);

/// Adds a check to an entry of the rules. @param entry its index among those of its kind
void addCheck(qoc_ocrDictionaryResolverRules &rules, qoc_ocrDictionaryMode mode, std::int32_t entry,
              const qoc_checkDigitRule &rule, const std::string &where);

/// One confusion of the ready set that was learnt from the shipped readings.
struct LearntConfusion {
  Char32 read, meant; ///< QOC_CHAR_EMPTY as `meant`: nothing stood there.
  std::int32_t swapPenalty;
};
std::span<const LearntConfusion> learntConfusions();

/// Puts the confusions that the program knows of itself behind those that the rules hold, which go first.
/// @param usesLearnt those that were learnt go before the others
void addReadyConfusions(bool usesLearnt, qoc_ocrDictionaryResolverRules &rules, const std::string &where);

}  // namespace qoc::program
