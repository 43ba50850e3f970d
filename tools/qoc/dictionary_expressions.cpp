#include "dictionary_file.hpp"
#include "interrupt.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace qoc::program {
namespace {

constexpr std::size_t shownBefore = 60, shownBehind = 20; ///< Characters around the place of an error.

/// An expression with a caret under one of its characters, or behind the last; a long one is cut.
std::string markPlace(const std::vector<Char32> &codes, std::size_t place) {
  const std::size_t begin = place > shownBefore ? place - shownBefore : 0;
  const std::size_t end = std::min(codes.size(), place + shownBehind);
  std::string shown = begin > 0 ? "\u2026" : "";
  for (std::size_t i = begin; i < end; ++i) appendUtf8(shown, visible(codes[i]));
  if (end < codes.size()) shown += "\u2026";
  return "\n  " + shown + "\n  " + std::string(place - begin + (begin > 0 ? 1 : 0), ' ') + "^";
}

void readExpression(const JsonNode &node, qoc_ocrDictionaryRegularExpression &expression) {
  const std::vector<Char32> codes = decodeUtf8(node.string("a regular expression, as a string"));
  if (codes.empty()) node.fail("the expression is empty; expected at least one character");
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const std::string refusal = whyRefused(codes[i]);
    if (!refusal.empty()) node.fail(refusal + markPlace(codes, i));
  }
  std::wstring source;
  for (const Char32 code : codes) source += static_cast<wchar_t>(code);
  const qsys_status status = qoc_ocrDictionaryRegularExpression_setStringT(&expression, source.c_str());
  std::int32_t place = -1;
  if (status < 0 && qstd_regex_findErrorT(source.c_str(), &place) < 0 && place >= 0) {
    node.fail(qoc_status_getText(status) + markPlace(codes, static_cast<std::size_t>(place)));
  }
  check(status, node.where());
}

} // namespace

void readRegularExpressions(const JsonNode &node, DictionaryFile &into) {
  const std::size_t n = node.requireArray("an array of regular expressions");
  RegularExpression expression;
  for (std::size_t i = 0; i < n; ++i) {
    checkInterrupt();
    node.attempt([&] {
      readExpression(node.element(i), *expression.get());
      check(qstd_vector_qoc_ocrDictionaryRegularExpression_pushBack(&into.dictionary->regularExpressions,
                                                                    expression.get()),
            node.element(i).where());
    });
  }
}

} // namespace qoc::program
