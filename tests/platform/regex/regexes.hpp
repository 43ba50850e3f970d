#pragma once
// Expressions, sequences of tokens and ways, written shortly.
//
// A sequence is written like a reading: "a|b c" has two places, the first a with the alternative b. '?' alone is a
// place that any character fits. A way is written place by place: the matched tokens, with '!' before them when the
// primary one is among them: "!ab c".

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/text.hpp"

namespace qoc::test {

inline Owned<qstd_regex> regex(std::string_view source) {
  return Owned<qstd_regex>([&](qstd_regex *made) { return qstd_regex_constructString(made, stdString(source)); });
}

/// The status of a source, and where its error is: "QSTD_STATUS_REGEX_ESCAPE at 3"; "" where there is none.
inline std::string errorOf(std::string_view source) {
  int32_t place = -7;
  const qsys_status status = qstd_regex_findError(stdString(source), &place);
  if (status >= 0) {
    return place == -1 ? "" : "a place without an error";
  }
  return std::string(qoc_status_getName(status)) + " at " + std::to_string(place);
}

inline Owned<qstd_vector_qstd_tokenMulti> sequence(std::string_view text) {
  Owned<qstd_vector_qstd_tokenMulti> tokens;
  const auto places = reading(text);
  for (const qoc_ocrDictionaryCharMulti &place : elements(places->positions)) {
    Owned<qstd_tokenMulti> multi;
    const auto codes = elements(place.candidates);
    if (codes.empty()) {
      require(qstd_tokenMulti_setChar32(multi, QOC_CHAR_EMPTY));
    }
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const bool isAny = codes.size() == 1 && codes[i].code == '?';
      if (isAny) {
        continue;
      }
      Owned<qstd_token> token;
      require(qstd_token_setChar32(token, codes[i].code));
      require(i == 0 ? qstd_tokenMulti_setPrimary(multi, token)
                     : qstd_vector_qstd_token_pushBack(&multi->alternatives, token));
    }
    require(qstd_vector_qstd_tokenMulti_pushBack(tokens, multi));
  }
  return tokens;
}

/// A sequence of one token for each character.
inline Owned<qstd_vector_qstd_tokenMulti> plainSequence(std::string_view text) {
  Owned<qstd_vector_qstd_tokenMulti> tokens;
  for (const char character : text) {
    Owned<qstd_tokenMulti> multi;
    require(qstd_tokenMulti_setChar32(multi, detail::codeOf(character)));
    require(qstd_vector_qstd_tokenMulti_pushBack(tokens, multi));
  }
  return tokens;
}

inline std::string show(const qstd_tokenMatcherResultWord &word) {
  std::string out;
  for (const qstd_tokenMatcherResult &result : elements(word.positions)) {
    out += out.empty() ? "" : " ";
    out += result.isPrimary != 0 ? "!" : "";
    for (const qstd_token &token : elements(result.tokens)) {
      Char32 code = 0;
      require(qstd_token_getChar(&token, &code));
      detail::append(out, code);
    }
  }
  return out;
}

inline std::vector<std::string> ways(const Owned<qstd_regex> &regex,
                                     const Owned<qstd_vector_qstd_tokenMulti> &sequence) {
  Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
  require(qstd_regex_parseTokenMulti(regex, sequence, words));
  std::vector<std::string> out;
  for (const qstd_tokenMatcherResultWord &word : elements(words)) {
    out.push_back(show(word));
  }
  return out;
}
inline std::vector<std::string> ways(std::string_view source, std::string_view text) {
  return ways(regex(source), sequence(text));
}

/// Whether a text is matched.
inline bool matches(std::string_view source, std::string_view text) {
  return !ways(regex(source), plainSequence(text)).empty();
}

}  // namespace qoc::test
