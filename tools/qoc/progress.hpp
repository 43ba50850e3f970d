#pragma once

/// @file The progress bar.

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace qoc::program {

/// A bar on the error stream, where that is a terminal, standard output is none, and all inputs are regular files.
class ProgressBar {
public:
  explicit ProgressBar(const std::vector<std::string> &paths);
  ProgressBar(const ProgressBar &) = delete;
  ProgressBar &operator=(const ProgressBar &) = delete;
  /// Removes the bar.
  ~ProgressBar() { clear(); }

  /// Draws the bar, at most ten times a second.
  void show(std::uint64_t numBytes, std::uint64_t numReadings);
  /// Removes the bar, so that something else can be written.
  void clear();

private:
  std::uint64_t totalBytes_ = 0;
  bool isActive_ = false, isShown_ = false;
  std::chrono::steady_clock::time_point next_{};
};

} // namespace qoc::program
