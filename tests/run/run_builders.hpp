#pragma once
// Builders and views of what runs take and give: word lists, results, result sets.

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "support/handlers.hpp"
#include "support/text.hpp"

namespace qoc::test {

using Status = qoc_ocrDictionaryPositionStatus;
using Statuses = std::vector<Status>;
using StatusVector = qstd_vector_qoc_ocrDictionaryPositionStatus;
using ResultVector = qstd_vector_qoc_ocrDictionaryResult;
using Buckets = qstd_vector_vector_qoc_ocrDictionaryResult;

#define QOC_TEST_STATUS_CONSTANT(name, value) inline constexpr Status name = value;
QOC_POSITION_STATUS_LIST(QOC_TEST_STATUS_CONSTANT)
#undef QOC_TEST_STATUS_CONSTANT

inline constexpr qsys_status interruption = -902;

inline Owned<qstd_vector_qoc_ocrDictionaryString> words(const std::vector<std::string> &texts) {
  Owned<qstd_vector_qoc_ocrDictionaryString> vector;
  require(qstd_vector_qoc_ocrDictionaryString_reserve(vector, static_cast<int32_t>(texts.size())));
  for (const std::string &text : texts) {
    require(qstd_vector_qoc_ocrDictionaryString_pushBack(vector, word(text)));
  }
  return vector;
}

inline std::vector<std::string> textsOf(const qstd_vector_qoc_ocrDictionaryString &strings) {
  std::vector<std::string> texts;
  for (const qoc_ocrDictionaryString &string : elements(strings)) {
    texts.push_back(show(string));
  }
  return texts;
}

inline Owned<qoc_ocrDictionaryLexicon> lexicon(const std::vector<std::string> &texts) {
  return Owned<qoc_ocrDictionaryLexicon>([&](qoc_ocrDictionaryLexicon *entry) {
    return qoc_ocrDictionaryLexicon_constructStrings(entry, words(texts));
  });
}

/// The words of a lexicon, as it gives them out.
inline std::vector<std::string> wordsOf(const qoc_ocrDictionaryLexicon &lexicon) {
  Owned<qstd_vector_qoc_ocrDictionaryString> strings;
  require(qoc_ocrDictionaryLexicon_getStrings(&lexicon, strings));
  return textsOf(*strings);
}

/// A dictionary of lexicons.
inline Owned<qoc_ocrDictionary> dictionaryOf(const std::vector<std::vector<std::string>> &lists) {
  Owned<qoc_ocrDictionary> dictionary;
  for (std::size_t i = 0; i < lists.size(); ++i) {
    require(qoc_ocrDictionary_setLexiconIExtend(dictionary, static_cast<int32_t>(i), lexicon(lists[i])));
  }
  return dictionary;
}

/// What a test says of a result. `name` goes to startFieldIndex, which neither ranking nor the duplicate test looks at, so that a
/// test can tell results apart whatever they hold.
struct ResultFields {
  int32_t name = 0;
  qsys_bool isComputed = 1;
  std::string given = "";
  std::string givenSwap = "";
  std::string valid = "";
  std::string word = "";
  std::vector<int32_t> scores = {};  ///< Where there are any: those of a dictionary string of as many characters.
  Statuses statuses = {};
  Status lineStatus = noMatch;
  std::vector<int32_t> deleted = {};
  int32_t numEdits = 0;
  int32_t numIgnoredPrefix = 0;
  int32_t numIgnoredSuffix = 0;
  qoc_ocrDictionaryMode mode = qoc_ocrDictionaryMode_lexicon;
};

inline Owned<qoc_ocrDictionaryResult> result(const ResultFields &fields) {
  Owned<qoc_ocrDictionaryResult> record;
  record->startFieldIndex = fields.name;
  record->isComputed = fields.isComputed;
  require(qoc_ocrDictionaryStringMulti_assign(&record->given, reading(fields.given)));
  require(qoc_ocrDictionaryStringMulti_assign(&record->givenSwap, reading(fields.givenSwap)));
  require(qoc_ocrDictionaryStringMulti_assign(&record->valid, reading(fields.valid)));
  require(qoc_ocrDictionaryString_assign(&record->dictionaryString, word(fields.word)));
  for (const int32_t score : fields.scores) {
    const qoc_ocrDictionaryChar scored = character('x', score);
    require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&record->dictionaryString.characters, &scored));
  }
  require(qstd_vector_qoc_ocrDictionaryPositionStatus_assign(&record->resultStringStatus,
                                                             vectorOf<StatusVector>(fields.statuses)));
  record->resultStringLineStatus = fields.lineStatus;
  require(qstd_vector32s_assign(&record->deleted, vectorOf<qstd_vector32s>(fields.deleted)));
  record->numEdits = fields.numEdits;
  record->numIgnoredPrefixCharacters = fields.numIgnoredPrefix;
  record->numIgnoredSuffixCharacters = fields.numIgnoredSuffix;
  record->mode = fields.mode;
  return record;
}

inline Owned<ResultVector> resultVector(const std::vector<ResultFields> &list) {
  Owned<ResultVector> vector;
  for (const ResultFields &fields : list) {
    require(qstd_vector_qoc_ocrDictionaryResult_pushBack(vector, result(fields)));
  }
  return vector;
}

inline Owned<qoc_ocrDictionaryResultSet> resultSet(const std::vector<ResultFields> &list, qsys_bool isComputed = 1) {
  Owned<qoc_ocrDictionaryResultSet> set;
  set->isComputed = isComputed;
  require(qstd_vector_qoc_ocrDictionaryResult_assign(&set->results, resultVector(list)));
  return set;
}

/// The names of the results, in order.
inline std::vector<int32_t> namesOf(const ResultVector &vector) {
  std::vector<int32_t> names;
  for (const qoc_ocrDictionaryResult &one : elements(vector)) {
    names.push_back(one.startFieldIndex);
  }
  return names;
}

/// The dictionary strings of the results, in order.
inline std::vector<std::string> matchedWords(const qoc_ocrDictionaryResultSet &set) {
  std::vector<std::string> texts;
  for (const qoc_ocrDictionaryResult &one : resultsOf(set)) {
    texts.push_back(show(one.dictionaryString));
  }
  return texts;
}

/// Every field of every result, as text: two sets are the same to a caller exactly when these are.
inline std::string describe(const qoc_ocrDictionaryResultSet &set) {
  std::ostringstream text;
  text << "computed " << set.isComputed << '\n';
  for (const qoc_ocrDictionaryResult &r : resultsOf(set)) {
    text << show(r.dictionaryString) << " computed " << r.isComputed << " given [" << show(r.given) << "] swapped ["
         << show(r.givenSwap) << "] valid [" << show(r.valid) << "] statuses [" << show(r.resultStringStatus)
         << "] of the input [" << show(r.statusWRTInputStringSwapChar) << "] line " << r.resultStringLineStatus
         << " deleted " << testing::PrintToString(values(r.deleted)) << " indices "
         << testing::PrintToString(values(r.inputIndices)) << " ignored " << r.numIgnoredPrefixCharacters << ' '
         << r.numIgnoredSuffixCharacters << " start " << r.startFieldIndex << " mode " << r.mode << " edits "
         << r.numEdits << " overlap " << r.overlapInputString << " mask " << r.scoreStatusMask << " order "
         << r.orderIndex << '\n';
  }
  return text.str();
}

}  // namespace qoc::test
