#include "options.hpp"

#include "output.hpp"
#include "run_parameters.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
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

void addParameters(CLI::App &run, Options &options) {
  const std::string group = "Run parameters, which override those of the dictionary file";
  for (const NumberParameter &parameter : numberParameters) {
    const std::function<void(const std::int32_t &)> take = [&options, field = parameter.field](std::int32_t value) {
      options.overrides.emplace_back([=](qoc_ocrDictionaryRunParams &params) { params.*field = value; });
    };
    run.add_option_function<std::int32_t>(parameter.option, take, parameter.help)
        ->type_name("N")
        ->check(CLI::Range(0, std::numeric_limits<std::int32_t>::max()).description(""))
        ->group(group);
  }
  for (const FlagParameter &parameter : flagParameters) {
    const auto addFlag = [&](const char *name, std::int32_t value, const char *help) {
      const std::function<void()> take = [&options, field = parameter.field, value] {
        options.overrides.emplace_back([=](qoc_ocrDictionaryRunParams &params) { params.*field = value; });
      };
      return run.add_flag_callback(name, take, help)->group(group);
    };
    CLI::Option *on = addFlag(parameter.onOption, 1, parameter.onHelp);
    CLI::Option *off = addFlag(parameter.offOption, 0, parameter.offHelp);
    on->excludes(off);
  }
  std::set<std::string> names;
  for (const Ranking &ranking : rankings) names.insert(ranking.name);
  const std::function<void(const std::string &)> take = [&options](const std::string &name) {
    options.overrides.emplace_back([=](qoc_ocrDictionaryRunParams &params) { setRanking(params, name); });
  };
  run.add_option_function<std::string>("--ranking", take, rankingHelp)
      ->type_name("ORDER")
      ->check(CLI::IsMember(names).description(""))
      ->group(group);
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

} // namespace

std::optional<Options> readOptions(int argc, char **argv, int &exitCode) {
  Options options;
  CLI::App app("Matches what an OCR engine read with what it can be.", "qoc");
  app.formatter(std::make_shared<HelpFormatter>());
  app.set_version_flag("--version", "qoc " QOC_PROGRAM_VERSION, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.require_subcommand(1);
  app.footer("qoc COMMAND --help tells more about a command.\n" + std::string(exitCodes));

  CLI::App &run = *app.add_subcommand("run", "Match readings with a dictionary");
  run.footer("Marks of the table, for each position of the reading and of the result:\n" + tableLegend() + exitCodes);
  run.add_option("-d,--dictionary", options.dictionary,
                 "The dictionary: a JSON file with word lists; - is standard input; required")
      ->type_name("FILE")
      ->required();
  run.add_option("readings", options.readings,
                 "The readings: text with a reading a line, or NDJSON with an object a line that holds \"positions\", "
                 "each a list of [character, score], or \"text\"; - or none is standard input")
      ->type_name("READINGS");
  std::map<std::string, ReadingFormat> formats;
  for (const ReadingFormatName &format : readingFormats) formats[format.name] = format.format;
  addChoice<ReadingFormat>(run, "--from", options.input.format, formats, "FORMAT",
                           "What the readings are, \"text\", \"ndjson\", \"hocr\", \"tsv\", \"alto\" or \"page\"; "
                           "default: each file by its content");
  addChoice<ReadingUnit>(run, "--unit", options.input.unit, {{"line", ReadingUnit::line}, {"word", ReadingUnit::word}},
                         "UNIT", "What of an engine's document is one reading, \"line\" or \"word\"; default line");
  run.add_flag("--json", options.isJson, "Write NDJSON, an object for each reading, instead of a table");
  addChoice<ColorChoice>(run, "--color", options.color,
                         {{"auto", ColorChoice::automatic},
                          {"always", ColorChoice::always},
                          {"never", ColorChoice::never}},
                         "WHEN",
                         "Colour the table's positions by status, \"auto\", \"always\" or \"never\"; default auto: on "
                         "a terminal where NO_COLOR is not set");
  addParameters(run, options);

  run.callback([&options] {
    if (options.readings.empty()) options.readings.emplace_back("-");
    const auto numInputs = std::count(options.readings.begin(), options.readings.end(), "-");
    if (numInputs + (options.dictionary == "-" ? 1 : 0) > 1) {
      throw CLI::ValidationError("standard input can be read once; \"-\" stands more than once, or for the dictionary "
                                 "where no readings are named");
    }
  });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    exitCode = app.exit(error) == 0 ? 0 : exitCodeOfBadUsage;
    return std::nullopt;
  }
  return options;
}

} // namespace qoc::program
