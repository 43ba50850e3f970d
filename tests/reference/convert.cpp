#include "reference/convert.hpp"

namespace reference {

namespace {

void toRecord(const std::vector<int32_t> &numbers, qstd_vector32s *record) {
  qstd_vector32s_assignElements(record, numbers.data(), static_cast<int32_t>(numbers.size()));
}

void toRecord(const std::vector<int32_t> &statuses, qstd_vector_qoc_ocrDictionaryPositionStatus *record) {
  qstd_vector_qoc_ocrDictionaryPositionStatus_clear(record);
  for (int32_t status : statuses) {
    auto element = static_cast<qoc_ocrDictionaryPositionStatus>(status);
    qstd_vector_qoc_ocrDictionaryPositionStatus_pushBack(record, &element);
  }
}

/** Every element of a record's vector, converted. */
template <typename Element, typename Vector, typename Convert>
auto elements(const Vector &vector, Convert convert) {
  std::vector<decltype(convert(std::declval<const Element &>()))> out;
  const auto *first = static_cast<const Element *>(vector.core.elements);
  for (int32_t i = 0; i < vector.core.size; ++i) {
    out.push_back(convert(first[i]));
  }
  return out;
}

std::vector<int32_t> fromRecord(const qstd_vector32s &record) {
  return elements<int32_t>(record, [](int32_t number) { return number; });
}

std::vector<int32_t> fromRecord(const qstd_vector_qoc_ocrDictionaryPositionStatus &record) {
  return elements<qoc_ocrDictionaryPositionStatus>(record, [](auto status) { return static_cast<int32_t>(status); });
}

/** Resizes a record's vector and converts every element into its place. */
template <typename Element, typename Values, typename Vector, typename Resize>
void fill(const Values &values, Vector *record, Resize resize) {
  resize(record, 0);
  resize(record, static_cast<int32_t>(values.size()));
  auto *first = static_cast<Element *>(record->core.elements);
  for (size_t i = 0; i < values.size(); ++i) {
    reference::toRecord(values[i], first + i);
  }
}

std::string text(int64_t number) { return std::to_string(number); }
std::string text(const Character &c) {
  std::string code = c.code >= 32 && c.code < 127 ? std::string("'") + static_cast<char>(c.code) + "'" : text(c.code);
  return c.score == 0 ? code : code + ":" + text(c.score);
}

template <typename T>
std::string text(const std::vector<T> &values) {
  std::string out = "[";
  for (const T &value : values) {
    out += (out.size() > 1 ? " " : "") + text(value);
  }
  return out + "]";
}

std::string textOfCodes(const std::vector<uint32_t> &codes) {
  std::string out;
  for (uint32_t code : codes) {
    out += text(Character{code, 0});
  }
  return out;
}

bool identical(int64_t a, int64_t b) { return a == b; }
bool identical(const Character &a, const Character &b) { return a.code == b.code && a.score == b.score; }
template <typename T>
bool identical(const std::vector<T> &a, const std::vector<T> &b) {
  if (a.size() != b.size()) {
    return false;
  }
  for (size_t i = 0; i < a.size(); ++i) {
    if (!identical(a[i], b[i])) {
      return false;
    }
  }
  return true;
}

/** Collects the fields that differ. */
class Differences {
 public:
  template <typename T>
  void compare(const char *field, const T &expected, const T &actual) {
    if (!identical(expected, actual)) {
      out_ += std::string(out_.empty() ? "" : "; ") + field + " is " + text(actual) + ", not " + text(expected);
    }
  }
  void compareCached(const char *field, bool both, int32_t expected, int32_t actual) {
    if (both) {
      compare(field, expected, actual);
    }
  }
  std::string take() { return out_; }

 private:
  std::string out_;
};

}  // namespace

void toRecord(const std::vector<Character> &characters, qstd_vector_qoc_ocrDictionaryChar *record) {
  qstd_vector_qoc_ocrDictionaryChar_clear(record);
  for (const Character &character : characters) {
    qoc_ocrDictionaryChar element{character.code, character.score};
    qstd_vector_qoc_ocrDictionaryChar_pushBack(record, &element);
  }
}

void toRecord(const Position &position, qoc_ocrDictionaryCharMulti *record) { toRecord(position, &record->candidates); }

void toRecord(const std::vector<uint32_t> &codes, qstd_vectorChar32 *record) {
  qstd_vectorChar32_assignElements(record, codes.data(), static_cast<int32_t>(codes.size()));
}

void toRecord(const PositionFielding &fielding, qoc_ocrDictionaryPositionFielding *record) {
  record->fieldingBits = fielding.bits;
  toRecord(fielding.listed, &record->fieldingCharacters);
}

void toRecord(const LineFielding &line, qoc_ocrDictionaryLineFielding *record) {
  fill<qoc_ocrDictionaryPositionFielding>(line.positions, &record->positions,
                                          qstd_vector_qoc_ocrDictionaryPositionFielding_resize);
}

void toRecord(const Word &word, qoc_ocrDictionaryString *record) { toRecord(word, &record->characters); }

void toRecord(const Reading &reading, qoc_ocrDictionaryStringMulti *record) {
  qstd_vector_qoc_ocrDictionaryCharMulti_resize(&record->positions, 0);
  qstd_vector_qoc_ocrDictionaryCharMulti_resize(&record->positions, static_cast<int32_t>(reading.size()));
  auto *first = static_cast<qoc_ocrDictionaryCharMulti *>(record->positions.core.elements);
  for (size_t i = 0; i < reading.size(); ++i) {
    toRecord(reading[i], first + i);
  }
}

void toRecord(const std::vector<Word> &words, qstd_vector_qoc_ocrDictionaryString *record) {
  fill<qoc_ocrDictionaryString>(words, record, qstd_vector_qoc_ocrDictionaryString_resize);
}

void toRecord(const Result &result, qoc_ocrDictionaryResult *record) {
  record->isComputed = result.isComputed;
  toRecord(result.given, &record->given);
  toRecord(result.dictionaryString, &record->dictionaryString);
  toRecord(result.resultStringStatus, &record->resultStringStatus);
  toRecord(result.statusWRTInputStringSwapChar, &record->statusWRTInputStringSwapChar);
  record->resultStringLineStatus = static_cast<qoc_ocrDictionaryPositionStatus>(result.resultStringLineStatus);
  toRecord(result.deleted, &record->deleted);
  record->numIgnoredPrefixCharacters = result.numIgnoredPrefixCharacters;
  record->numIgnoredSuffixCharacters = result.numIgnoredSuffixCharacters;
  record->startFieldIndex = result.startFieldIndex;
  record->scoreStatusMask = result.scoreStatusMask;
  record->mode = static_cast<qoc_ocrDictionaryMode>(result.mode);
  toRecord(result.givenSwap, &record->givenSwap);
  toRecord(result.inputIndices, &record->inputIndices);
  toRecord(result.valid, &record->valid);
  record->numEdits = result.numEdits;
  record->ignoreDeletedSpaces = result.ignoreDeletedSpaces;
  record->scoreIsCached = result.scoreIsCached;
  record->score = result.score;
  record->overlapInputString = result.overlapInputString;
  record->numInsertedIsCached = result.numInsertedIsCached;
  record->numInserted = result.numInserted;
  record->orderIndex = result.orderIndex;
  record->numMatchedPositionsIsCached = result.numMatchedPositionsIsCached;
  record->numMatchedPositions = result.numMatchedPositions;
}

void toRecord(const Results &results, qstd_vector_qoc_ocrDictionaryResult *record) {
  fill<qoc_ocrDictionaryResult>(results, record, qstd_vector_qoc_ocrDictionaryResult_resize);
}

void toRecord(const ResultSet &set, qoc_ocrDictionaryResultSet *record) {
  record->isComputed = set.isComputed;
  toRecord(set.results, &record->results);
}

void toRecord(const Buckets &buckets, qstd_vector_vector_qoc_ocrDictionaryResult *record) {
  fill<qstd_vector_qoc_ocrDictionaryResult>(buckets, record, qstd_vector_vector_qoc_ocrDictionaryResult_resize);
}

Word fromRecord(const qstd_vector_qoc_ocrDictionaryChar &record) {
  return elements<qoc_ocrDictionaryChar>(record, [](const auto &c) { return Character{c.code, c.score}; });
}

std::vector<uint32_t> fromRecord(const qstd_vectorChar32 &record) {
  return elements<Char32>(record, [](Char32 code) { return code; });
}

Word fromRecord(const qoc_ocrDictionaryString &record) { return fromRecord(record.characters); }

Reading fromRecord(const qoc_ocrDictionaryStringMulti &record) {
  return elements<qoc_ocrDictionaryCharMulti>(record.positions,
                                              [](const auto &position) { return fromRecord(position.candidates); });
}

std::vector<Word> fromRecord(const qstd_vector_qoc_ocrDictionaryString &record) {
  return elements<qoc_ocrDictionaryString>(record, [](const auto &word) { return fromRecord(word); });
}

Result fromRecord(const qoc_ocrDictionaryResult &record) {
  Result result;
  result.isComputed = record.isComputed != 0;
  result.given = fromRecord(record.given);
  result.dictionaryString = fromRecord(record.dictionaryString);
  result.resultStringStatus = fromRecord(record.resultStringStatus);
  result.statusWRTInputStringSwapChar = fromRecord(record.statusWRTInputStringSwapChar);
  result.resultStringLineStatus = static_cast<int32_t>(record.resultStringLineStatus);
  result.deleted = fromRecord(record.deleted);
  result.numIgnoredPrefixCharacters = record.numIgnoredPrefixCharacters;
  result.numIgnoredSuffixCharacters = record.numIgnoredSuffixCharacters;
  result.startFieldIndex = record.startFieldIndex;
  result.scoreStatusMask = record.scoreStatusMask;
  result.mode = static_cast<int32_t>(record.mode);
  result.givenSwap = fromRecord(record.givenSwap);
  result.inputIndices = fromRecord(record.inputIndices);
  result.valid = fromRecord(record.valid);
  result.numEdits = record.numEdits;
  result.ignoreDeletedSpaces = record.ignoreDeletedSpaces != 0;
  result.scoreIsCached = record.scoreIsCached != 0;
  result.score = record.score;
  result.overlapInputString = record.overlapInputString;
  result.numInsertedIsCached = record.numInsertedIsCached != 0;
  result.numInserted = record.numInserted;
  result.orderIndex = record.orderIndex;
  result.numMatchedPositionsIsCached = record.numMatchedPositionsIsCached != 0;
  result.numMatchedPositions = record.numMatchedPositions;
  return result;
}

Results fromRecord(const qstd_vector_qoc_ocrDictionaryResult &record) {
  return elements<qoc_ocrDictionaryResult>(record, [](const auto &result) { return fromRecord(result); });
}

ResultSet fromRecord(const qoc_ocrDictionaryResultSet &record) {
  return {record.isComputed != 0, fromRecord(record.results)};
}

Buckets fromRecord(const qstd_vector_vector_qoc_ocrDictionaryResult &record) {
  return elements<qstd_vector_qoc_ocrDictionaryResult>(record, [](const auto &bucket) { return fromRecord(bucket); });
}

Caches cachesOf(const RunParams *params) { return params && params->rankingMode == 1 ? Caches::bySort : Caches::exact; }

std::string difference(const Result &expected, const Result &actual, Caches caches) {
  Differences out;
  out.compare("isComputed", expected.isComputed, actual.isComputed);
  out.compare("given", expected.given, actual.given);
  out.compare("dictionaryString", expected.dictionaryString, actual.dictionaryString);
  out.compare("resultStringStatus", expected.resultStringStatus, actual.resultStringStatus);
  out.compare("statusWRTInputStringSwapChar", expected.statusWRTInputStringSwapChar,
              actual.statusWRTInputStringSwapChar);
  out.compare("resultStringLineStatus", expected.resultStringLineStatus, actual.resultStringLineStatus);
  out.compare("deleted", expected.deleted, actual.deleted);
  out.compare("numIgnoredPrefixCharacters", expected.numIgnoredPrefixCharacters, actual.numIgnoredPrefixCharacters);
  out.compare("numIgnoredSuffixCharacters", expected.numIgnoredSuffixCharacters, actual.numIgnoredSuffixCharacters);
  out.compare("startFieldIndex", expected.startFieldIndex, actual.startFieldIndex);
  out.compare("mode", expected.mode, actual.mode);
  out.compare("givenSwap", expected.givenSwap, actual.givenSwap);
  out.compare("inputIndices", expected.inputIndices, actual.inputIndices);
  out.compare("valid", expected.valid, actual.valid);
  out.compare("numEdits", expected.numEdits, actual.numEdits);
  out.compare("ignoreDeletedSpaces", expected.ignoreDeletedSpaces, actual.ignoreDeletedSpaces);
  out.compare("overlapInputString", expected.overlapInputString, actual.overlapInputString);
  out.compare("orderIndex", expected.orderIndex, actual.orderIndex);
  const bool exact = caches == Caches::exact;
  if (exact) {
    out.compare("scoreStatusMask", expected.scoreStatusMask, actual.scoreStatusMask);
    out.compare("scoreIsCached", expected.scoreIsCached, actual.scoreIsCached);
    out.compare("numInsertedIsCached", expected.numInsertedIsCached, actual.numInsertedIsCached);
    out.compare("numMatchedPositionsIsCached", expected.numMatchedPositionsIsCached,
                actual.numMatchedPositionsIsCached);
  }
  const bool bothScored = expected.scoreIsCached && actual.scoreIsCached;
  out.compareCached("scoreStatusMask", bothScored, expected.scoreStatusMask, actual.scoreStatusMask);
  out.compareCached("score", exact || bothScored, expected.score, actual.score);
  out.compareCached("numInserted", exact || (expected.numInsertedIsCached && actual.numInsertedIsCached),
                    expected.numInserted, actual.numInserted);
  out.compareCached("numMatchedPositions",
                    exact || (expected.numMatchedPositionsIsCached && actual.numMatchedPositionsIsCached),
                    expected.numMatchedPositions, actual.numMatchedPositions);
  return out.take();
}

std::string difference(const Results &expected, const Results &actual, Caches caches) {
  if (expected.size() != actual.size()) {
    return std::to_string(actual.size()) + " results, not " + std::to_string(expected.size());
  }
  for (size_t i = 0; i < expected.size(); ++i) {
    std::string fields = difference(expected[i], actual[i], caches);
    if (!fields.empty()) {
      return "result " + std::to_string(i) + ": " + fields;
    }
  }
  return "";
}

std::string difference(const ResultSet &expected, const ResultSet &actual, Caches caches) {
  if (expected.isComputed != actual.isComputed) {
    return std::string("the set is ") + (actual.isComputed ? "" : "not ") + "computed";
  }
  return difference(expected.results, actual.results, caches);
}

std::string membershipDifference(Results expected, Results actual, Caches caches) {
  if (expected.size() != actual.size()) {
    return std::to_string(actual.size()) + " results, not " + std::to_string(expected.size());
  }
  for (Result &result : actual) {
    result.orderIndex = 0;
  }
  for (size_t i = 0; i < expected.size(); ++i) {
    expected[i].orderIndex = 0;
    size_t k = 0;
    while (k < actual.size() && !difference(expected[i], actual[k], caches).empty()) {
      ++k;
    }
    if (k == actual.size()) {
      return "a member is missing: " + toText(expected[i]);
    }
    actual.erase(actual.begin() + static_cast<std::ptrdiff_t>(k));
  }
  return "";
}

std::string toText(const Word &word) { return text(word); }
std::string toText(const Reading &reading) { return text(reading); }

std::string toText(const RunParams *params) {
  if (!params) {
    return "null";
  }
  return "maxEdits " + text(params->maxEdits) + ", substitution " + text(params->matchOption1) + ", missing " +
         text(params->matchOption2) + ", extra " + text(params->matchOption4) + ", lengths " +
         text(params->minStringLength) + ".." + text(params->maxStringLength) + ", best " +
         text(params->returnBestOnly) + ", windows " + text(params->matchOption9) + ", finalizeEach " +
         text(params->finalizeEachResult) + ", ranking " + text(params->rankingMode) + "/" +
         text(params->rankingVariant);
}

std::string toText(const Swaps *swaps) {
  if (!swaps) {
    return "null";
  }
  std::string out;
  for (const std::vector<uint32_t> &group : swaps->groups) {
    out += "{" + textOfCodes(group) + "}";
  }
  for (const Swap &swap : swaps->swaps) {
    out += "(" + textOfCodes(swap.first) + "/" + textOfCodes(swap.second) + ")";
  }
  return out;
}

std::string toText(const PositionFielding &fielding) {
  return "(" + text(fielding.bits) + " " + textOfCodes(fielding.listed) + ")";
}

std::string toText(const LineFielding &line) {
  std::string out;
  for (const PositionFielding &fielding : line.positions) {
    out += toText(fielding);
  }
  return out;
}

std::string toText(const Result &result) {
  return std::string("{") + (result.isComputed ? "" : "uncomputed ") + "given " + text(result.given) + " string " +
         text(result.dictionaryString) + " statuses " + text(result.resultStringStatus) + " line " +
         text(result.resultStringLineStatus) + " deleted " + text(result.deleted) + " prefix " +
         text(result.numIgnoredPrefixCharacters) + " suffix " + text(result.numIgnoredSuffixCharacters) + " edits " +
         text(result.numEdits) + " order " + text(result.orderIndex) + " mask " + text(result.scoreStatusMask) +
         " score " + text(result.score) + "}";
}

std::string toText(const ResultSet &set) {
  std::string out = set.isComputed ? "computed" : "uncomputed";
  for (const Result &result : set.results) {
    out += "\n    " + toText(result);
  }
  return out;
}

}  // namespace reference
