#include "generate.hpp"

#include "command_table.hpp"
#include "marks.hpp"

#include <set>
#include <sstream>

namespace qoc::program {
namespace {

/// Text as mdoc takes it: in short lines, none of which begins a macro, and backslashes are characters.
std::string plain(const std::string &text) {
  constexpr std::size_t width = 76;
  std::istringstream words(text);
  std::string lines, line;
  for (std::string word; words >> word;) {
    std::string escaped;
    for (const char character : word) escaped += character == '\\' ? "\\e" : character == '-' ? "\\-" : std::string(1, character);
    if (!line.empty() && line.size() + 1 + escaped.size() > width) {
      lines += line + "\n";
      line.clear();
    }
    if (line.empty() && (escaped.front() == '.' || escaped.front() == '\'')) line = "\\&";
    line += (line.empty() || line == "\\&" ? "" : " ") + escaped;
  }
  return lines + line;
}

/// An argument of a macro.
std::string argument(const std::string &text) {
  std::string escaped = "\"\\&";
  for (const char character : text) {
    if (character == '"') escaped += "\"\"";
    else if (character == '\\') escaped += "\\e";
    else escaped += character;
  }
  return escaped + "\"";
}

/// One option's names and value as arguments of macros.
std::string optionNames(const OptionSpec &option) {
  const std::string value = option.value.empty() ? "" : " Ar " + option.value;
  const std::string shortName = option.shortName.empty() ? "" : "Fl " + option.shortName.substr(1) + " , ";
  return shortName + "Fl " + option.name.substr(1) + value;
}

void addOptions(std::ostream &page, const std::vector<OptionSpec> &options) {
  std::string group;
  page << ".Bl -tag -width Ds\n";
  for (const OptionSpec &option : options) {
    if (option.group != group) {
      group = option.group;
      page << ".El\n.Pp\n" << plain(group) << ":\n.Bl -tag -width Ds\n";
    }
    page << ".It " << optionNames(option) << "\n" << plain(option.help) << ".\n";
    if (!option.choices.empty() && !option.choices.front().meaning.empty()) {
      page << ".Bl -tag -width Ds -compact\n";
      for (const ChoiceSpec &choice : option.choices) {
        page << ".It Cm " << choice.name << "\n" << plain(choice.meaning) << "\n";
      }
      page << ".El\n";
    }
  }
  page << ".El\n";
}

constexpr const char *monthOfManual = "November 21, 2026";

void addHead(std::ostream &page, const std::string &name, const std::string &summary) {
  std::string title;
  for (const char character : name) title += static_cast<char>(character >= 'a' && character <= 'z' ? character - 32 : character);
  page << ".Dd " << monthOfManual << "\n.Dt " << title << " 1\n.Os\n.Sh NAME\n.Nm " << name << "\n.Nd " << plain(summary) << "\n";
}

void addMarks(std::ostream &page) {
  page << ".Sh MARKS\nEach position of the reading and of the result has a mark:\n.Bl -tag -width xxx -compact\n";
  for (const Mark &mark : marks) {
    page << ".It Sy " << argument(std::string(1, mark.mark)) << "\n" << plain(mark.meaning) << "\n";
  }
  page << ".El\nA position of a result that stays open is shown as \\[es].\n";
}

void addEnvironment(std::ostream &page) {
  page << ".Sh ENVIRONMENT\n.Bl -tag -width NO_COLOR\n.It Ev NO_COLOR\n"
          "Where set and not empty, output is not coloured unless\n.Fl -color Cm always\nis given.\n.El\n";
}

std::string commandPage(const CommandSpec &command) {
  std::ostringstream page;
  addHead(page, "qoc-" + command.name, command.summary);
  page << ".Sh SYNOPSIS\n.Nm qoc\n.Cm " << command.name << "\n";
  for (const OptionSpec &option : command.options) {
    if (option.isRequired) page << ".Fl " << option.name.substr(1) << " Ar " << option.value << "\n";
  }
  page << ".Op Ar options\n";
  if (command.takesReadings) page << ".Op Ar READINGS ...\n";
  page << ".Sh DESCRIPTION\n" << plain(command.summary) << ".\n";
  for (const std::string &paragraph : command.description) page << ".Pp\n" << plain(paragraph) << "\n";
  if (command.takesReadings) page << ".Pp\n" << plain(readingsHelp) << ".\n";
  page << ".Sh OPTIONS\n";
  addOptions(page, command.options);
  if (command.explainsMarks) addMarks(page);
  addEnvironment(page);
  page << ".Sh EXIT STATUS\n" << plain(command.exitCodes) << ".\n";
  if (!command.examples.empty()) {
    page << ".Sh EXAMPLES\n";
    for (const std::string &example : command.examples) page << ".Dl " << argument(example) << "\n";
  }
  page << ".Sh SEE ALSO\n.Xr qoc 1\n";
  return page.str();
}

std::string crossReferences(const std::set<std::string> &commands) {
  std::string text;
  for (const std::string &command : commands) text += (text.empty() ? ".Xr qoc-" : " ,\n.Xr qoc-") + command + " 1";
  return text;
}

std::string mainPage() {
  std::ostringstream page;
  addHead(page, "qoc", "match what an OCR engine read with what it can be");
  page << ".Sh SYNOPSIS\n.Nm\n.Ar COMMAND\n.Op Ar options\n.Nm\n.Fl -help | Fl -version\n.Sh DESCRIPTION\n.Nm\n"
          "takes what an OCR engine read, best as several scored candidate characters\nfor every position, and a "
          "dictionary of what the text may be, and gives the\nranked ways in which the reading can be a dictionary "
          "text.\n.Pp\nThe commands, each with a page of its own:\n.Bl -tag -width Ds\n";
  std::set<std::string> seeAlso;
  for (const CommandSpec &command : commandTable()) {
    if (command.isHidden) continue;
    page << ".It Xr qoc-" << command.name << " 1\n" << plain(command.summary) << ".\n";
    seeAlso.insert(command.name);
  }
  page << ".El\n.Pp\nResults go to standard output, everything else to standard error.\n.Sh OPTIONS\n"
          ".Bl -tag -width Ds\n.It Fl h , Fl -help\nPrint help and exit; behind a command, the command's.\n"
          ".It Fl -version\nPrint the version and exit.\n.El\n";
  addEnvironment(page);
  page << ".Sh EXIT STATUS\n.Bl -tag -width Ds -compact\n.It 0\nSuccess; every reading had a result.\n.It 1\n"
          "Some readings had none, or a dictionary has faults.\n.It 2\nBad usage, bad input, or interrupted.\n"
          "A message on standard error says where and what was expected; what was\nfinished before it is written in full.\n.El\n"
          ".Sh EXAMPLES\n.Dl \"qoc run --dictionary words.json --max-edits 1 readings.ndjson\"\n"
          ".Dl \"ocr page.png | qoc run -d words.json --json\"\n.Sh SEE ALSO\n"
       << crossReferences(seeAlso)
       << "\n.Pp\nThe documents\n.Pa dictionary-file.md ,\n.Pa dictionary.schema.json\nand\n.Pa readings.md\n"
          "describe the dictionary file, the readings and the output.\n";
  return page.str();
}

} // namespace

std::vector<std::string> manualPages() {
  std::vector<std::string> pages{"qoc"};
  for (const CommandSpec &command : commandTable()) {
    if (!command.isHidden) pages.push_back("qoc-" + command.name);
  }
  return pages;
}

std::string manualPage(const std::string &name) {
  for (const CommandSpec &command : commandTable()) {
    if (name == "qoc-" + command.name) return commandPage(command);
  }
  return mainPage();
}

} // namespace qoc::program
