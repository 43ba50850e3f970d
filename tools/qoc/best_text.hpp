#pragma once

/// @file The one text that a reading becomes, laid over it.

#include "explanation.hpp"
#include "output.hpp"

#include <optional>
#include <vector>

namespace qoc::program {

struct BestText {
  std::vector<Char32> codes;
  qoc_ocrDictionaryMode mode = 0;
  std::int32_t numEdits = 0;
  Explanation explanation;
  std::size_t numOutsideBefore = 0, numOutsideBehind = 0; ///< Columns at the ends that no text was looked for in.
};

/// The best text that was resolved or, where nothing was, that of the best result; nothing where there is none.
std::optional<BestText> bestTextOf(const Reading &reading, const Answer &answer);

/// The characters of a dictionary string.
std::vector<Char32> codesOf(const qoc_ocrDictionaryString &string);

/// What the reading's text becomes: for each of its positions the characters that stand there now. What a window leaves
/// out at either end, and what stays open, stands as it was read.
std::vector<std::string> correctedTexts(const Reading &reading, const BestText &best);

} // namespace qoc::program
