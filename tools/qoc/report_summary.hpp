#pragma once

/// @file What a report says of all readings together.

#include "explanation.hpp"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace qoc::program {

/// What came of one reading, as far as it is counted.
struct ReadingVerdict {
  bool hasResult = false, isChanged = false, isNarrow = false;
  bool hasTruth = false, isRightBefore = false, isRightAfter = false;
};

/// Counts verdicts, statuses and confusions.
class ReportSummary {
public:
  /// @param mode what the best result came from; only where there is one
  void add(const Reading &reading, const ReadingVerdict &verdict, const char *mode, const Explanation &explanation);

  bool hasTruth() const { return all_.numTruths > 0; }
  /// The tables, as HTML.
  std::string asHtml() const;

private:
  struct Counts {
    std::uint64_t numReadings = 0, numResults = 0, numChanged = 0, numNarrow = 0;
    std::uint64_t numTruths = 0, numRightBefore = 0, numRightAfter = 0, numSpoiled = 0;
    void add(const ReadingVerdict &verdict);
  };
  std::string kindsAsHtml() const;
  std::string statusesAsHtml() const;
  std::string confusionsAsHtml() const;

  Counts all_;
  std::map<std::string, Counts> kinds_; ///< By the readings' own kind.
  std::map<std::string, std::uint64_t> modes_;
  std::map<qoc_ocrDictionaryPositionStatus, std::uint64_t> statuses_;
  std::map<std::pair<std::string, std::string>, std::uint64_t> confusions_; ///< What was read, and what it is.
};

} // namespace qoc::program
