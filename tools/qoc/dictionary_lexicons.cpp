#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "line_reader.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qoc::program {
namespace {

/// Collects the words of one list, and refuses what a list cannot hold with the place where it stands.
class WordList {
public:
  /// @param mayRepeat pass over empty words and over all but the first of equal ones
  explicit WordList(bool mayRepeat) : mayRepeat_(mayRepeat) {}

  /// @param place names where a word stands; asked only when a message needs it
  /// @param number the word's line or index, from which `place` makes the name of an earlier word's place, too
  template <typename Place> void add(std::string_view word, std::size_t number, const Place &place) {
    checkUtf8(word, place(number));
    std::vector<Char32> codes = decodeUtf8(word);
    for (const Char32 code : codes) {
      const std::string refusal = whyRefused(code);
      if (!refusal.empty()) throw Trouble(place(number) + ": " + refusal);
    }
    if (!mayRepeat_) {
      if (word.empty()) {
        throw Trouble(place(number) + ": empty word; expected at least one character (or \"duplicates\": \"skip\")");
      }
      const auto [found, isNew] = numbers_.try_emplace(std::string(word), number);
      if (!isNew) {
        throw Trouble(place(number) + ": duplicate of the word at " + place(found->second) +
                      "; expected each word once (or \"duplicates\": \"skip\")");
      }
    }
    words_.push_back(std::move(codes));
  }

  /// Hands the words to a lexicon of the library.
  void moveInto(qoc_ocrDictionaryLexicon *lexicon, const std::string &where) {
    Strings strings;
    check(qstd_vector_qoc_ocrDictionaryString_resize(strings.get(), static_cast<std::int32_t>(words_.size())), where);
    qoc_ocrDictionaryString *string = nullptr;
    check(qstd_vector_qoc_ocrDictionaryString_getBegin(strings.get(), &string), where);
    std::vector<qoc_ocrDictionaryChar> characters;
    for (std::vector<Char32> &codes : words_) {
      characters.clear();
      for (const Char32 code : codes) characters.push_back({code, 0});
      check(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string++->characters, characters.data(),
                                                             static_cast<std::int32_t>(characters.size())),
            where);
      codes = {};
    }
    const auto setStrings =
        mayRepeat_ ? qoc_ocrDictionaryLexicon_setStringsSafe : qoc_ocrDictionaryLexicon_setStrings;
    check(setStrings(lexicon, strings.get()), where);
  }

private:
  bool mayRepeat_;
  std::vector<std::vector<Char32>> words_;
  std::unordered_map<std::string, std::size_t> numbers_;
};

void readWordFile(const JsonNode &node, const std::filesystem::path &directory, WordList &words) {
  const std::string &name = node.string("the path of a text file with one word a line");
  if (name.empty()) node.failExpected("the path of a text file with one word a line");
  const auto inFile = [&](const auto &part) {
    try {
      part();
    } catch (const Trouble &trouble) {
      throw Trouble(std::string(trouble.what()) + " (" + node.where() + ")");
    }
  };
  std::optional<LineReader> reader;
  inFile([&] { reader.emplace((directory / name).string()); });
  const auto place = [&](std::size_t line) { return reader->name() + ":" + std::to_string(line); };
  std::string line;
  const auto hasNext = [&] {
    bool hasLine = false;
    inFile([&] { hasLine = reader->next(line); });
    return hasLine;
  };
  while (hasNext()) {
    dropCarriageReturn(line);
    node.attempt([&] { inFile([&] { words.add(line, reader->lineNumber(), place); }); });
  }
}

void readWords(const JsonNode &node, WordList &words) {
  const std::size_t n = node.requireArray("an array of words");
  const auto place = [&](std::size_t index) { return node.element(index).where(); };
  for (std::size_t i = 0; i < n; ++i) {
    node.attempt([&] { words.add(node.element(i).string("a word, as a string"), i, place); });
  }
}

bool readMayRepeat(const JsonNode &lexicon) {
  if (!lexicon.has("duplicates")) return false;
  const JsonNode node = lexicon.member("duplicates");
  const std::string choices = "\"refuse\" or \"skip\"";
  const std::string &choice = node.string(choices);
  if (choice != "refuse" && choice != "skip") node.failExpected(choices);
  return choice == "skip";
}

/// Reads a word list into the place where it stays, so that a long list is not copied.
void readLexicon(const JsonNode &entry, const std::filesystem::path &directory, qoc_ocrDictionaryLexicon *lexicon) {
  entry.requireObject({"words", "file", "duplicates"});
  if (entry.has("words") == entry.has("file")) entry.fail("expected either \"words\" or \"file\"");
  WordList words(readMayRepeat(entry));
  if (entry.has("words")) readWords(entry.member("words"), words);
  else readWordFile(entry.member("file"), directory, words);
  words.moveInto(lexicon, entry.where());
}

} // namespace

void readLexicons(const JsonNode &node, DictionaryFile &into) {
  const std::size_t n = node.requireArray("an array of word lists");
  for (std::size_t i = 0; i < n; ++i) {
    checkInterrupt();
    const JsonNode entry = node.element(i);
    auto *lexicons = &into.dictionary->lexicons;
    check(qstd_vector_qoc_ocrDictionaryLexicon_resize(lexicons, static_cast<std::int32_t>(i) + 1), entry.where());
    qoc_ocrDictionaryLexicon *lexicon = nullptr;
    check(qstd_vector_qoc_ocrDictionaryLexicon_getElement(lexicons, static_cast<std::int32_t>(i), &lexicon),
          entry.where());
    entry.attempt([&] { readLexicon(entry, into.directory, lexicon); });
  }
}

} // namespace qoc::program
