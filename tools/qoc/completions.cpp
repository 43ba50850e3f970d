#include "generate.hpp"

#include "command_table.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

/// A text in single quotes, as shells take it.
std::string inQuotes(const std::string &text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'') quoted += "'\\''";
    else quoted += character;
  }
  return quoted + "'";
}

/// The first part of a help text, for a list.
std::string brief(const std::string &help) { return help.substr(0, help.find(';')); }

std::vector<const CommandSpec *> shownCommands() {
  std::vector<const CommandSpec *> commands;
  for (const CommandSpec &command : commandTable()) {
    if (!command.isHidden) commands.push_back(&command);
  }
  return commands;
}

std::string wordsOf(const OptionSpec &option) {
  std::string words;
  for (const ChoiceSpec &choice : option.choices) words += (words.empty() ? "" : " ") + choice.name;
  return words;
}

std::string namesOf(const OptionSpec &option, const char *between) {
  return option.shortName.empty() ? option.name : option.shortName + between + option.name;
}

} // namespace

std::string bashCompletion() {
  std::string commands, cases;
  for (const CommandSpec *command : shownCommands()) {
    commands += command->name + " ";
    std::string names, values;
    for (const OptionSpec &option : command->options) {
      names += namesOf(option, " ") + " ";
      if (option.kind == ValueKind::none) continue;
      values += "        " + namesOf(option, "|") + ") ";
      switch (option.kind) {
      case ValueKind::choice: values += "COMPREPLY=($(compgen -W " + inQuotes(wordsOf(option)) + " -- \"$current\"))"; break;
      case ValueKind::file: values += "COMPREPLY=($(compgen -f -- \"$current\"))"; break;
      case ValueKind::directory: values += "COMPREPLY=($(compgen -d -- \"$current\"))"; break;
      default: values += "COMPREPLY=()";
      }
      values += "; return ;;\n";
    }
    cases += "    " + command->name + ")\n      case \"$previous\" in\n" + values + "      esac\n      options=" +
             inQuotes(names + "--help") + "\n";
    if (command->takesReadings) cases += "      files=1\n";
    cases += "      ;;\n";
  }
  return "# bash completion for qoc\n"
         "_qoc() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' options='' files=''\n"
         "  COMPREPLY=()\n"
         "  if [[ $COMP_CWORD -gt 1 ]]; then command=${COMP_WORDS[1]}; fi\n"
         "  case \"$command\" in\n" +
         cases +
         "    *) [[ $COMP_CWORD -eq 1 ]] && options=" + inQuotes(commands + "--help --version") +
         " ;;\n"
         "  esac\n"
         "  if [[ -z $files || $current == -* ]]; then\n"
         "    COMPREPLY=($(compgen -W \"$options\" -- \"$current\"))\n"
         "  else\n"
         "    COMPREPLY=($(compgen -f -- \"$current\"))\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _qoc qoc\n";
}

std::string zshCompletion() {
  // In the brackets of a specification, brackets and colons have a meaning.
  const auto inBrackets = [](const std::string &text) {
    std::string escaped;
    for (const char character : text) {
      if (character == '[' || character == ']' || character == ':' || character == '\\') escaped += '\\';
      escaped += character;
    }
    return escaped;
  };
  std::string list, cases;
  for (const CommandSpec *command : shownCommands()) {
    list += "    " + inQuotes(command->name + ":" + command->summary) + "\n";
    cases += "    " + command->name + ")\n      _arguments -s \\\n";
    for (const OptionSpec &option : command->options) {
      std::string action;
      switch (option.kind) {
      case ValueKind::none: break;
      case ValueKind::choice: action = ":" + option.value + ":(" + wordsOf(option) + ")"; break;
      case ValueKind::file: action = ":" + option.value + ":_files"; break;
      case ValueKind::directory: action = ":" + option.value + ":_files -/"; break;
      default: action = ":" + option.value + ":";
      }
      const std::string specification = "[" + inBrackets(brief(option.help)) + "]" + action;
      const bool takesEquals = option.kind != ValueKind::none;
      cases += "        " + inQuotes(option.name + (takesEquals ? "=" : "") + specification) + " \\\n";
      if (!option.shortName.empty()) cases += "        " + inQuotes(option.shortName + specification) + " \\\n";
    }
    cases += "        '--help[Print help and exit]'";
    if (command->takesReadings) cases += " \\\n        '*:READINGS:_files'";
    cases += "\n      ;;\n";
  }
  return "#compdef qoc\n"
         "_qoc() {\n"
         "  local -a commands=(\n" +
         list +
         "  )\n"
         "  if (( CURRENT == 2 )); then\n"
         "    _describe command commands\n"
         "    _arguments '--help[Print help and exit]' '--version[Print the version and exit]'\n"
         "    return\n"
         "  fi\n"
         "  local command=$words[2]\n"
         "  shift words\n"
         "  (( CURRENT-- ))\n"
         "  case $command in\n" +
         cases +
         "  esac\n"
         "}\n"
         "if [[ $funcstack[1] == _qoc ]]; then _qoc \"$@\"; else compdef _qoc qoc; fi\n";
}

std::string fishCompletion() {
  std::string commands, lines;
  for (const CommandSpec *command : shownCommands()) commands += (commands.empty() ? "" : " ") + command->name;
  const std::string none = "-n 'not __fish_seen_subcommand_from " + commands + "'";
  for (const CommandSpec *command : shownCommands()) {
    const std::string seen = "-n '__fish_seen_subcommand_from " + command->name + "'";
    lines += "complete -c qoc -f " + none + " -a " + command->name + " -d " + inQuotes(command->summary) + "\n";
    if (!command->takesReadings) lines += "complete -c qoc -f " + seen + "\n";
    for (const OptionSpec &option : command->options) {
      lines += "complete -c qoc " + seen + " -l " + option.name.substr(2);
      if (!option.shortName.empty()) lines += " -s " + option.shortName.substr(1);
      switch (option.kind) {
      case ValueKind::none: break;
      case ValueKind::choice: lines += " -x -a " + inQuotes(wordsOf(option)); break;
      case ValueKind::file: lines += " -r -F"; break;
      case ValueKind::directory: lines += " -x -a '(__fish_complete_directories)'"; break;
      default: lines += " -x";
      }
      lines += " -d " + inQuotes(brief(option.help)) + "\n";
    }
  }
  return "# fish completion for qoc\n" + lines + "complete -c qoc -f " + none + " -l version -d 'Print the version and exit'\n" +
         "complete -c qoc -s h -l help -d 'Print help and exit'\n";
}

} // namespace qoc::program
