// The readings and dictionaries that are shipped, with every combination of shortcuts: what is found is the same, byte
// for byte.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "dictionary_file.hpp"
#include "library_reading.hpp"
#include "readings.hpp"
#include "run/run_builders.hpp"
#include "support/shortcuts.hpp"

namespace {

using namespace qoc::test;
namespace program = qoc::program;

std::vector<std::string> filesIn(const std::string &directory, const std::string &extension) {
  std::vector<std::string> paths;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(directory)) {
    if (entry.path().extension() == extension) {
      paths.push_back(entry.path().string());
    }
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::vector<program::Reading> readingsOf(std::vector<std::string> paths, program::ReadingFormat format) {
  program::ReadingOptions options;
  options.format = format;
  program::ReadingSource source(std::move(paths), options, [] {});
  std::vector<program::Reading> readings;
  for (program::Reading reading; source.next(reading);) {
    reading.document.reset();
    readings.push_back(reading);
  }
  return readings;
}

/// The lines of the table of readings, and those of the pictures' documents.
const std::vector<program::Reading> &allReadings() {
  static const std::vector<program::Reading> readings = [] {
    auto all = readingsOf({QOC_TEST_DATA_DIR "/readings.ndjson"}, program::ReadingFormat::ndjson);
    const auto more = readingsOf(filesIn(QOC_TEST_DATA_DIR "/images", ".hocr"), program::ReadingFormat::hocr);
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }();
  return readings;
}

std::string show(const qoc_ocrDictionaryResolution &resolution) {
  std::string text = "outcome " + std::to_string(resolution.outcome) + '\n';
  for (const qoc_ocrDictionaryResolvedText &one : elements(resolution.texts)) {
    text += qoc::test::show(one.text) + " total " + std::to_string(one.total) + " margin " +
            std::to_string(one.margin) + " result " + std::to_string(one.resultIndex) + " open " +
            std::to_string(one.numOpen) + " check " + std::to_string(one.passesCheck) + '\n';
  }
  return text;
}

/// Everything that comes of a reading: the polls, the results and the texts, with the file's own parameters, and where
/// `isWide` says so with all results of more edits in another ranking.
std::string outcomeOf(const program::DictionaryFile &file, const program::Reading &reading, bool isWide) {
  program::MultiString record;
  std::vector<program::LeftOut> leftOut;
  program::setReading(reading, file.dictionary->fieldings.core.size > 0, record, leftOut);
  std::string text;
  for (const bool isAll : {false, true}) {
    if (isAll && !isWide) {
      continue;
    }
    qoc_ocrDictionaryRunParams params = *file.params.get();
    params.returnBestOnly = isAll ? 0 : params.returnBestOnly;
    params.maxEdits = isAll ? 2 : params.maxEdits;
    params.rankingMode = isAll ? 1 : params.rankingMode;
    Owned<qoc_ocrDictionaryResultSet> results;
    Owned<qoc_ocrDictionaryResolution> resolution;
    const Polls polls;
    require(qoc_ocrDictionary_runMulti(file.dictionary.get(), record.get(), &params, results));
    text += std::to_string(polls.count()) + " polls\n" + describe(*results);
    require(qoc_ocrDictionaryResolver_resolve(file.resolver.get(), record.get(), &params, &file.dictionary->swapCharSet,
                                              results, resolution));
    text += show(*resolution);
  }
  return text;
}

class RealReadings : public testing::TestWithParam<std::string> {
 protected:
  /// The dictionary as it is made with these shortcuts: some of them are taken then.
  static std::unique_ptr<program::DictionaryFile> dictionary() {
    auto file = std::make_unique<program::DictionaryFile>();
    program::readDictionaryFile(GetParam(), *file);
    return file;
  }
};

/// Every reading with all shortcuts, without any, and without each one alone; and each of the other combinations on
/// some of the readings.
TEST_P(RealReadings, AreMatchedTheSameWithoutShortcuts) {
  const auto &readings = allReadings();
  ASSERT_GT(readings.size(), 600u);
  const auto isWide = [](std::size_t i) { return i % 10 == 0; };
  std::vector<std::string> expected;
  {
    const ShortcutsTaken taken(ShortcutsTaken::all);
    const auto file = dictionary();
    for (std::size_t i = 0; i < readings.size(); ++i) {
      expected.push_back(outcomeOf(*file, readings[i], isWide(i)));
    }
  }
  std::size_t numCompared = 0;
  for (unsigned bits = 0; bits < ShortcutsTaken::all; ++bits) {
    const ShortcutsTaken taken(bits);
    const auto file = dictionary();
    const unsigned missing = ShortcutsTaken::all & ~bits;
    const bool isMain = bits == ShortcutsTaken::none || (missing & (missing - 1)) == 0;
    for (std::size_t i = isMain ? 0 : bits % 60; i < readings.size(); i += isMain ? 1 : 60) {
      ASSERT_EQ(outcomeOf(*file, readings[i], isWide(i)), expected[i]) << readings[i].place() << ", shortcuts " << bits;
      ++numCompared;
    }
  }
  std::printf("%zu outcomes compared\n", numCompared);
}

std::vector<std::string> dictionaryFiles() { return filesIn(QOC_EXAMPLES_DIR, ".json"); }

std::string nameOf(const testing::TestParamInfo<std::string> &info) {
  const std::filesystem::path path = info.param;
  std::string name = path.parent_path().stem().string() + path.stem().string();
  std::erase_if(name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Examples, RealReadings, testing::ValuesIn(dictionaryFiles()), nameOf);

}  // namespace
