#include "faults/worst_cases.hpp"

#include <qoc/resolver.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "run/run_builders.hpp"
#include "support/fieldings.hpp"

namespace qoc::test {
namespace {

using Operation = std::function<qsys_status()>;
using Results = Owned<qoc_ocrDictionaryResultSet>;
using ReadingRecord = Owned<qoc_ocrDictionaryStringMulti>;
using Params = Owned<qoc_ocrDictionaryRunParams>;

std::string repeated(const std::string &text, int n) {
  std::string all;
  for (int i = 0; i < n; ++i) {
    all += text;
  }
  return all;
}

/// A reading of n positions, each with the same candidates: "a|b|c".
ReadingRecord longReading(const std::string &position, int n) {
  std::string text = repeated(position + ' ', n);
  text.pop_back();
  return reading(text);
}

/// Different words of the letters a to d, and of so many more as it takes.
std::vector<std::string> wordList(int n, int length) {
  std::mt19937 random(7);
  std::vector<std::string> list;
  list.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    std::string one;
    for (int k = 0; k < length; ++k) {
      one += static_cast<char>('a' + random() % 4);
    }
    list.push_back(one);
  }
  std::sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end()), list.end());
  return list;
}

/// A list of about a million words of lengths around ten, in no order.
Owned<qstd_vector_qoc_ocrDictionaryString> millionWords() {
  std::mt19937 random(9);
  Owned<qstd_vector_qoc_ocrDictionaryString> list;
  require(qstd_vector_qoc_ocrDictionaryString_resize(list, manyWords));
  std::int32_t number = 0;
  for (std::int32_t i = 0; i < manyWords; ++i) {
    qoc_ocrDictionaryString *string = nullptr;
    require(qstd_vector_qoc_ocrDictionaryString_getElement(list, i, &string));
    const auto length = static_cast<std::int32_t>(8 + random() % 6);
    require(qstd_vector_qoc_ocrDictionaryChar_resize(&string->characters, length));
    std::int32_t rest = number++;  // Makes the word different from all others.
    for (std::int32_t k = 0; k < length; ++k, rest /= 8) {
      qoc_ocrDictionaryChar *character = nullptr;
      require(qstd_vector_qoc_ocrDictionaryChar_getElement(&string->characters, k, &character));
      *character = {Char32{'a'} + static_cast<Char32>(k < 7 ? rest % 8 : static_cast<std::int32_t>(random() % 8)), 0};
    }
  }
  return list;
}

Params anyEdits() { return runParams({.maxEdits = 100, .returnBestOnly = 0}); }
Params anyWindows() { return runParams({.maxEdits = 100, .returnBestOnly = 0, .matchOption9 = 1}); }
Params fewEdits() { return runParams({.maxEdits = 3, .returnBestOnly = 0}); }
Params extremes() {
  return runParams({.maxEdits = INT32_MAX,
                    .minStringLength = 1,
                    .maxStringLength = INT32_MAX,
                    .returnBestOnly = 0,
                    .matchOption9 = 1,
                    .limitA = INT32_MAX,
                    .limitB = INT32_MAX});
}

/// The params of most cases.
constexpr struct {
  const char *name;
  Params (*params)();
} kinds[] = {{"edits", anyEdits}, {"windows", anyWindows}, {"extremes", extremes}};

/// What a match takes: an entry, a reading and params.
template <class Entry>
struct Match {
  Entry entry;
  ReadingRecord reading;
  Params params;
  Results results = {};
  qsys_bool isMatch = 0;
};

template <auto MatchMulti, class Make>
std::function<Operation()> matchOf(Make make) {
  return [make]() -> Operation {
    auto input = std::make_shared<decltype(make())>(make());
    return [input] { return MatchMulti(input->entry, input->reading, input->params, nullptr, input->results); };
  };
}
template <auto IsMatchMulti, class Make>
std::function<Operation()> isMatchOf(Make make) {
  return [make]() -> Operation {
    auto input = std::make_shared<decltype(make())>(make());
    return [input] { return IsMatchMulti(input->entry, input->reading, input->params, nullptr, &input->isMatch); };
  };
}

using LexiconMatch = Match<Owned<qoc_ocrDictionaryLexicon>>;
using LineMatch = Match<Owned<qoc_ocrDictionaryLineFielding>>;
using ExpressionMatch = Match<Owned<qoc_ocrDictionaryRegularExpression>>;
using WordMatch = Match<Owned<qoc_ocrDictionaryString>>;

template <class Make>
void addLexicon(std::vector<WorstCase> &cases, const std::string &name, Make make) {
  cases.push_back({name, matchOf<qoc_ocrDictionaryLexicon_matchMulti>(make)});
  cases.push_back({name, isMatchOf<qoc_ocrDictionaryLexicon_isMatchMulti>(make)});
}

const char *const eight = "a|b|c|d|e|f|g|h";

void addLexicons(std::vector<WorstCase> &cases) {
  for (const auto &[kind, params] : kinds) {
    const std::string name = "lexicon, ten thousand positions, " + std::string(kind);
    addLexicon(cases, name, [params = params] {
      auto list = wordList(2000, 12);
      list.push_back(repeated("abcd", 2500));
      return LexiconMatch{lexicon(list), longReading(eight, 10000), params()};
    });
  }
  for (const auto &[kind, params] : kinds) {
    const std::string name = "lexicon, all words match, " + std::string(kind);
    addLexicon(cases, name, [params = params] {
      return LexiconMatch{lexicon(wordList(50000, 12)), longReading("\\x|a|b|c|d", 12), params()};
    });
  }
}

/// A lexicon of a million words, shared by the cases that are there at a time: its making is a case of its own.
struct MillionLexicon {
  MillionLexicon() {
    static std::weak_ptr<const Owned<qoc_ocrDictionaryLexicon>> shared;
    words = shared.lock();
    if (!words) {
      words = std::make_shared<const Owned<qoc_ocrDictionaryLexicon>>([](qoc_ocrDictionaryLexicon *entry) {
        return qoc_ocrDictionaryLexicon_constructStrings(entry, millionWords());
      });
      shared = words;
    }
  }
  operator const qoc_ocrDictionaryLexicon *() const { return *words; }

  std::shared_ptr<const Owned<qoc_ocrDictionaryLexicon>> words;
};
using MillionMatch = Match<MillionLexicon>;

void addMillionWords(std::vector<WorstCase> &cases) {
  using Words = Owned<qstd_vector_qoc_ocrDictionaryString>;
  const auto setting = [](auto set) {
    return [set]() -> Operation {
      auto list = std::make_shared<const Words>(millionWords());
      return [list, set] { return set(Owned<qoc_ocrDictionaryLexicon>(), *list); };
    };
  };
  cases.push_back({"a million words, set", setting(qoc_ocrDictionaryLexicon_setStrings)});
  cases.push_back({"a million words, set safely", setting(qoc_ocrDictionaryLexicon_setStringsSafe)});
  cases.push_back({"a million words, one more", []() -> Operation {
                     auto copy = std::make_shared<Owned<qoc_ocrDictionaryLexicon>>(*MillionLexicon().words);
                     return [copy] {
                       const qsys_status status = qoc_ocrDictionaryLexicon_addStringT(*copy, "one more");
                       return status == QOC_STATUS_STRING_DUPLICATE ? QSYS_STATUS_OK : status;
                     };
                   }});
  cases.push_back({"a million words, index made by the first match", []() -> Operation {
                     auto entry = std::make_shared<Owned<qoc_ocrDictionaryLexicon>>(*MillionLexicon().words);
                     auto input = std::make_shared<ReadingRecord>(reading("a b c d a b c d a b"));
                     require(qoc_ocrDictionaryLexicon_addStringT(*entry, "one more"));
                     return [entry, input] {
                       Results results;
                       return qoc_ocrDictionaryLexicon_matchMulti(*entry, *input, fewEdits(), nullptr, results);
                     };
                   }});
  for (const auto &[name, position, n, params] :
       {std::tuple("a million words, three edits", "a", 10, +fewEdits),
        std::tuple("a million words, eight candidates, three edits", eight, 10, +fewEdits),
        std::tuple("a million words, eight candidates, edits", eight, 10, +anyEdits),
        std::tuple("a million words, eight candidates, windows", eight, 10, +anyWindows),
        std::tuple("a million words, ten thousand positions, extremes", eight, 10000, +extremes)}) {
    const auto make = [position = position, n = n, params = params] {
      return MillionMatch{{}, longReading(position, n), params()};
    };
    cases.push_back({name, matchOf<qoc_ocrDictionaryLexicon_matchMulti>(make)});
    cases.push_back({name, isMatchOf<qoc_ocrDictionaryLexicon_isMatchMulti>(make)});
  }
}

Owned<qoc_swapCharSet> twoForOne() {
  Owned<qstd_vector_qoc_swapChar> list;
  for (const auto &[first, second] : {std::pair("rn", "m"), std::pair("nr", "m"), std::pair("mm", "rm")}) {
    Owned<qoc_swapChar> swap;
    require(qoc_swapChar_setStrings(swap, word(first), word(second)));
    require(qstd_vector_qoc_swapChar_pushBack(list, swap));
  }
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setSwapCharacters(set, list));
  return set;
}

/// Groups of consecutive codes from a first one on, each of which begins with the last code of the one before.
Owned<qstd_vector_vectorChar32> chainedGroups(int numGroups, int size, Char32 first) {
  Owned<qstd_vector_vectorChar32> groups;
  for (int g = 0; g < numGroups; ++g) {
    Owned<qstd_vectorChar32> group;
    for (int i = 0; i < size; ++i) {
      const Char32 code = first + static_cast<Char32>(g * (size - 1) + i);
      require(qstd_vectorChar32_pushBack(group, &code));
    }
    require(qstd_vector_vectorChar32_pushBack(groups, group));
  }
  return groups;
}

std::function<Operation()> settingGroups(int numGroups, int size, Char32 first) {
  return [=]() -> Operation {
    auto groups = std::make_shared<const Owned<qstd_vector_vectorChar32>>(chainedGroups(numGroups, size, first));
    return [groups] { return qoc_swapCharSet_setEquiv(Owned<qoc_swapCharSet>(), *groups); };
  };
}

/// Swaps of single characters: (code(i), code(i + step)).
std::function<Operation()> settingSwaps(int n, int step) {
  return [=]() -> Operation {
    auto list = std::make_shared<Owned<qstd_vector_qoc_swapChar>>();
    for (int i = 0; i < n; ++i) {
      Owned<qoc_swapChar> swap;
      const Char32 first = 0x10000 + static_cast<Char32>(i), second = first + static_cast<Char32>(step);
      require(qstd_vectorChar32_pushBack(&swap->first, &first));
      require(qstd_vectorChar32_pushBack(&swap->second, &second));
      require(qstd_vector_qoc_swapChar_pushBack(*list, swap));
    }
    return [list] {
      const qsys_status status = qoc_swapCharSet_setSwapCharacters(Owned<qoc_swapCharSet>(), *list);
      return status == QOC_STATUS_GROUP_DUPLICATE || status == QOC_STATUS_GROUP_SINGLE ? QSYS_STATUS_OK : status;
    };
  };
}

void addSwaps(std::vector<WorstCase> &cases) {
  struct Input {
    Owned<qoc_swapCharSet> set;
    ReadingRecord reading;
    Owned<qoc_ocrDictionary> dictionary;
    Results results = {};
  };
  cases.push_back({"swaps at every position, expansion", []() -> Operation {
                     auto input = std::make_shared<Input>(Input{twoForOne(), longReading("m|n|r", 10000), {}});
                     return [input] {
                       Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
                       Owned<qstd_vector_vector32s> positions;
                       return qoc_swapCharSet_multiSwapStrings(input->set, input->reading, variants, positions);
                     };
                   }});
  for (const auto &[name, n, params] : {std::tuple("swaps at every position, run", 10000, +anyWindows),
                                        std::tuple("swaps at every position, run of few", 40, +fewEdits)}) {
    cases.push_back({name, [n = n, params = params]() -> Operation {
                       auto input = std::make_shared<Input>(
                           Input{twoForOne(), longReading("m|n|r", n), dictionaryOf({{"rnrn", "mm"}})});
                       return [input, params] {
                         return qoc_ocrDictionary_runSwapCharSetMulti(input->dictionary, input->reading, params(),
                                                                      input->set, input->results);
                       };
                     }});
  }
  // Of the shorter reading the variants are counted.
  for (const int n : {10000, 900}) {
    cases.push_back({"swaps at every position, line", [n]() -> Operation {
                       auto input = std::make_shared<Input>(Input{twoForOne(), longReading("m|n|r", n), {}});
                       const auto shape = line(repeated("aAm", 300));
                       require(qoc_ocrDictionary_setFieldingIExtend(input->dictionary, 0, shape));
                       return [input] {
                         return qoc_ocrDictionary_runSwapCharSetMulti(input->dictionary, input->reading, anyWindows(),
                                                                      input->set, input->results);
                       };
                     }});
    cases.push_back({"swaps at every position, expression", [n]() -> Operation {
                       auto input = std::make_shared<Input>(Input{twoForOne(), longReading("m|n|r", n), {}});
                       Owned<qoc_ocrDictionaryRegularExpression> expression;
                       require(qoc_ocrDictionaryRegularExpression_setStringT(expression, L"((rn|m)*[a-z]{1,9})*x"));
                       require(qoc_ocrDictionary_setRegularExpressionIExtend(input->dictionary, 0, expression));
                       return [input] {
                         return qoc_ocrDictionary_runSwapCharSetMulti(input->dictionary, input->reading, anyWindows(),
                                                                      input->set, input->results);
                       };
                     }});
  }
  cases.push_back({"a group of ten thousand characters", settingGroups(1, 10000, 0x4E00)});
  cases.push_back({"ten thousand chained groups", settingGroups(10000, 2, 0x4E00)});
  cases.push_back({"a thousand groups of a thousand", settingGroups(1000, 1000, 0x110000)});
  cases.push_back({"a group of a million characters", settingGroups(1, 1000000, 0x110000)});
  cases.push_back({"a group of enormous codes", settingGroups(1, 3, 0x3FFFFFF)});
  cases.push_back({"many swaps of different characters", settingSwaps(100000, 500000)});
  cases.push_back({"many swaps in a chain", settingSwaps(20000, 1)});
  cases.push_back({"a match with a group of five thousand", []() -> Operation {
                     auto input = std::make_shared<Input>();
                     require(qoc_swapCharSet_setEquiv(input->set, chainedGroups(1, 5000, 'a')));
                     require(qoc_ocrDictionaryStringMulti_assign(&*input->reading, longReading(eight, 10000)));
                     require(qoc_ocrDictionary_assign(input->dictionary, dictionaryOf({wordList(2000, 12)})));
                     Owned<qoc_ocrDictionaryRegularExpression> expression;
                     require(qoc_ocrDictionaryRegularExpression_setStringT(expression, L"(.*)(.*)x"));
                     require(qoc_ocrDictionary_setRegularExpressionIExtend(input->dictionary, 0, expression));
                     return [input] {
                       return qoc_ocrDictionary_runSwapCharSetMulti(input->dictionary, input->reading, anyWindows(),
                                                                    input->set, input->results);
                     };
                   }});
}

void addLines(std::vector<WorstCase> &cases) {
  for (const auto &[kind, params] : kinds) {
    const std::string name = "line of ten thousand positions, " + std::string(kind);
    const auto make = [params = params] {
      return LineMatch{line(repeated("a?9*", 2500)), longReading("a|b|1|D", 10000), params()};
    };
    cases.push_back({name, matchOf<qoc_ocrDictionaryLineFielding_matchMulti>(make)});
    cases.push_back({name, isMatchOf<qoc_ocrDictionaryLineFielding_isMatchMulti>(make)});
  }
  for (const std::int32_t mode : {0, 1, 2}) {
    cases.push_back({"fielding run of ten thousand positions", [mode]() -> Operation {
                       auto input = std::make_shared<LineMatch>(
                           LineMatch{line(repeated("a?9*", 2500)), longReading("a|b|1|D", 10000), {}});
                       return [input, mode] {
                         Owned<qoc_ocrDictionaryFieldingRunParams> params;
                         params->fieldingMode = mode;
                         return qoc_ocrDictionaryLineFielding_runFieldingParams(input->entry, nullptr, input->reading,
                                                                                params, input->results);
                       };
                     }});
  }
}

void addExpressions(std::vector<WorstCase> &cases) {
  for (const wchar_t *source : {L"((a*)*)*b", L"(a|b|ab)*c", L"((a{1,20}){1,20}){1,20}", L"(.*)(.*)(.*)(.*)x"}) {
    cases.push_back({"expression, compiled", [source]() -> Operation {
                       return [source] {
                         return qoc_ocrDictionaryRegularExpression_setStringT(
                             Owned<qoc_ocrDictionaryRegularExpression>(), source);
                       };
                     }});
    for (const auto &[kind, params] : kinds) {
      const std::string name = "expression, ten thousand positions, " + std::string(kind);
      const auto make = [source, params = params] {
        ExpressionMatch input{{}, longReading(eight, 10000), params()};
        require(qoc_ocrDictionaryRegularExpression_setStringT(input.entry, source));
        return input;
      };
      cases.push_back({name, matchOf<qoc_ocrDictionaryRegularExpression_matchMulti>(make)});
      cases.push_back({name, isMatchOf<qoc_ocrDictionaryRegularExpression_isMatchMulti>(make)});
    }
  }
}

void addWords(std::vector<WorstCase> &cases) {
  for (const auto &[kind, params] : kinds) {
    const std::string name = "word of ten thousand characters, " + std::string(kind);
    const auto make = [params = params] {
      return WordMatch{word(repeated("abcd", 2500)), longReading("a|b|c|d", 10000), params()};
    };
    cases.push_back({name, matchOf<qoc_ocrDictionaryString_matchMulti>(make)});
    cases.push_back({name, isMatchOf<qoc_ocrDictionaryString_isMatchMulti>(make)});
  }
  cases.push_back({"edit distance of ten thousand characters", []() -> Operation {
                     auto words =
                         std::make_shared<std::pair<Owned<qoc_ocrDictionaryString>, Owned<qoc_ocrDictionaryString>>>(
                             word(repeated("abcd", 2500)), word(repeated("dcba", 2500)));
                     return [words] {
                       std::int32_t distance = 0;
                       return qoc_ocrDictionaryString_editDistance(words->first, words->second, nullptr, &distance);
                     };
                   }});
}

const char *const eightScored = "a9000|b8990|c8980|d8970|e8960|f8950|g8940|h8930";
const char *const fourScored = "a9000|b8990|c8980|d8970";

/// A resolver with a dictionary, and a reading of which no results are known.
struct Resolving {
  Resolving(ReadingRecord read, Params allowed, std::int32_t maxTexts)
      : reading(std::move(read)), params(std::move(allowed)) {
    params->returnBestOnly = 1;  // So the resolver has to look for what the results do not show.
    rules->maxTexts = maxTexts;
    require(qoc_ocrDictionaryResolver_setRules(resolver, rules));
  }

  ReadingRecord reading;
  Params params;
  Owned<qoc_ocrDictionary> dictionary;
  Owned<qoc_ocrDictionaryResolverRules> rules = {};
  Owned<qoc_ocrDictionaryResolver> resolver = {};
  Results results = {};
  Owned<qoc_ocrDictionaryResolution> resolution = {};
};

/// @param setEntry puts an entry into a dictionary
template <class SetEntry>
void addResolving(std::vector<WorstCase> &cases, const std::string &name, const char *position, int n,
                  SetEntry setEntry) {
  for (const auto &[kind, params] : kinds) {
    for (const std::int32_t maxTexts : {1, 20}) {
      const auto make = [=, params = params]() -> Operation {
        auto input = std::make_shared<Resolving>(longReading(position, n), params(), maxTexts);
        setEntry(*input->dictionary);
        require(qoc_ocrDictionaryResolver_setDictionary(input->resolver, input->dictionary));
        return [input] {
          return qoc_ocrDictionaryResolver_resolve(input->resolver, input->reading, input->params, nullptr,
                                                   input->results, input->resolution);
        };
      };
      cases.push_back({"resolving, " + name + ", " + kind + ", " + std::to_string(maxTexts), make});
    }
  }
}

void addResolving(std::vector<WorstCase> &cases) {
  const auto setLexicon = [](const std::vector<std::string> &words) {
    return [words](qoc_ocrDictionary &dictionary) {
      require(qoc_ocrDictionary_setLexiconIExtend(&dictionary, 0, lexicon(words)));
    };
  };
  const auto setMillion = [](qoc_ocrDictionary &dictionary) {
    require(qoc_ocrDictionary_setLexiconIExtend(&dictionary, 0, MillionLexicon()));
  };
  const auto setExpression = [](const wchar_t *source) {
    return [source](qoc_ocrDictionary &dictionary) {
      Owned<qoc_ocrDictionaryRegularExpression> expression;
      require(qoc_ocrDictionaryRegularExpression_setStringT(expression, source));
      require(qoc_ocrDictionary_setRegularExpressionIExtend(&dictionary, 0, expression));
    };
  };
  const auto setLine = [](qoc_ocrDictionary &dictionary) {
    require(qoc_ocrDictionary_setFieldingIExtend(&dictionary, 0, line(repeated("a?9*", 2500))));
  };
  cases.push_back({"resolving, a million words, set", []() -> Operation {
                     auto input = std::make_shared<Resolving>(ReadingRecord(), fewEdits(), 1);
                     require(qoc_ocrDictionary_setLexiconIExtend(input->dictionary, 0, MillionLexicon()));
                     return [input] {
                       return qoc_ocrDictionaryResolver_setDictionary(input->resolver, input->dictionary);
                     };
                   }});
  addResolving(cases, "a million words", eightScored, 10, setMillion);
  addResolving(cases, "words of ten thousand characters", fourScored, 10000,
               setLexicon({repeated("abcd", 2500), repeated("dcba", 2499), repeated("abdc", 2501)}));
  addResolving(cases, "lexicon of forty letters", eightScored, 40, setLexicon(wordList(50000, 40)));
  addResolving(cases, "one expression", eightScored, 10000, setExpression(L"(a|b|ab)*c"));
  addResolving(cases, "any letters", eightScored, 200, setExpression(L"[a-h]+x?"));
  addResolving(cases, "line", "a9000|b8990|18980|D8970", 10000, setLine);
}

}  // namespace

const std::vector<WorstCase> &worstCases() {
  static const std::vector<WorstCase> cases = [] {
    std::vector<WorstCase> all;
    addLexicons(all);
    addMillionWords(all);
    addSwaps(all);
    addLines(all);
    addExpressions(all);
    addWords(all);
    addResolving(all);
    return all;
  }();
  return cases;
}

}  // namespace qoc::test
