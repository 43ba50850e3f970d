#include "run.hpp"

#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "output.hpp"
#include "progress.hpp"
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

/// Hands a reading to the library.
void setReading(const Reading &reading, MultiString &multi) {
  const std::string where = reading.file + ":" + std::to_string(reading.line);
  auto *positions = &multi->positions;
  check(qstd_vector_qoc_ocrDictionaryCharMulti_resize(positions, static_cast<std::int32_t>(reading.positions.size())),
        where);
  qoc_ocrDictionaryCharMulti *position = nullptr;
  check(qstd_vector_qoc_ocrDictionaryCharMulti_getBegin(positions, &position), where);
  std::vector<qoc_ocrDictionaryChar> characters;
  for (const std::vector<Candidate> &candidates : reading.positions) {
    characters.clear();
    for (const Candidate &candidate : candidates) characters.push_back({candidate.code, candidate.score});
    check(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position++->candidates, characters.data(),
                                                           static_cast<std::int32_t>(characters.size())),
          where);
  }
}

bool isColored(ColorChoice choice) {
  if (choice != ColorChoice::automatic) return choice == ColorChoice::always;
  const char *refusal = std::getenv("NO_COLOR");
  return (refusal == nullptr || *refusal == '\0') && isatty(STDOUT_FILENO) != 0;
}

/// One run of the command, from the dictionary to the last reading.
class Run {
public:
  explicit Run(const Options &options)
      : options_(options), source_(options.readings, options.input, [this] { output_.flush(); }),
        bar_(options.readings), isColored_(isColored(options.color)) {}

  ExitCode execute() {
    try {
      readDictionaryFile(options_.dictionary, file_);
      for (const auto &change : options_.overrides) change(*file_.params.get());
      check(qoc_ocrDictionaryRunParams_validate(file_.params.get()), "run parameters");
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
    setReading(reading_, multi_);
    check(qoc_ocrDictionary_runMulti(file_.dictionary.get(), multi_.get(), file_.params.get(), results_.get()),
          reading_.file + ":" + std::to_string(reading_.line));
    output_.write(options_.isJson ? describeAsJson(reading_, *results_.get())
                                  : describeAsTable(reading_, *results_.get(), isColored_));
    ++numReadings_;
    if (elements(results_->results).empty()) ++numWithout_;
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
  DictionaryFile file_;
  Output output_;
  ReadingSource source_;
  ProgressBar bar_;
  bool isColored_;
  Reading reading_;
  MultiString multi_;
  ResultSet results_;
  std::uint64_t numReadings_ = 0, numWithout_ = 0;
};

} // namespace

int run(const Options &options) {
  const InterruptGuard guard;
  return Run(options).execute();
}

} // namespace qoc::program
