// A dictionary as the resolver needs it.

#include "resolve/knowledge.hpp"

#include "platform/containers/view.hpp"
#include "platform/regex/shared_expression.hpp"
#include "platform/system/present.hpp"

namespace qoc {

qsys_status Knowledge::take(const qoc_ocrDictionary &dictionary) {
  QOC_TRY(fieldings.status());
  QOC_TRY(expressions.status());
  QOC_TRY(qstd_vector_qoc_ocrDictionaryLineFielding_assign(fieldings.get(), &dictionary.fieldings));
  QOC_TRY(qstd_vector_qoc_ocrDictionaryRegularExpression_assign(expressions.get(), &dictionary.regularExpressions));
  for (const auto &expression : viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get())) {
    admitted.emplace_back(expression);
  }
  std::int32_t entry = 0;
  for (const qoc_ocrDictionaryLexicon &lexicon : viewAs<qoc_ocrDictionaryLexicon>(dictionary.lexicons)) {
    for (const qoc_ocrDictionaryString &word : viewAs<qoc_ocrDictionaryString>(lexicon.strings)) {
      words.add(viewAs<qoc_ocrDictionaryChar>(word.characters), entry);
    }
    ++entry;
  }
  words.finish();
  return QSYS_STATUS_OK;
}

bool Knowledge::admitsLength(std::int64_t length) const {
  const auto all = viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get());
  return fieldings->core.size > 0 ||
         std::any_of(all.begin(), all.end(), [&](const qoc_ocrDictionaryRegularExpression &expression) {
           const Expression &compiled = expressionOf(expression.regex);
           return length >= compiled.minLength() && length <= compiled.maxLength();
         });
}

bool Knowledge::admits(std::size_t place, Char32 code) const {
  return fieldings->core.size > 0 || std::any_of(admitted.begin(), admitted.end(),
                                                 [&](const AdmittedCodes &codes) { return codes.admits(place, code); });
}

qsys_status Knowledge::match(qoc_ocrDictionaryMode mode, std::int32_t entry,
                             const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams &params,
                             const qoc_swapCharSet *set, qoc_ocrDictionaryResultSet &results) const {
  if (mode == qoc_ocrDictionaryMode_fielding) {
    return qoc_ocrDictionaryLineFielding_matchMulti(
        &viewAs<qoc_ocrDictionaryLineFielding>(*fieldings.get())[static_cast<std::size_t>(entry)], &reading, &params,
        set, &results);
  }
  return qoc_ocrDictionaryRegularExpression_matchMulti(
      &viewAs<qoc_ocrDictionaryRegularExpression>(*expressions.get())[static_cast<std::size_t>(entry)], &reading,
      &params, set, &results);
}

}  // namespace qoc
