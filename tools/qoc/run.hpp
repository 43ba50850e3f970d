#pragma once

/// @file The command `run`.

#include "options.hpp"

namespace qoc::program {

/// Matches the readings with the dictionary and writes what came of it.
/// @return the exit code: 0 every reading had a result, 1 some had none, 2 trouble
int run(const Options &options);

} // namespace qoc::program
