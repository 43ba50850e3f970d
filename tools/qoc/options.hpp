#pragma once

/// @file What the command line asks for.

#include "parameter_table.hpp"
#include "progress.hpp"
#include "readings.hpp"

#include <qoc/fielding_run.h>
#include <qoc/resolver.h>
#include <qoc/run_params.h>

#include <cstdint>
#include <string>
#include <vector>

namespace qoc::program {

enum class ColorChoice { automatic, always, never };

/// What the command line asks for.
struct Options {
  std::string dictionary;
  std::vector<std::string> readings; ///< "-" alone where none is named.
  ReadingOptions input;
  std::uint64_t skip = 0; ///< Readings to pass over.
  unsigned jobs = 1;      ///< Threads; 0 is one for each processor.
  ColorChoice color = ColorChoice::automatic;
  ProgressChoice progress = ProgressChoice::automatic;
  bool isJson = false, isTsv = false;
  std::string to;           ///< The format that is written back or converted to; empty for none.
  std::string output;       ///< Where documents and reports go; empty for standard output.
  bool isEveryLine = false; ///< The fielding run gives a result for each line of the dictionary.
  std::string id;           ///< The only reading to explain; empty for all.
  std::size_t threshold = 3; ///< How often a confusion must be seen to be learnt.
  unsigned numFolds = 5;     ///< Parts for the cross-validation of what is learnt.
  std::string images;       ///< Where pictures lie that readings do not name.
  std::string title = "What was read, and what it is"; ///< Of a report.
  Overrides<qoc_ocrDictionaryRunParams> overrides;     ///< What is to change in the dictionary file's run parameters.
  Overrides<qoc_ocrDictionaryResolverRules> ruleOverrides; ///< The same for the choice of one text.
  Overrides<qoc_ocrDictionaryFieldingRunParams> fitOverrides; ///< The same for the fielding run.
  bool isResolving = true; ///< Choose one text for each reading.
  int (*command)(const Options &options) = nullptr;           ///< What is asked for; gives the exit code.
};

} // namespace qoc::program
