// Compiles any bytes as an expression and matches any reading with it.
//
// Behind the bytes that all inputs begin with come a byte of options, the source of an expression up to the first zero
// byte, and a reading: a byte a position, of which values from 0x80 on add a candidate to the position before. What is
// checked, beyond what the sanitizers see: that the two forms of the match agree, that a source that compiles has no
// error and the other way round, and that a source comes back as it was given.

#include "input.hpp"

namespace {

using namespace qoc::test;
using qoc::fuzz::check;
using qoc::fuzz::Input;

constexpr int maxPositions = 12;
constexpr int maxCandidates = 40;

Owned<qoc_ocrDictionaryStringMulti> readingOf(std::string_view bytes) {
  Owned<qoc_ocrDictionaryStringMulti> reading;
  int numPositions = 0, numCandidates = 0;
  for (const char signedByte : bytes.substr(0, maxCandidates)) {
    const auto byte = static_cast<std::uint8_t>(signedByte);
    const bool isFurther = byte >= 0x80 && numPositions > 0;
    if (!isFurther && numPositions == maxPositions) {
      break;
    }
    if (!isFurther) {
      require(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&reading->positions, ++numPositions));
    }
    qoc_ocrDictionaryCharMulti *position = nullptr;
    require(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&reading->positions, numPositions - 1, &position));
    // Two bytes stand for the reserved codes, and one for a position without candidates.
    const Char32 code = byte == 1 ? QOC_CHAR_EMPTY : byte == 2 ? QOC_CHAR_ANY : Char32{byte} & 0x7F;
    const qoc_ocrDictionaryChar candidate = {code, numCandidates++};
    if (byte != 3) {
      require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&position->candidates, &candidate));
    }
  }
  return reading;
}

/// Whether a status is a success, or one that any long work may end with.
bool isExpected(qsys_status status, const Input &input) {
  return status >= 0 || status == QSYS_STATUS_INTERRUPTED ||
         (status == QSYS_STATUS_OUT_OF_MEMORY && input.isShortOfMemory);
}

void compile(const Input &input, std::string_view source, qoc_ocrDictionaryRegularExpression *expression) {
  const Owned<qstd_string> text([&](qstd_string *string) {
    return qstd_string_constructFromBlock(string, source.data(), static_cast<std::int32_t>(source.size()));
  });
  Owned<qstd_string> back;
  std::int32_t place = -7;
  qsys_status found = 0, set = 0;
  {
    const Polls polls(20);
    found = qstd_regex_findError(text, &place);
  }
  {
    const Polls polls(20);
    set = qstd_regex_setString(&expression->regex, text);
  }
  check(found == set || input.isShortOfMemory);
  check(isExpected(found, input) ? place == -1 : place >= 0 && static_cast<std::size_t>(place) <= source.size());
  qsys_bool isEqual = 0;
  require(qstd_regex_getString(&expression->regex, back));
  require(qstd_string_compareEqual(text, back, &isEqual));
  check(set < 0 ? elements(*back).empty() : isEqual != 0);
}

void match(const Input &input, const qoc_ocrDictionaryRegularExpression *expression,
           const qoc_ocrDictionaryStringMulti *reading, const qoc_ocrDictionaryRunParams *params) {
  qsys_bool isMatch = 0;
  qsys_status answered = 0, matched = 0;
  Owned<qoc_ocrDictionaryResultSet> results;
  {
    const Polls polls(40);
    answered = qoc_ocrDictionaryRegularExpression_isMatchMulti(expression, reading, params, nullptr, &isMatch);
  }
  {
    const Polls polls(20);
    matched = qoc_ocrDictionaryRegularExpression_matchMulti(expression, reading, params, nullptr, results);
  }
  check(isExpected(answered, input) && isExpected(matched, input));
  check(answered < 0 || matched < 0 || (isMatch != 0) == (results->results.core.size > 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    const std::uint8_t options = input.byte();
    Owned<qoc_ocrDictionaryRegularExpression> expression;
    compile(input, input.text(), expression);
    const auto reading = readingOf(input.rest());
    Owned<qoc_ocrDictionaryRunParams> params;
    params->returnBestOnly = options & 1;
    params->maxEdits = options >> 1 & 3;
    params->matchOption9 = options >> 3 & 1;
    params->minStringLength = (options & 16) != 0 ? 0 : 1;
    const qoc_ocrDictionaryRunParams *given = params;
    match(input, expression, reading, (options & 32) != 0 ? nullptr : given);
  });
}
