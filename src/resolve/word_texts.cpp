// Words within reach of a reading, as texts.

#include "resolve/word_texts.hpp"

#include "platform/containers/view.hpp"
#include "platform/system/present.hpp"
#include "resolve/word_search.hpp"

namespace qoc {

namespace {

/// The word that a result names, without what it leaves out.
std::vector<Char32> wordOf(const qoc_ocrDictionaryResult &result) {
  std::vector<Char32> word;
  for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters)) {
    if (character.code != QOC_CHAR_EMPTY) word.push_back(character.code);
  }
  return word;
}

bool isShownWord(const qoc_ocrDictionaryResult &result) {
  return result.mode == qoc_ocrDictionaryMode_lexicon && result.isComputed != 0;
}

/// A word without where it comes from.
Text bareText(std::span<const Char32> word, Cost cost) {
  Text text;
  text.choices.reserve(word.size());
  for (const Char32 code : word) text.choices.push_back({code, 0, -1, 0});
  text.cost = cost;
  text.mode = qoc_ocrDictionaryMode_lexicon;
  return text;
}

/// What a word costs where every position is one of its characters; noWay where that cannot be.
Cost costInPlace(const ReadingCosts &costs, std::span<const Char32> word) {
  if (word.size() != static_cast<std::size_t>(costs.size())) {
    return noWay;
  }
  Cost cost = 0;
  for (std::size_t i = 0; i < word.size(); ++i) {
    Choice choice;
    if (!costs.find(static_cast<std::int32_t>(i), word[i], choice)) {
      return noWay;
    }
    cost += choice.cost;
  }
  return cost;
}

/// A word with where it comes from, given its cost. Throws Interrupted.
Text textOf(const Task &task, std::span<const Char32> word, Cost cost) {
  const bool isInPlace =
      costInPlace(task.costs, word) == cost && std::find(word.begin(), word.end(), QOC_CHAR_ANY) == word.end();
  if (isInPlace) {
    Text text = bareText(word, cost);
    for (std::size_t i = 0; i < word.size(); ++i) {
      text.inputs.push_back(static_cast<std::int32_t>(i));
      task.costs.find(text.inputs.back(), word[i], text.choices[i]);
    }
    return text;
  }
  const Reach reach = task.reachWithin(cost);
  WordTable table(task.costs, reach, task.swaps);
  WorkMeter meter;
  table.fill(word, cost, meter);
  WordTrace trace = table.trace(word, cost, meter);
  Text text;
  text.choices = std::move(trace.choices);
  text.inputs = std::move(trace.inputs);
  text.cost = cost;
  text.mode = qoc_ocrDictionaryMode_lexicon;
  for (Choice &choice : text.choices) {
    if (choice.code == QOC_CHAR_ANY) {
      choice.code = QOC_RESOLVER_OPEN;
      ++text.numOpen;
    }
  }
  return text;
}

qsys_status isWithinReach(const Task &task, std::span<const Char32> word, bool &isIn) {
  std::vector<qoc_ocrDictionaryChar> characters;
  for (const Char32 code : word) characters.push_back({code, 0});
  Held<qoc_ocrDictionaryString, qoc_ocrDictionaryString_construct, qoc_ocrDictionaryString_destruct> string;
  QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string->characters, characters.data(),
                                                           static_cast<std::int32_t>(characters.size())));
  qsys_bool isMatch = 0;
  QOC_TRY(qoc_ocrDictionaryString_isMatchMulti(string.get(), &task.reading, &task.params, task.set, &isMatch));
  isIn = isMatch != 0;
  return QSYS_STATUS_OK;
}

/// What may come in, and what is near enough, beside a word that is known to be in reach.
class Chooser final : public WordChooser {
 public:
  /// @param shown the cost of that word; noWay where none is known
  Chooser(const Task &task, Cost shown) : task_(task), shown_(shown) {}

  Cost limit(Cost best) const override { return task_.limitBehind(std::min(best, shown_)); }
  qsys_status isAllowed(std::size_t k, bool &isIn) const override {
    const WordIndex &words = task_.knowledge->words;
    isIn = true;
    if (task_.hasChecks()) {
      Text text = bareText(words.word(k), 0);
      task_.check(text, words.lexicon(k));
      isIn = task_.admits(text);
    }
    // More edits than are counted: the match test of the library decides.
    return isIn && !task_.reach.countsEdits() ? isWithinReach(task_, words.word(k), isIn) : QSYS_STATUS_OK;
  }

 private:
  const Task &task_;
  Cost shown_;
};

qsys_status collectKnownWords(Task &task, Cost known, TextList &texts) {
  const WordIndex &words = task.knowledge->words;
  if (words.size() == 0) {
    return QSYS_STATUS_OK;
  }
  const Cost limit = task.limitBehind(known);
  const Reach reach = task.reachWithin(limit);
  task.costs.show(limit);
  task.costs.makeTable();
  std::vector<FoundWord> found;
  QOC_TRY(findBestWords(words, task.costs, reach, task.swaps, task.numWanted, Chooser(task, known), found));
  for (std::size_t i = 0; i < found.size(); ++i) {
    const auto word = words.word(found[i].word);
    if (i + 1 < task.numWanted) {
      Text text = textOf(task, word, found[i].cost);
      task.check(text, words.lexicon(found[i].word));
      texts.add(std::move(text));
    } else {  // It is only measured against.
      texts.add(bareText(word, found[i].cost));
    }
  }
  return QSYS_STATUS_OK;
}

/// Without a dictionary: the words that the results name.
qsys_status collectShownWords(const Task &task, TextList &texts) {
  for (const qoc_ocrDictionaryResult &result : task.results) {
    QOC_TRY(qsys_attention_check());
    if (!isShownWord(result)) {
      continue;
    }
    const std::vector<Char32> word = wordOf(result);
    const Cost cost = costOfWord(word, task.costs, task.reach, task.swaps);
    if (cost >= noWay) {
      continue;
    }
    Text text = textOf(task, word, cost);
    task.check(text, 0);
    if (task.admits(text)) texts.add(std::move(text));
  }
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status collectWords(Task &task, Cost known, TextList &texts) {
  return task.knowledge != nullptr ? collectKnownWords(task, known, texts) : collectShownWords(task, texts);
}

}  // namespace qoc
