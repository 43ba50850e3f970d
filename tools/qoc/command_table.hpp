#pragma once

/// @file Every command and every option, in one table. The parser, the help, the manual pages and the completions for
/// shells are all made from it.

#include "options.hpp"

#include <functional>
#include <string>
#include <vector>

namespace qoc::program {

/// What an option's value is; shells complete it accordingly.
enum class ValueKind { none, text, number, choice, file, directory };

/// A value of an option that is one of several words.
struct ChoiceSpec {
  std::string name;
  std::string meaning; ///< May be empty.
};

struct OptionSpec {
  std::string shortName; ///< "-d", or empty.
  std::string name;      ///< "--dictionary".
  ValueKind kind = ValueKind::none;
  std::string value; ///< What the help calls the value; empty for a flag.
  std::string help;
  std::function<void(Options &options, const std::string &value)> take;
  std::vector<ChoiceSpec> choices;
  long long least = 0, greatest = 2147483647; ///< Of a number.
  bool isRequired = false;
  std::string excludes; ///< The name of the option that contradicts this one; empty where none does.
  std::string needs;    ///< The name of the option without which this one says nothing; empty where it stands alone.
  std::string group;    ///< Its heading; empty for "Options".
};

struct CommandSpec {
  std::string name;
  std::string summary;                  ///< One line, for lists.
  std::vector<std::string> description; ///< Paragraphs.
  bool takesReadings = false;           ///< Its operands are files of readings.
  std::vector<OptionSpec> options;
  bool explainsMarks = false; ///< Its output has the marks of positions.
  std::string exitCodes;      ///< "0 …, 1 …, 2 …".
  std::vector<std::string> examples;
  int (*execute)(const Options &options);
  bool isHidden = false; ///< For the build, not for people.
};

/// The commands, in the order in which help lists them.
const std::vector<CommandSpec> &commandTable();

/// What help says of the readings that a command takes.
extern const char *const readingsHelp;

} // namespace qoc::program
