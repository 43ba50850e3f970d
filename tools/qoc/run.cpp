#include "run.hpp"

#include "best_text.hpp"
#include "corrected_documents.hpp"
#include "matching.hpp"
#include "reading_loop.hpp"

#include <memory>

namespace qoc::program {
namespace {

/// What a thread makes of a reading.
struct Outcome {
  std::string text;               ///< As it is to be written; empty where documents are.
  std::vector<std::string> texts; ///< For documents: what stands at each position now.
  bool hasResult = false;
};

Outcome describe(const Options &options, Reading &reading, const Answer &answer, bool colored) {
  const std::span<const qoc_ocrDictionaryResult> results = elements(answer.results->results);
  Outcome outcome{{}, {}, !results.empty()};
  if (!options.to.empty()) {
    if (const std::optional<BestText> best = bestTextOf(reading, answer)) outcome.texts = correctedTexts(reading, *best);
  } else {
    outcome.text = options.isJson  ? describeAsJson(reading, answer)
                   : options.isTsv ? describeAsTsv(reading, answer)
                                   : describeAsTable(reading, answer, colored);
  }
  return outcome;
}

ExitCode execute(const Options &options, const Task &task, std::uint64_t &numFinished, std::uint64_t &numDocuments) {
  DictionaryFile file;
  readDictionaryFile(options.dictionary, file);
  task.prepare(options, file);
  const bool colored = isColored(options.color);
  std::unique_ptr<CorrectedDocuments> documents;
  if (!options.to.empty()) documents = std::make_unique<CorrectedDocuments>(options, numDocuments);
  Output output;
  if (!documents && !options.isJson) output.write(options.isTsv ? tsvHead() : tableHead());

  ReadingSteps<Outcome> steps;
  steps.makeWorker = [&] {
    return [&options, colored, matcher = std::make_shared<Matcher>(options, task, file)](Reading &reading) {
      return describe(options, reading, matcher->match(reading), colored);
    };
  };
  steps.deliver = [&](Reading &reading, Outcome &outcome) {
    if (documents) documents->take(reading, std::move(outcome.texts));
    else output.write(outcome.text);
    return outcome.hasResult;
  };
  steps.flush = [&] { output.flush(); };
  if (documents) {
    steps.takeDocument = [&](std::shared_ptr<PageDocument> document) { documents->add(std::move(document)); };
  }
  const ExitCode code = forEachReading(options, steps, numFinished);
  if (documents) documents->finish();
  output.finish();
  return code;
}

int executeTask(const Options &options, const Task &task) {
  const InterruptGuard guard;
  std::uint64_t numFinished = 0, numDocuments = 0;
  return endingWell([&] { return execute(options, task, numFinished, numDocuments); },
                    [&] {
                      if (options.to.empty()) return interruptedAfter(numFinished, options);
                      const std::string next = numDocuments < options.readings.size()
                                                   ? "; go on with " + options.readings[numDocuments]
                                                   : std::string();
                      return "interrupted after " + std::to_string(numDocuments) + " finished documents" + next;
                    });
}

} // namespace

int run(const Options &options) { return executeTask(options, runTask); }

int fit(const Options &options) { return executeTask(options, fitTask); }

} // namespace qoc::program
