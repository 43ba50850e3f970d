// How long choosing one text takes beside the run that came before it: the shipped readings of every kind with the
// dictionaries of examples/resolve/ as the program runs them, and a long list of made words. Times are per reading; a
// ratio under 1 means that resolving costs less than the run. "all" is the 600 shipped readings, each with the
// dictionary of its kind.

#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "dictionary_file.hpp"
#include "support/text.hpp"

namespace {

namespace program = qoc::program;
using namespace qoc::test;

const std::string sourceDirectory = QOC_BENCH_SOURCE_DIRECTORY;

/// A dictionary as the program has it, and readings for it.
struct Setting {
  program::DictionaryFile file;
  std::vector<Owned<qoc_ocrDictionaryStringMulti>> readings;

  void make() {
    require(qoc_ocrDictionaryResolver_setRules(file.resolver.get(), file.rules.get()));
    require(qoc_ocrDictionaryResolver_setDictionary(file.resolver.get(), file.dictionary.get()));
  }
};

Owned<qoc_ocrDictionaryStringMulti> readingOf(const nlohmann::json &object) {
  Owned<qoc_ocrDictionaryStringMulti> reading;
  for (const auto &position : object["positions"]) {
    Owned<qoc_ocrDictionaryCharMulti> multi;
    for (const auto &candidate : position) {
      const Owned<qoc_ocrDictionaryString> character = word(candidate[0].get<std::string>());
      qoc_ocrDictionaryChar scored = elements(character->characters)[0];
      scored.score = static_cast<int32_t>(candidate[1].get<double>() * 100 + 0.5);
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&multi->candidates, &scored));
    }
    require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&reading->positions, multi));
  }
  return reading;
}

void loadShipped(const std::string &kind, Setting &setting) {
  program::readDictionaryFile(sourceDirectory + "/examples/resolve/" + kind + ".json", setting.file);
  std::ifstream lines(sourceDirectory + "/tests/data/readings.ndjson");
  for (std::string line; std::getline(lines, line);) {
    const auto object = nlohmann::json::parse(line);
    if (object["kind"] == kind) setting.readings.push_back(readingOf(object));
  }
  setting.make();
}

/// 20,000 words of eight letters, and one of them with five candidates a position.
void makeWords(Setting &setting) {
  std::mt19937 random(7);
  const auto letter = [&] { return static_cast<char>('a' + random() % 26); };
  std::string text, notation;
  Owned<qoc_ocrDictionaryLexicon> lexicon;
  Owned<qstd_vector_qoc_ocrDictionaryString> list;
  for (int i = 0; i < 20000; ++i) {
    text.clear();
    for (int k = 0; k < 8; ++k) text += letter();
    require(qstd_vector_qoc_ocrDictionaryString_pushBack(list, word(text)));
  }
  require(qoc_ocrDictionaryLexicon_setStringsSafe(lexicon, list));
  require(qoc_ocrDictionary_setLexiconIExtend(setting.file.dictionary.get(), 0, lexicon));
  for (const char c : text) {
    notation += std::string(notation.empty() ? "" : " ") + c + "9500";
    for (int k = 1; k < 5; ++k) notation += std::string("|") + letter() + std::to_string(9500 - 1500 * k);
  }
  setting.readings.push_back(reading(notation));
  setting.file.params->maxEdits = 1;
  setting.file.rules->maxTexts = 1;
  setting.make();
}

constexpr const char *shippedKinds[] = {"serial", "date", "lot", "word", "name", "vin", "iban"};

void benchResolving(benchmark::State &state, const std::string &kind) {
  using Clock = std::chrono::steady_clock;
  std::vector<Setting> settings(kind == "all" ? std::size(shippedKinds) : 1);
  if (kind == "all") {
    for (std::size_t i = 0; i < settings.size(); ++i) loadShipped(shippedKinds[i], settings[i]);
  } else if (kind == "20000 words") {
    makeWords(settings[0]);
  } else {
    loadShipped(kind, settings[0]);
  }
  Owned<qoc_ocrDictionaryResultSet> results;
  Owned<qoc_ocrDictionaryResolution> resolution;
  Clock::duration running{}, resolving{};
  int64_t numReadings = 0;
  for (auto _ : state) {
    for (const Setting &setting : settings) {
      const program::DictionaryFile &file = setting.file;
      for (const auto &reading : setting.readings) {
        const auto begin = Clock::now();
        require(qoc_ocrDictionary_runMulti(file.dictionary.get(), reading, file.params.get(), results));
        const auto middle = Clock::now();
        require(qoc_ocrDictionaryResolver_resolve(file.resolver.get(), reading, file.params.get(),
                                                  &file.dictionary->swapCharSet, results, resolution));
        resolving += Clock::now() - middle;
        running += middle - begin;
        ++numReadings;
      }
    }
  }
  const auto microseconds = [&](Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count() / static_cast<double>(numReadings);
  };
  state.counters["run_us"] = microseconds(running);
  state.counters["resolve_us"] = microseconds(resolving);
  state.counters["ratio"] = microseconds(resolving) / microseconds(running);
}

[[maybe_unused]] const bool isRegistered = [] {
  std::vector<const char *> kinds = {"all", "20000 words"};
  kinds.insert(kinds.begin() + 1, std::begin(shippedKinds), std::end(shippedKinds));
  for (const char *kind : kinds) {
    benchmark::RegisterBenchmark((std::string("resolver/") + kind).c_str(), benchResolving, std::string(kind));
  }
  return true;
}();

}  // namespace
