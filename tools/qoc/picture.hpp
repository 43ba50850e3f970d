#pragma once

/// @file Lines as compact picture strings, such as "AA9999-99".

#include "json_input.hpp"

#include <qoc/base.h>

#include <cstdint>
#include <string>
#include <vector>

namespace qoc::program {

/// What one position of a line admits.
struct PositionShape {
  std::uint32_t bits = 0; ///< QOC_FIELDING_… of qoc/position_fielding.h.
  std::vector<Char32> characters;
};

/// Reads the character "A" upper-case letter, "a" lower-case letter, "9" digit, "*" everything but the space,
/// "?" everything, "_" space, "\" the character behind it; every other character stands for itself.
/// Throws Trouble that names the place where the picture is empty, ends with a backslash, or holds a character that
/// fieldings do not know.
std::vector<PositionShape> readPicture(const JsonNode &node);

/// Throws Trouble where a position cannot admit the character: reserved ones, and those beyond 7 bits.
/// @param at where the character stands, for the message; such as "character 3"
void requireFieldingCharacter(Char32 code, const JsonNode &node, const std::string &at);

} // namespace qoc::program
