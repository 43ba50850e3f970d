#ifndef QOC_TESTS_RANDOM_RANDOM_CASES_HPP
#define QOC_TESTS_RANDOM_RANDOM_CASES_HPP

/** @file
 * Random small cases, and how the library is compared with the reference model on them.
 *
 * Every test begins at a fresh seed, which it prints; the environment's QOC_SEED sets it, so that the seed of a failure
 * repeats that case first. QOC_RANDOM_CASES sets the number of cases of every test.
 */

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "reference/convert.hpp"

namespace random_cases {

using reference::fromRecord;
using reference::LineFielding;
using reference::Position;
using reference::PositionFielding;
using reference::Reading;
using reference::RunParams;
using reference::Swaps;
using reference::toRecord;
using reference::toText;
using reference::Word;

/** A stream of random numbers that a seed determines on every platform. */
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}
  uint64_t next();
  /** A number from 0 to n - 1. */
  int32_t below(int32_t n) { return static_cast<int32_t>(next() % static_cast<uint64_t>(n)); }
  int32_t between(int32_t least, int32_t most) { return least + below(most - least + 1); }
  bool oneIn(int32_t n) { return below(n) == 0; }
  template <typename T>
  T pick(std::initializer_list<T> values) {
    return values.begin()[below(static_cast<int32_t>(values.size()))];
  }

 private:
  uint64_t state_;
};

/** What the strings of one case are made of. */
struct Alphabet {
  std::vector<uint32_t> letters;
  int32_t reservedOneIn;  ///< How rare the reserved codes are.
};

Alphabet randomAlphabet(Random &random);
/** Letters, digits and spaces, and at times characters that are no text. */
Alphabet randomLineAlphabet(Random &random);
uint32_t randomCode(Random &random, const Alphabet &alphabet);
Word randomWord(Random &random, const Alphabet &alphabet, int32_t longest);
std::vector<Word> randomWords(Random &random, const Alphabet &alphabet, int32_t most, int32_t longest);
Reading randomReading(Random &random, const Alphabet &alphabet, int32_t longest);
/** Run parameters with every option varied; `nullOneIn` of 0 for never none. */
std::optional<RunParams> randomParams(Random &random, int32_t nullOneIn);
/** Spares a search for parts or ranges the largest number of edits, with which plain enumeration counts through two
 * thousand million ends before it finds one. */
void limitCount(std::optional<RunParams> &params);
/** No swap set, or groups that may overlap, and may be none, or multi-character swaps with or without groups. */
std::optional<Swaps> randomSwaps(Random &random, const Alphabet &alphabet);
/** Shortens a reading until the swaps make few variants of it. */
void limitVariants(Reading &reading, const std::optional<Swaps> &swaps);
void limitVariants(Word &input, const std::optional<Swaps> &swaps);
PositionFielding randomPositionFielding(Random &random, const Alphabet &alphabet);
LineFielding randomLineFielding(Random &random, const Alphabet &alphabet, int32_t longest);

template <typename T>
const T *pointer(const std::optional<T> &value) {
  return value ? &*value : nullptr;
}

/** How many cases every random comparison has: QOC_RANDOM_CASES, or by default as many as take few seconds. */
int32_t numCases();
/** The seed of a test's first case: QOC_SEED, or a fresh one. */
uint64_t firstSeed();

/** Compares numCases() cases; the body gives a description of the difference, or "", or fails an assertion of its own.
 * Stops at the first difference. */
void compareCases(const std::function<std::string(Random &)> &body);
/** The same with a number of cases of its own, as a share of numCases(). */
void compareCases(int32_t count, const std::function<std::string(Random &)> &body);

/** How many cases so far were not compared, because the model would take too long. */
int64_t &numPassedOver();

/** Counts the attention polls of this thread while it lives, and interrupts at one of them where the limit is not 0. */
class CountedPolls {
 public:
  static constexpr qsys_status interruptStatus = -77;
  explicit CountedPolls(int64_t limit);
  ~CountedPolls();
  CountedPolls(const CountedPolls &) = delete;
  CountedPolls &operator=(const CountedPolls &) = delete;
  int64_t count() const { return polls_.count; }

 private:
  reference::Polls polls_;
};

/** The poll to interrupt at: mostly none. */
int64_t randomPollLimit(Random &random);

/** What an operation came to: its value where the status is a success. */
template <typename T>
struct Outcome {
  qsys_status status = 0;
  int64_t polls = 0;
  T value{};
};

template <typename T>
Outcome<T> ofModel(int64_t limit, const std::function<T(reference::Polls &)> &operation) {
  Outcome<T> outcome;
  reference::Polls polls;
  polls.limit = limit;
  try {
    outcome.value = operation(polls);
  } catch (const reference::Interrupted &) {
    outcome.status = CountedPolls::interruptStatus;
  } catch (const reference::Failed &failed) {
    outcome.status = failed.status;
  }
  outcome.polls = polls.count;
  return outcome;
}

template <typename T>
Outcome<T> ofLibrary(int64_t limit, const std::function<qsys_status(T &)> &operation) {
  Outcome<T> outcome;
  CountedPolls polls(limit);
  outcome.status = operation(outcome.value);
  outcome.polls = polls.count();
  return outcome;
}

/** The difference in status and polls, or "". */
template <typename T>
std::string courseDifference(const Outcome<T> &expected, const Outcome<T> &actual) {
  if (expected.status != actual.status) {
    return "status " + std::to_string(actual.status) + ", not " + std::to_string(expected.status);
  }
  if (expected.polls != actual.polls) {
    return std::to_string(actual.polls) + " polls, not " + std::to_string(expected.polls);
  }
  return "";
}

/** The difference of two answers, or "". */
std::string compareFlags(const Outcome<bool> &expected, const Outcome<bool> &actual);
std::string compareSets(const Outcome<reference::ResultSet> &expected, const Outcome<reference::ResultSet> &actual,
                        const RunParams *params);

}  // namespace random_cases

#endif
