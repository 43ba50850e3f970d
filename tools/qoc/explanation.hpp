#pragma once

/// @file The reading laid over a result, position by position: one layout, shown on a terminal, as JSON and as HTML.

#include "json_output.hpp"
#include "objects.hpp"
#include "readings.hpp"

#include <string>
#include <vector>

namespace qoc::program {

/// One column: what was read above what it is.
struct ExplanationColumn {
  std::size_t begin = 0, end = 0; ///< The reading's positions; empty where the result has a character more.
  std::string read;               ///< What the engine printed there; empty where that is nothing.
  std::string character;          ///< What the result has there; empty where that is nothing.
  qoc_ocrDictionaryPositionStatus status = 0;
  std::string meaning; ///< What the status means here, as part of a sentence.
};

/// A result laid over its reading.
struct Explanation {
  std::vector<ExplanationColumn> columns;
};

/// Lays a computed result over the reading that it came from. @param text the result's characters, one for each
/// position; the empty character where it is open
Explanation explainResult(const Reading &reading, const qoc_ocrDictionaryResult &result,
                          const std::vector<Char32> &text);

/// Lays a text that was resolved over its reading, where no result shows it. The statuses are what the candidates say.
Explanation explainText(const Reading &reading, const qoc_ocrDictionaryResolvedText &text);

/// Lays out a reading that has no result: what was read, position by position.
Explanation explainUnmatched(const Reading &reading);

/// Three lines (more where they are too long for one): what was read, the marks, what it is.
/// @param indent what each line begins with
std::string explanationAsText(const Explanation &explanation, const std::string &indent, bool isColored);

/// A line for each column that is more than the first candidate, and one that counts the others.
std::string meaningsAsText(const Explanation &explanation, const std::string &indent, bool isColored);

/// An array with an object for each column.
JsonText explanationAsJson(const Explanation &explanation);

/// Elements `i` of class `sSTATUS`, each with what was read, the mark and what it is; with the candidates in `data-c`,
/// each a character and right behind it its score, spaces between them; and with the meaning in `data-m`.
std::string explanationAsHtml(const Explanation &explanation, const Reading &reading);

} // namespace qoc::program
