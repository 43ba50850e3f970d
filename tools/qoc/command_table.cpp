#include "command_table.hpp"

#include "check.hpp"
#include "convert.hpp"
#include "explain.hpp"
#include "fit_parameters.hpp"
#include "generate.hpp"
#include "learn.hpp"
#include "report.hpp"
#include "run.hpp"
#include "run_parameters.hpp"
#include "swaps.hpp"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace qoc::program {
namespace {

constexpr long long greatestNumber = 2147483647;

using Specs = std::vector<OptionSpec>;

Specs joined(std::initializer_list<Specs> parts) {
  Specs all;
  for (const Specs &part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

OptionSpec flag(std::string name, std::string help, std::function<void(Options &)> take) {
  OptionSpec option;
  option.name = std::move(name);
  option.help = std::move(help);
  option.take = [take = std::move(take)](Options &options, const std::string &) { take(options); };
  return option;
}

OptionSpec valued(std::string name, ValueKind kind, std::string value, std::string help,
                  std::function<void(Options &, const std::string &)> take) {
  OptionSpec option;
  option.name = std::move(name);
  option.kind = kind;
  option.value = std::move(value);
  option.help = std::move(help);
  option.take = std::move(take);
  return option;
}

OptionSpec number(std::string name, std::string help, std::function<void(Options &, long long)> take) {
  OptionSpec option = valued(std::move(name), ValueKind::number, "N", std::move(help),
                             [take = std::move(take)](Options &options, const std::string &text) {
                               take(options, std::strtoll(text.c_str(), nullptr, 10));
                             });
  option.greatest = greatestNumber;
  return option;
}

OptionSpec choice(std::string name, std::string value, std::string help, std::vector<ChoiceSpec> choices,
                  std::function<void(Options &, const std::string &)> take) {
  OptionSpec option = valued(std::move(name), ValueKind::choice, std::move(value), std::move(help), std::move(take));
  option.choices = std::move(choices);
  return option;
}

OptionSpec dictionaryOption() {
  OptionSpec option = valued("--dictionary", ValueKind::file, "FILE",
                             "The dictionary: a JSON file; - is standard input; required",
                             [](Options &options, const std::string &path) { options.dictionary = path; });
  option.shortName = "-d";
  option.isRequired = true;
  return option;
}

OptionSpec outputOption(std::string help) {
  OptionSpec option = valued("--output", ValueKind::file, "PATH", std::move(help),
                             [](Options &options, const std::string &path) { options.output = path; });
  option.shortName = "-o";
  return option;
}

/// How readings are taken from their files.
Specs inputOptions() {
  std::vector<ChoiceSpec> formats;
  std::string names;
  for (const ReadingFormatName &format : readingFormats) {
    formats.push_back({format.name, format.meaning});
    const bool isLast = &format == std::end(readingFormats) - 1;
    names += (names.empty() ? "\"" : isLast ? " or \"" : ", \"") + std::string(format.name) + "\"";
  }
  return {
      choice("--from", "FORMAT", "What the readings are, " + names + "; default: each file by its content", formats,
             [](Options &options, const std::string &name) {
               for (const ReadingFormatName &format : readingFormats) {
                 if (name == format.name) options.input.format = format.format;
               }
             }),
      choice("--unit", "UNIT", "What of an engine's page is one reading, \"line\" or \"word\"; default line",
             {{"line", ""}, {"word", ""}},
             [](Options &options, const std::string &name) {
               options.input.unit = name == "word" ? ReadingUnit::word : ReadingUnit::line;
             }),
      number("--skip", "Pass over the first N readings; default 0",
             [](Options &options, long long n) { options.skip = static_cast<std::uint64_t>(n); }),
  };
}

/// How the work is done.
Specs workOptions() {
  OptionSpec jobs = number("--jobs", "Threads that work at the same time, 0 for one on each processor; default 1",
                           [](Options &options, long long n) { options.jobs = static_cast<unsigned>(n); });
  jobs.shortName = "-j";
  jobs.greatest = 1024;
  return {std::move(jobs),
          choice("--progress", "WHEN",
                 "Draw a bar with rate, share with a result and time left, \"auto\" or \"never\"; default auto: where "
                 "the error stream is a terminal, standard output is none and all readings are files",
                 {{"auto", ""}, {"never", ""}},
                 [](Options &options, const std::string &when) {
                   options.progress = when == "never" ? ProgressChoice::never : ProgressChoice::automatic;
                 })};
}

OptionSpec jsonOption(std::string help) {
  return flag("--json", std::move(help), [](Options &options) { options.isJson = true; });
}

Specs outputOptions(const std::string &jsonHelp) {
  OptionSpec tsv = flag("--tsv", "Write a table with tabs between its fields, for programs",
                        [](Options &options) { options.isTsv = true; });
  tsv.excludes = "--json";
  return {jsonOption(jsonHelp), std::move(tsv),
          choice("--color", "WHEN",
                 "Colour positions by status, \"auto\", \"always\" or \"never\"; default auto: on a terminal where "
                 "NO_COLOR is not set",
                 {{"auto", ""}, {"always", ""}, {"never", ""}},
                 [](Options &options, const std::string &when) {
                   options.color = when == "always"  ? ColorChoice::always
                                   : when == "never" ? ColorChoice::never
                                                     : ColorChoice::automatic;
                 })};
}

/// Documents that are written back.
Specs documentOptions() {
  OptionSpec to = choice("--to", "FORMAT",
                         "Write the engine's own documents back, \"hocr\", \"alto\" or \"page\", with the best result's "
                         "text where the reading stood and everything else untouched",
                         {{"hocr", ""}, {"alto", ""}, {"page", ""}},
                         [](Options &options, const std::string &format) { options.to = format; });
  to.excludes = "--json";
  OptionSpec output = outputOption("With --to, the file to write, or a directory for files of the same names; default "
                                   "standard output");
  output.needs = to.name;
  return {std::move(to), std::move(output)};
}

/// The options of a table of parameters, which override those of the dictionary file.
template <typename P> Specs parameterOptions(const ParameterTable<P> &table, Overrides<P> Options::*overrides) {
  Specs specs;
  std::string group = table.what + std::string(", which override those of the dictionary file");
  group[0] = static_cast<char>(std::toupper(group[0]));
  for (const NumberParameter<P> &parameter : table.numbers) {
    specs.push_back(number(parameter.option, parameter.help, [=](Options &options, long long value) {
      const auto n = static_cast<std::int32_t>(value);
      (options.*overrides).emplace_back([field = parameter.field, n](P &params) { params.*field = n; });
    }));
  }
  for (const FlagParameter<P> &parameter : table.flags) {
    const auto addFlag = [&](const char *name, std::int32_t value, const char *help) {
      specs.push_back(flag(name, help, [=](Options &options) {
        (options.*overrides).emplace_back([field = parameter.field, value](P &params) { params.*field = value; });
      }));
    };
    addFlag(parameter.onOption, 1, parameter.onHelp);
    addFlag(parameter.offOption, 0, parameter.offHelp);
    specs.back().excludes = parameter.onOption;
  }
  for (const ChoiceParameter<P> &parameter : table.choices) {
    std::vector<ChoiceSpec> choices;
    for (const Choice<P> &known : parameter.choices) choices.push_back({known.name, ""});
    specs.push_back(choice(parameter.option, parameter.typeName, parameter.help, choices,
                           [=](Options &options, const std::string &name) {
                             for (const Choice<P> &known : parameter.choices) {
                               if (name == known.name) (options.*overrides).emplace_back(known.set);
                             }
                           }));
  }
  for (OptionSpec &spec : specs) spec.group = group;
  return specs;
}

/// How one text is chosen.
Specs resolvingOptions() {
  OptionSpec margin = number("--min-margin", "Points by which a text must lead for \"sure\"",
                             [](Options &options, long long points) {
                               const auto units = static_cast<std::int32_t>(points * 100);
                               options.ruleOverrides.emplace_back(
                                   [units](qoc_ocrDictionaryResolverRules &rules) { rules.minMargin = units; });
                             });
  margin.greatest = 1000000;
  OptionSpec alternatives = number("--alternatives", "Other texts to give behind the best one; default 0",
                                   [](Options &options, long long n) {
                                     const auto numTexts = static_cast<std::int32_t>(n) + 1;
                                     options.ruleOverrides.emplace_back([numTexts](qoc_ocrDictionaryResolverRules &rules) {
                                       rules.maxTexts = numTexts;
                                     });
                                   });
  alternatives.greatest = 999;
  Specs specs = {std::move(margin),
                 flag("--require-check", "A text without a check digit is not \"sure\"",
                      [](Options &options) {
                        options.ruleOverrides.emplace_back(
                            [](qoc_ocrDictionaryResolverRules &rules) { rules.requiresCheck = 1; });
                      }),
                 std::move(alternatives)};
  for (OptionSpec &spec : specs) spec.group = "The resolved text, overriding \"resolving\" of the dictionary file";
  return specs;
}

OptionSpec noResolvingOption() {
  OptionSpec option = flag("--no-resolving", "Write the results alone, and choose no text",
                           [](Options &options) { options.isResolving = false; });
  option.group = resolvingOptions().front().group;
  return option;
}

constexpr const char *readingExitCodes =
    "0 every reading had a result, 1 some had none, 2 bad usage, bad input or interrupted";
constexpr const char *plainExitCodes = "0 success, 2 bad usage, bad input or interrupted";
constexpr const char *interruption =
    "A first Ctrl-C, SIGTERM or SIGHUP ends the work after readings that are finished, which are written in full, and says "
    "how to go on.";

std::vector<CommandSpec> makeTable() {
  const Specs runOptions = parameterOptions(runParameters, &Options::overrides);
  std::vector<CommandSpec> table;
  table.push_back({"run",
                   "Match readings with a dictionary",
                   {"Matches every reading with the dictionary's entries and writes the ranked results, as a table or as "
                    "NDJSON with an object for each reading; and the one text that the reading is taken for, its margin "
                    "over the next one, and whether it is \"sure\", \"unsure\" or there is \"none\".",
                    interruption},
                   true,
                   joined({{dictionaryOption()}, inputOptions(), outputOptions("Write NDJSON, an object for each reading, "
                                                                               "instead of a table"),
                           documentOptions(), workOptions(), runOptions, resolvingOptions(), {noResolvingOption()}}),
                   true,
                   readingExitCodes,
                   {"qoc run --dictionary words.json --max-edits 1 readings.ndjson",
                    "tesseract page.png - -c lstm_choice_mode=2 -c hocr_char_boxes=1 hocr | qoc run -d words.json",
                    "qoc run -d words.json --unit word --to hocr page.hocr > corrected.hocr"},
                   run});
  OptionSpec everyLine =
      flag("--all", "Give a result for each line of the dictionary, the fewest edits first, instead of the best one",
           [](Options &options) { options.isEveryLine = true; });
  table.push_back({"fit",
                   "Force readings into the dictionary's lines (\"fieldings\")",
                   {"Lays each reading along each line of the dictionary, position by position, and writes the best "
                    "placement.",
                    interruption},
                   true,
                   joined({{dictionaryOption()}, inputOptions(), outputOptions("Write NDJSON, an object for each reading, "
                                                                               "instead of a table"),
                           documentOptions(), workOptions(), {everyLine},
                           parameterOptions(fitParameters, &Options::fitOverrides)}),
                   true,
                   readingExitCodes,
                   {"qoc fit --dictionary serials.json readings.ndjson"},
                   fit});
  table.push_back({"explain",
                   "Show every result of a reading, laid over the reading, and why it ranks where it does",
                   {"Writes for each reading all results, best first: what was read above what it is with a mark for "
                    "each position, what each status means there, and the key of the ranking that put the result behind "
                    "the one before it.",
                    interruption},
                   true,
                   joined({{dictionaryOption(),
                            valued("--id", ValueKind::text, "ID", "Explain the reading of this id only",
                                   [](Options &options, const std::string &id) { options.id = id; })},
                           inputOptions(), outputOptions("Write NDJSON, an object for each reading"), workOptions(),
                           runOptions}),
                   true,
                   readingExitCodes,
                   {"echo hte | qoc explain -d words.json --max-edits 1",
                    "qoc explain -d words.json --id r0127 readings.ndjson"},
                   explain});
  OptionSpec reportOutput = outputOption("The file to write; it appears when it is complete; default standard output");
  table.push_back({"report",
                   "Write one HTML page of all readings and what they are",
                   {"The page needs nothing beside it and no network: a summary (counts by kind and status, confusions, "
                    "and how many readings are right where they have a \"truth\"), and each reading laid over its best "
                    "result, with candidates under the pointer, filters and a search.",
                    "Pictures that readings name are taken into the page; --images names a directory for others."},
                   true,
                   joined({{dictionaryOption(), reportOutput,
                            valued("--images", ValueKind::directory, "DIRECTORY",
                                   "Where pictures lie that readings do not name, called after the readings' ids",
                                   [](Options &options, const std::string &path) { options.images = path; }),
                            valued("--title", ValueKind::text, "TITLE", "The page's title",
                                   [](Options &options, const std::string &title) { options.title = title; })},
                           inputOptions(), workOptions(), runOptions, resolvingOptions()}),
                   false,
                   readingExitCodes,
                   {"qoc report -d words.json --max-edits 1 -o report.html readings.ndjson"},
                   report});
  OptionSpec convertTo = choice("--to", "FORMAT", "What to write, \"ndjson\" or \"text\"; default ndjson",
                                {{"ndjson", "an object a line, with all candidates, scores and boxes"},
                                 {"text", "a reading a line, its first candidates"}},
                                [](Options &options, const std::string &format) { options.to = format; });
  table.push_back({"convert",
                   "Write readings of any format as NDJSON or text",
                   {"Reads what every command reads and writes it, one reading a line, without matching anything."},
                   true,
                   joined({{convertTo}, inputOptions(), workOptions()}),
                   false,
                   plainExitCodes,
                   {"qoc convert page.hocr > readings.ndjson"},
                   convert});
  table.push_back({"check",
                   "Validate a dictionary and name all its faults",
                   {"Reads the dictionary as every command does, but does not end at the first fault: it names each, with "
                    "the place where it stands; of a file that is no JSON only the first."},
                   false,
                   {dictionaryOption(), jsonOption("Write NDJSON, an object for each fault and one at the end")},
                   false,
                   "0 the dictionary has no faults, 1 it has some, 2 bad usage, or it cannot be read",
                   {"qoc check --dictionary words.json"},
                   checkDictionary});
  OptionSpec threshold = number("--threshold", "How often a confusion must be seen to be learnt; default 3",
                                [](Options &options, long long n) { options.threshold = static_cast<std::size_t>(n); });
  threshold.least = 1;
  OptionSpec folds = number("--parts", "Parts for the cross-validation; default 5",
                            [](Options &options, long long n) { options.numFolds = static_cast<unsigned>(n); });
  folds.least = 2;
  folds.greatest = 1000;
  table.push_back({"learn",
                   "Learn what a reader confuses from readings whose truth is known",
                   {"Aligns every reading that has a \"truth\" with it, counts what was read for what, and writes the "
                    "confusions that were seen often enough: with their counts, the penalty that follows from them, how "
                    "many more readings each alone makes right and wrong, and the sections for a dictionary file.",
                    "What it says of all of them together is cross-validated: each part of the readings is judged with "
                    "what the other parts teach.",
                    interruption},
                   true,
                   joined({{dictionaryOption(), jsonOption("Write one JSON object instead of a table"), std::move(threshold),
                            std::move(folds)},
                           inputOptions(), runOptions, resolvingOptions()}),
                   false,
                   plainExitCodes,
                   {"qoc learn --dictionary serials.json readings.ndjson"},
                   learn});
  table.push_back({"swaps",
                   "Print what a dictionary's swaps make equivalent",
                   {},
                   false,
                   {dictionaryOption(), jsonOption("Write one JSON object instead of a table")},
                   false,
                   plainExitCodes,
                   {},
                   printSwaps});
  OptionSpec directory = outputOption("The directory to write to");
  directory.isRequired = true;
  table.push_back({"generate",
                   "Write the manual pages and the completions for shells, as an installation has them",
                   {},
                   false,
                   {directory},
                   false,
                   plainExitCodes,
                   {},
                   generate,
                   true});
  return table;
}

} // namespace

const char *const readingsHelp =
    "The readings: files of text with a reading a line, of NDJSON with an object a line that holds \"positions\", each a "
    "list of [character, score], or \"text\", or what an OCR engine wrote: hOCR, Tesseract's TSV, ALTO, PAGE XML; - or "
    "none is standard input";

const std::vector<CommandSpec> &commandTable() {
  static const std::vector<CommandSpec> table = makeTable();
  return table;
}

} // namespace qoc::program
