#include "command_line.hpp"

#include "command_table.hpp"
#include "marks.hpp"
#include "output_file.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace qoc::program {
namespace {

constexpr int exitCodeOfBadUsage = 2;

/// A text in lines of a bounded width.
std::string wrapped(const std::string &text, std::size_t width) {
  std::istringstream words(text);
  std::string lines, line;
  for (std::string word; words >> word; line += (line.empty() ? "" : " ") + word) {
    if (line.size() + 1 + word.size() <= width) continue;
    lines += line + "\n";
    line.clear();
  }
  return lines + line;
}

/// Wraps the help texts, and leaves out what they say themselves.
class HelpFormatter : public CLI::Formatter {
public:
  std::string make_option_opts(const CLI::Option *option) const override {
    return option->get_type_name().empty() ? "" : " " + option->get_type_name();
  }
  std::string make_option_desc(const CLI::Option *option) const override {
    constexpr std::size_t width = 86;
    return wrapped(option->get_description(), width);
  }
};

/// Takes decimal digits alone; what else programs read as numbers (0x10, 1e3, 010 as eight) would only surprise.
CLI::Validator wholeNumber(long long least, long long greatest) {
  return {[=](const std::string &text) -> std::string {
            long long value = -1;
            const char *end = text.data() + text.size();
            const auto [stop, error] = std::from_chars(text.data(), end, value);
            if (error == std::errc{} && stop == end && value >= least && value <= greatest) return {};
            return "found \"" + text + "\"; expected a whole number from " + std::to_string(least) + " to " +
                   std::to_string(greatest);
          },
          ""};
}

void addOption(CLI::App &command, const OptionSpec &spec, Options &options,
               std::map<std::string, CLI::Option *> &added) {
  const std::string names = spec.shortName.empty() ? spec.name : spec.shortName + "," + spec.name;
  CLI::Option *option = nullptr;
  if (spec.kind == ValueKind::none) {
    const std::function<void()> take = [&options, &spec] { spec.take(options, ""); };
    option = command.add_flag_callback(names, take, spec.help);
  } else {
    const std::function<void(const std::string &)> take = [&options, &spec](const std::string &value) {
      spec.take(options, value);
    };
    option = command.add_option_function<std::string>(names, take, spec.help)->type_name(spec.value);
  }
  if (spec.kind == ValueKind::number) option->check(wholeNumber(spec.least, spec.greatest));
  if (spec.kind == ValueKind::choice) {
    std::set<std::string> words;
    for (const ChoiceSpec &choice : spec.choices) words.insert(choice.name);
    option->check(CLI::IsMember(words).description(""));
  }
  if (spec.isRequired) option->required();
  if (!spec.group.empty()) option->group(spec.group);
  added[spec.name] = option;
  const auto excluded = added.find(spec.excludes);
  if (excluded != added.end()) option->excludes(excluded->second);
  const auto needed = added.find(spec.needs);
  if (needed != added.end()) option->needs(needed->second);
}

std::string footerOf(const CommandSpec &spec) {
  constexpr std::size_t width = 118;
  std::string footer;
  for (const std::string &paragraph : spec.description) footer += wrapped(paragraph, width) + "\n\n";
  if (spec.explainsMarks) {
    footer += "Marks, for each position of the reading and of the result:\n";
    for (const Mark &mark : marks) footer += std::string("  ") + mark.mark + "  " + mark.meaning + "\n";
    footer += "A position of a result that stays open is shown as \u2205.\n\n";
  }
  for (const std::string &example : spec.examples) footer += "  " + example + "\n";
  if (!spec.examples.empty()) footer += "\n";
  return footer + wrapped("Exit codes: " + spec.exitCodes + ".", width) + "\n";
}

/// The parser would only say that a command is missing.
void requireKnownCommand(const std::string &name) {
  std::string known;
  for (const CommandSpec &spec : commandTable()) {
    if (name == spec.name) return;
    if (!spec.isHidden) known += (known.empty() ? "\"" : "\", \"") + spec.name;
  }
  throw CLI::ValidationError("found \"" + name + "\"; expected one of the commands " + known + "\"");
}

/// Completes what was asked for, and checks what concerns several options.
void finish(Options &options, const CommandSpec &spec) {
  options.command = spec.execute;
  if (!spec.takesReadings) return;
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
  app.failure_message([](const CLI::App *, const CLI::Error &error) {
    return std::string("qoc: ") + error.what() + "\nRun with --help for more information.\n";
  });
  app.require_subcommand(1);
  app.footer("qoc COMMAND --help tells more about a command.\nExit codes: 0 success, 1 readings without a result or faults "
             "of a dictionary, 2 bad usage, bad input or interrupted.\n");
  for (const CommandSpec &spec : commandTable()) {
    CLI::App &command = *app.add_subcommand(spec.name, spec.summary);
    if (spec.isHidden) command.group("");
    command.footer(footerOf(spec));
    std::map<std::string, CLI::Option *> added;
    for (const OptionSpec &option : spec.options) addOption(command, option, options, added);
    if (spec.takesReadings) command.add_option("readings", options.readings, readingsHelp)->type_name("READINGS");
    command.callback([&options, &spec] { finish(options, spec); });
  }
  try {
    if (argc > 1 && argv[1][0] != '-') requireKnownCommand(argv[1]);
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    std::ostringstream text;
    exitCode = app.exit(error, text, std::cerr) == 0 ? 0 : exitCodeOfBadUsage;
    Output output;
    output.write(text.str());
    output.finish();
    return std::nullopt;
  }
  return options;
}

} // namespace qoc::program
