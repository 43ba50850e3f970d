#include "progress.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace qoc::program {
namespace {

constexpr std::uint64_t barWidth = 30;
constexpr std::chrono::milliseconds interval{100};

/// Minutes and seconds, with hours where there are any.
std::string shownDuration(double seconds) {
  const auto whole = static_cast<unsigned long long>(std::llround(std::min(seconds, 359999.0)));
  char text[32];
  if (whole < 3600) std::snprintf(text, sizeof text, "%llu:%02llu", whole / 60, whole % 60);
  else std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", whole / 3600, whole / 60 % 60, whole % 60);
  return text;
}

} // namespace

ProgressBar::ProgressBar(const std::vector<std::string> &paths, ProgressChoice choice) {
  if (choice == ProgressChoice::never || isatty(STDERR_FILENO) == 0 || isatty(STDOUT_FILENO) != 0) return;
  for (const std::string &path : paths) {
    struct stat status {};
    const int failed = path == "-" ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
    if (failed != 0 || !S_ISREG(status.st_mode)) return;
    totalBytes_ += static_cast<std::uint64_t>(status.st_size);
  }
  isActive_ = totalBytes_ > 0;
}

void ProgressBar::show(std::uint64_t numBytes, std::uint64_t numReadings, std::uint64_t numWithResult) {
  if (!isActive_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < next_) return;
  next_ = now + interval;
  const std::uint64_t done = std::min(numBytes, totalBytes_);
  const std::uint64_t numFull = barWidth * done / totalBytes_;
  const std::string bar = std::string(numFull, '#') + std::string(barWidth - numFull, ' ');
  const double seconds = std::chrono::duration<double>(now - start_).count();
  const double share = static_cast<double>(done) / static_cast<double>(totalBytes_);
  const double secondsLeft = share > 0 ? seconds * (1 - share) / share : 0;
  std::fprintf(stderr, "\r[%s] %3.0f %%  %llu readings, %.0f/s, %.1f %% with a result, %s left\x1b[K", bar.c_str(),
               100 * share, static_cast<unsigned long long>(numReadings),
               seconds > 0 ? static_cast<double>(numReadings) / seconds : 0.0,
               numReadings > 0 ? 100.0 * static_cast<double>(numWithResult) / static_cast<double>(numReadings) : 0.0,
               shownDuration(secondsLeft).c_str());
  std::fflush(stderr);
  isShown_ = true;
}

void ProgressBar::clear() {
  if (!isShown_) return;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
  isShown_ = false;
}

} // namespace qoc::program
