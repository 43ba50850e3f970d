#pragma once

/// @file The command `explain`.

#include "options.hpp"

namespace qoc::program {

/// Shows for each reading every result, laid over the reading, with what each status means and why it ranks where it
/// does.
/// @return the exit code, as `run`
int explain(const Options &options);

} // namespace qoc::program
