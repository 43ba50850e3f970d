#pragma once

/// @file The command `report`.

#include "options.hpp"

namespace qoc::program {

/// Writes one self-contained HTML page of all readings: a summary, and each reading laid under its result.
/// @return the exit code, as `run`
int report(const Options &options);

/// The page, with @TITLE@, @SUMMARY@, @FILTERS@, @ROWS@ and @IMAGES@ where these go.
extern const char reportPage[];

} // namespace qoc::program
