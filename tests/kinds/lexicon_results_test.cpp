// The results of a lexicon's words, merged before they are results: the same as those of results that are merged.

#include "kinds/lexicon_results.hpp"

#include "run/run_builders.hpp"
#include "support/shortcuts.hpp"
#include "swap/swaps.hpp"

namespace {

using namespace qoc::test;

using Words = std::vector<std::string>;

TEST(LexiconResults, AreThoseOfMergedResults) {
  const struct {
    const char *what;
    Words words;
    const char *reading;
    std::vector<std::u32string_view> groups;
    int32_t maxEdits;
    Words found;
  } cases[] = {
      {"a word has its exact result and one with an edit", {"abc"}, "a b c", {}, 1, {"abc", "abc"}},
      {"the table's result without edits ranks before the exact one", {"abc"}, "a x|b c", {}, 2, {"abc", "abc"}},
      {"results that tie at the same places of their lists are dropped", {"xb", "ay"}, "a|x b|y", {}, 1, {"xb", "xb"}},
      {"a result that others were filed in front of keeps the place that it had",
       {"abc", "abz", "ayx"},
       "a b x|z q",
       {U"xc", U"by"},
       1,
       {"abz", "abc"}},
      {"a result that was filed in front has the place behind those that were there",
       {"az", "xb", "ay"},
       "a|x b|y",
       {},
       1,
       {"xb", "ay", "xb", "ay", "az"}},
  };
  for (const auto &[what, words, read, groups, maxEdits, found] : cases) {
    SCOPED_TRACE(what);
    const auto entry = lexicon(words);
    const auto set = setOf(groups);
    const auto params = runParams({.maxEdits = maxEdits, .returnBestOnly = 0});
    std::vector<std::string> outcomes;
    for (const unsigned bits : {ShortcutsTaken::all, ShortcutsTaken::none}) {
      const ShortcutsTaken taken(bits);
      Owned<qoc_ocrDictionaryResultSet> results;
      require(qoc_ocrDictionaryLexicon_matchMulti(entry, reading(read), params, set, results));
      EXPECT_EQ(matchedWords(*results), found);
      outcomes.push_back(describe(*results));
    }
    EXPECT_EQ(outcomes[0], outcomes[1]);
  }
}

}  // namespace
