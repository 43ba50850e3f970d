#include "faults/samples.hpp"

#include <fnmatch.h>

#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <tuple>

#include "support/fieldings.hpp"

namespace qoc::test {

namespace {

constexpr int single = 10;  // The variant with one candidate, one character, one of everything.

template <class T>
T &as(void *object) {
  return *static_cast<T *>(object);
}

template <class T>
void give(void *object, const Owned<T> &value) {
  require(Life<T>::assign(static_cast<T *>(object), value));
}

Owned<qoc_ocrDictionaryRunParams> paramsOf(World world) {
  auto params = world == World::windows ? runParams({.maxEdits = 1,
                                                     .returnBestOnly = 0,
                                                     .matchOption9 = 1,
                                                     .finalizeEachResult = 1,
                                                     .rankingMode = 1,
                                                     .rankingVariant = 15})
                                        : runParams({.maxEdits = 1, .returnBestOnly = 0});
  params->reserved1 = params->reserved2 = 0;  // Nothing else sets them.
  return params;
}

Owned<qoc_ocrDictionaryString> stringOf(int variant) {
  static constexpr std::string_view texts[] = {"ab", "abd", "abc", "xay", "rnb", "b"};
  return word(variant == single ? "abc" : texts[variant % std::size(texts)]);
}

Owned<qoc_ocrDictionaryStringMulti> readingOf(int variant, World world) {
  static constexpr std::string_view plainTexts[] = {"a|x3 m|b2", "a m", "r n|b", "b|a"};
  static constexpr std::string_view windowTexts[] = {"a|x3 m|b2 y", "a r n", "x m|a", "b|a c"};
  if (variant == single) {
    return reading("a b c");
  }
  return reading(world == World::windows ? windowTexts[variant % 4] : plainTexts[variant % 4]);
}

Owned<qoc_swapChar> swapOf(int variant) {
  static constexpr std::string_view pairs[][2] = {{"rn", "m"}, {"bc", "bd"}, {"cl", "d"}, {"vv", "w"}};
  const auto &pair = pairs[variant % 4];
  const auto first = word(pair[0]), second = word(pair[1]);
  Owned<qoc_swapChar> swap;
  require(qoc_swapChar_setStrings(swap, first, second));
  return swap;
}

Owned<qoc_swapCharSet> setOf(int variant) {
  Owned<qstd_vector_qoc_swapChar> list;
  for (int i = variant % 2; i < 4; ++i) {
    require(qstd_vector_qoc_swapChar_pushBack(list, swapOf(i)));
  }
  Owned<qoc_swapChar> one;
  const auto b = character('b'), o = character('o');
  require(qoc_swapChar_setCharacters(one, &b, &o));
  require(qstd_vector_qoc_swapChar_pushBack(list, one));
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, list));
  return set;
}

Owned<qoc_ocrDictionaryLexicon> lexiconOf(int variant) {
  static constexpr std::string_view lists[][2] = {{"ab", "xaby"}, {"abd", "mb"}};
  Owned<qoc_ocrDictionaryLexicon> lexicon;
  for (const std::string_view text : lists[variant % 2]) {
    require(qoc_ocrDictionaryLexicon_addString(lexicon, word(text)));
  }
  return lexicon;
}

Owned<qoc_ocrDictionaryPositionFielding> positionOf(int variant) {
  return variant == single  ? fielding(0, U"b")
         : variant % 3 == 0 ? fielding(QOC_FIELDING_LOWER, U"0")
         : variant % 3 == 1 ? fielding(QOC_FIELDING_DIGIT, U"bdc")
                            : fielding(QOC_FIELDING_NONSPACE);
}

Owned<qoc_ocrDictionaryLineFielding> lineOf(int variant) {
  Owned<qoc_ocrDictionaryLineFielding> made;
  for (int i = 0; i < 2; ++i) {
    require(qstd_vector_qoc_ocrDictionaryPositionFielding_pushBack(&made->positions, positionOf(variant + i)));
  }
  return made;
}

const wchar_t *sourceOf(int variant) { return variant % 2 == 0 ? L"x?a(b|m)" : L"[a-c]+"; }

Owned<qoc_ocrDictionaryRegularExpression> expressionOf(int variant) {
  Owned<qoc_ocrDictionaryRegularExpression> made;
  require(qoc_ocrDictionaryRegularExpression_setStringT(made, sourceOf(variant)));
  return made;
}

Owned<qoc_ocrDictionary> dictionaryOfSamples() {
  Owned<qoc_ocrDictionary> dictionary;
  for (int i = 0; i < 2; ++i) {
    require(qoc_ocrDictionary_setLexiconIExtend(dictionary, i, lexiconOf(i)));
    require(qoc_ocrDictionary_setFieldingIExtend(dictionary, i, lineOf(i)));
    require(qoc_ocrDictionary_setRegularExpressionIExtend(dictionary, i, expressionOf(i)));
  }
  require(qoc_ocrDictionary_setSwapCharSet(dictionary, setOf(0)));
  return dictionary;
}

Owned<qoc_checkDigitRule> ruleOf(int variant) {
  Owned<qoc_checkDigitRule> rule;
  rule->method = variant % 2 == 0 ? qoc_checkDigitMethod_luhn : qoc_checkDigitMethod_mod97;
  const qstd_span32 part = {0, QOC_CHECK_DIGIT_END};
  require(qstd_vector_qstd_span32_pushBack(&rule->parts, &part));
  require(qstd_vectorChar32_assign(&rule->ignored, codeVector(U"./")));
  return rule;
}

Owned<qoc_ocrDictionaryEntryCheck> entryCheckOf(int variant) {
  Owned<qoc_ocrDictionaryEntryCheck> check;
  check->mode = qoc_ocrDictionaryMode_regularExpression;
  check->entry = variant % 2;
  require(qoc_checkDigitRule_assign(&check->rule, ruleOf(variant)));
  return check;
}

Owned<qoc_ocrDictionaryResolverRules> resolverRulesOf(int variant) {
  Owned<qoc_ocrDictionaryResolverRules> rules;
  rules->minMargin = 10 + variant;
  const qoc_ocrDictionaryConfusion confusion = {'b', static_cast<Char32>('o' + variant % 2), 2, 3};
  require(qstd_vector_qoc_ocrDictionaryConfusion_pushBack(&rules->confusions, &confusion));
  require(qstd_vector_qoc_ocrDictionaryEntryCheck_pushBack(&rules->checks, entryCheckOf(variant)));
  return rules;
}

/// The results of a run: they hold everything that results can hold, and it fits together.
Owned<qoc_ocrDictionaryResultSet> resultsOfSamples(int variant, World world) {
  const auto params = paramsOf(world);
  Owned<qoc_ocrDictionaryResultSet> results;
  require(qoc_ocrDictionary_runMulti(dictionaryOfSamples(), readingOf(variant, world), params, results));
  return results;
}

using Fill = std::function<void(void *, int, World)>;

const std::map<std::string_view, Fill> &fills() {
  static const std::map<std::string_view, Fill> table = {
      {"qstd_span32",
       [](void *o, int k, World) {
         as<qstd_span32>(o) = {k, k + 3};
       }},
      {"qoc_ocrDictionaryChar",
       [](void *o, int k, World) {
         as<qoc_ocrDictionaryChar>(o) = character('a' + static_cast<Char32>(k == single ? 0 : k), 3 + k);
       }},
      {"qoc_ocrDictionaryCharMulti",
       [](void *o, int k, World) {
         const std::string first(1, static_cast<char>('a' + k % 4)), second(1, static_cast<char>('o' + k % 4));
         give(o, position(k == single ? "b" : first + "5|" + second));
       }},
      {"qoc_ocrDictionaryString", [](void *o, int k, World) { give(o, stringOf(k)); }},
      {"qoc_ocrDictionaryStringMulti", [](void *o, int k, World world) { give(o, readingOf(k, world)); }},
      {"qoc_ocrDictionaryRunParams",
       [](void *o, int k, World world) {
         give(o, paramsOf(world));
         as<qoc_ocrDictionaryRunParams>(o).maxEdits += k;
       }},
      {"qoc_ocrDictionaryFieldingRunParams",
       [](void *o, int k, World world) {
         auto &params = as<qoc_ocrDictionaryFieldingRunParams>(o);
         params.fieldingMode = world == World::windows ? 2 : 1;
         params.limitB = k == 0 ? 0 : 1;
       }},
      {"qoc_swapChar", [](void *o, int k, World) { give(o, swapOf(k)); }},
      {"qoc_swapCharSet", [](void *o, int k, World) { give(o, setOf(k)); }},
      {"qoc_stringExpandOneToTwo_",
       [](void *o, int k, World) {
         as<qoc_stringExpandOneToTwo_>(o) = {'m', static_cast<Char32>('r' + k % 2), 'n'};
       }},
      {"qoc_stringExpandTwoToTwo_",
       [](void *o, int k, World) {
         as<qoc_stringExpandTwoToTwo_>(o) = {'m', 'c', 'b', static_cast<Char32>('c' + k % 2)};
       }},
      {"qoc_ocrDictionaryLexicon", [](void *o, int k, World) { give(o, lexiconOf(k)); }},
      {"qoc_ocrDictionaryPositionFielding", [](void *o, int k, World) { give(o, positionOf(k)); }},
      {"qoc_ocrDictionaryLineFielding", [](void *o, int k, World) { give(o, lineOf(k)); }},
      {"qstd_token", [](void *o, int k, World) { require(qstd_token_setChar32(&as<qstd_token>(o), 'a' + k)); }},
      {"qstd_regex", [](void *o, int k, World) { require(qstd_regex_setStringT(&as<qstd_regex>(o), sourceOf(k))); }},
      {"qoc_ocrDictionaryRegularExpression", [](void *o, int k, World) { give(o, expressionOf(k)); }},
      {"qoc_ocrDictionaryResult",
       [](void *o, int k, World world) {
         // Those of line fieldings first: they alone have everything that a result can have.
         if (k == single) {
           const auto plain = readingOf(single, world);
           require(qoc_ocrDictionaryStringMulti_assign(&as<qoc_ocrDictionaryResult>(o).valid, plain));
           return;
         }
         const auto results = resultsOfSamples(0, world);
         std::vector<const qoc_ocrDictionaryResult *> list;
         for (const qoc_ocrDictionaryResult &one : resultsOf(*results)) {
           list.insert(one.mode == qoc_ocrDictionaryMode_fielding ? list.begin() : list.end(), &one);
         }
         const auto index = static_cast<std::size_t>(k) % list.size();
         require(qoc_ocrDictionaryResult_assign(static_cast<qoc_ocrDictionaryResult *>(o), list[index]));
       }},
      {"qoc_ocrDictionaryResultSet", [](void *o, int k, World world) { give(o, resultsOfSamples(k, world)); }},
      {"qoc_ocrDictionary", [](void *o, int, World) { give(o, dictionaryOfSamples()); }},
      {"qoc_checkDigitRule", [](void *o, int k, World) { give(o, ruleOf(k)); }},
      {"qoc_ocrDictionaryEntryCheck", [](void *o, int k, World) { give(o, entryCheckOf(k)); }},
      {"qoc_ocrDictionaryResolverRules", [](void *o, int k, World) { give(o, resolverRulesOf(k)); }},
      {"qoc_ocrDictionaryResolver",
       [](void *o, int k, World) {
         auto *resolver = static_cast<qoc_ocrDictionaryResolver *>(o);
         require(qoc_ocrDictionaryResolver_setRules(resolver, resolverRulesOf(k)));
         require(qoc_ocrDictionaryResolver_setDictionary(resolver, dictionaryOfSamples()));
       }},
  };
  return table;
}

/// An exception to the rule, for a function and a parameter, both as file name patterns.
struct Choice {
  const char *function, *parameter;
  std::int64_t value;
};

constexpr Choice variants[] = {
    {"*_compareEqual", "*", 0},
    {"qoc_ocrDictionaryLexicon_removeString", "string", 0},
    {"qoc_swapChar_*Strings", "second", 3},
    {"qoc_ocrDictionaryResult_getDictionaryString", "result", single},
    {"qoc_ocrDictionaryCharMulti_getSingleCharacter", "multi", single},
    {"qoc_ocrDictionaryCharMulti_getCharT", "multi", single},
    {"qoc_ocrDictionaryStringMulti_getString", "multi", single},
    {"qoc_ocrDictionaryStringMulti_getStdString", "multi", single},
    {"qoc_ocrDictionaryPositionFielding_getSingleCharacter", "positionFielding", single},
};

constexpr Choice numbers[] = {
    {"*_resize*", "n", 5},
    {"*_reserve", "n", 40},
    {"*", "elementSize", 4},
    {"*", "second", 'z'},
    {"qsys_memory_alloc_internal", "size", 100},
    {"qoc_checkDigitRule_validateLength", "length", 8},
    {"qoc_swapCharSet_*", "code", 'b'},
};

struct Reason {
  const char *function, *parameter, *reason;
};

constexpr Reason optional[] = {
    {"*WithMtable", "memory", "null is the library's own allocator"},
    {"qsys_memory_setTable", "table", "null is C's allocator"},
    {"qsys_memory_free_internal", "block", "as with C's free"},
    {"qsys_*_setHandler", "handler", "null takes the handler away"},
    {"qsys_*_setHandler", "context", "it is the caller's, whatever it is"},
    {"*_isMatch*", "set", "null is no swaps"},
    {"*_match*", "set", "null is no swaps"},
    {"*_runSwapCharSet*", "set", "null is no swaps"},
    {"*_editDistance", "set", "null is no swaps"},
    {"*_mapStringMulti", "set", "null is no swaps"},
    {"*_runFieldingParams", "set", "null is no swaps"},
    {"*_isMatch*", "params", "null is no edits"},
    {"*_match*", "params", "null is no edits"},
    {"*_satisfiesStringLength", "params", "null is no limits"},
    {"qoc_ocrDictionaryResolver_setDictionary", "dictionary", "null is none"},
    {"qoc_ocrDictionaryResolver_resolve", "params", "null is the defaults"},
    {"qoc_ocrDictionaryResolver_resolve", "set", "null is no swaps"},
};

template <class List>
auto find(const List &list, const char *function, const char *parameter) {
  for (const auto &entry : list) {
    if (fnmatch(entry.function, function, 0) == 0 && fnmatch(entry.parameter, parameter, 0) == 0) {
      return &entry;
    }
  }
  return static_cast<decltype(&*std::begin(list))>(nullptr);
}

}  // namespace

const char *nameOf(World world) {
  return world == World::plain ? "plain" : world == World::windows ? "windows" : "empty";
}

namespace {

void writeScalar(std::string_view typeName, std::size_t size, void *place, int variant) {
  const bool isCode = typeName == "Char32" || typeName == "CharT" || typeName == "wchar_t" || typeName == "char";
  const bool isFlag = typeName == "uint8_t" || typeName == "qsys_bool";
  const std::uint64_t value = static_cast<std::uint64_t>(isCode ? 'a' + variant : isFlag ? variant % 2 : 1 + variant);
  std::memcpy(place, &value, size);  // The low bytes come first on every machine that this is built for.
}

/// A record that needs nothing special: every field for itself.
void fillFields(const Type &type, void *object, int variant, World world) {
  for (const Field &field : type.fields) {
    void *place = static_cast<std::byte *>(object) + field.offset;
    if (field.type->isScalar()) {
      writeScalar(field.type->name, field.type->size, place, variant);
    } else if (!field.isOwnedPointer) {
      fillSample(*field.type, place, variant, world);
    }
  }
}

}  // namespace

void fillSample(const Type &type, void *object, int variant, World world) {
  if (type.element != nullptr) {
    const bool isObject = !type.element->isScalar();
    std::vector<std::byte> element(type.element->size);
    for (int i = 0; i < 2; ++i) {
      const int k = variant == single ? single : 2 * variant + i;
      if (isObject) {
        require(type.element->construct(element.data()));
        fillSample(*type.element, element.data(), k, world);
      } else {
        writeScalar(type.element->name, type.element->size, element.data(), k);
      }
      require(type.pushBack(object, element.data()));
      if (isObject) {
        require(type.element->destruct(element.data()));
      }
    }
    return;
  }
  const auto fill = fills().find(type.name);
  if (fill == fills().end()) {
    fillFields(type, object, variant, world);
    return;
  }
  fill->second(object, variant, world);
}

const void *sampleOf(const Type &type, int variant, World world, const qsys_memoryTable *memory) {
  struct Sample {
    explicit Sample(const Type &of) : type(of), bytes(of.size) { require(type.construct(bytes.data())); }
    ~Sample() { type.destruct(bytes.data()); }
    Sample(const Sample &) = delete;
    Sample &operator=(const Sample &) = delete;
    const Type &type;
    std::vector<std::byte> bytes;
  };
  static std::map<std::tuple<const Type *, int, World>, std::unique_ptr<Sample>> samples;
  std::unique_ptr<Sample> &sample = samples[{&type, variant, world}];
  if (sample == nullptr) {
    qsys_memory_setTable(nullptr);
    auto made = std::make_unique<Sample>(type);
    if (world != World::empty) {
      fillSample(type, made->bytes.data(), variant, world);
    }
    sample = std::move(made);
    qsys_memory_setTable(memory);
  }
  return sample->bytes.data();
}

void fillBlock(const char *typeName, const Type *type, void *block, std::size_t size, int variant) {
  std::memset(block, 0, size);
  const std::size_t step = type != nullptr ? type->size : 4;
  for (int i = 0; i < 3; ++i) {
    writeScalar(typeName, step, static_cast<std::byte *>(block) + static_cast<std::size_t>(i) * step, variant + i);
  }
}

int variantFor(const Function &function, std::size_t index) {
  const Parameter &parameter = function.parameters[index];
  if (const Choice *choice = find(variants, function.name, parameter.name)) {
    return static_cast<int>(choice->value);
  }
  const std::string_view name = parameter.name;
  const bool isChanged = function.parameters[0].role == Role::object && index > 0;
  if (name == "second" || name == "other" || isChanged) {
    return name == "second" && isChanged ? 2 : 1;
  }
  return parameter.role == Role::object && index > 0 ? 1 : 0;
}

std::uint64_t numberFor(const Function &function, std::size_t index) {
  const Parameter &parameter = function.parameters[index];
  if (const Choice *choice = find(numbers, function.name, parameter.name)) {
    return static_cast<std::uint64_t>(choice->value);
  }
  std::uint64_t number = 0;
  writeScalar(parameter.typeName, parameter.type->size, &number, 0);
  return number;
}

bool readsItsCells(const Function &function) {
  const std::string_view name = function.name;
  return name == "qsys_cleanupExecute_" || name == "qsys_attention_flagHandler";
}

const char *reasonToBeOptional(const Function &function, std::size_t index) {
  const Reason *found = find(optional, function.name, function.parameters[index].name);
  return found != nullptr ? found->reason : nullptr;
}

const char *mayChangeOnFailure(const Function &function) {
  static constexpr Reason changing[] = {
      {"*_assign*", "", "elements and fields are assigned one after the other"},
      {"qoc_ocrDictionary_set*", "", "entries are assigned one after the other"},
      {"qoc_ocrDictionaryStringMulti_set*", "", "positions are assigned one after the other"},
      {"qoc_ocrDictionary*_get*", "", "an output is filled piece by piece"},
      {"*_isMatch*", "", "the answer is 0 until it is known"},
      {"*_match*", "", "results are reset first and filled piece by piece"},
      {"qstd_regex_findError*", "", "the place is -1 until it is known"},
      {"qstd_regex_get*", "", "an output is filled piece by piece"},
      {"qstd_regex_parse*", "", "the ways are emptied first"},
      {"qstd_tokenMulti_set*", "", "tokens are assigned one after the other"},
      {"*PositionFielding_set*AndFieldingBits", "", "the bits are set before the list"},
      {"qoc_ocrDictionary*_run*", "", "results are reset first and filled piece by piece"},
      {"qoc_ocrDictionaryResolver_setRules", "", "lists and numbers are assigned one after the other"},
      {"qoc_ocrDictionaryResolver_resolve", "", "the resolution is emptied first and filled piece by piece"},
      {"qoc_swapCharSet_get*", "", "an output is filled piece by piece"},
      {"qoc_swapCharSet_set*", "", "the set is reset where its tables cannot be had"},
      {"qoc_swapCharSet_append*", "", "the set is reset where its tables cannot be had"},
      {"*_multiSwapStrings", "", "the outputs are emptied"},
      {"*_mapStringMulti", "", "the outputs are emptied"},
      {"qoc_swapChar_set*", "", "the first sequence may be replaced already"},
  };
  const Reason *found = find(changing, function.name, "");
  return found != nullptr ? found->reason : nullptr;
}

const char *mayChangeOnRefusal(const Function &function) {
  static constexpr Reason changing[] = {
      {"qoc_ocrDictionaryResult_getIsSingularPos", "", "the answer is 0 until it is known"},
      {"qoc_ocrDictionaryLineFielding_runFieldingParams", "", "results are reset first"},
      {"qoc_swapCharSet_*SingleSwap", "", "the set is reset where its tables would be too large"},
      {"qstd_regex_findErrorT", "", "the place of the error is what it is asked for"},
  };
  const Reason *found = find(changing, function.name, "");
  return found != nullptr ? found->reason : nullptr;
}

const char *mayDifferAfterFailure(const Function &function) {
  const bool isDifferent = std::string_view(function.name) == "qoc_swapCharSet_appendSingleSwap";
  return isDifferent ? "it adds to what the failure may have reset" : nullptr;
}

const char *reasonToSpare(const Function &function) {
  static constexpr Reason spared[] = {
      {"qsys_memory_setTable", "", "it must not be called while objects are alive"},
      {"qstd_assert_", "", "it reports by intention"},
  };
  const Reason *found = find(spared, function.name, "");
  return found != nullptr ? found->reason : nullptr;
}

}  // namespace qoc::test
