#pragma once

/// @file What a reader confuses, counted in readings whose truth is known.

#include "readings.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qoc::program {

/// A reading and what stood there.
struct Lesson {
  std::vector<std::vector<Candidate>> positions;
  std::u32string truth;
  std::string place;
};

/// How often something was read, and how often it meant something else.
struct ConfusionCount {
  std::size_t numTimes = 0;   ///< Lessons' characters where it happened and the truth was no candidate.
  std::size_t numListed = 0;  ///< Where it happened and the truth was another candidate.
};

/// Counts over lessons, each aligned with its truth at the fewest differences.
struct ConfusionCounts {
  /// By what was read and what it meant: one or two characters each, or none for an extra or a missing one.
  std::map<std::pair<std::u32string, std::u32string>, ConfusionCount> confusions;
  std::map<char32_t, std::size_t> numRead;  ///< How often each character was read.

  void add(const Lesson &lesson);
};

}  // namespace qoc::program
