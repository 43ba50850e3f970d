#pragma once

/// @file Parameters by name: a table for each record of parameters serves the dictionary file and the command line.

#include "json_input.hpp"
#include "trouble.hpp"

#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace qoc::program {

/// A parameter of the record P that is a number.
template <typename P> struct NumberParameter {
  const char *key, *option; ///< Its names in the dictionary file and on the command line.
  std::int32_t P::*field;
  const char *help;
};

/// A parameter that is on or off.
template <typename P> struct FlagParameter {
  const char *key;
  const char *onOption, *offOption; ///< The command line's options that set 1 and 0.
  std::int32_t P::*field;
  const char *onHelp, *offHelp;
};

/// A value of a parameter that is one of several words.
template <typename P> struct Choice {
  const char *name;
  void (*set)(P &params);
};

/// A parameter that is one of several words.
template <typename P> struct ChoiceParameter {
  const char *key, *option;
  const char *typeName; ///< What the help calls the word.
  std::span<const Choice<P>> choices;
  const char *help;
};

/// Every parameter of the record P that has a name.
template <typename P> struct ParameterTable {
  const char *what; ///< "run parameters", for messages and help.
  std::span<const NumberParameter<P>> numbers;
  std::span<const FlagParameter<P>> flags;
  std::span<const ChoiceParameter<P>> choices;
  qsys_status (*validate)(const P *params);
};

/// What the command line changes in the parameters of the dictionary file.
template <typename P> using Overrides = std::vector<std::function<void(P &)>>;

/// Reads one key of the table into the parameters. @return false where the table does not have the key
template <typename P>
bool readParameter(const JsonNode &node, const std::string &key, const ParameterTable<P> &table, P &params) {
  for (const NumberParameter<P> &parameter : table.numbers) {
    if (key != parameter.key) continue;
    params.*parameter.field = node.integer(0, std::numeric_limits<std::int32_t>::max());
    return true;
  }
  for (const FlagParameter<P> &parameter : table.flags) {
    if (key != parameter.key) continue;
    params.*parameter.field = node.boolean() ? 1 : 0;
    return true;
  }
  for (const ChoiceParameter<P> &parameter : table.choices) {
    if (key != parameter.key) continue;
    std::string names;
    for (const Choice<P> &choice : parameter.choices) {
      const bool isLast = &choice == &parameter.choices.back();
      names += std::string(names.empty() ? "\"" : isLast ? " or \"" : ", \"") + choice.name + "\"";
    }
    const std::string &name = node.string(names);
    for (const Choice<P> &choice : parameter.choices) {
      if (name != choice.name) continue;
      choice.set(params);
      return true;
    }
    node.failExpected(names);
  }
  return false;
}

/// Reads an object of the dictionary file over what the parameters hold, and validates them.
template <typename P> void readParameterObject(const JsonNode &node, const ParameterTable<P> &table, P &params) {
  node.requireObject(std::string("an object of ") + table.what);
  std::string known;
  const auto addKeys = [&known](const auto &parameters) {
    for (const auto &parameter : parameters) {
      known += (known.empty() ? "\"" : ", \"") + std::string(parameter.key) + "\"";
    }
  };
  addKeys(table.numbers);
  addKeys(table.flags);
  addKeys(table.choices);
  for (const std::string &key : node.keys()) {
    const JsonNode member = node.member(key);
    node.attempt([&] {
      if (!readParameter(member, key, table, params)) member.fail("unknown key; expected one of " + known);
    });
  }
  check(table.validate(&params), node.where());
}

/// Makes the command line's changes, and validates the parameters.
template <typename P> void applyOverrides(const Overrides<P> &overrides, const ParameterTable<P> &table, P &params) {
  for (const auto &change : overrides) change(params);
  check(table.validate(&params), table.what);
}

} // namespace qoc::program
