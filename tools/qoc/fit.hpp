#pragma once

/// @file The fielding run: a reading forced into each line of the dictionary.

#include "dictionary_file.hpp"
#include "options.hpp"
#include "output.hpp"

#include <string>

namespace qoc::program {

/// Makes the command line's changes to the fit parameters. Throws Trouble where the dictionary has no line.
void prepareFit(const Options &options, DictionaryFile &file);

/// Forces a reading into each line, and gives the result with the fewest edits, of equal ones the earliest line's; or
/// all of them in that order. An empty reading has no result, and neither has a line no part of which can be placed.
/// @param where the reading's place, for messages
void fitLines(const Options &options, const DictionaryFile &file, const MultiString &reading, const std::string &where,
              Answer &answer);

} // namespace qoc::program
