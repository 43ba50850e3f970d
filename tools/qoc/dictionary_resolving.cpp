#include "dictionary_file.hpp"
#include "resolving.hpp"
#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

namespace qoc::program {
namespace {

using Rules = qoc_ocrDictionaryResolverRules;

/// A number of the rules, in points.
struct PointsKey {
  const char *key;
  std::int32_t Rules::*field;
};

constexpr PointsKey pointKeys[] = {
    {"minMargin", &Rules::minMargin},
    {"alternativePenalty", &Rules::alternativePenalty},
    {"laterPenalty", &Rules::laterPenalty},
    {"swapPenalty", &Rules::swapPenalty},
    {"substitutedPenalty", &Rules::substitutedPenalty},
    {"missingPenalty", &Rules::missingPenalty},
    {"extraPenalty", &Rules::extraPenalty},
    {"doubledPenalty", &Rules::doubledPenalty},
    {"leadCap", &Rules::leadCap},
    {"maxLag", &Rules::maxLag},
    {"maxMargin", &Rules::maxMargin},
};

constexpr double greatestPoints = 1000000;

std::int32_t readPoints(const JsonNode &node, double least) {
  const std::string range = "a number of points from " + std::to_string(static_cast<int>(least)) + " to " +
                            std::to_string(static_cast<int>(greatestPoints));
  if (!node.isNumber()) node.failExpected(range);
  const double points = node.scalar().get<double>();
  if (!(points >= least && points <= greatestPoints)) node.failExpected(range);
  return static_cast<std::int32_t>(points * unitsPerPoint + (points < 0 ? -0.5 : 0.5));
}

void readFreeText(const JsonNode &node, qoc_ocrDictionaryFreeText &freeText) {
  node.requireObject({"base", "perCharacter", "leadPercent"});
  if (node.has("base")) freeText.base = readPoints(node.member("base"), -greatestPoints);
  if (node.has("perCharacter")) freeText.perCharacter = readPoints(node.member("perCharacter"), 0);
  if (node.has("leadPercent")) freeText.leadPercent = node.member("leadPercent").integer(0, 1000);
}

Char32 readCharacter(const JsonNode &node) {
  const std::string what = "one character, or \"\" for none";
  const std::vector<Char32> codes = decodeUtf8(node.string(what));
  if (codes.size() > 1) node.failExpected(what);
  return codes.empty() ? QOC_CHAR_EMPTY : codes.front();
}

void readConfusion(const JsonNode &node, Rules &rules) {
  node.requireObject({"read", "meant", "listedPenalty", "swapPenalty"});
  for (const char *key : {"read", "meant"}) {
    if (!node.has(key)) node.fail(std::string("the key \"") + key + "\" is missing; expected a character");
  }
  qoc_ocrDictionaryConfusion confusion = {readCharacter(node.member("read")), readCharacter(node.member("meant")),
                                          rules.alternativePenalty, rules.swapPenalty};
  if (node.has("listedPenalty")) confusion.listedPenalty = readPoints(node.member("listedPenalty"), 0);
  if (node.has("swapPenalty")) confusion.swapPenalty = readPoints(node.member("swapPenalty"), 0);
  check(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules.confusions, &confusion), node.where());
}

// The ready confusions ------------------------------------------------------------------------------------------------

/// Characters that look alike to readers: one for another costs less than an ordinary swap.
constexpr const char *lookAlikes[] = {"0O", "1I", "5S", "2Z", "8B", "6G", "l1", "i1", "|1",
                                      "o0", "s5", "z2", "b6", "lI", "iI", "!1", "$S"};
constexpr std::int32_t lookAlikePenalty = 4500;
/// Slashed and dotted zeros are read as these; the other way round it is an ordinary swap.
constexpr const char *slashedZeros = "869";

/// Characters that readers see where there are none.
struct Phantoms {
  const char *characters;
  std::int32_t penalty;
};
constexpr Phantoms phantoms[] = {{" ", 3000}, {"\u2018\u2019\u201C\u201D\"'", 5000}};

}  // namespace

std::span<const LearntConfusion> learntConfusions() {
  static constexpr LearntConfusion confusions[] = {
#include "learnt_confusions.inc"
  };
  return confusions;
}

void addReadyConfusions(bool usesLearnt, Rules &rules, const std::string &where) {
  const auto add = [&](Char32 read, Char32 meant, std::int32_t swapPenalty) {
    const qoc_ocrDictionaryConfusion confusion = {read, meant, rules.alternativePenalty, swapPenalty};
    check(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules.confusions, &confusion), where);
  };
  if (usesLearnt) {
    for (const LearntConfusion &learnt : learntConfusions()) add(learnt.read, learnt.meant, learnt.swapPenalty);
  }
  for (const char *pair : lookAlikes) {
    const std::vector<Char32> codes = decodeUtf8(pair);
    add(codes[0], codes[1], std::min(lookAlikePenalty, rules.swapPenalty));
    add(codes[1], codes[0], std::min(lookAlikePenalty, rules.swapPenalty));
  }
  for (const Char32 read : decodeUtf8(slashedZeros)) add(read, '0', std::min(lookAlikePenalty, rules.swapPenalty));
  for (const Phantoms &phantom : phantoms) {
    for (const Char32 code : decodeUtf8(phantom.characters)) add(code, QOC_CHAR_EMPTY, phantom.penalty);
  }
}

void addCheck(Rules &rules, qoc_ocrDictionaryMode mode, std::int32_t entry, const qoc_checkDigitRule &rule,
              const std::string &where) {
  EntryCheck added;
  added->mode = mode;
  added->entry = entry;
  check(qoc_checkDigitRule_assign(&added->rule, &rule), where);
  check(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules.checks, added.get()), where);
}

void readCheck(const JsonNode &node, qoc_checkDigitRule &rule) {
  node.requireObject({"method", "parts", "ignored"});
  if (!node.has("method")) node.fail("the key \"method\" is missing; expected the name of a check digit's method");
  const JsonNode method = node.member("method");
  std::string names;
  rule.method = 0;
#define QOC_METHOD(name, value)                                       \
  names += std::string(names.empty() ? "\"" : ", \"") + #name + "\""; \
  if (method.string("the name of a method") == #name) rule.method = value;
  QOC_CHECK_DIGIT_METHOD_LIST(QOC_METHOD)
#undef QOC_METHOD
  if (rule.method == 0) method.failExpected("one of " + names);
  if (node.has("parts")) {
    const JsonNode parts = node.member("parts");
    const std::size_t n = parts.requireArray("an array of parts, each [begin, end] or [begin]");
    for (std::size_t i = 0; i < n; ++i) {
      const JsonNode part = parts.element(i);
      const std::size_t size = part.requireArray("a part, as [begin, end] or [begin]");
      if (size != 1 && size != 2) part.failExpected("a part, as [begin, end] or [begin]");
      constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max() - 1;
      const qstd_span32 span = {part.element(0).integer(-most, most),
                                size == 2 ? part.element(1).integer(-most, most) : QOC_CHECK_DIGIT_END};
      check(qstd_vector_qstd_span32_pushBack(&rule.parts, &span), part.where());
    }
  }
  if (node.has("ignored")) {
    rule.ignoresSeparators = 0;
    const std::vector<Char32> codes =
        decodeUtf8(node.member("ignored").string("the characters to ignore, as a string"));
    check(qstd_vectorChar32_assignElements(&rule.ignored, codes.data(), static_cast<std::int32_t>(codes.size())),
          node.where());
  }
  const qsys_status status = qoc_checkDigitRule_validate(&rule);
  if (status < 0) node.fail(std::string("the check is refused: ") + qoc_status_getText(status));
}

void readResolving(const JsonNode &node, DictionaryFile &into) {
  Rules &rules = *into.rules.get();
  into.resolving = node.dump();
  std::string known = "\"requireCheck\", \"alternatives\", \"freeWord\", \"freeShape\", \"confusions\"";
  for (const PointsKey &points : pointKeys) known += std::string(", \"") + points.key + "\"";
  node.requireObject("an object of rules for resolving");
  for (const std::string &key : node.keys()) {
    const JsonNode member = node.member(key);
    if (key == "requireCheck")
      rules.requiresCheck = member.boolean() ? 1 : 0;
    else if (key == "alternatives")
      rules.maxTexts = member.integer(0, 999) + 1;
    else if (key == "freeWord")
      readFreeText(member, rules.freeWord);
    else if (key == "freeShape")
      readFreeText(member, rules.freeShape);
    else if (key != "confusions") {
      const auto *points = std::find_if(std::begin(pointKeys), std::end(pointKeys),
                                        [&](const PointsKey &candidate) { return key == candidate.key; });
      if (points == std::end(pointKeys)) member.fail("unknown key; expected one of " + known);
      rules.*points->field = readPoints(member, 0);
    }
  }
  if (node.has("confusions")) {  // They take what they do not say from the numbers above.
    const JsonNode list = node.member("confusions");
    const std::size_t n = list.requireArray("an array of confusions");
    for (std::size_t i = 0; i < n; ++i) {
      list.attempt([&] { readConfusion(list.element(i), rules); });
    }
  }
}

}  // namespace qoc::program
