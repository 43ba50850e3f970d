// What a run finds, resolved to texts by any rules; and check digits of any rule over any text.

#include "objects.hpp"

namespace {

using namespace qoc::fuzz;

Owned<qoc_checkDigitRule> ruleOf(Input &input) {
  Owned<qoc_checkDigitRule> rule;
  rule->method = input.below(12);
  rule->ignoresSeparators = input.flag() ? 1 : 0;
  for (int n = input.below(4); n > 0; --n) {
    const auto bound = [&] { return input.flag() ? input.below(40) - 20 : input.number(); };
    const std::int32_t begin = bound();
    const qstd_span32 part = {begin, bound()};
    require(qstd_vector_qstd_span32_pushBack(&rule->parts, &part));
  }
  for (int n = input.below(3); n > 0; --n) {
    const Char32 code = input.code();
    require(qstd_vectorChar32_pushBack(&rule->ignored, &code));
  }
  return rule;
}

/// A text of digits and letters, of a length that check digits have.
Owned<qoc_ocrDictionaryString> numberOf(Input &input) {
  static constexpr std::string_view characters = "0123456789ABCDXYZ<*- ";
  Owned<qoc_ocrDictionaryString> text;
  for (int n = input.below(24); n > 0; --n) {
    const qoc_ocrDictionaryChar one = {static_cast<Char32>(characters[input.byte() % characters.size()]), 0};
    require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&text->characters, &one));
  }
  return text;
}

void checkDigits(Input &input) {
  const auto rule = ruleOf(input);
  const auto text = numberOf(input);
  qsys_bool isValid = 0;
  const qsys_status valid = qoc_checkDigitRule_validate(rule);
  const qsys_status status = qoc_checkDigitRule_isValid(rule, text, &isValid);
  check(status == valid || input.isShortOfMemory);
  if (status < 0 || isValid == 0) {
    return;
  }
  std::int32_t length = 0;
  for (const qoc_ocrDictionaryChar &one : elements(text->characters)) {
    const auto ignored = elements(rule->ignored);
    const bool isSeparator = rule->ignoresSeparators != 0 && (one.code == ' ' || one.code == '-');
    length += isSeparator || std::find(ignored.begin(), ignored.end(), one.code) != ignored.end() ? 0 : 1;
  }
  check(qoc_checkDigitRule_validateLength(rule, length) >= 0 || input.isShortOfMemory);
}

Owned<qoc_ocrDictionaryResolver> resolverOf(Input &input) {
  Owned<qoc_ocrDictionaryResolver> resolver;
  Owned<qoc_ocrDictionaryResolverRules> rules;
  for (std::int32_t *field :
       {&rules->alternativePenalty, &rules->laterPenalty, &rules->swapPenalty, &rules->substitutedPenalty,
        &rules->missingPenalty, &rules->extraPenalty, &rules->doubledPenalty, &rules->leadCap, &rules->maxLag,
        &rules->maxMargin, &rules->freeWord.base, &rules->freeWord.perCharacter, &rules->freeWord.leadPercent,
        &rules->freeShape.base, &rules->freeShape.perCharacter, &rules->freeShape.leadPercent, &rules->minMargin,
        &rules->maxTexts}) {
    *field = input.below(4) == 0 ? input.number() : *field;
  }
  rules->requiresCheck = input.flag() ? 1 : 0;
  for (int n = input.below(4); n > 0; --n) {
    const Char32 read = input.code();
    const qoc_ocrDictionaryConfusion confusion = {read, input.code(), input.number(), input.number()};
    require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules->confusions, &confusion));
  }
  for (int n = input.below(3); n > 0; --n) {
    Owned<qoc_ocrDictionaryEntryCheck> entry;
    entry->mode = input.below(5);
    entry->entry = input.below(3);
    require(qoc_checkDigitRule_assign(&entry->rule, ruleOf(input)));
    require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules->checks, entry));
  }
  // Refused rules leave it with its own.
  const qsys_status status = qoc_ocrDictionaryResolver_setRules(resolver, rules);
  check(status < 0 || qoc_ocrDictionaryResolverRules_validate(rules) >= 0);
  return resolver;
}

void checkTexts(const qoc_ocrDictionaryResolution &resolution, const qoc_ocrDictionaryResolver &resolver,
                std::size_t readingSize) {
  const auto texts = elements(resolution.texts);
  check((resolution.outcome == qoc_ocrDictionaryOutcome_none) == texts.empty());
  check(texts.size() <= static_cast<std::size_t>(resolver.rules.maxTexts));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const auto size = elements(texts[i].text.characters).size();
    check(elements(texts[i].inputIndices).size() == size && elements(texts[i].candidateIndices).size() == size);
    for (const std::int32_t index : elements(texts[i].inputIndices)) {
      check(index >= -1 && (index < 0 || static_cast<std::size_t>(index) < readingSize));
    }
    for (std::size_t k = 0; k < i; ++k) {
      check(show(texts[k].text) != show(texts[i].text));
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  return qoc::fuzz::run(data, size, [](Input &input) {
    checkDigits(input);
    const auto params = paramsOf(input);
    const auto dictionary = dictionaryOf(input);
    const auto reading = readingOf(input);
    auto resolver = resolverOf(input);
    if (input.flag()) {
      require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionary));
    }
    Owned<qoc_ocrDictionaryResultSet> results;
    Owned<qoc_ocrDictionaryResolution> resolution;
    qsys_status status = 0;
    {
      const Polls polls(300);
      status = qoc_ocrDictionary_runMulti(dictionary, reading, params, results);
    }
    {
      const Polls polls(300);
      status =
          qoc_ocrDictionaryResolver_resolve(resolver, reading, params, &dictionary->swapCharSet, results, resolution);
    }
    check(status <= 0);
    if (status == 0) {
      checkTexts(*resolution, *resolver, elements(reading->positions).size());
    }
  });
}
