#pragma once

/// @file What resolving is told: points, ready confusions, methods of check digits.

#include "json_input.hpp"
#include "objects.hpp"

#include <string>

namespace qoc::program {

/// Points as the library gets them: hundredths, as with scores.
inline constexpr std::int32_t unitsPerPoint = 100;

/// Reads an object {"method": …, "parts": […], "ignored": …} into a rule; refuses one that no text can pass.
void readCheck(const JsonNode &node, qoc_checkDigitRule &rule);

/// Adds a check to an entry of the rules. @param entry its index among those of its kind
void addCheck(qoc_ocrDictionaryResolverRules &rules, qoc_ocrDictionaryMode mode, std::int32_t entry,
              const qoc_checkDigitRule &rule, const std::string &where);

/// Puts the confusions that the program knows of itself behind those that the rules hold, which go first.
void addReadyConfusions(qoc_ocrDictionaryResolverRules &rules, const std::string &where);

}  // namespace qoc::program
