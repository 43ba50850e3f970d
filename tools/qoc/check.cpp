#include "check.hpp"

#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "json_output.hpp"
#include "output_file.hpp"
#include "reading_loop.hpp"

namespace qoc::program {
namespace {

/// What a dictionary holds.
struct Content {
  std::size_t numLists = 0, numWords = 0, numFieldings = 0, numExpressions = 0, numSwappedCharacters = 0, numSwaps = 0;

  explicit Content(const qoc_ocrDictionary &dictionary) {
    for (const qoc_ocrDictionaryLexicon &lexicon : elements(dictionary.lexicons)) {
      ++numLists;
      std::int32_t n = 0;
      check(qstd_vector_qoc_ocrDictionaryString_getSize(&lexicon.strings, &n), "a word list");
      numWords += static_cast<std::size_t>(n);
    }
    numFieldings = elements(dictionary.fieldings).size();
    std::int32_t n = 0;
    check(qoc_ocrDictionary_getNumRegularExpressions(&dictionary, &n), "expressions");
    numExpressions = static_cast<std::size_t>(n);
    numSwappedCharacters = elements(dictionary.swapCharSet.distinctCharacters).size();
    numSwaps = elements(dictionary.swapCharSet.swaps).size();
  }
};

std::string asJson(const DictionaryFile &file, const std::vector<std::string> &faults) {
  std::string text;
  for (const std::string &fault : faults) {
    text += JsonText::object({{"type", "fault"}, {"version", formatVersion}, {"message", fault}}).text() + "\n";
  }
  JsonText summary = JsonText::object(
      {{"type", "check"}, {"version", formatVersion}, {"file", file.name}, {"faults", faults.size()}});
  if (faults.empty()) {
    const Content content(*file.dictionary.get());
    summary.set("wordLists", content.numLists);
    summary.set("words", content.numWords);
    summary.set("fieldings", content.numFieldings);
    summary.set("regularExpressions", content.numExpressions);
    summary.set("swappedCharacters", content.numSwappedCharacters);
    summary.set("sequenceSwaps", content.numSwaps);
  }
  return text + summary.text() + "\n";
}

std::string counted(std::size_t n, const char *one, const char *many) {
  return std::to_string(n) + " " + (n == 1 ? one : many);
}

std::string asText(const DictionaryFile &file, const std::vector<std::string> &faults) {
  std::string text;
  for (const std::string &fault : faults) text += fault + "\n";
  if (!faults.empty()) return text + file.name + ": " + counted(faults.size(), "fault", "faults") + "\n";
  const Content content(*file.dictionary.get());
  return file.name + ": no faults; " + counted(content.numLists, "word list", "word lists") + " with " +
         counted(content.numWords, "word", "words") + ", " + counted(content.numFieldings, "fielding", "fieldings") + ", " +
         counted(content.numExpressions, "regular expression", "regular expressions") + ", " +
         counted(content.numSwappedCharacters, "character", "characters") + " in swap groups, " +
         counted(content.numSwaps, "swap", "swaps") + " of sequences\n";
}

} // namespace

int checkDictionary(const Options &options) {
  const InterruptGuard guard;
  const auto body = [&] {
    DictionaryFile file;
    std::vector<std::string> faults;
    readDictionaryFile(options.dictionary, file, &faults);
    if (faults.empty()) {
      try {
        requireEntries(file);
      } catch (const Trouble &trouble) {
        faults.emplace_back(trouble.what());
      }
    }
    Output output;
    output.write(options.isJson ? asJson(file, faults) : asText(file, faults));
    output.finish();
    return faults.empty() ? allHadResults : someHadNone;
  };
  return endingWell(body, [] { return std::string("interrupted"); });
}

} // namespace qoc::program
