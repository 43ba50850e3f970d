// How long a dictionary run takes on one long word list, beside a plain scan of the same words; as JSON for
// scripts/performance.
//
//   qoc_lexicon_speed WORD-FILE [NUMBER-OF-READINGS [NUMBER-OF-WORDS [--one=EDITS]]]
//
// With --one every reading is run once with that many edits for its best result, and nothing is printed: for counting
// instructions.
//
// Readings are words of the list with one random edit each, from a fixed seed. Every reading is run three times, and
// the least time counts, since whatever else the machine does can only add to it; medians and 99th percentiles are over
// the readings.

#include <qoc/ocr_dictionary.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <new>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "kinds/lexicon_index.hpp"
#include "reference/convert.hpp"
#include "reference/lexicon.hpp"
#include "text/bit_distance.hpp"

namespace {

/// Blocks and bytes taken through the library's allocator and through operator new, of this program as a whole.
std::atomic<std::int64_t> numBlocks{0};
std::atomic<std::int64_t> numBytes{0};

void *takeBlock(std::size_t size) {
  constexpr std::size_t header = alignof(std::max_align_t);
  auto *block = static_cast<std::byte *>(std::malloc(size + header));
  if (block == nullptr) {
    return nullptr;
  }
  *reinterpret_cast<std::size_t *>(block) = size;
  numBlocks.fetch_add(1, std::memory_order_relaxed);
  numBytes.fetch_add(static_cast<std::int64_t>(size), std::memory_order_relaxed);
  return block + header;
}

void giveBlock(void *memory) noexcept {
  if (memory != nullptr) {
    auto *block = static_cast<std::byte *>(memory) - alignof(std::max_align_t);
    numBytes.fetch_sub(static_cast<std::int64_t>(*reinterpret_cast<std::size_t *>(block)), std::memory_order_relaxed);
    std::free(block);
  }
}

constexpr qsys_memoryTable countingMemory = {[](void *, std::size_t size) { return takeBlock(size); },
                                             [](void *, void *block) { giveBlock(block); }, nullptr};

}  // namespace

void *operator new(std::size_t size) {
  if (void *block = takeBlock(size)) {
    return block;
  }
  throw std::bad_alloc();
}
void operator delete(void *block) noexcept { giveBlock(block); }
void operator delete(void *block, std::size_t) noexcept { giveBlock(block); }

namespace {

using Clock = std::chrono::steady_clock;

double microsecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

std::vector<std::string> readWords(const char *path, std::size_t most) {
  std::ifstream file(path);
  std::vector<std::string> words;
  std::unordered_set<std::string> seen;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && seen.insert(line).second) {
      words.push_back(line);
    }
  }
  std::shuffle(words.begin(), words.end(), std::mt19937(1));
  words.resize(std::min(words.size(), most));
  return words;
}

std::vector<std::string> makeReadings(const std::vector<std::string> &words, std::size_t number) {
  std::mt19937 random(7);
  std::vector<std::string> readings;
  while (readings.size() < number) {
    std::string reading = words[random() % words.size()];
    const std::size_t place = random() % reading.size();
    const char letter = static_cast<char>('a' + random() % 26);
    switch (random() % 3) {
      case 0:
        reading[place] = letter;
        break;
      case 1:
        reading.insert(place, 1, letter);
        break;
      default:
        reading.erase(place, 1);
        break;
    }
    readings.push_back(reading);
  }
  return readings;
}

struct Times {
  double median, p99;
};

/// The least of three times for each of n pieces of work.
Times measure(std::size_t n, const std::function<void(std::size_t)> &work) {
  std::vector<double> times(n);
  for (std::size_t i = 0; i < n; ++i) {
    double least = 1e18;
    for (int repeat = 0; repeat < 3; ++repeat) {
      const auto start = Clock::now();
      work(i);
      least = std::min(least, microsecondsSince(start));
    }
    times[i] = least;
  }
  std::ranges::sort(times);
  return {times[n / 2], times[std::min(n - 1, n * 99 / 100)]};
}

/// Words as bytes, by length: what a plain scan goes through.
struct FlatWords {
  explicit FlatWords(std::vector<std::string> words) {
    std::ranges::stable_sort(words, {}, &std::string::size);
    for (const std::string &word : words) {
      places.push_back(letters.size());
      letters += word;
    }
    places.push_back(letters.size());
  }

  /// The number of words within maxEdits of the reading, by the bit-parallel distance of every word of an admissible
  /// length.
  std::size_t scan(const std::string &reading, std::size_t maxEdits) const {
    std::array<std::uint64_t, 256> rows = {};
    for (std::size_t j = 0; j < reading.size(); ++j) {
      rows[static_cast<std::uint8_t>(reading[j])] |= std::uint64_t{1} << j;
    }
    std::size_t numFound = 0;
    for (std::size_t i = 0; i + 1 < places.size(); ++i) {
      const std::size_t length = places[i + 1] - places[i];
      if (length + maxEdits >= reading.size() && length <= reading.size() + maxEdits) {
        const auto *word = reinterpret_cast<const std::uint8_t *>(letters.data()) + places[i];
        numFound += qoc::bitDistance(rows, static_cast<std::int32_t>(reading.size()), word,
                                     static_cast<std::int32_t>(length)) <= static_cast<std::int32_t>(maxEdits)
                        ? 1
                        : 0;
      }
    }
    return numFound;
  }

  std::string letters;
  std::vector<std::size_t> places;
};

/// A reading whose positions hold, behind the letter read, two others.
void makeMulti(const std::string &text, std::size_t numCandidates, qoc_ocrDictionaryStringMulti *reading) {
  qoc_ocrDictionaryStringMulti_constructStringT(reading, text.c_str());
  for (std::size_t j = 0; j < text.size(); ++j) {
    qoc_ocrDictionaryCharMulti *position = nullptr;
    qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&reading->positions, static_cast<std::int32_t>(j), &position);
    for (std::size_t c = 1; c < numCandidates; ++c) {
      const qoc_ocrDictionaryChar other = {
          static_cast<Char32>('a' + (static_cast<std::size_t>(text[j]) + 7 * c + j) % 26), 0};
      qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &other);
    }
  }
}

/// The groups of the program's ready set "ocr-look-alikes".
void addLookAlikes(qoc_swapCharSet *set) {
  qstd_vector_vectorChar32 groups;
  qstd_vector_vectorChar32_constructEmpty(&groups);
  for (const std::string_view text :
       {"0OoQD", "1Il|i!", "5Ss$", "8B&", "2Zz", "6Gb", "cC", "xX", "vV", "wW", "uU", "kK", "pP", "jJ"}) {
    qstd_vectorChar32 group;
    qstd_vectorChar32_constructEmpty(&group);
    for (const char letter : text) {
      const auto code = static_cast<Char32>(letter);
      qstd_vectorChar32_pushBack(&group, &code);
    }
    qstd_vector_vectorChar32_pushBack(&groups, &group);
    qstd_vectorChar32_destruct(&group);
  }
  if (qoc_swapCharSet_setEquiv(set, &groups) < 0) {
    std::fprintf(stderr, "qoc_lexicon_speed: the groups were refused\n");
    std::exit(1);
  }
  qstd_vector_vectorChar32_destruct(&groups);
}

/// Constructs a vector of the words.
void fillStrings(const std::vector<std::string> &words, qstd_vector_qoc_ocrDictionaryString *strings) {
  qstd_vector_qoc_ocrDictionaryString_construct(strings, static_cast<std::int32_t>(words.size()));
  for (std::size_t i = 0; i < words.size(); ++i) {
    qoc_ocrDictionaryString *string = nullptr;
    qstd_vector_qoc_ocrDictionaryString_getElement(strings, static_cast<std::int32_t>(i), &string);
    qoc_ocrDictionaryString_setStringT(string, words[i].c_str());
  }
}

/// The reference model of the tests on the same words, for a few readings.
void printModel(const qoc_ocrDictionaryLexicon &lexicon, const std::vector<std::string> &readings) {
  reference::Lexicon model;
  model.strings = reference::fromRecord(lexicon.strings);
  qoc_ocrDictionaryRunParams params;
  qoc_ocrDictionaryRunParams_construct(&params);
  params.returnBestOnly = 0;
  std::printf(",\n  \"model\": [");
  for (const int maxEdits : {0, 1, 2}) {
    params.maxEdits = maxEdits;
    const Times times = measure(5, [&](std::size_t i) {
      reference::Reading reading;
      for (const char letter : readings[i]) {
        reading.push_back({{static_cast<std::uint32_t>(letter), 0}});
      }
      reference::Polls polls;
      model.matchMulti(reading, &params, nullptr, polls);
    });
    std::printf("%s    {\"edits\": %d, \"median\": %.1f}", maxEdits == 0 ? "\n" : ",\n", maxEdits, times.median);
  }
  std::printf("\n  ]");
}

/// A reading of 30 positions, "m" written as "rn" everywhere or not: 15 places where a swap applies, 32,768 variants. A
/// hundred of the words are made of the same letters, so that some variants are near.
void printVariants(std::vector<std::string> words) {
  std::mt19937 random(11);
  for (std::size_t i = 0; i < std::min<std::size_t>(words.size(), 100); ++i) {
    words[i].clear();
    for (int place = 0; place < 15; ++place) {
      words[i] += random() % 2 != 0 ? "m" : "rn";
    }
    words[i].erase(random() % words[i].size(), random() % 2);
  }
  qoc_ocrDictionaryLexicon lexicon;
  qoc_ocrDictionaryLexicon_construct(&lexicon);
  qstd_vector_qoc_ocrDictionaryString strings;
  fillStrings(words, &strings);
  qoc_ocrDictionaryLexicon_setStringsSafe(&lexicon, &strings);
  qstd_vector_qoc_ocrDictionaryString_destruct(&strings);
  qoc_ocrDictionary dictionary;
  qoc_ocrDictionary_construct(&dictionary);
  qoc_ocrDictionary_setLexiconIExtend(&dictionary, 0, &lexicon);
  qoc_ocrDictionaryLexicon_destruct(&lexicon);
  qoc_swapChar swap;
  qoc_swapChar_construct(&swap);
  const Char32 codes[] = {'m', 'r', 'n'};
  qstd_vectorChar32_assignElements(&swap.first, codes, 1);
  qstd_vectorChar32_assignElements(&swap.second, codes + 1, 2);
  qstd_vector_qoc_swapChar swaps;
  qstd_vector_qoc_swapChar_constructEmpty(&swaps);
  qstd_vector_qoc_swapChar_pushBack(&swaps, &swap);
  qoc_swapCharSet set;
  qoc_swapCharSet_construct(&set);
  qoc_swapCharSet_setSwapCharacters(&set, &swaps);
  qoc_ocrDictionaryStringMulti reading;
  qoc_ocrDictionaryStringMulti_constructStringT(&reading, "rnrnrnrnrnrnrnrnrnrnrnrnrnrnrn");
  qoc_ocrDictionaryResultSet results;
  qoc_ocrDictionaryResultSet_construct(&results);
  qoc_ocrDictionaryRunParams params;
  qoc_ocrDictionaryRunParams_construct(&params);
  std::printf(",\n  \"variants\": [");
  for (const int maxEdits : {0, 1, 2}) {
    params.maxEdits = maxEdits;
    const Times times = measure(
        5, [&](std::size_t) { qoc_ocrDictionary_runSwapCharSetMulti(&dictionary, &reading, &params, &set, &results); });
    std::printf("%s    {\"edits\": %d, \"median\": %.1f}", maxEdits == 0 ? "\n" : ",\n", maxEdits, times.median);
  }
  std::printf("\n  ]");
  qoc_ocrDictionaryResultSet_destruct(&results);
  qoc_ocrDictionaryStringMulti_destruct(&reading);
  qoc_swapCharSet_destruct(&set);
  qstd_vector_qoc_swapChar_destruct(&swaps);
  qoc_swapChar_destruct(&swap);
  qoc_ocrDictionary_destruct(&dictionary);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: qoc_lexicon_speed WORD-FILE [NUMBER-OF-READINGS [NUMBER-OF-WORDS]]\n");
    return 2;
  }
  const std::size_t numReadings = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1000;
  const std::size_t most = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : SIZE_MAX;
  const std::vector<std::string> words = readWords(argv[1], most);
  if (words.empty()) {
    std::fprintf(stderr, "qoc_lexicon_speed: %s holds no words\n", argv[1]);
    return 1;
  }
  qsys_memory_setTable(&countingMemory);

  const std::int64_t bytesBefore = numBytes;
  const auto loadStart = Clock::now();
  qstd_vector_qoc_ocrDictionaryString strings;
  fillStrings(words, &strings);
  const double fillTime = microsecondsSince(loadStart) / 1e6;
  qoc_ocrDictionary dictionary;
  qoc_ocrDictionary_construct(&dictionary);
  qoc_ocrDictionaryLexicon empty;
  qoc_ocrDictionaryLexicon_construct(&empty);
  qoc_ocrDictionary_setLexiconIExtend(&dictionary, 0, &empty);
  qoc_ocrDictionaryLexicon_destruct(&empty);
  qoc_ocrDictionaryLexicon *lexicon = nullptr;
  qstd_vector_qoc_ocrDictionaryLexicon_getElement(&dictionary.lexicons, 0, &lexicon);
  const auto setStart = Clock::now();
  if (qoc_ocrDictionaryLexicon_setStrings(lexicon, &strings) < 0) {
    std::fprintf(stderr, "qoc_lexicon_speed: the words were refused\n");
    return 1;
  }
  const double setTime = microsecondsSince(setStart) / 1e6;
  qstd_vector_qoc_ocrDictionaryString_destruct(&strings);
  const qoc::LexiconIndex *index = qoc::indexOf(*lexicon);
  const std::vector<std::string> readings = makeReadings(words, numReadings);
  qoc_ocrDictionaryResultSet results;
  qoc_ocrDictionaryResultSet_construct(&results);
  qoc_ocrDictionaryRunParams params;
  qoc_ocrDictionaryRunParams_construct(&params);
  if (argc > 4 && std::string_view(argv[4]).starts_with("--one=")) {
    params.maxEdits = std::atoi(argv[4] + std::string_view("--one=").size());
    for (const std::string &text : readings) {
      qoc_ocrDictionaryStringMulti reading;
      qoc_ocrDictionaryStringMulti_constructStringT(&reading, text.c_str());
      qoc_ocrDictionary_runMulti(&dictionary, &reading, &params, &results);
      qoc_ocrDictionaryStringMulti_destruct(&reading);
    }
    return 0;
  }
  const double perWord = 1.0 / static_cast<double>(words.size());
  std::printf("{\n  \"words\": %zu, \"readings\": %zu, \"fillSeconds\": %.3f, \"setSeconds\": %.3f,\n", words.size(),
              numReadings, fillTime, setTime);
  std::printf("  \"bytesPerWord\": %.1f, \"indexBytesPerWord\": %.1f,\n  \"rows\": [",
              static_cast<double>(numBytes - bytesBefore) * perWord, static_cast<double>(index->numBytes()) * perWord);

  const FlatWords flat(words);
  const char *separator = "\n";
  for (const auto &[numCandidates, hasSwaps] : {std::pair<std::size_t, int>{1, 0}, {3, 0}, {3, 1}}) {
    if (hasSwaps != 0) {
      addLookAlikes(&dictionary.swapCharSet);
    }
    std::vector<qoc_ocrDictionaryStringMulti> multis(numReadings);
    for (std::size_t i = 0; i < numReadings; ++i) {
      makeMulti(readings[i], numCandidates, &multis[i]);
    }
    for (const int isBest : {1, 0}) {
      for (const int maxEdits : {0, 1, 2, 3}) {
        if (hasSwaps != 0 && isBest == 0) {
          continue;
        }
        params.maxEdits = maxEdits;
        params.returnBestOnly = isBest;
        std::int64_t numResults = 0;
        const auto work = [&](std::size_t i) {
          qoc_ocrDictionary_runMulti(&dictionary, &multis[i], &params, &results);
          numResults += results.results.core.size;
        };
        const Times times = measure(numReadings, work);
        const std::int64_t blocksBefore = numBlocks;
        numResults = 0;
        for (std::size_t i = 0; i < numReadings; ++i) {
          work(i);
        }
        std::printf(
            "%s    {\"candidates\": %zu, \"swaps\": %d, \"best\": %d, \"edits\": %d, \"median\": %.2f, \"p99\": %.2f, "
            "\"results\": "
            "%.2f, "
            "\"blocks\": %.1f}",
            separator, numCandidates, hasSwaps, isBest, maxEdits, times.median, times.p99,
            static_cast<double>(numResults) / static_cast<double>(numReadings),
            static_cast<double>(numBlocks - blocksBefore) / static_cast<double>(numReadings));
        separator = ",\n";
        std::fflush(stdout);
      }
    }
    for (qoc_ocrDictionaryStringMulti &multi : multis) {
      qoc_ocrDictionaryStringMulti_destruct(&multi);
    }
  }
  std::printf("\n  ],\n  \"scan\": [");
  separator = "\n";
  const std::size_t numScanned = std::min<std::size_t>(numReadings, 100);
  for (const std::size_t maxEdits : {0, 1, 2, 3}) {
    std::size_t numFound = 0;
    const Times times = measure(numScanned, [&](std::size_t i) { numFound += flat.scan(readings[i], maxEdits); });
    std::printf("%s    {\"edits\": %zu, \"median\": %.2f, \"p99\": %.2f, \"words\": %.2f}", separator, maxEdits,
                times.median, times.p99, static_cast<double>(numFound) / static_cast<double>(3 * numScanned));
    separator = ",\n";
  }
  std::printf("\n  ]");
  if (words.size() <= 10'000) {
    printModel(*lexicon, readings);
    printVariants(words);
  }
  std::printf("\n}\n");
  qoc_ocrDictionaryResultSet_destruct(&results);
  qoc_ocrDictionary_destruct(&dictionary);
  qsys_memory_setTable(nullptr);
  return 0;
}
