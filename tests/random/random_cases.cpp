#include "random/random_cases.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "reference/alignment.hpp"
#include "reference/expansion.hpp"
#include "reference/swap_reference.hpp"

namespace random_cases {

uint64_t Random::next() {
  state_ += 0x9E3779B97F4A7C15u;
  uint64_t z = state_;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
  return z ^ (z >> 31);
}

Alphabet randomAlphabet(Random &random) {
  Alphabet alphabet{{'a', 'b'}, random.oneIn(3) ? 10 : 1000};
  if (random.oneIn(2)) {
    alphabet.letters.push_back(random.oneIn(3) ? ' ' : 'c');
  }
  return alphabet;
}

Alphabet randomLineAlphabet(Random &random) {
  Alphabet alphabet{{}, random.oneIn(3) ? 20 : 1000};
  for (const uint32_t letter : {'A', 'b', '7', '8', ' '}) {
    if (random.oneIn(2)) {
      alphabet.letters.push_back(letter);
    }
  }
  alphabet.letters.push_back(random.pick<uint32_t>({'A', '8', '-'}));
  if (random.oneIn(12)) {
    alphabet.letters.push_back(random.pick<uint32_t>({0xE9, 0xFFFFFFC3, 0x7F, 0x80}));
  }
  return alphabet;
}

uint32_t randomCode(Random &random, const Alphabet &alphabet) {
  if (random.oneIn(alphabet.reservedOneIn)) {
    return random.oneIn(2) ? reference::emptyCode : reference::anyCode;
  }
  return alphabet.letters[static_cast<size_t>(random.below(static_cast<int32_t>(alphabet.letters.size())))];
}

Word randomWord(Random &random, const Alphabet &alphabet, int32_t longest) {
  Word word(static_cast<size_t>(random.between(0, longest)));
  for (reference::Character &character : word) {
    character = {randomCode(random, alphabet), random.between(-1, 2)};
  }
  return word;
}

std::vector<Word> randomWords(Random &random, const Alphabet &alphabet, int32_t most, int32_t longest) {
  std::vector<Word> words(static_cast<size_t>(random.between(0, most)));
  for (Word &word : words) {
    word = randomWord(random, alphabet, longest);
  }
  return words;
}

Reading randomReading(Random &random, const Alphabet &alphabet, int32_t longest) {
  Reading reading(static_cast<size_t>(random.between(0, longest)));
  const bool isPlain = random.oneIn(3);
  for (Position &position : reading) {
    position.resize(isPlain ? 1 : static_cast<size_t>(random.oneIn(20) ? 0 : random.between(1, 3)));
    for (reference::Character &candidate : position) {
      candidate = {randomCode(random, alphabet), random.between(-1, 2)};
    }
  }
  return reading;
}

std::optional<RunParams> randomParams(Random &random, int32_t nullOneIn) {
  if (nullOneIn != 0 && random.oneIn(nullOneIn)) {
    return std::nullopt;
  }
  RunParams params{};
  qoc_ocrDictionaryRunParams_construct(&params);
  params.maxEdits = random.pick({0, 0, 1, 1, 1, 2, 2, 3, 4});
  if (random.oneIn(40)) {
    params.maxEdits = random.pick({-1, -3, -0x7FFFFFFF - 1, 7, 1000, 0x3FFFFFFF, 0x40000000, 0x7FFFFFFF});
  }
  params.matchOption1 = random.oneIn(4) ? 0 : random.pick({1, 1, 5});
  params.matchOption2 = random.oneIn(4) ? 0 : random.pick({1, 1, -1});
  params.matchOption3 = random.between(0, 1);
  params.matchOption4 = random.oneIn(4) ? 0 : random.pick({1, 1, 2});
  params.minStringLength = random.oneIn(2) ? 1 : random.between(-1, 6);
  params.maxStringLength = random.oneIn(2) ? 0x7FFFFFFF : random.between(-1, 6);
  params.matchOption7 = random.between(0, 1);
  params.returnBestOnly = random.between(0, 1);
  params.matchOption9 = random.between(0, 1);
  params.finalizeEachResult = random.oneIn(3) ? 1 : 0;
  params.rankingMode = random.pick({0, 1, 1, 2});
  params.rankingVariant = random.pick({3, 3, 15, 15, 0});
  return params;
}

void limitCount(std::optional<RunParams> &params) {
  if (params && params->maxEdits == 0x7FFFFFFF) {
    params->maxEdits = 0x40000000;
  }
}

namespace {

/** The letters of a swap set, of which those without a text character have no place in its tables. One outside the
 * alphabet lets groups overlap in a character that no string holds. */
std::vector<uint32_t> swappedLetters(const Alphabet &alphabet) {
  std::vector<uint32_t> letters = {'x'};
  for (uint32_t letter : alphabet.letters) {
    if (letter < 0x1000) {
      letters.push_back(letter);
    }
  }
  return letters;
}

std::vector<std::vector<uint32_t>> randomGroups(Random &random, const std::vector<uint32_t> &letters) {
  std::vector<std::vector<uint32_t>> groups;
  const int32_t count = random.between(0, 2);
  for (int32_t g = 0; g < count; ++g) {
    std::vector<uint32_t> group;
    for (uint32_t letter : letters) {
      if (random.oneIn(2) && std::find(group.begin(), group.end(), letter) == group.end()) {
        group.push_back(letter);
      }
    }
    if (group.size() >= 2) {
      groups.push_back(group);
    }
  }
  return groups;
}

/** Swaps of one to two characters on either side, rarely of three, of which some are single-character swaps. */
std::vector<reference::Swap> randomSwapList(Random &random, const std::vector<uint32_t> &letters) {
  std::vector<reference::Swap> swaps(static_cast<size_t>(random.between(1, 4)));
  const auto fill = [&](std::vector<uint32_t> &codes) {
    codes.resize(random.oneIn(30) ? 3 : static_cast<size_t>(random.between(1, 2)));
    for (uint32_t &code : codes) {
      code = letters[static_cast<size_t>(random.below(static_cast<int32_t>(letters.size())))];
    }
  };
  for (reference::Swap &swap : swaps) {
    do {
      fill(swap.first);
      fill(swap.second);
    } while (swap.first == swap.second);
  }
  return swaps;
}

}  // namespace

std::optional<Swaps> randomSwaps(Random &random, const Alphabet &alphabet) {
  if (random.oneIn(2)) {
    return std::nullopt;
  }
  const std::vector<uint32_t> letters = swappedLetters(alphabet);
  if (!random.oneIn(3)) {
    return Swaps{randomGroups(random, letters), {}};
  }
  Swaps swaps{{}, randomSwapList(random, letters)};
  qoc::swap_reference::SwapSet set;
  const auto isAccepted = [&] {
    std::vector<qoc::swap_reference::Swap> list;
    for (const reference::Swap &swap : swaps.swaps) {
      list.push_back({swap.first, swap.second});
    }
    return set.setSwaps(list) == qoc::swap_reference::GroupFault::none;
  };
  // Single-character swaps that make no groups are left out.
  while (!isAccepted()) {
    const auto isSingle = [](const reference::Swap &swap) { return swap.first.size() + swap.second.size() == 2; };
    swaps.swaps.erase(std::find_if(swaps.swaps.begin(), swaps.swaps.end(), isSingle));
  }
  swaps.groups = set.groups;
  return swaps;
}

void limitVariants(Reading &reading, const std::optional<Swaps> &swaps) {
  reference::Polls polls;
  while (reference::hasMultiSwap(pointer(swaps)) && reference::expand(reading, *swaps, polls).size() > 16) {
    reading.pop_back();
  }
}

void limitVariants(Word &input, const std::optional<Swaps> &swaps) {
  Reading reading = reference::toReading(input);
  limitVariants(reading, swaps);
  input.resize(reading.size());
}

PositionFielding randomPositionFielding(Random &random, const Alphabet &alphabet) {
  PositionFielding fielding;
  fielding.bits = random.oneIn(2) ? 0 : random.pick<uint32_t>({1, 2, 4, 8, 16, 5, 24, 12});
  if (random.oneIn(6)) {
    fielding.bits = static_cast<uint32_t>(random.below(32));
  }
  const int32_t count = random.oneIn(2) ? 0 : random.between(1, 3);
  for (int32_t i = 0; i < count; ++i) {
    const uint32_t code =
        random.oneIn(16)
            ? random.pick({reference::emptyCode, reference::anyCode, reference::anyNonspaceCode, uint32_t{0xE9}})
            : randomCode(random, alphabet);
    if (!fielding.lists(code)) {
      fielding.listed.push_back(code);
    }
  }
  return fielding;
}

LineFielding randomLineFielding(Random &random, const Alphabet &alphabet, int32_t longest) {
  LineFielding line;
  line.positions.resize(static_cast<size_t>(random.between(random.oneIn(10) ? 0 : 1, longest)));
  for (PositionFielding &fielding : line.positions) {
    do {
      fielding = randomPositionFielding(random, alphabet);
    } while (fielding.isEmpty() && !random.oneIn(6));
  }
  return line;
}

int32_t numCases() {
#ifdef NDEBUG
  const int32_t byDefault = 10'000;
#else
  const int32_t byDefault = 1'000;  // Not optimised, and perhaps under a sanitizer.
#endif
  const char *given = std::getenv("QOC_RANDOM_CASES");
  return given ? static_cast<int32_t>(std::strtol(given, nullptr, 10)) : byDefault;
}

uint64_t firstSeed() {
  const char *given = std::getenv("QOC_SEED");
  return given ? std::strtoull(given, nullptr, 10) : std::random_device()();
}

void compareCases(const std::function<std::string(Random &)> &body) { compareCases(numCases(), body); }

void compareCases(int32_t count, const std::function<std::string(Random &)> &body) {
  ASSERT_GT(numCases(), 0) << "QOC_RANDOM_CASES is no number of cases";
  const uint64_t first = firstSeed();
  const int64_t passedOverBefore = numPassedOver();
  std::printf("%d cases from seed %llu", count, static_cast<unsigned long long>(first));
  std::fflush(stdout);  // Stays visible after a crash.
  for (int32_t i = 0; i < count; ++i) {
    const uint64_t seed = first + static_cast<uint64_t>(i);
    Random random(seed);
    std::string difference = body(random);
    if (!difference.empty() || testing::Test::HasFailure()) {
      std::printf("\n");
      ADD_FAILURE() << difference << "\nRepeat with QOC_SEED=" << seed;
      return;
    }
  }
  std::printf(", %lld of them too long for the model\n", static_cast<long long>(numPassedOver() - passedOverBefore));
}

int64_t &numPassedOver() {
  static int64_t number = 0;
  return number;
}

CountedPolls::CountedPolls(int64_t limit) {
  polls_.limit = limit;
  qsys_attention_setHandler(
      [](void *context) -> qsys_status {
        auto *polls = static_cast<reference::Polls *>(context);
        ++polls->count;
        return polls->limit > 0 && polls->count >= polls->limit ? interruptStatus : 0;
      },
      &polls_);
}

CountedPolls::~CountedPolls() { qsys_attention_setHandler(nullptr, nullptr); }

int64_t randomPollLimit(Random &random) { return random.oneIn(10) ? random.between(1, 8) : 0; }

std::string compareFlags(const Outcome<bool> &expected, const Outcome<bool> &actual) {
  std::string course = courseDifference(expected, actual);
  if (course.empty() && expected.status >= 0 && expected.value != actual.value) {
    return std::string("the answer is ") + (actual.value ? "yes" : "no");
  }
  return course;
}

std::string compareSets(const Outcome<reference::ResultSet> &expected, const Outcome<reference::ResultSet> &actual,
                        const RunParams *params) {
  std::string difference = courseDifference(expected, actual);
  if (difference.empty() && expected.status >= 0) {
    difference = reference::difference(expected.value, actual.value, reference::cachesOf(params));
  }
  if (difference.empty()) {
    return "";
  }
  return difference + "\n  expected " + toText(expected.value) + "\n  actual " + toText(actual.value);
}

}  // namespace random_cases
