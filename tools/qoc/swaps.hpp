#pragma once

/// @file The command `swaps`.

#include "options.hpp"

namespace qoc::program {

/// Writes what the dictionary's swap set makes equivalent.
/// @return the exit code: 0 success, 2 trouble
int printSwaps(const Options &options);

} // namespace qoc::program
