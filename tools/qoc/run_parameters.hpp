#pragma once

/// @file The parameters of a run by name: one table serves the dictionary file and the command line.

#include "json_input.hpp"

#include <qoc/run_params.h>

#include <cstdint>
#include <limits>
#include <string>

namespace qoc::program {

/// A parameter that is a number.
struct NumberParameter {
  const char *key, *option; ///< Its names in the dictionary file and on the command line.
  std::int32_t qoc_ocrDictionaryRunParams::*field;
  const char *help;
};

/// A parameter that is on or off.
struct FlagParameter {
  const char *key;
  const char *onOption, *offOption; ///< The command line's options that set 1 and 0.
  std::int32_t qoc_ocrDictionaryRunParams::*field;
  const char *onHelp, *offHelp;
};

/// An order of ranking.
struct Ranking {
  const char *name;
  std::int32_t mode, variant;
};

inline constexpr NumberParameter numberParameters[] = {
    {"maxEdits", "--max-edits", &qoc_ocrDictionaryRunParams::maxEdits,
     "Characters substituted, missing or extra that a result may need, in all; default 0"},
    {"minLength", "--min-length", &qoc_ocrDictionaryRunParams::minStringLength,
     "Length in characters of the shortest texts that match; binds where no edits are allowed; default 1"},
    {"maxLength", "--max-length", &qoc_ocrDictionaryRunParams::maxStringLength,
     "Length in characters of the longest texts that match; binds where no edits are allowed; default 2147483647"},
};

inline constexpr FlagParameter flagParameters[] = {
    {"returnBestOnly", "--best", "--all", &qoc_ocrDictionaryRunParams::returnBestOnly,
     "Give the best result of each reading only (default)",
     "Give all results, best first; of results that rank equally, one may stand for all"},
    {"substitution", "--substitution", "--no-substitution", &qoc_ocrDictionaryRunParams::matchOption1,
     "An edit may substitute a character (default)", "No edit substitutes a character"},
    {"missing", "--missing", "--no-missing", &qoc_ocrDictionaryRunParams::matchOption2,
     "An edit may add a character that the reading lacks (default)", "No edit adds a character"},
    {"extra", "--extra", "--no-extra", &qoc_ocrDictionaryRunParams::matchOption4,
     "An edit may leave out a character of the reading (default)", "No edit leaves out a character"},
    {"window", "--window", "--no-window", &qoc_ocrDictionaryRunParams::matchOption9,
     "Find texts within the reading too, ignoring what stands before and after",
     "Match the whole reading (default)"},
};

inline constexpr Ranking rankings[] = {{"edits", 0, 3}, {"primary", 1, 3}, {"primary-secondary", 1, 15}};
inline constexpr const char *rankingHelp =
    "What ranks first: \"edits\" (fewest edits), \"primary\" (highest scores of the first candidates used) or "
    "\"primary-secondary\" (highest scores of all candidates used); default edits";

/// Sets the order of ranking by its name, which must be one of the table.
/// @return false where there is no such name
bool setRanking(qoc_ocrDictionaryRunParams &params, const std::string &name);

/// Reads the object "parameters" of a dictionary file over what the parameters hold, and validates them.
void readRunParameters(const JsonNode &node, qoc_ocrDictionaryRunParams &params);

} // namespace qoc::program
