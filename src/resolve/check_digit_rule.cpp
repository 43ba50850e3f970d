// Check digit rules: lifecycle, validation and the check of one text.

#include <algorithm>
#include <iterator>

#include "frame/frame.hpp"
#include "platform/containers/view.hpp"
#include "platform/system/enumeration.hpp"
#include "resolve/check_digit.hpp"

using namespace qoc;

namespace {

#define QOC_METHOD_ENTRY(name, value) {value, #name},
constexpr EnumerationEntry methods[] = {QOC_CHECK_DIGIT_METHOD_LIST(QOC_METHOD_ENTRY)};
#undef QOC_METHOD_ENTRY

/// Whether a part can hold a position of some text.
bool canHold(const qstd_span32 &part) {
  const bool isSameSide = (part.begin < 0) == (part.end < 0);
  return !isSameSide || part.begin < part.end;
}

/// The length of the parts together, where it does not depend on the text; else -1.
std::int64_t fixedLength(const qoc_checkDigitRule &rule) {
  std::int64_t length = 0;
  for (const qstd_span32 &part : viewAs<qstd_span32>(rule.parts)) {
    if ((part.begin < 0) != (part.end < 0) || part.end == QOC_CHECK_DIGIT_END) {
      return -1;
    }
    length += static_cast<std::int64_t>(part.end) - part.begin;
  }
  return rule.parts.core.size > 0 ? length : -1;
}

qsys_status isValidText(const qoc_checkDigitRule &rule, std::span<const qoc_ocrDictionaryChar> characters,
                        qsys_bool *isValid) {
  QOC_TRY(qoc_checkDigitRule_validate(&rule));
  std::vector<Char32> text;
  std::transform(characters.begin(), characters.end(), std::back_inserter(text),
                 [](const qoc_ocrDictionaryChar &character) { return character.code; });
  *isValid = RuleChecker(rule).passes(text) ? 1 : 0;
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc_checkDigitRule_construct(qoc_checkDigitRule *rule) {
  if (!present({rule})) {
    return QSYS_STATUS_OK;
  }
  rule->method = qoc_checkDigitMethod_luhn;
  rule->ignoresSeparators = 1;
  return firstFailure(
      {qstd_vector_qstd_span32_constructEmpty(&rule->parts), qstd_vectorChar32_constructEmpty(&rule->ignored)});
}

qsys_status qoc_checkDigitRule_constructCopy(qoc_checkDigitRule *rule, const qoc_checkDigitRule *source) {
  return constructThenAssign<qoc_checkDigitRule_construct, qoc_checkDigitRule_assign, qoc_checkDigitRule_destruct>(
      rule, source);
}

qsys_status qoc_checkDigitRule_assign(qoc_checkDigitRule *rule, const qoc_checkDigitRule *source) {
  if (!present({rule, source})) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(qstd_vector_qstd_span32_assign(&rule->parts, &source->parts));
  QOC_TRY(qstd_vectorChar32_assign(&rule->ignored, &source->ignored));
  rule->method = source->method;
  rule->ignoresSeparators = source->ignoresSeparators;
  return QSYS_STATUS_OK;
}

qsys_status qoc_checkDigitRule_destruct(qoc_checkDigitRule *rule) {
  if (!present({rule})) {
    return QSYS_STATUS_OK;
  }
  return firstFailure({qstd_vectorChar32_destruct(&rule->ignored), qstd_vector_qstd_span32_destruct(&rule->parts)});
}

const char *qoc_checkDigitMethod_getName(qoc_checkDigitMethod method) { return textIn(methods, method); }

qsys_status qoc_checkDigitRule_validate(const qoc_checkDigitRule *rule) {
  if (!present({rule})) {
    return QSYS_STATUS_OK;
  }
  if (*qoc_checkDigitMethod_getName(rule->method) == '\0') {
    return QOC_STATUS_CHECK_METHOD_INVALID;
  }
  const auto parts = viewAs<qstd_span32>(rule->parts);
  if (!std::all_of(parts.begin(), parts.end(), canHold)) {
    return QOC_STATUS_CHECK_PARTS_INVALID;
  }
  const std::int64_t length = fixedLength(*rule);
  const bool isTaken =
      length < 0 || (length <= INT32_MAX && takesLength(rule->method, static_cast<std::int32_t>(length)));
  return isTaken ? QSYS_STATUS_OK : QOC_STATUS_CHECK_LENGTH_INVALID;
}

qsys_status qoc_checkDigitRule_validateLength(const qoc_checkDigitRule *rule, std::int32_t length) {
  if (!present({rule})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    QOC_TRY(qoc_checkDigitRule_validate(rule));
    const auto parts = checkedParts(*rule, length);
    if (!parts) {
      return QOC_STATUS_CHECK_PARTS_INVALID;
    }
    std::int64_t numChecked = 0;
    for (const qstd_span32 &part : *parts) numChecked += static_cast<std::int64_t>(part.end) - part.begin;
    const bool isTaken = numChecked <= INT32_MAX && takesLength(rule->method, static_cast<std::int32_t>(numChecked));
    return isTaken ? QSYS_STATUS_OK : QOC_STATUS_CHECK_LENGTH_INVALID;
  });
}

qsys_status qoc_checkDigitRule_isValid(const qoc_checkDigitRule *rule, const qoc_ocrDictionaryString *text,
                                       qsys_bool *isValid) {
  if (!present({rule, text, isValid})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    return isValidText(*rule, viewAs<qoc_ocrDictionaryChar>(text->characters), isValid);
  });
}

qsys_status qoc_checkDigitRule_isValidT(const qoc_checkDigitRule *rule, const CharT *text, qsys_bool *isValid) {
  if (!present({rule, text, isValid})) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_qoc_ocrDictionaryChar characters;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_constructStringT(&characters, text));
    frame.local<qstd_vector_qoc_ocrDictionaryChar_destruct>(&characters);
    return isValidText(*rule, viewAs<qoc_ocrDictionaryChar>(characters), isValid);
  });
}
