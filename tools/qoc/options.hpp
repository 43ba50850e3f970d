#pragma once

/// @file The command line.

#include "parameter_table.hpp"
#include "readings.hpp"

#include <qoc/fielding_run.h>
#include <qoc/run_params.h>

#include <optional>
#include <string>
#include <vector>

namespace qoc::program {

enum class ColorChoice { automatic, always, never };

/// What the command line asks for.
struct Options {
  std::string dictionary;
  std::vector<std::string> readings; ///< "-" alone where none is named.
  ReadingFormat from = ReadingFormat::detect;
  ColorChoice color = ColorChoice::automatic;
  bool isJson = false;
  bool isEveryLine = false; ///< The fielding run gives a result for each line of the dictionary.
  Overrides<qoc_ocrDictionaryRunParams> overrides; ///< What is to change in the dictionary file's run parameters.
  Overrides<qoc_ocrDictionaryFieldingRunParams> fitOverrides;  ///< The same for the fielding run.
  int (*command)(const Options &options) = nullptr; ///< What is asked for; gives the exit code.
};

/// Reads the command line. Help, version and errors are written here.
/// @return the options, or nothing where the program is to end with `exitCode`
std::optional<Options> readOptions(int argc, char **argv, int &exitCode);

} // namespace qoc::program
