#include "progress.hpp"

#include <algorithm>
#include <cstdio>

#include <sys/stat.h>
#include <unistd.h>

namespace qoc::program {
namespace {

constexpr std::uint64_t barWidth = 30;
constexpr std::chrono::milliseconds interval{100};

} // namespace

ProgressBar::ProgressBar(const std::vector<std::string> &paths) {
  if (isatty(STDERR_FILENO) == 0 || isatty(STDOUT_FILENO) != 0) return;
  for (const std::string &path : paths) {
    struct stat status {};
    const int failed = path == "-" ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
    if (failed != 0 || !S_ISREG(status.st_mode)) return;
    totalBytes_ += static_cast<std::uint64_t>(status.st_size);
  }
  isActive_ = totalBytes_ > 0;
}

void ProgressBar::show(std::uint64_t numBytes, std::uint64_t numReadings) {
  if (!isActive_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < next_) return;
  next_ = now + interval;
  const std::uint64_t done = std::min(numBytes, totalBytes_);
  const std::uint64_t numFull = barWidth * done / totalBytes_;
  const std::string bar = std::string(numFull, '#') + std::string(barWidth - numFull, ' ');
  std::fprintf(stderr, "\r[%s] %3llu %%  %llu readings\x1b[K", bar.c_str(),
               static_cast<unsigned long long>(100 * done / totalBytes_), static_cast<unsigned long long>(numReadings));
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
