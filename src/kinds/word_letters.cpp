#include "kinds/word_letters.hpp"

namespace qoc {

WordLetters::WordLetters(std::span<const qoc_ocrDictionaryString> words, const LetterTable &table, WorkMeter &meter)
    : numWords_(static_cast<std::int32_t>(words.size())) {
  std::size_t numLetters = 0;
  for (const qoc_ocrDictionaryString &word : words) {
    meter.spend(1);
    numLetters += view(word).size();
  }
  letters_.reserve(numLetters);
  for (std::size_t i = 0; i < words.size(); ++i) {
    meter.spend(unitsOf(words[i]));
    const Characters characters = view(words[i]);
    const auto length = static_cast<std::int32_t>(characters.size());
    if (groups_.empty() || groups_.back().length != length) {
      groups_.push_back({length, static_cast<std::int32_t>(i), letters_.size()});
    }
    for (const qoc_ocrDictionaryChar &character : characters) {
      letters_.push_back(table.letterOf(character.code));
    }
  }
}

}  // namespace qoc
