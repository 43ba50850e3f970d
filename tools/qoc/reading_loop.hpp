#pragma once

/// @file What every command does around its work on readings: input, threads, progress, Ctrl-C, messages, exit code.

#include "options.hpp"
#include "ordered_work.hpp"
#include "output_file.hpp"
#include "progress.hpp"
#include "readings.hpp"
#include "trouble.hpp"

#include <new>

namespace qoc::program {

/// For commands without readings: success, a finding, trouble.
enum ExitCode { allHadResults = 0, someHadNone = 1, trouble = 2 };

/// Whether output is coloured, which goes to standard output.
bool isColored(ColorChoice choice);

/// The number of threads that the options ask for.
unsigned numThreadsOf(const Options &options);

/// Runs a command's body and says what went wrong: the exit code of the body, or `trouble`.
/// @param whenInterrupted gives the message where Ctrl-C ended the body
ExitCode endingWell(const std::function<ExitCode()> &body, const std::function<std::string()> &whenInterrupted);

/// "interrupted after N finished readings", and how to go on.
std::string interruptedAfter(std::uint64_t numFinished, const Options &options);

/// The parts of a command that works on readings. `Outcome` is what a thread makes of a reading.
template <typename Outcome> struct ReadingSteps {
  /// Makes a thread's own worker, which makes an outcome of a reading.
  std::function<std::function<Outcome(Reading &)>()> makeWorker;
  /// Takes a reading and its outcome, in the readings' order. @return whether the reading had a result
  std::function<bool(Reading &, Outcome &)> deliver;
  /// Called when output that is due should be seen, for there is to be a wait. May be empty.
  std::function<void()> flush;
  /// Called with documents that readings come from. May be empty.
  std::function<void(std::shared_ptr<PageDocument>)> takeDocument;
};

/// Does a command's work on all readings that the options name.
/// @param numFinished counts the readings delivered; readable after an exception, too
/// Throws Trouble where input or output is faulty, after all readings before the fault are delivered; or Interrupted.
template <typename Outcome>
ExitCode forEachReading(const Options &options, const ReadingSteps<Outcome> &steps, std::uint64_t &numFinished) {
  std::function<void()> beforeWait;
  ReadingSource source(options.readings, options.input, [&] { beforeWait(); });
  if (steps.takeDocument) source.onDocument(steps.takeDocument);
  ProgressBar bar(options.readings, options.progress);
  std::uint64_t numWithout = 0;
  OrderedWork<Reading, Outcome> work(
      numThreadsOf(options), steps.makeWorker,
      [&](Reading &reading, Outcome &outcome) {
        if (!steps.deliver(reading, outcome)) ++numWithout;
        ++numFinished;
        bar.show(source.numBytes(), numFinished, numFinished - numWithout);
      },
      [](const Reading &reading) { return reading.positions.size() + 1; });
  beforeWait = [&] {
    work.drain();
    if (steps.flush) steps.flush();
  };
  const auto nextReading = [&](Reading &reading) {
    try {
      return source.next(reading);
    } catch (const Trouble &) {
      work.drain(); // What stands before the fault is finished first.
      throw;
    }
  };
  try {
    for (std::uint64_t i = 0;; ++i) {
      Reading reading;
      if (!nextReading(reading)) break;
      if (i < options.skip) continue;
      work.add(std::move(reading));
      checkInterrupt();
    }
    work.drain();
  } catch (const Interrupted &) {
    try {
      work.drain();
    } catch (const Interrupted &) {
      // It has been told.
    }
    throw;
  }
  return numWithout == 0 ? allHadResults : someHadNone;
}

} // namespace qoc::program
