#pragma once

/// @file A reading as the library takes it.

#include "objects.hpp"
#include "readings.hpp"

#include <cstddef>
#include <vector>

namespace qoc::program {

/// A candidate that is not handed to the library: its position and its place there.
struct LeftOut {
  std::size_t position, index;
};

/// Hands a reading to the library. With `isOnly7Bits` candidates beyond 7 bits, which fieldings do not know, are left
/// out, and a position that has no other gets the empty character.
/// @param leftOut replaced by what was left out, in order
void setReading(const Reading &reading, bool isOnly7Bits, MultiString &multi, std::vector<LeftOut> &leftOut);

} // namespace qoc::program
