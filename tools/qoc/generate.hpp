#pragma once

/// @file What is made from the table of commands: manual pages and completions for shells.

#include "options.hpp"

#include <string>
#include <vector>

namespace qoc::program {

/// The names of the manual pages: "qoc" and one for each command.
std::vector<std::string> manualPages();
/// One of them, in mdoc.
std::string manualPage(const std::string &name);

std::string bashCompletion();
std::string zshCompletion();
std::string fishCompletion();

/// The command that writes all of them into a directory, as an installation's share has them; for the build.
/// @return the exit code
int generate(const Options &options);

} // namespace qoc::program
