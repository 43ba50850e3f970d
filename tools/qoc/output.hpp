#pragma once

/// @file What the program writes about a reading and its results.

#include "json_output.hpp"
#include "library_reading.hpp"
#include "objects.hpp"
#include "readings.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

/// What came of a reading.
struct Answer {
  ResultSet results;
  std::vector<std::size_t> lines; ///< For each result of a fielding run the line's index; empty for other runs.
  std::vector<LeftOut> leftOut;   ///< What of the reading was not handed to the library.
  Resolution resolution;          ///< The texts that it can be, best first.
  bool isResolved = false;        ///< False for a fielding run, which resolves nothing.
};

/// The text of a result, character by character: its word; or else what each position may be, which is the reading's
/// first candidate there that fits, or the first character swapped for one; the empty character where a position is left
/// open.
std::vector<Char32> resultText(const qoc_ocrDictionaryResult &result);

/// One NDJSON line, with its end: the reading, and every field of every result.
std::string describeAsJson(const Reading &reading, const Answer &answer);

/// The head line of the table.
std::string tableHead();

/// A reading's lines of the table: one for each result, or one that says that there is none.
/// @param isColored mark the positions by colour, too
std::string describeAsTable(const Reading &reading, const Answer &answer, bool isColored);

/// The head line of the table for programs, and a reading's lines of it: one for each result, or one without a result.
std::string tsvHead();
std::string describeAsTsv(const Reading &reading, const Answer &answer);

/// Fields with tabs between them and a line end. Within them a tab, a line end and a backslash are written with a
/// backslash.
std::string tsvRow(const std::vector<std::string> &fields);

/// What people call the kind of entry that a result came from.
const char *sourceName(qoc_ocrDictionaryMode mode);

/// The beginning of every record about a reading: what it is, and of which reading.
JsonText aboutReading(std::string_view type, const Reading &reading);

/// Adds what came with a reading beside its characters: boxes and the picture.
void addCompanions(JsonText &object, const Reading &reading);

} // namespace qoc::program
