#pragma once
// What resolving one reading is about: what is given, and how far behind the best text others matter.

#include "resolve/check_digit.hpp"
#include "resolve/knowledge.hpp"
#include "resolve/text.hpp"
#include "resolve/word_table.hpp"

namespace qoc {

/// One reading to be resolved. Refers to its arguments.
class Task {
 public:
  Task(const qoc_ocrDictionaryResolver &resolver, const Confusions &confusions,
       const qoc_ocrDictionaryStringMulti &reading, const qoc_ocrDictionaryRunParams &params,
       const qoc_swapCharSet *set, const qoc_ocrDictionaryResultSet &results);

  const qoc_ocrDictionaryResolverRules &rules;
  const Knowledge *knowledge;  ///< Null where the dictionary is not known.
  const qoc_ocrDictionaryStringMulti &reading;
  const qoc_ocrDictionaryRunParams &params;
  const qoc_swapCharSet *set;
  std::span<const qoc_ocrDictionaryResult> results;
  ReadingCosts costs;
  Reach reach;
  MultiSwaps swaps;
  Cost freeText;          ///< The most that the reading loses as free text, beside what the dictionary has.
  std::size_t numWanted;  ///< The texts asked for, and one to measure the last of them against.
  bool isChecked = true;  ///< Whether texts that fail their checks stay out.

  /// Whether a text is the whole reading, and its characters come one by one.
  bool isPlain() const { return !reach.isWindow && swaps.isEmpty(); }
  bool hasChecks() const { return rules.checks.core.size > 0; }
  bool hasChecks(qoc_ocrDictionaryMode mode, std::int32_t entry) const;
  /// Whether characters pass the checks of an entry, as far as it has any.
  struct Verdict {
    bool hasCheck = false, passesCheck = false;
  };
  Verdict verdictOn(std::span<const Choice> choices, qoc_ocrDictionaryMode mode, std::int32_t entry) const;
  /// Notes the same of a text.
  void check(Text &text, std::int32_t entry) const {
    const Verdict verdict = verdictOn(text.choices, text.mode, entry);
    text.hasCheck = verdict.hasCheck;
    text.passesCheck = verdict.passesCheck;
  }
  /// Whether a text of which this was found, or noted, may come in.
  bool admits(const Verdict &verdict) const { return !isChecked || verdict.passesCheck || !verdict.hasCheck; }
  bool admits(const Text &text) const { return admits(Verdict{text.hasCheck, text.passesCheck}); }

  /// The margin that counts at most.
  Cost greatestMargin() const { return std::max(rules.maxMargin, rules.minMargin); }
  /// The greatest cost of a text that matters, where the best one so far has this cost.
  Cost limitBehind(Cost best) const;
  /// The greatest cost of a text that matters at all, where none costs less than this.
  Cost limitFrom(Cost least) const;

  /// What an alignment may do and still cost this much at most.
  Reach reachWithin(Cost limit) const;
  /// The kinds of edits with which a text of a fielding or an expression can cost this much at most; the dictionary is
  /// known.
  qoc_ocrDictionaryRunParams paramsWithin(Cost limit) const;
  /// Whether a fielding or an expression may have results that the set does not show: those of equal rank that another
  /// entry has are not in it.
  bool knowsMoreShapes() const;
  /// Whether it takes the entry to know a result's checks; the results do not tell it.
  bool needsChecksOfEntries() const { return hasChecks() && knowledge != nullptr && knowledge->numShapes() > 1; }

 private:
  /// Whether what edits a text takes can be told from its cost: not where lengths bind, which they do without edits
  /// only.
  bool tellsEdits() const { return reach.maxEdits > 0 && isPlain() && reach.allowsAnyLength(); }
  Cost mostAsFreeText() const;

  // What checking goes by, kept from text to text: the rules in their order, as far as some text was held against them.
  mutable std::vector<RuleChecker> checkers_;
  mutable std::vector<Char32> codes_;
};

}  // namespace qoc
