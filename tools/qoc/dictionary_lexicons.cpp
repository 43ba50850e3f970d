#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "line_reader.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
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
    if (!isUtf8(word)) checkUtf8(word, place(number));
    const std::size_t first = characters_.size();
    try {
      appendCodes(word, number, place);
      if (!mayRepeat_) requireNew(first, number, place);
    } catch (...) {
      characters_.resize(first);
      throw;
    }
    words_.push_back({first, number});
  }

  /// Hands the words to a lexicon of the library.
  void moveInto(qoc_ocrDictionaryLexicon *lexicon, const std::string &where) {
    Strings strings;
    check(qstd_vector_qoc_ocrDictionaryString_resize(strings.get(), static_cast<std::int32_t>(words_.size())), where);
    qoc_ocrDictionaryString *string = nullptr;
    check(qstd_vector_qoc_ocrDictionaryString_getBegin(strings.get(), &string), where);
    for (std::size_t i = 0; i < words_.size(); ++i) {
      const std::span<const qoc_ocrDictionaryChar> word = charactersOf(i);
      check(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string++->characters, word.data(),
                                                             static_cast<std::int32_t>(word.size())),
            where);
    }
    *this = WordList(mayRepeat_);
    const auto setStrings =
        mayRepeat_ ? qoc_ocrDictionaryLexicon_setStringsSafe : qoc_ocrDictionaryLexicon_setStrings;
    check(setStrings(lexicon, strings.get()), where);
  }

private:
  struct Word {
    std::size_t first, number;
  };

  template <typename Place> void appendCodes(std::string_view word, std::size_t number, const Place &place) {
    const auto append = [&](Char32 code) {
      if (const std::string refusal = whyRefused(code); !refusal.empty()) throw Trouble(place(number) + ": " + refusal);
      characters_.push_back({code, 0});
    };
    if (isAscii(word)) {
      for (const char code : word) append(static_cast<unsigned char>(code));
    } else {
      for (const Char32 code : decodeUtf8(word)) append(code);
    }
  }

  /// Throws where the word of the characters from `first` on is empty or was there before; else keeps it in mind.
  template <typename Place> void requireNew(std::size_t first, std::size_t number, const Place &place) {
    const std::span<const qoc_ocrDictionaryChar> word = std::span(characters_).subspan(first);
    if (word.empty()) {
      throw Trouble(place(number) + ": empty word; expected at least one character (or \"duplicates\": \"skip\")");
    }
    if (2 * (words_.size() + 1) > slots_.size()) growSlots();
    std::uint32_t &slot = slotOf(word);
    if (slot != 0) {
      throw Trouble(place(number) + ": duplicate of the word at " + place(words_[slot - 1].number) +
                    "; expected each word once (or \"duplicates\": \"skip\")");
    }
    slot = static_cast<std::uint32_t>(words_.size() + 1);
  }

  std::span<const qoc_ocrDictionaryChar> charactersOf(std::size_t word) const {
    const std::size_t end = word + 1 < words_.size() ? words_[word + 1].first : characters_.size();
    return std::span(characters_).subspan(words_[word].first, end - words_[word].first);
  }

  /// The slot of a word that stands at the end of the characters, or of one equal to it.
  std::uint32_t &slotOf(std::span<const qoc_ocrDictionaryChar> word) {
    std::uint64_t hash = 0x9E3779B97F4A7C15U;
    for (const qoc_ocrDictionaryChar &character : word) {
      hash = (hash ^ character.code) * 0xFF51AFD7ED558CCDU;
      hash ^= hash >> 32;
    }
    std::size_t slot = hash & (slots_.size() - 1);
    const auto isSame = [&](std::size_t other) {
      // The last word kept ends where this one begins.
      const std::size_t end = other + 1 < words_.size()
                                  ? words_[other + 1].first
                                  : static_cast<std::size_t>(word.data() - characters_.data());
      return std::ranges::equal(std::span(characters_).subspan(words_[other].first, end - words_[other].first), word, {},
                                &qoc_ocrDictionaryChar::code, &qoc_ocrDictionaryChar::code);
    };
    while (slots_[slot] != 0 && !isSame(slots_[slot] - 1)) slot = (slot + 1) & (slots_.size() - 1);
    return slots_[slot];
  }

  void growSlots() {
    slots_.assign(std::max<std::size_t>(64, 2 * slots_.size()), 0);
    for (std::size_t i = 0; i < words_.size(); ++i) slotOf(charactersOf(i)) = static_cast<std::uint32_t>(i + 1);
  }

  bool mayRepeat_;
  std::vector<qoc_ocrDictionaryChar> characters_;
  std::vector<Word> words_;
  std::vector<std::uint32_t> slots_; ///< Places of a hash table: a word's index and 1, or 0.
};

void readWordFile(const JsonNode &node, const std::filesystem::path &directory, WordList &words) {
  const std::string &name = node.string("the path of a text file with one word a line");
  if (name.empty() || name.find('\0') != name.npos) node.failExpected("the path of a text file with one word a line");
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
