#pragma once
// Inputs that are as bad as they can be: what the tests count and the benchmark measures.

#include <qoc/base.h>

#include <functional>
#include <string>
#include <vector>

namespace qoc::test {

struct WorstCase {
  std::string name;
  /// Makes the input, and gives the operation on it. It may be run any number of times; what it works on lives as long
  /// as it.
  std::function<std::function<qsys_status()>()> make;
};

/// The number of words of the largest lists: a million, and less in builds that take too much for that.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
inline constexpr int manyWords = 100'000;
#else
inline constexpr int manyWords = 1'000'000;
#endif

const std::vector<WorstCase> &worstCases();

}  // namespace qoc::test
