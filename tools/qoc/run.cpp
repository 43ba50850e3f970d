#include "run.hpp"

#include "dictionary_file.hpp"
#include "fit.hpp"
#include "interrupt.hpp"
#include "output.hpp"
#include "progress.hpp"
#include "run_parameters.hpp"
#include "trouble.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include <unistd.h>

namespace qoc::program {
namespace {

enum ExitCode { allHadResults = 0, someHadNone = 1, trouble = 2 };

/// Standard output, written in whole readings.
class Output {
public:
  void write(const std::string &text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) fail();
  }
  void flush() {
    if (std::fflush(stdout) != 0) fail();
  }

private:
  [[noreturn]] static void fail() {
    throw Trouble(std::string("standard output: cannot write: ") + std::strerror(errno));
  }
};

bool isColored(ColorChoice choice) {
  if (choice != ColorChoice::automatic) return choice == ColorChoice::always;
  const char *refusal = std::getenv("NO_COLOR");
  return (refusal == nullptr || *refusal == '\0') && isatty(STDOUT_FILENO) != 0;
}

/// What is done with the dictionary and each reading.
struct Task {
  /// Makes the command line's changes to the dictionary file's parameters; throws Trouble where it cannot go on.
  void (*prepare)(const Options &options, DictionaryFile &file);
  /// Matches a reading. @param where the reading's place, for messages
  void (*match)(const Options &options, const DictionaryFile &file, const MultiString &reading,
                const std::string &where, Answer &answer);
};

void prepareRun(const Options &options, DictionaryFile &file) {
  requireEntries(file);
  applyOverrides(options.overrides, runParameters, *file.params.get());
}

void matchEntries(const Options &, const DictionaryFile &file, const MultiString &reading, const std::string &where,
                  Answer &answer) {
  check(qoc_ocrDictionary_runMulti(file.dictionary.get(), reading.get(), file.params.get(), answer.results.get()),
        where);
}

/// One run of the command, from the dictionary to the last reading.
class Run {
public:
  Run(const Options &options, const Task &task)
      : options_(options), task_(task), source_(options.readings, options.from, [this] { output_.flush(); }),
        bar_(options.readings), isColored_(isColored(options.color)) {}

  ExitCode execute() {
    try {
      readDictionaryFile(options_.dictionary, file_);
      task_.prepare(options_, file_);
      if (!options_.isJson) output_.write(tableHead());
      while (matchNext()) bar_.show(source_.numBytes(), numReadings_);
      output_.flush();
      return numWithout_ == 0 ? allHadResults : someHadNone;
    } catch (const Trouble &problem) {
      return end(problem.what());
    } catch (const std::bad_alloc &) {
      return end("there is not enough memory");
    } catch (const Interrupted &) {
      return end("interrupted after " + std::to_string(numReadings_) +
                 (numReadings_ == 1 ? " finished reading" : " finished readings"));
    }
  }

private:
  bool matchNext() {
    if (!source_.next(reading_)) return false;
    setReading(reading_, !file_.lines().empty(), multi_, answer_.leftOut);
    task_.match(options_, file_, multi_, placeOf(reading_), answer_);
    output_.write(options_.isJson ? describeAsJson(reading_, answer_) : describeAsTable(reading_, answer_, isColored_));
    ++numReadings_;
    if (elements(answer_.results->results).empty()) ++numWithout_;
    checkInterrupt();
    return true;
  }

  /// Writes what was finished, and then the message.
  ExitCode end(const std::string &message) {
    bar_.clear();
    std::fflush(stdout);
    std::fprintf(stderr, "qoc: %s\n", message.c_str());
    return trouble;
  }

  const Options &options_;
  Task task_;
  DictionaryFile file_;
  Output output_;
  ReadingSource source_;
  ProgressBar bar_;
  bool isColored_;
  Reading reading_;
  MultiString multi_;
  Answer answer_;
  std::uint64_t numReadings_ = 0, numWithout_ = 0;
};

} // namespace

int run(const Options &options) {
  const InterruptGuard guard;
  return Run(options, {prepareRun, matchEntries}).execute();
}

int fit(const Options &options) {
  const InterruptGuard guard;
  return Run(options, {prepareFit, fitLines}).execute();
}

} // namespace qoc::program
