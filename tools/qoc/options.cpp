#include "options.hpp"

#include "fit_parameters.hpp"
#include "output.hpp"
#include "run.hpp"
#include "run_parameters.hpp"
#include "swaps.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace qoc::program {
namespace {

constexpr int exitCodeOfBadUsage = 2;
constexpr const char *exitCodes =
    "Exit codes: 0 every reading had a result, 1 some had none, 2 bad usage, bad input or interrupted.\n";

/// Wraps the help texts, and leaves out what they say themselves.
class HelpFormatter : public CLI::Formatter {
public:
  std::string make_option_opts(const CLI::Option *option) const override {
    return option->get_type_name().empty() ? "" : " " + option->get_type_name();
  }
  std::string make_option_desc(const CLI::Option *option) const override {
    constexpr std::size_t width = 86;
    std::istringstream words(option->get_description());
    std::string text, line;
    for (std::string word; words >> word; line += (line.empty() ? "" : " ") + word) {
      if (line.size() + 1 + word.size() <= width) continue;
      text += line + "\n";
      line.clear();
    }
    return text + line;
  }
};

/// The options of a table of parameters, which override those of the dictionary file.
template <typename P> void addParameters(CLI::App &command, const ParameterTable<P> &table, Overrides<P> &overrides) {
  std::string group = table.what + std::string(", which override those of the dictionary file");
  group[0] = static_cast<char>(std::toupper(group[0]));
  for (const NumberParameter<P> &parameter : table.numbers) {
    const std::function<void(const std::int32_t &)> take = [&overrides, field = parameter.field](std::int32_t value) {
      overrides.emplace_back([=](P &params) { params.*field = value; });
    };
    command.add_option_function<std::int32_t>(parameter.option, take, parameter.help)
        ->type_name("N")
        ->check(CLI::Range(0, std::numeric_limits<std::int32_t>::max()).description(""))
        ->group(group);
  }
  for (const FlagParameter<P> &parameter : table.flags) {
    const auto addFlag = [&](const char *name, std::int32_t value, const char *help) {
      const std::function<void()> take = [&overrides, field = parameter.field, value] {
        overrides.emplace_back([=](P &params) { params.*field = value; });
      };
      return command.add_flag_callback(name, take, help)->group(group);
    };
    CLI::Option *on = addFlag(parameter.onOption, 1, parameter.onHelp);
    CLI::Option *off = addFlag(parameter.offOption, 0, parameter.offHelp);
    on->excludes(off);
  }
  for (const ChoiceParameter<P> &parameter : table.choices) {
    std::map<std::string, void (*)(P &)> setters;
    for (const Choice<P> &choice : parameter.choices) setters[choice.name] = choice.set;
    std::set<std::string> names;
    for (const auto &[name, unused] : setters) names.insert(name);
    const std::function<void(const std::string &)> take = [&overrides, setters](const std::string &name) {
      overrides.emplace_back(setters.at(name));
    };
    command.add_option_function<std::string>(parameter.option, take, parameter.help)
        ->type_name(parameter.typeName)
        ->check(CLI::IsMember(names).description(""))
        ->group(group);
  }
}

/// An option that takes one of several words.
template <typename Choice>
void addChoice(CLI::App &run, const std::string &name, Choice &target, const std::map<std::string, Choice> &choices,
               const std::string &typeName, const std::string &help) {
  std::set<std::string> names;
  for (const auto &[word, unused] : choices) names.insert(word);
  const std::function<void(const std::string &)> take = [&target, choices](const std::string &word) {
    target = choices.at(word);
  };
  run.add_option_function<std::string>(name, take, help)
      ->type_name(typeName)
      ->check(CLI::IsMember(names).description(""));
}

void addDictionaryOptions(CLI::App &command, Options &options, const std::string &jsonHelp) {
  command.add_option("-d,--dictionary", options.dictionary, "The dictionary: a JSON file; - is standard input; required")
      ->type_name("FILE")
      ->required();
  command.add_flag("--json", options.isJson, jsonHelp);
}

/// The options of a command that works on readings.
void addReadingOptions(CLI::App &command, Options &options) {
  command.footer("Marks of the table, for each position of the reading and of the result:\n" + tableLegend() +
                 "A position of a result that stays open is shown as \u2205.\n" + exitCodes);
  addDictionaryOptions(command, options, "Write NDJSON, an object for each reading, instead of a table");
  command.add_option("readings", options.readings,
                     "The readings: text with a reading a line, or NDJSON with an object a line that holds "
                     "\"positions\", each a list of [character, score], or \"text\"; - or none is standard input")
      ->type_name("READINGS");
  addChoice<ReadingFormat>(command, "--from", options.from,
                           {{"text", ReadingFormat::text}, {"ndjson", ReadingFormat::ndjson}}, "FORMAT",
                           "What the readings are, \"text\" or \"ndjson\"; default: each file by its first line, "
                           "NDJSON where it begins with {");
  addChoice<ColorChoice>(command, "--color", options.color,
                         {{"auto", ColorChoice::automatic},
                          {"always", ColorChoice::always},
                          {"never", ColorChoice::never}},
                         "WHEN",
                         "Colour the table's positions by status, \"auto\", \"always\" or \"never\"; default auto: on "
                         "a terminal where NO_COLOR is not set");
}

/// Ends the reading of a command that works on readings.
void takeReadings(Options &options, int (*command)(const Options &)) {
  options.command = command;
  if (options.readings.empty()) options.readings.emplace_back("-");
  const auto numInputs = std::count(options.readings.begin(), options.readings.end(), "-");
  if (numInputs + (options.dictionary == "-" ? 1 : 0) > 1) {
    throw CLI::ValidationError("standard input can be read once; \"-\" stands more than once, or for the dictionary "
                               "where no readings are named");
  }
}

} // namespace

std::optional<Options> readOptions(int argc, char **argv, int &exitCode) {
  Options options;
  CLI::App app("Matches what an OCR engine read with what it can be.", "qoc");
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_version_flag("--version", "qoc " QOC_PROGRAM_VERSION, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.require_subcommand(1);
  app.footer("qoc COMMAND --help tells more about a command.\n" + std::string(exitCodes));

  CLI::App &runCommand = *app.add_subcommand("run", "Match readings with a dictionary");
  addReadingOptions(runCommand, options);
  addParameters(runCommand, runParameters, options.overrides);
  runCommand.callback([&options] { takeReadings(options, run); });

  CLI::App &fitCommand = *app.add_subcommand("fit", "Force readings into the dictionary's lines (\"fieldings\")");
  addReadingOptions(fitCommand, options);
  fitCommand.add_flag("--all", options.isEveryLine,
                      "Give a result for each line of the dictionary, the fewest edits first, instead of the best one");
  addParameters(fitCommand, fitParameters, options.fitOverrides);
  fitCommand.callback([&options] { takeReadings(options, fit); });

  CLI::App &swapsCommand = *app.add_subcommand("swaps", "Print what a dictionary's swaps make equivalent");
  swapsCommand.footer("Exit codes: 0 success, 2 bad usage, bad input or interrupted.\n");
  addDictionaryOptions(swapsCommand, options, "Write one JSON object instead of a table");
  swapsCommand.callback([&options] { options.command = printSwaps; });

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    exitCode = app.exit(error) == 0 ? 0 : exitCodeOfBadUsage;
    return std::nullopt;
  }
  return options;
}

} // namespace qoc::program
