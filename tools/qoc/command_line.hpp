#pragma once

/// @file The parser of the command line.

#include "options.hpp"

#include <optional>

namespace qoc::program {

/// Reads the command line. Help, version and errors are written here.
/// @return the options, or nothing where the program is to end with `exitCode`
std::optional<Options> readOptions(int argc, char **argv, int &exitCode);

} // namespace qoc::program
