#include "reading_loop.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace qoc::program {
namespace {

ExitCode end(const char *message) {
  std::fflush(stdout);
  std::fprintf(stderr, "qoc: %s\n", message);
  return trouble;
}

} // namespace

bool isColored(ColorChoice choice) {
  if (choice != ColorChoice::automatic) return choice == ColorChoice::always;
  const char *refusal = std::getenv("NO_COLOR");
  return (refusal == nullptr || *refusal == '\0') && isatty(STDOUT_FILENO) != 0;
}

unsigned numThreadsOf(const Options &options) {
  return options.jobs > 0 ? options.jobs : std::max(1U, std::thread::hardware_concurrency());
}

ExitCode endingWell(const std::function<ExitCode()> &body, const std::function<std::string()> &whenInterrupted) {
  try {
    return body();
  } catch (const Trouble &problem) {
    return end(problem.what());
  } catch (const std::bad_alloc &) {
    return end(qoc_status_getText(QSYS_STATUS_OUT_OF_MEMORY));
  } catch (const Interrupted &) {
    return end(whenInterrupted().c_str());
  }
}

std::string interruptedAfter(std::uint64_t numFinished, const Options &options) {
  return "interrupted after " + std::to_string(numFinished) +
         (numFinished == 1 ? " finished reading" : " finished readings") + "; go on with --skip " +
         std::to_string(options.skip + numFinished);
}

} // namespace qoc::program
