#pragma once

/// @file The command line.

#include "readings.hpp"

#include <qoc/run_params.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qoc::program {

enum class ColorChoice { automatic, always, never };

/// What the command line asks for.
struct Options {
  std::string dictionary;
  std::vector<std::string> readings; ///< "-" alone where none is named.
  ReadingOptions input;
  ColorChoice color = ColorChoice::automatic;
  bool isJson = false;
  /// What is to change in the dictionary file's run parameters.
  std::vector<std::function<void(qoc_ocrDictionaryRunParams &)>> overrides;
};

/// Reads the command line. Help, version and errors are written here.
/// @return the options, or nothing where the program is to end with `exitCode`
std::optional<Options> readOptions(int argc, char **argv, int &exitCode);

} // namespace qoc::program
