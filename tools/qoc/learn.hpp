#pragma once

/// @file The command `learn`.

#include "options.hpp"

namespace qoc::program {

/// Learns from readings with truth what the reader confuses, and says what that changes on readings that it was not
/// learnt from.
/// @return the exit code: 0 success, 2 trouble
int learn(const Options &options);

} // namespace qoc::program
