#pragma once

/// @file The command `check`.

#include "options.hpp"

namespace qoc::program {

/// Reads a dictionary file and names all its faults.
/// @return the exit code: 0 it has none, 1 it has some, 2 it cannot be read
int checkDictionary(const Options &options);

} // namespace qoc::program
