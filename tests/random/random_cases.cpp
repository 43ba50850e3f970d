#include "random/random_cases.hpp"

#include <cstdlib>
#include <random>

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

std::optional<Swaps> randomSwaps(Random &random) {
  return random.oneIn(4) ? std::optional<Swaps>(Swaps{}) : std::nullopt;
}

void compareCases(int32_t count, const std::function<std::string(Random &)> &body) {
  const char *given = std::getenv("QOC_SEED");
  const uint64_t first = given ? std::strtoull(given, nullptr, 10) : std::random_device()();
  for (int32_t i = 0; i < count; ++i) {
    const uint64_t seed = first + static_cast<uint64_t>(i);
    Random random(seed);
    std::string difference = body(random);
    if (!difference.empty()) {
      ADD_FAILURE() << difference << "\nRepeat with QOC_SEED=" << seed;
      return;
    }
  }
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
