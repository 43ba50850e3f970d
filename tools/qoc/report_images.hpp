#pragma once

/// @file The pictures that a report carries with it.

#include "readings.hpp"

#include <cstdio>
#include <map>
#include <string>

namespace qoc::program {

/// Finds the pictures of readings and keeps each once, on disk until the report takes them.
class ReportImages {
public:
  /// @param directory where pictures lie that readings do not name, called after the readings' ids; may be empty
  explicit ReportImages(std::string directory);
  ReportImages(const ReportImages &) = delete;
  ReportImages &operator=(const ReportImages &) = delete;
  ~ReportImages();

  /// The index of a reading's picture, or -1 where it has none: no file that can be read, none of a kind that browsers
  /// show, or one that is too large.
  int find(const Reading &reading);
  /// The pictures in order of their indices, a line each: its type, a comma, its bytes in base 64.
  std::FILE *lines();
  std::size_t numMissing() const { return numMissing_; }

private:
  int load(const std::string &path);

  std::string directory_;
  std::FILE *file_;
  std::map<std::string, int> indices_;
  int numImages_ = 0;
  std::size_t numMissing_ = 0; ///< Pictures that readings name and that are not there.
};

} // namespace qoc::program
