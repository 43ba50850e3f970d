#pragma once

/// @file The commands `run` and `fit`.

#include "options.hpp"

namespace qoc::program {

/// Matches the readings with the dictionary and writes what came of it.
/// @return the exit code: 0 every reading had a result, 1 some had none, 2 trouble
int run(const Options &options);

/// Forces the readings into the dictionary's lines and writes what came of it.
/// @return as `run`
int fit(const Options &options);

} // namespace qoc::program
