#include "best_text.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

BestText bestTextOf(const Reading &reading, const qoc_ocrDictionaryResult &result) {
  BestText best;
  best.codes = resultText(result);
  best.mode = result.mode;
  best.numEdits = result.numEdits;
  best.explanation = explainResult(reading, result, best.codes);
  best.numOutsideBefore = static_cast<std::size_t>(std::max(result.numIgnoredPrefixCharacters, 0));
  best.numOutsideBehind = static_cast<std::size_t>(std::max(result.numIgnoredSuffixCharacters, 0));
  return best;
}

BestText bestTextOf(const Reading &reading, const qoc_ocrDictionaryResolvedText &text) {
  BestText best;
  best.codes = codesOf(text.text);
  best.mode = text.mode;
  best.explanation = explainText(reading, text);
  const std::vector<ExplanationColumn> &columns = best.explanation.columns;
  best.numEdits = static_cast<std::int32_t>(
      std::count_if(columns.begin(), columns.end(), [](const ExplanationColumn &column) {
        return column.status >= qoc_ocrDictionaryPositionStatus_substituted &&
               column.status <= qoc_ocrDictionaryPositionStatus_deleted;
      }));
  return best;
}

} // namespace

std::optional<BestText> bestTextOf(const Reading &reading, const Answer &answer) {
  const std::span<const qoc_ocrDictionaryResult> results = elements(answer.results->results);
  const std::span<const qoc_ocrDictionaryResolvedText> texts = elements(answer.resolution->texts);
  if (!answer.isResolved || texts.empty()) {
    return results.empty() ? std::nullopt : std::optional(bestTextOf(reading, results.front()));
  }
  const qoc_ocrDictionaryResolvedText &text = texts.front();
  const auto index = static_cast<std::size_t>(std::max(text.resultIndex, 0));
  const bool isShown = text.resultIndex >= 0 && index < results.size() && resultText(results[index]) == codesOf(text.text);
  if (isShown) return bestTextOf(reading, results[index]);
  BestText best = bestTextOf(reading, text);
  if (!results.empty()) { // It was looked for in the same part of the reading.
    best.numOutsideBefore = static_cast<std::size_t>(std::max(results.front().numIgnoredPrefixCharacters, 0));
    best.numOutsideBehind = static_cast<std::size_t>(std::max(results.front().numIgnoredSuffixCharacters, 0));
  }
  return best;
}

std::vector<Char32> codesOf(const qoc_ocrDictionaryString &string) {
  std::vector<Char32> codes;
  for (const qoc_ocrDictionaryChar &character : elements(string.characters)) codes.push_back(character.code);
  return codes;
}

std::vector<std::string> correctedTexts(const Reading &reading, const BestText &best) {
  std::vector<std::string> texts(reading.positions.size());
  if (texts.empty()) return texts;
  const std::size_t n = best.explanation.columns.size();
  std::string before; // What comes in before the first position.
  for (std::size_t i = 0; i < n; ++i) {
    const ExplanationColumn &column = best.explanation.columns[i];
    const bool isOutside = i < best.numOutsideBefore || i + best.numOutsideBehind >= n;
    const bool isOpen = column.character.empty() && column.status < qoc_ocrDictionaryPositionStatus_inserted;
    const std::string &character = isOutside || isOpen ? column.read : column.character;
    if (column.begin < column.end) texts[column.begin] += character;
    else if (column.begin > 0) texts[std::min(column.begin, texts.size()) - 1] += character;
    else before += character;
  }
  texts.front().insert(0, before);
  return texts;
}

} // namespace qoc::program
