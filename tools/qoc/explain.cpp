#include "explain.hpp"

#include "explanation.hpp"
#include "marks.hpp"
#include "matching.hpp"
#include "ranking.hpp"
#include "reading_loop.hpp"
#include "text.hpp"

#include <memory>

namespace qoc::program {
namespace {

struct Outcome {
  std::string text;
  bool hasResult = false;
};

/// A result's characters as one text; what stays open is shown.
std::string shownText(const std::vector<Char32> &codes) {
  std::string text;
  for (const Char32 code : codes) appendUtf8(text, code == QOC_CHAR_EMPTY ? 0x2205 : visible(code));
  return text;
}

/// A text without what commands a terminal.
std::string shown(const std::string &text) { return shownText(decodeUtf8(text)); }

std::string counted(std::size_t n, const char *one, const char *many) {
  return std::to_string(n) + " " + (n == 1 ? one : many);
}

std::string decisionAsText(const RankingDecision &decision, std::size_t rank) {
  const std::string ahead = "behind result " + std::to_string(rank - 1);
  if (decision.order.empty()) return ahead + ": equal in every key; in the order in which they were found";
  return ahead + " by " + decision.key + ": " + decision.second + " against " + decision.first + ", " + decision.order;
}

std::string explainAsText(const Reading &reading, std::span<const qoc_ocrDictionaryResult> results,
                          const qoc_ocrDictionaryRunParams &params, bool colored) {
  std::string text = "reading " + shown(reading.name()) + " (" + reading.place() + "): " + quoted(reading.text()) +
                     ", " + (results.empty() ? "no result" : counted(results.size(), "result", "results")) + "\n";
  for (std::size_t i = 0; i < results.size(); ++i) {
    const qoc_ocrDictionaryResult &result = results[i];
    const std::vector<Char32> codes = resultText(result);
    const Explanation explanation = explainResult(reading, result, codes);
    text += "\n  result " + std::to_string(i + 1) + ": " + quoted(shownText(codes)) + ", " +
            counted(static_cast<std::size_t>(result.numEdits), "edit", "edits") + ", from " + sourceName(result.mode) +
            "\n" + explanationAsText(explanation, "    ", colored) + meaningsAsText(explanation, "    ", colored);
    if (i > 0) text += "    " + decisionAsText(whyRanked(params, results[i - 1], result), i + 1) + "\n";
    else if (results.size() > 1) text += "    ranks first\n";
  }
  return text + "\n";
}

JsonText decisionAsJson(const RankingDecision &decision) {
  JsonText object = JsonText::object();
  object.set("key", decision.order.empty() ? nullptr : JsonText(decision.key));
  object.set("before", decision.first);
  object.set("here", decision.second);
  object.set("order", decision.order.empty() ? "as found" : decision.order);
  return object;
}

std::string explainAsJson(const Reading &reading, std::span<const qoc_ocrDictionaryResult> results,
                          const qoc_ocrDictionaryRunParams &params) {
  JsonText object = aboutReading("explanation", reading);
  JsonText list = JsonText::array();
  for (std::size_t i = 0; i < results.size(); ++i) {
    const qoc_ocrDictionaryResult &result = results[i];
    const std::vector<Char32> codes = resultText(result);
    JsonText entry = JsonText::object();
    entry.set("rank", i + 1);
    entry.set("text", shownText(codes));
    entry.set("numEdits", result.numEdits);
    entry.set("from", sourceName(result.mode));
    entry.set("decidedBy", i > 0 ? decisionAsJson(whyRanked(params, results[i - 1], result)) : nullptr);
    entry.set("positions", explanationAsJson(explainResult(reading, result, codes)));
    list.push(entry);
  }
  object.set("results", list);
  return object.text() + "\n";
}

constexpr const char *tableHeadLine = "file\tline\tid\trank\tposition\tread\tis\tstatus\tmark\tmeaning\n";

std::string explainAsTsv(const Reading &reading, std::span<const qoc_ocrDictionaryResult> results) {
  std::string text;
  for (std::size_t i = 0; i < results.size(); ++i) {
    const Explanation explanation = explainResult(reading, results[i], resultText(results[i]));
    for (const ExplanationColumn &column : explanation.columns) {
      const Mark &mark = markOf(column.status);
      text += tsvRow({reading.file, std::to_string(reading.line), reading.id.is_null() ? "" : reading.name(),
                      std::to_string(i + 1), column.begin < column.end ? std::to_string(column.begin) : "", column.read,
                      column.character, mark.name, std::string(1, mark.mark), column.meaning});
    }
  }
  return text;
}

bool isWanted(const Reading &reading, const Options &options) {
  return options.id.empty() || reading.name() == options.id;
}

ExitCode execute(const Options &options, std::uint64_t &numFinished) {
  DictionaryFile file;
  readDictionaryFile(options.dictionary, file);
  matchTask.prepare(options, file);
  file.params->returnBestOnly = 0; // Every result, whatever the dictionary asks of other commands.
  Output output;
  if (options.isTsv) output.write(tableHeadLine);
  const bool colored = isColored(options.color);
  std::uint64_t numWanted = 0;

  ReadingSteps<Outcome> steps;
  steps.makeWorker = [&] {
    return [&options, &file, colored, matcher = std::make_shared<Matcher>(options, matchTask, file)](Reading &reading) {
      if (!isWanted(reading, options)) return Outcome{{}, true};
      const std::span<const qoc_ocrDictionaryResult> results = elements(matcher->match(reading).results->results);
      const qoc_ocrDictionaryRunParams &params = *file.params.get();
      return Outcome{options.isJson  ? explainAsJson(reading, results, params)
                     : options.isTsv ? explainAsTsv(reading, results)
                                     : explainAsText(reading, results, params, colored),
                     !results.empty()};
    };
  };
  steps.deliver = [&](Reading &reading, Outcome &outcome) {
    if (isWanted(reading, options)) ++numWanted;
    output.write(outcome.text);
    return outcome.hasResult;
  };
  steps.flush = [&] { output.flush(); };
  const ExitCode code = forEachReading(options, steps, numFinished);
  if (!options.id.empty() && numWanted == 0) throw Trouble("--id: no reading is called \"" + options.id + "\"");
  output.finish();
  return code;
}

} // namespace

int explain(const Options &options) {
  const InterruptGuard guard;
  std::uint64_t numFinished = 0;
  return endingWell([&] { return execute(options, numFinished); },
                    [&] { return interruptedAfter(numFinished, options); });
}

} // namespace qoc::program
