#pragma once
// Words, readings and run parameters, written shortly; and the same notation back, for comparisons.
//
// A word is its characters: word("abc"). Codes beyond ASCII are written in a UTF-32 literal: word(U"a\uF801").
//
// A reading is a list of positions with a blank between them. A position is a list of candidates with '|' between them,
// the primary one first. A candidate is one character, and a score when it is not 0: "R|P E5 S" has three positions;
// the first may be R or P, the second is E with score 5, the third S. In a candidate '_' stands for the blank, and a
// backslash takes the next character as it is; a position without candidates is written "~".

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "support/owned.hpp"

namespace qoc::test {

inline qoc_ocrDictionaryChar character(Char32 code, int32_t score = 0) { return {code, score}; }

namespace detail {

template <class C>
Char32 codeOf(C c) {
  if constexpr (sizeof(C) == 1) {
    return static_cast<Char32>(static_cast<int32_t>(static_cast<int8_t>(c)));
  } else {
    return static_cast<Char32>(c);
  }
}

template <class C>
Owned<qoc_ocrDictionaryString> makeWord(std::basic_string_view<C> text) {
  Owned<qoc_ocrDictionaryString> string;
  for (const C c : text) {
    const qoc_ocrDictionaryChar one = character(codeOf(c));
    require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&string->characters, &one));
  }
  return string;
}

template <class C>
std::size_t parseCandidate(std::basic_string_view<C> text, std::size_t i, qoc_ocrDictionaryCharMulti *position) {
  C c = text.at(i++);
  if (c == C('\\')) {
    c = text.at(i++);
  } else if (c == C('_')) {
    c = C(' ');
  }
  qoc_ocrDictionaryChar candidate = character(codeOf(c));
  const bool isNegative = i < text.size() && text[i] == C('-');
  i += isNegative ? 1 : 0;
  for (; i < text.size() && text[i] >= C('0') && text[i] <= C('9'); ++i) {
    candidate.score = candidate.score * 10 + static_cast<int32_t>(text[i] - C('0'));
  }
  candidate.score = isNegative ? -candidate.score : candidate.score;
  require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate));
  return i;
}

template <class C>
Owned<qoc_ocrDictionaryStringMulti> makeReading(std::basic_string_view<C> text) {
  Owned<qoc_ocrDictionaryStringMulti> reading;
  for (std::size_t i = 0; i < text.size();) {
    Owned<qoc_ocrDictionaryCharMulti> position;
    if (text[i] == C('~')) {
      ++i;
    } else {
      i = parseCandidate(text, i, position);
      while (i < text.size() && text[i] == C('|')) {
        i = parseCandidate(text, i + 1, position);
      }
    }
    require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&reading->positions, position));
    if (i < text.size()) {
      if (text[i] != C(' ')) {
        throw std::invalid_argument("a reading's positions are separated by one blank");
      }
      ++i;
    }
  }
  return reading;
}

inline void append(std::string &out, Char32 code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "{%X}", static_cast<unsigned>(code));
    out += buffer;
  }
}

}  // namespace detail

inline Owned<qoc_ocrDictionaryString> word(std::string_view text) { return detail::makeWord(text); }
inline Owned<qoc_ocrDictionaryString> word(std::u32string_view text) { return detail::makeWord(text); }
inline Owned<qoc_ocrDictionaryStringMulti> reading(std::string_view text) { return detail::makeReading(text); }
inline Owned<qoc_ocrDictionaryStringMulti> reading(std::u32string_view text) { return detail::makeReading(text); }

/// A reading of one position: its candidates.
inline Owned<qoc_ocrDictionaryCharMulti> position(std::string_view text) {
  const auto one = reading(text);
  return Owned<qoc_ocrDictionaryCharMulti>(elements(one->positions)[0]);
}
/// A vector of characters in the notation of one position: "A5|B".
inline Owned<qstd_vector_qoc_ocrDictionaryChar> characters(std::string_view text) {
  if (text.empty()) {
    return {};
  }
  return Owned<qstd_vector_qoc_ocrDictionaryChar>(position(text)->candidates);
}
inline Owned<qstd_string> stdString(std::string_view text) {
  return Owned<qstd_string>([&](qstd_string *string) {
    return qstd_string_constructFromBlock(string, text.data(), static_cast<int32_t>(text.size()));
  });
}

/// A string's characters; a code beyond ASCII in braces: "a{F800}".
inline std::string show(const qstd_vector_qoc_ocrDictionaryChar &vector) {
  std::string out;
  for (const qoc_ocrDictionaryChar &one : elements(vector)) {
    detail::append(out, one.code);
  }
  return out;
}
inline std::string show(const qoc_ocrDictionaryString &string) { return show(string.characters); }

/// A position's candidates, with scores, in the notation of readings.
inline std::string show(const qoc_ocrDictionaryCharMulti &multi) {
  std::string out;
  for (const qoc_ocrDictionaryChar &one : elements(multi.candidates)) {
    out += out.empty() ? "" : "|";
    detail::append(out, one.code == ' ' ? '_' : one.code);
    out += one.score != 0 ? std::to_string(one.score) : "";
  }
  return out.empty() ? "~" : out;
}
inline std::string show(const qstd_vector_qoc_ocrDictionaryCharMulti &vector) {
  std::string out;
  bool isFirst = true;
  for (const qoc_ocrDictionaryCharMulti &one : elements(vector)) {
    out += isFirst ? "" : " ";
    out += show(one);
    isFirst = false;
  }
  return out;
}
inline std::string show(const qoc_ocrDictionaryStringMulti &multi) { return show(multi.positions); }

/// The names of statuses with a blank between them: "primary substituted".
inline std::string show(const qstd_vector_qoc_ocrDictionaryPositionStatus &vector) {
  std::string out;
  for (const qoc_ocrDictionaryPositionStatus status : elements(vector)) {
    out += out.empty() ? "" : " ";
    switch (status) {
#define QOC_TEST_STATUS_NAME(name, value) \
  case value:                             \
    out += #name;                         \
    break;
      QOC_POSITION_STATUS_LIST(QOC_TEST_STATUS_NAME)
#undef QOC_TEST_STATUS_NAME
      default:
        out += std::to_string(status);
    }
  }
  return out;
}
inline std::string show(const qstd_string &string) {
  const auto view = elements(string);
  return {view.begin(), view.end()};
}
template <class T>
std::string show(const Owned<T> &object) {
  return show(*object);
}

/// The run parameters that differ from the defaults: runParams({.maxEdits = 1, .matchOption9 = 1}).
struct RunOptions {
  std::optional<int32_t> maxEdits = {}, matchOption1 = {}, matchOption2 = {}, matchOption3 = {}, matchOption4 = {},
                         minStringLength = {}, maxStringLength = {}, matchOption7 = {}, returnBestOnly = {},
                         matchOption9 = {}, finalizeEachResult = {}, matchOption11 = {}, matchOption12 = {},
                         matchOption13 = {}, limitA = {}, limitB = {}, rankingMode = {}, rankingVariant = {};
};

inline Owned<qoc_ocrDictionaryRunParams> runParams(const RunOptions &options = {}) {
  Owned<qoc_ocrDictionaryRunParams> params;
#define QOC_TEST_SET(field) params->field = options.field.value_or(params->field);
  QOC_TEST_SET(maxEdits)
  QOC_TEST_SET(matchOption1)
  QOC_TEST_SET(matchOption2)
  QOC_TEST_SET(matchOption3)
  QOC_TEST_SET(matchOption4)
  QOC_TEST_SET(minStringLength)
  QOC_TEST_SET(maxStringLength)
  QOC_TEST_SET(matchOption7)
  QOC_TEST_SET(returnBestOnly)
  QOC_TEST_SET(matchOption9)
  QOC_TEST_SET(finalizeEachResult)
  QOC_TEST_SET(matchOption11)
  QOC_TEST_SET(matchOption12)
  QOC_TEST_SET(matchOption13)
  QOC_TEST_SET(limitA)
  QOC_TEST_SET(limitB)
  QOC_TEST_SET(rankingMode)
  QOC_TEST_SET(rankingVariant)
#undef QOC_TEST_SET
  return params;
}

/// The results of a set, best first, until it changes.
inline std::span<const qoc_ocrDictionaryResult> resultsOf(const qoc_ocrDictionaryResultSet &set) {
  return elements(set.results);
}

}  // namespace qoc::test
