#pragma once

/// @file What the program writes about a reading and its results.

#include "objects.hpp"
#include "readings.hpp"

#include <string>

namespace qoc::program {

/// One NDJSON line, with its end: the reading, and every field of every result.
std::string describeAsJson(const Reading &reading, const qoc_ocrDictionaryResultSet &results);

/// The head line of the table.
std::string tableHead();

/// A reading's lines of the table: one for each result, or one that says that there is none.
/// @param isColored mark the positions by colour, too
std::string describeAsTable(const Reading &reading, const qoc_ocrDictionaryResultSet &results, bool isColored);

/// What the table's marks mean.
std::string tableLegend();

} // namespace qoc::program
