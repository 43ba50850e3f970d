#pragma once

/// @file The command `convert`.

#include "options.hpp"

namespace qoc::program {

/// Writes readings of any format as NDJSON or text.
/// @return the exit code: 0, or 2 on trouble
int convert(const Options &options);

} // namespace qoc::program
