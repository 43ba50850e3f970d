#include "dictionary_file.hpp"
#include "resolving.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <iterator>
#include <vector>

namespace qoc::program {
namespace {

struct ReadyCheck {
  qoc_checkDigitMethod method;
  std::vector<qstd_span32> parts;
};

/// What common codes look like, under a name.
struct ReadyShape {
  const char *name, *expression;
  std::vector<ReadyCheck> checks;
};

constexpr qstd_span32 from(std::int32_t begin) { return {begin, QOC_CHECK_DIGIT_END}; }

#define QOC_DATE "[0-9]{4}-(0[1-9]|1[0-2])-(0[1-9]|[12][0-9]|3[01])"
#define QOC_TIME "([01][0-9]|2[0-3]):[0-5][0-9](:[0-5][0-9])?"

/// Sources: ISO 8601-1; ISO 13616-1; ISO 3779; ICAO Doc 9303-4 (TD3, second line); GS1 General Specifications; ISO
/// 6346; ISO/IEC 7812-1.
const std::vector<ReadyShape> &readyShapes() {
  static const std::vector<ReadyShape> shapes = {
      {"iso-date", QOC_DATE, {}},
      {"iso-time", QOC_TIME, {}},
      {"iso-date-time", QOC_DATE "T" QOC_TIME "(Z|[+-][0-9]{2}:[0-9]{2})?", {}},
      {"account-code",
       "[A-Z]{2}[0-9]{2}( ?[A-Z0-9]{4}){2,7}( ?[A-Z0-9]{1,3})?",
       {{qoc_checkDigitMethod_mod97, {from(4), {0, 4}}}}},
      {"vehicle-code",
       "[A-HJ-NPR-Z1-9][A-HJ-NPR-Z0-9]{7}[0-9X][A-HJ-NPR-TV-Y1-9][A-HJ-NPR-Z0-9]{7}",
       {{qoc_checkDigitMethod_vehicle, {}}}},
      {"passport-line",
       "[A-Z0-9<]{9}[0-9][A-Z<]{3}[0-9]{7}[MF<][0-9]{7}[A-Z0-9<]{14}[0-9<][0-9]",
       {{qoc_checkDigitMethod_icao9303, {{0, 10}}},
        {qoc_checkDigitMethod_icao9303, {{13, 20}}},
        {qoc_checkDigitMethod_icao9303, {{21, 28}}},
        {qoc_checkDigitMethod_icao9303, {{28, 43}}},
        {qoc_checkDigitMethod_icao9303, {{0, 10}, {13, 20}, {21, 44}}}}},
      {"gtin", "[0-9]{8}([0-9]{4,6})?", {{qoc_checkDigitMethod_gtin, {}}}},
      {"container-number", "[A-Z]{3}[UJZ] ?[0-9]{6} ?[0-9]", {{qoc_checkDigitMethod_container, {}}}},
      {"card-number", "[0-9]{4}( ?[0-9]{4}){2,3}( ?[0-9]{1,3})?", {{qoc_checkDigitMethod_luhn, {}}}},
      {"plate", "[A-Z]{1,3}[ -][A-Z]{1,2} ?[1-9][0-9]{0,3}", {}},
  };
  return shapes;
}

std::int32_t numEntries(const DictionaryFile &file, qoc_ocrDictionaryMode mode) {
  std::int32_t n = 0;
  const qoc_ocrDictionary *dictionary = file.dictionary.get();
  check(mode == qoc_ocrDictionaryMode_lexicon    ? qoc_ocrDictionary_getNumLexicons(dictionary, &n)
        : mode == qoc_ocrDictionaryMode_fielding ? qoc_ocrDictionary_getNumFieldings(dictionary, &n)
                                                 : qoc_ocrDictionary_getNumRegularExpressions(dictionary, &n),
        "entries");
  return n;
}

void addReadyShape(const JsonNode &node, DictionaryFile &into) {
  std::string names;
  for (const ReadyShape &shape : readyShapes()) names += std::string(names.empty() ? "\"" : ", \"") + shape.name + "\"";
  const std::string &name = node.string("the name of a ready shape");
  const auto found = std::find_if(readyShapes().begin(), readyShapes().end(),
                                  [&](const ReadyShape &shape) { return name == shape.name; });
  if (found == readyShapes().end()) node.failExpected("one of " + names);
  const JsonDocument expressions = parseJson("[" + JsonScalar(found->expression).dump() + "]", node.where());
  const std::int32_t entry = numEntries(into, qoc_ocrDictionaryMode_regularExpression);
  readRegularExpressions(JsonNode(expressions, node.where()), into);
  for (const ReadyCheck &ready : found->checks) {
    EntryCheck added;
    added->rule.method = ready.method;
    check(qstd_vector_qstd_span32_assignElements(&added->rule.parts, ready.parts.data(),
                                                 static_cast<std::int32_t>(ready.parts.size())),
          node.where());
    addCheck(*into.rules.get(), qoc_ocrDictionaryMode_regularExpression, entry, added->rule, node.where());
  }
}

bool isIgnored(const qoc_checkDigitRule &rule, Char32 code) {
  const Char32 *found = nullptr;
  check(qstd_vectorChar32_find(&rule.ignored, code, &found), "a check");
  return found != nullptr || (rule.ignoresSeparators != 0 && (code == ' ' || code == '-'));
}

/// Refuses a check that no text of the line can pass.
void requireFit(const qoc_ocrDictionaryLineFielding &line, const qoc_checkDigitRule &rule, const JsonNode &node) {
  std::int32_t n = 0, length = 0;
  check(qoc_ocrDictionaryLineFielding_getNumPositionFieldings(&line, &n), node.where());
  for (std::int32_t i = 0; i < n; ++i) {
    const qoc_ocrDictionaryPositionFielding *position = nullptr;
    check(qoc_ocrDictionaryLineFielding_getPositionFielding(&line, i, &position), node.where());
    const qstd_vectorChar32 *codes = nullptr;
    check(qoc_ocrDictionaryPositionFielding_getFieldingCharacters(position, &codes), node.where());
    qsys_bool isSingle = 0;
    check(qoc_ocrDictionaryPositionFielding_getIsSingleCharacter(position, &isSingle), node.where());
    const Char32 *single = nullptr;
    std::int32_t numCodes = 0;
    check(qstd_vectorChar32_getBeginSizeConst(codes, &single, &numCodes), node.where());
    const bool isFixed = isSingle != 0 && isIgnored(rule, numCodes == 1 ? *single : Char32{' '});
    length += isFixed ? 0 : 1;
  }
  const qsys_status status = qoc_checkDigitRule_validateLength(&rule, length);
  if (status < 0) {
    node.fail(std::string("the check does not fit a line of ") + std::to_string(length) +
              " characters that count: " + qoc_status_getText(status));
  }
}

/// Refuses a check that a word of the list fails.
void requireFit(const qoc_ocrDictionaryLexicon &lexicon, const qoc_checkDigitRule &rule, const JsonNode &node) {
  const qoc_ocrDictionaryString *words = nullptr;
  std::int32_t n = 0;
  check(qstd_vector_qoc_ocrDictionaryString_getBeginSizeConst(&lexicon.strings, &words, &n), node.where());
  for (std::int32_t i = 0; i < n; ++i) {
    qsys_bool isValid = 0;
    check(qoc_checkDigitRule_isValid(&rule, &words[i], &isValid), node.where());
    if (isValid != 0) continue;
    std::string text;
    for (const qoc_ocrDictionaryChar &character : elements(words[i].characters)) appendUtf8(text, character.code);
    node.fail("the word \"" + text + "\" does not pass the check; expected words that do");
  }
}

/// Entries of any kind, and beside them the checks that their texts have to pass.
void readCheckedEntries(const JsonNode &node, DictionaryFile &into) {
  node.requireObject({"lexicons", "fieldings", "regularExpressions", "checks"});
  constexpr struct {
    const char *key;
    qoc_ocrDictionaryMode mode;
    void (*read)(const JsonNode &node, DictionaryFile &into);
  } kinds[] = {{"lexicons", qoc_ocrDictionaryMode_lexicon, readLexicons},
               {"fieldings", qoc_ocrDictionaryMode_fielding, readFieldings},
               {"regularExpressions", qoc_ocrDictionaryMode_regularExpression, readRegularExpressions}};
  if (std::none_of(std::begin(kinds), std::end(kinds), [&](const auto &kind) { return node.has(kind.key); })) {
    node.fail("the shape has no entries; expected \"lexicons\", \"fieldings\" or \"regularExpressions\"");
  }
  for (const auto &kind : kinds) {
    if (!node.has(kind.key)) continue;
    const std::int32_t first = numEntries(into, kind.mode);
    kind.read(node.member(kind.key), into);
    if (!node.has("checks")) continue;
    const JsonNode checks = node.member("checks");
    const std::size_t n = checks.requireArray("an array of checks");
    for (std::size_t i = 0; i < n; ++i) {
      EntryCheck read;
      readCheck(checks.element(i), read->rule);
      for (std::int32_t entry = first; entry < numEntries(into, kind.mode); ++entry) {
        const auto at = static_cast<std::size_t>(entry);
        if (kind.mode == qoc_ocrDictionaryMode_fielding) requireFit(into.lines()[at], read->rule, checks.element(i));
        if (kind.mode == qoc_ocrDictionaryMode_lexicon) {
          requireFit(elements(into.dictionary->lexicons)[at], read->rule, checks.element(i));
        }
        addCheck(*into.rules.get(), kind.mode, entry, read->rule, checks.element(i).where());
      }
    }
  }
}

}  // namespace

void readShapes(const JsonNode &node, DictionaryFile &into) {
  const std::size_t n = node.requireArray("an array of shapes");
  for (std::size_t i = 0; i < n; ++i) {
    const JsonNode shape = node.element(i);
    node.attempt([&] {
      if (shape.isObject())
        readCheckedEntries(shape, into);
      else
        addReadyShape(shape, into);
    });
  }
}

}  // namespace qoc::program
