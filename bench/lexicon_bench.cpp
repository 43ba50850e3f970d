// How long one reading takes against a word list, by list length and edits allowed; and what a word costs in memory and load time.
//
// The words are those of the file in QOC_BENCH_WORDS, one a line. Readings are made from words of the list by one random edit each,
// from a fixed seed, so that two runs measure the same work.

#include <benchmark/benchmark.h>
#include <qoc/ocr_dictionary.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

std::vector<std::string> readWords() {
  const char *path = std::getenv("QOC_BENCH_WORDS");
  std::ifstream file(path != nullptr ? path : "/usr/share/dict/american-english-insane");
  std::vector<std::string> words;
  std::unordered_set<std::string> seen;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && seen.insert(line).second) {
      words.push_back(line);
    }
  }
  std::shuffle(words.begin(), words.end(), std::mt19937(1));
  return words;
}

const std::vector<std::string> &allWords() {
  static const std::vector<std::string> words = readWords();
  return words;
}

/// Counts the bytes that the library holds; the size of a block is kept in front of it.
struct CountingMemory {
  static constexpr std::size_t header = alignof(std::max_align_t);
  static void *allocate(void *context, std::size_t size) {
    auto *block = static_cast<std::byte *>(std::malloc(size + header));
    if (block == nullptr) {
      return nullptr;
    }
    *reinterpret_cast<std::size_t *>(block) = size;
    static_cast<CountingMemory *>(context)->numBytes += size;
    return block + header;
  }
  static void release(void *context, void *memory) {
    auto *block = static_cast<std::byte *>(memory) - header;
    static_cast<CountingMemory *>(context)->numBytes -= *reinterpret_cast<std::size_t *>(block);
    std::free(block);
  }
  std::atomic<std::size_t> numBytes{0};
  qsys_memoryTable table{allocate, release, this};
};

/// A list of strings made of the first numWords words.
class WordVector {
 public:
  explicit WordVector(std::size_t numWords) {
    qstd_vector_qoc_ocrDictionaryString_construct(&strings_, static_cast<std::int32_t>(numWords));
    for (std::size_t i = 0; i < numWords; ++i) {
      qoc_ocrDictionaryString *string = nullptr;
      qstd_vector_qoc_ocrDictionaryString_getElement(&strings_, static_cast<std::int32_t>(i), &string);
      qoc_ocrDictionaryString_setStringT(string, allWords()[i].c_str());
    }
  }
  ~WordVector() { qstd_vector_qoc_ocrDictionaryString_destruct(&strings_); }
  WordVector(const WordVector &) = delete;
  WordVector &operator=(const WordVector &) = delete;
  const qstd_vector_qoc_ocrDictionaryString *get() const { return &strings_; }

 private:
  qstd_vector_qoc_ocrDictionaryString strings_;
};

std::vector<std::string> makeReadings(std::size_t numWords) {
  std::mt19937 random(7);
  std::vector<std::string> readings;
  for (int i = 0; i < 200; ++i) {
    std::string reading = allWords()[random() % numWords];
    const std::size_t place = random() % reading.size();
    const char letter = static_cast<char>('a' + random() % 26);
    switch (random() % 3) {
      case 0: reading[place] = letter; break;
      case 1: reading.insert(place, 1, letter); break;
      default: reading.erase(place, 1); break;
    }
    readings.push_back(reading);
  }
  return readings;
}

void load(benchmark::State &state) {
  const auto numWords = static_cast<std::size_t>(state.range(0));
  if (allWords().size() < numWords) {
    state.SkipWithError("the word list is too short; name one in QOC_BENCH_WORDS");
    return;
  }
  CountingMemory memory;
  qsys_memory_setTable(&memory.table);
  {
    const WordVector words(numWords);
    const std::size_t before = memory.numBytes;
    for (auto _ : state) {
      qoc_ocrDictionaryLexicon lexicon;
      if (qoc_ocrDictionaryLexicon_constructStrings(&lexicon, words.get()) < 0) {
        state.SkipWithError("the words were refused");
        break;
      }
      // The library's own allocator; the index's signature of 8 bytes a word comes on top.
      state.counters["bytes_per_word"] =
          static_cast<double>(memory.numBytes - before) / static_cast<double>(numWords) + 8.0;
      state.PauseTiming();
      qoc_ocrDictionaryLexicon_destruct(&lexicon);
      state.ResumeTiming();
    }
  }
  qsys_memory_setTable(nullptr);
}

void run(benchmark::State &state) {
  const auto numWords = static_cast<std::size_t>(state.range(0));
  if (allWords().size() < numWords) {
    state.SkipWithError("the word list is too short; name one in QOC_BENCH_WORDS");
    return;
  }
  const WordVector words(numWords);
  qoc_ocrDictionaryLexicon lexicon;
  qoc_ocrDictionaryLexicon_constructStrings(&lexicon, words.get());
  qoc_ocrDictionaryRunParams params;
  qoc_ocrDictionaryRunParams_construct(&params);
  params.maxEdits = static_cast<std::int32_t>(state.range(1));
  params.returnBestOnly = 0;
  qoc_ocrDictionaryResultSet results;
  qoc_ocrDictionaryResultSet_construct(&results);
  const std::vector<std::string> readings = makeReadings(numWords);
  std::size_t next = 0;
  std::int64_t numResults = 0;
  for (auto _ : state) {
    qoc_ocrDictionaryStringMulti reading;
    qoc_ocrDictionaryStringMulti_constructStringT(&reading, readings[next].c_str());
    qoc_ocrDictionaryLexicon_matchMulti(&lexicon, &reading, &params, nullptr, &results);
    qoc_ocrDictionaryStringMulti_destruct(&reading);
    numResults += results.results.core.size;
    next = (next + 1) % readings.size();
  }
  state.counters["results"] = benchmark::Counter(static_cast<double>(numResults), benchmark::Counter::kAvgIterations);
  qoc_ocrDictionaryResultSet_destruct(&results);
  qoc_ocrDictionaryLexicon_destruct(&lexicon);
}

}  // namespace

BENCHMARK(load)->Arg(10'000)->Arg(600'000)->Unit(benchmark::kMillisecond);
BENCHMARK(run)->ArgsProduct({{10'000, 600'000}, {0, 1, 2, 3}})->ArgNames({"words", "edits"})->Unit(benchmark::kMicrosecond);
