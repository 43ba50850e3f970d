// Compiles any bytes as an expression and matches any reading with it.
//
// An input is a byte of options, the source of an expression up to the first zero byte, and behind it a reading: a byte
// a position, of which values from 0x80 on add a candidate to the position before. What is checked, beyond what the
// sanitizers see: that the two forms of the match agree, that a source that compiles has no error and the other way
// round, and that a source comes back as it was given.

#include <qoc/ocr_dictionary.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

void require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

/// Interrupts after a number of polls, so that no input takes long.
struct PollLimit {
  explicit PollLimit(int n) : numLeft(n) {
    qsys_attention_setHandler(
        [](void *context) -> qsys_status {
          return --static_cast<PollLimit *>(context)->numLeft < 0 ? QSYS_STATUS_INTERRUPTED : QSYS_STATUS_OK;
        },
        this);
  }
  ~PollLimit() { qsys_attention_setHandler(nullptr, nullptr); }
  PollLimit(const PollLimit &) = delete;
  PollLimit &operator=(const PollLimit &) = delete;
  int numLeft;
};

constexpr int maxPositions = 12;
constexpr int maxCandidates = 40;

void readReading(const uint8_t *data, size_t size, qoc_ocrDictionaryStringMulti *reading) {
  qoc_ocrDictionaryStringMulti_construct(reading);
  int numPositions = 0, numCandidates = 0;
  for (size_t i = 0; i < size && numCandidates < maxCandidates; ++i) {
    const bool isFurther = data[i] >= 0x80 && numPositions > 0;
    if (!isFurther && numPositions == maxPositions) {
      return;
    }
    if (!isFurther) {
      require(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&reading->positions, ++numPositions) >= 0);
    }
    qoc_ocrDictionaryCharMulti *position = nullptr;
    require(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&reading->positions, numPositions - 1, &position) >= 0);
    // Two bytes stand for the reserved codes, and one for a position without candidates.
    const Char32 code = data[i] == 1 ? QOC_CHAR_EMPTY : data[i] == 2 ? QOC_CHAR_ANY : Char32{data[i]} & 0x7F;
    const qoc_ocrDictionaryChar candidate = {code, 0};
    if (data[i] != 3) {
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate) >= 0);
    }
    ++numCandidates;
  }
}

void matchReading(const qoc_ocrDictionaryRegularExpression *expression, const qoc_ocrDictionaryStringMulti *reading,
                  const qoc_ocrDictionaryRunParams *params) {
  qsys_bool isMatch = 0;
  qsys_status answered = 0, matched = 0;
  qoc_ocrDictionaryResultSet results;
  require(qoc_ocrDictionaryResultSet_construct(&results) >= 0);
  {
    PollLimit limit(40);
    answered = qoc_ocrDictionaryRegularExpression_isMatchMulti(expression, reading, params, nullptr, &isMatch);
  }
  {
    PollLimit limit(20);
    matched = qoc_ocrDictionaryRegularExpression_matchMulti(expression, reading, params, nullptr, &results);
  }
  require(answered >= 0 || answered == QSYS_STATUS_INTERRUPTED);
  require(matched >= 0 || matched == QSYS_STATUS_INTERRUPTED);
  require(answered < 0 || matched < 0 || (isMatch != 0) == (results.results.core.size > 0));
  qoc_ocrDictionaryResultSet_destruct(&results);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 1) {
    return 0;
  }
  const uint8_t options = data[0];
  const auto *source = reinterpret_cast<const char *>(data + 1);
  const auto *end = static_cast<const char *>(std::memchr(source, 0, size - 1));
  const size_t sourceSize = end != nullptr ? static_cast<size_t>(end - source) : size - 1;

  qstd_string text, back;
  require(qstd_string_constructFromBlock(&text, source, static_cast<int32_t>(sourceSize)) >= 0);
  require(qstd_string_constructEmpty(&back) >= 0);
  qoc_ocrDictionaryRegularExpression expression;
  require(qoc_ocrDictionaryRegularExpression_construct(&expression) >= 0);
  {
    PollLimit limit(20);
    int32_t place = -7;
    const qsys_status found = qstd_regex_findError(&text, &place);
    limit.numLeft = 20;
    const qsys_status set = qstd_regex_setString(&expression.regex, &text);
    require(found == set);
    require(found >= 0 || found == QSYS_STATUS_INTERRUPTED ? place == -1
                                                           : place >= 0 && place <= static_cast<int32_t>(sourceSize));
    qsys_bool isEqual = 0;
    require(qstd_regex_getString(&expression.regex, &back) >= 0);
    require(qstd_string_compareEqual(&text, &back, &isEqual) >= 0);
    require(set < 0 ? back.core.size == 0 : isEqual != 0);
  }

  qoc_ocrDictionaryStringMulti reading;
  const size_t used = 1 + sourceSize + (end != nullptr ? 1 : 0);
  readReading(data + used, size - used, &reading);
  qoc_ocrDictionaryRunParams params;
  std::memset(&params, 0, sizeof params);
  require(qoc_ocrDictionaryRunParams_construct(&params) >= 0);
  params.returnBestOnly = options & 1;
  params.maxEdits = options >> 1 & 3;
  params.matchOption9 = options >> 3 & 1;
  params.minStringLength = (options & 16) != 0 ? 0 : 1;
  matchReading(&expression, &reading, (options & 32) != 0 ? nullptr : &params);

  qoc_ocrDictionaryStringMulti_destruct(&reading);
  qoc_ocrDictionaryRegularExpression_destruct(&expression);
  qstd_string_destruct(&back);
  qstd_string_destruct(&text);
  return 0;
}
