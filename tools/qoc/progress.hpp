#pragma once

/// @file The progress bar.

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace qoc::program {

/// When the bar is drawn.
enum class ProgressChoice { automatic, never };

/// A bar on the error stream, where that is a terminal, standard output is none, and all inputs are regular files.
class ProgressBar {
public:
  ProgressBar(const std::vector<std::string> &paths, ProgressChoice choice);
  ProgressBar(const ProgressBar &) = delete;
  ProgressBar &operator=(const ProgressBar &) = delete;
  /// Removes the bar.
  ~ProgressBar() { clear(); }

  /// Draws the bar, at most ten times a second: how far it is, how fast, how many have a result, how long it takes yet.
  /// @param numBytes of the inputs that have been read
  void show(std::uint64_t numBytes, std::uint64_t numReadings, std::uint64_t numWithResult);
  /// Removes the bar, so that something else can be written.
  void clear();

private:
  std::uint64_t totalBytes_ = 0;
  bool isActive_ = false, isShown_ = false;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now(), next_{};
};

} // namespace qoc::program
