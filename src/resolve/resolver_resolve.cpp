// Resolving: the texts of the results and the words within reach, best first.

#include <algorithm>
#include <deque>
#include <optional>

#include "frame/frame.hpp"
#include "platform/containers/view.hpp"
#include "resolve/knowledge.hpp"
#include "resolve/text_search.hpp"

using namespace qoc;

namespace {

/// A text as it is collected.
struct Text {
  std::vector<Choice> choices;
  std::vector<std::int32_t> inputs;
  Cost cost = 0;
  qoc_ocrDictionaryMode mode = 0;
  const qoc_ocrDictionaryResult *result = nullptr;
  bool hasCheck = false, passesCheck = false;
  std::int32_t numOpen = 0;

  std::vector<Char32> codes() const {
    std::vector<Char32> codes;
    for (const Choice &choice : choices) codes.push_back(choice.code);
    return codes;
  }
};

bool isSameText(const Text &a, const Text &b) {
  return std::equal(a.choices.begin(), a.choices.end(), b.choices.begin(), b.choices.end(),
                    [](const Choice &x, const Choice &y) { return x.code == y.code; });
}

/// The characters that are tried where an edit leaves a position open.
constexpr Char32 firstTried = 0x20, lastTried = 0x7E;

std::int32_t clampTo32(Cost cost) { return static_cast<std::int32_t>(std::clamp<Cost>(cost, INT32_MIN, INT32_MAX)); }

/// Resolves one reading.
class Resolving {
 public:
  Resolving(const qoc_ocrDictionaryResolver &resolver, const qoc_ocrDictionaryStringMulti &reading,
            const qoc_ocrDictionaryRunParams &params, const qoc_swapCharSet *set,
            const qoc_ocrDictionaryResultSet &results)
      : rules_(resolver.rules),
        knowledge_(resolver.knowledge != nullptr ? static_cast<const SharedKnowledge *>(resolver.knowledge)->get()
                                                 : nullptr),
        reading_(reading),
        params_(params),
        set_(set),
        results_(viewAs<qoc_ocrDictionaryResult>(results.results)),
        penalties_(resolver.rules),
        costs_(reading, penalties_, set),
        reach_(Reach::of(&params)),
        swaps_(multiSwapsOf(set)),
        numWanted_(static_cast<std::size_t>(resolver.rules.maxTexts) + 1) {}

  qsys_status run(qoc_ocrDictionaryResolution &resolution) {
    QOC_TRY(costs_.status());
    QOC_TRY(collectLattices());
    QOC_TRY(collectTexts(true));
    if (texts_.empty() && hasChecks()) {
      QOC_TRY(collectTexts(false));
    }
    return write(resolution);
  }

 private:
  bool hasChecks() const { return rules_.checks.core.size > 0; }

  /// Whether a text passes the checks of its entry, as far as it has any.
  void check(Text &text, std::int32_t entry) const {
    text.passesCheck = true;
    for (const qoc_ocrDictionaryEntryCheck &check : viewAs<qoc_ocrDictionaryEntryCheck>(rules_.checks)) {
      if (check.mode == text.mode && check.entry == entry) {
        text.hasCheck = true;
        text.passesCheck = text.passesCheck && passes(check.rule, text.codes());
      }
    }
    text.passesCheck = text.passesCheck && text.hasCheck;
  }

  // Lattices --------------------------------------------------------------------------------------------------------

  qsys_status addLattices(std::span<const qoc_ocrDictionaryResult> results, std::int32_t entry) {
    for (const qoc_ocrDictionaryResult &result : results) {
      QOC_TRY(qsys_attention_check());
      if (result.mode == qoc_ocrDictionaryMode_lexicon || result.isComputed == 0) {
        continue;
      }
      Lattice lattice;
      bool isPossible = false;
      lattice.entry = entry;
      QOC_TRY(makeLattice(result, costs_, lattice, isPossible));
      if (!isPossible) {
        continue;
      }
      for (const qoc_ocrDictionaryEntryCheck &check : viewAs<qoc_ocrDictionaryEntryCheck>(rules_.checks)) {
        if (check.mode == lattice.mode && check.entry == entry) lattice.checks.push_back(&check.rule);
      }
      lattices_.push_back(std::move(lattice));
    }
    return QSYS_STATUS_OK;
  }

  qsys_status collectLattices() {
    const bool mayMissSome = knowledge_ != nullptr && (params_.returnBestOnly != 0 || knowledge_->numShapes() > 1);
    if (!mayMissSome) {
      return addLattices(results_, 0);
    }
    qoc_ocrDictionaryRunParams params = params_;
    params.returnBestOnly = 0;
    const auto matchAll = [&](qoc_ocrDictionaryMode mode, std::int32_t numEntries) -> qsys_status {
      for (std::int32_t entry = 0; entry < numEntries; ++entry) {
        QOC_TRY(qsys_attention_check());
        HeldResults &matched = matched_.emplace_back();
        QOC_TRY(matched.status());
        QOC_TRY(knowledge_->match(mode, entry, reading_, params, set_, *matched.get()));
        QOC_TRY(addLattices(viewAs<qoc_ocrDictionaryResult>(matched->results), entry));
      }
      return QSYS_STATUS_OK;
    };
    QOC_TRY(matchAll(qoc_ocrDictionaryMode_fielding, knowledge_->fieldings->core.size));
    return matchAll(qoc_ocrDictionaryMode_regularExpression, knowledge_->expressions->core.size);
  }

  // Open positions --------------------------------------------------------------------------------------------------

  /// The characters that the entry admits at a slot, given what may stand at the others. Sets isAny where it admits too
  /// many to tell.
  qsys_status findAdmitted(const Lattice &lattice, std::size_t slot, const std::vector<std::vector<Char32>> &codes,
                           std::vector<Char32> &admitted) {
    admitted.clear();
    HeldReading reading;
    QOC_TRY(reading.status());
    auto *positions = &reading->positions;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_resize(positions, static_cast<std::int32_t>(codes.size())));
    qoc_ocrDictionaryCharMulti *position = nullptr;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryCharMulti_getBegin(positions, &position));
    std::vector<qoc_ocrDictionaryChar> characters;
    for (const std::vector<Char32> &here : codes) {
      characters.clear();
      for (const Char32 code : here) characters.push_back({code, 0});
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&position++->candidates, characters.data(),
                                                               static_cast<std::int32_t>(characters.size())));
    }
    qoc_ocrDictionaryRunParams exact = {};
    QOC_TRY(qoc_ocrDictionaryRunParams_construct(&exact));
    exact.returnBestOnly = 0;
    HeldResults matched;
    QOC_TRY(matched.status());
    QOC_TRY(knowledge_->match(lattice.mode, lattice.entry, *reading.get(), exact, nullptr, *matched.get()));
    for (const qoc_ocrDictionaryResult &result : viewAs<qoc_ocrDictionaryResult>(matched->results)) {
      const auto valid = viewAs<qoc_ocrDictionaryCharMulti>(result.valid.positions);
      if (slot >= valid.size()) {
        continue;
      }
      for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(valid[slot].candidates)) {
        if (std::find(admitted.begin(), admitted.end(), character.code) == admitted.end()) {
          admitted.push_back(character.code);
        }
      }
    }
    std::sort(admitted.begin(), admitted.end());
    return QSYS_STATUS_OK;
  }

  static std::vector<Char32> allTried() {
    std::vector<Char32> codes;
    for (Char32 code = firstTried; code <= lastTried; ++code) codes.push_back(code);
    return codes;
  }

  /// Puts what the entry admits in the place of a lattice's open slots, for its checks to choose from.
  qsys_status open(Lattice &lattice) {
    if (knowledge_ == nullptr || lattice.carried.empty()) {
      return QSYS_STATUS_OK;
    }
    for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
      Slot &slot = lattice.slots[i];
      if (!slot.isOpen || !slot.tried.empty()) {
        continue;
      }
      std::vector<std::vector<Char32>> codes;
      for (const Slot &other : lattice.slots) {
        codes.emplace_back();
        for (const Choice &choice : other.choices) codes.back().push_back(choice.code);
        if (other.isOpen) codes.back() = allTried();
      }
      std::vector<Char32> admitted;
      QOC_TRY(findAdmitted(lattice, i, codes, admitted));
      slot.tried.swap(slot.choices);
      const Choice unknown = slot.tried[0];
      for (const Char32 code : admitted) slot.choices.push_back({code, unknown.cost, unknown.candidate, unknown.score});
    }
    return QSYS_STATUS_OK;
  }

  /// Finds out the characters of a text that an edit has left open, as far as the entry admits one only.
  /// @param isDescribed false where the entry does not describe the text at all
  qsys_status fill(const Lattice &lattice, Text &text, bool &isDescribed) {
    isDescribed = true;
    std::vector<std::size_t> open;
    std::vector<std::vector<Char32>> codes;
    for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
      const bool isUnknown = lattice.slots[i].isOpen && text.choices[i].code == QOC_RESOLVER_OPEN;
      if (lattice.slots[i].isOpen) open.push_back(i);
      codes.push_back(isUnknown ? allTried() : std::vector<Char32>{text.choices[i].code});
    }
    for (const std::size_t i : open) {
      if (knowledge_ != nullptr) {
        std::vector<Char32> admitted;
        QOC_TRY(findAdmitted(lattice, i, codes, admitted));
        isDescribed = isDescribed && !admitted.empty();
        if (admitted.size() == 1) {
          text.choices[i].code = admitted[0];
          continue;
        }
      }
      if (text.choices[i].code == QOC_RESOLVER_OPEN) ++text.numOpen;
    }
    return QSYS_STATUS_OK;
  }

  // Texts -----------------------------------------------------------------------------------------------------------

  qsys_status collectTexts(bool isChecked) {
    QOC_TRY(knowledge_ != nullptr ? collectKnownWords(isChecked) : collectShownWords(isChecked));
    for (Lattice &lattice : lattices_) {
      lattice.prepare();
      if (!isChecked) lattice.dropChecks();
    }
    Cost least = texts_.empty() ? noWay : texts_.front().cost;
    for (const Lattice &lattice : lattices_) least = std::min(least, lattice.least());
    std::size_t numTaken = 0;
    const auto take = [&](const FoundText &found, bool &goesOn, Cost &maxCost) -> qsys_status {
      const Lattice &lattice = lattices_[found.lattice];
      Text text;
      text.cost = found.cost;
      text.mode = lattice.mode;
      text.result = lattice.result;
      for (std::size_t i = 0; i < lattice.slots.size(); ++i) {
        text.choices.push_back(lattice.slots[i].choices[static_cast<std::size_t>(found.choices[i])]);
        text.inputs.push_back(lattice.slots[i].input);
      }
      bool isDescribed = true;
      QOC_TRY(fill(lattice, text, isDescribed));
      check(text, lattice.entry);
      if (isDescribed && (!isChecked || text.passesCheck || !text.hasCheck) && add(std::move(text))) {
        ++numTaken;
      }
      goesOn = numTaken < numWanted_;
      // Behind the texts that are wanted the next one matters only for the margin, and only before free text.
      if (numTaken + 1 >= numWanted_) {
        maxCost = std::min(maxCost, std::max(costs_.freeText(rules_.freeShape), costs_.freeText(rules_.freeWord)));
      }
      return QSYS_STATUS_OK;
    };
    return searchTexts(
        lattices_, numWanted_, least + rules_.maxLag, [&](Lattice &lattice) { return open(lattice); }, take);
  }

  /// Puts a text in its place unless the same one is there at no greater cost.
  /// @return whether it came in
  bool add(Text text) {
    const auto same =
        std::find_if(texts_.begin(), texts_.end(), [&](const Text &other) { return isSameText(other, text); });
    if (same != texts_.end()) {
      if (same->cost <= text.cost) {
        return false;
      }
      texts_.erase(same);
    }
    const auto at =
        std::find_if(texts_.begin(), texts_.end(), [&](const Text &other) { return other.cost > text.cost; });
    texts_.insert(at, std::move(text));
    return true;
  }

  Text textOf(std::span<const Char32> word, const WordTable &table, Cost cost) const {
    WordTrace trace = table.trace(word);
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

  qsys_status collectKnownWords(bool isChecked) {
    const WordIndex &words = knowledge_->words;
    std::vector<FoundWord> found;
    const auto isAllowed = [&](std::size_t k, bool &isIn) -> qsys_status {
      Text text;
      text.mode = qoc_ocrDictionaryMode_lexicon;
      for (const Char32 code : words.word(k)) text.choices.push_back({code, 0, -1, 0});
      check(text, words.lexicon(k));
      isIn = !isChecked || text.passesCheck || !text.hasCheck;
      // More edits than the table counts: the match test of the library decides.
      return isIn && !reach_.countsEdits() ? isWithinReach(words.word(k), isIn) : QSYS_STATUS_OK;
    };
    QOC_TRY(words.findBest(costs_, reach_, swaps_, numWanted_, isAllowed, found));
    for (const FoundWord &word : found) {
      const auto codes = words.word(word.word);
      WordTable table(costs_, reach_, swaps_);
      for (std::size_t depth = 0; depth < codes.size(); ++depth) table.extend(codes, depth);
      Text text = textOf(codes, table, word.cost);
      check(text, words.lexicon(word.word));
      add(std::move(text));
    }
    return QSYS_STATUS_OK;
  }

  qsys_status isWithinReach(std::span<const Char32> word, bool &isIn) const {
    std::vector<qoc_ocrDictionaryChar> characters;
    for (const Char32 code : word) characters.push_back({code, 0});
    qoc_ocrDictionaryString string;
    return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(qoc_ocrDictionaryString_construct(&string));
      frame.local<qoc_ocrDictionaryString_destruct>(&string);
      QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&string.characters, characters.data(),
                                                               static_cast<std::int32_t>(characters.size())));
      qsys_bool isMatch = 0;
      QOC_TRY(qoc_ocrDictionaryString_isMatchMulti(&string, &reading_, &params_, set_, &isMatch));
      isIn = isMatch != 0;
      return QSYS_STATUS_OK;
    });
  }

  /// Without a dictionary: the words that the results name.
  qsys_status collectShownWords(bool isChecked) {
    for (const qoc_ocrDictionaryResult &result : results_) {
      QOC_TRY(qsys_attention_check());
      if (result.mode != qoc_ocrDictionaryMode_lexicon || result.isComputed == 0) {
        continue;
      }
      std::vector<Char32> word;
      for (const qoc_ocrDictionaryChar &character : viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters)) {
        if (character.code != QOC_CHAR_EMPTY) word.push_back(character.code);
      }
      WordTable table(costs_, reach_, swaps_);
      if (!table.canReach(word.size())) {
        continue;
      }
      for (std::size_t depth = 0; depth < word.size(); ++depth) table.extend(word, depth);
      const Cost cost = table.cost(word, word.size());
      if (cost >= noWay) {
        continue;
      }
      Text text = textOf(word, table, cost);
      check(text, 0);
      if (!isChecked || text.passesCheck || !text.hasCheck) add(std::move(text));
    }
    return QSYS_STATUS_OK;
  }

  // The outcome -----------------------------------------------------------------------------------------------------

  qsys_status findResult(const Text &text, std::int32_t &index) const {
    index = -1;
    for (std::size_t i = 0; i < results_.size() && index < 0; ++i) {
      const qoc_ocrDictionaryResult &result = results_[i];
      bool isIt = text.result == &result;
      if (!isIt && text.result != nullptr) {
        qsys_bool isEqual = 0;
        QOC_TRY(qoc_ocrDictionaryResult_compareEqual(text.result, &result, &isEqual));
        isIt = isEqual != 0;
      } else if (!isIt && text.mode == result.mode) {
        const auto word = viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters);
        isIt = std::equal(word.begin(), word.end(), text.choices.begin(), text.choices.end(),
                          [](const qoc_ocrDictionaryChar &a, const Choice &b) { return a.code == b.code; });
      }
      if (isIt) index = static_cast<std::int32_t>(i);
    }
    return QSYS_STATUS_OK;
  }

  qsys_status write(const Text &from, Cost margin, qoc_ocrDictionaryResolvedText &text) const {
    const auto n = static_cast<std::int32_t>(from.choices.size());
    std::vector<qoc_ocrDictionaryChar> characters;
    std::vector<std::int32_t> candidates;
    for (const Choice &choice : from.choices) {
      characters.push_back({choice.code, choice.score});
      candidates.push_back(choice.candidate);
    }
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_assignElements(&text.text.characters, characters.data(), n));
    QOC_TRY(qstd_vector32s_assignElements(&text.inputIndices, from.inputs.data(), n));
    QOC_TRY(qstd_vector32s_assignElements(&text.candidateIndices, candidates.data(), n));
    text.total = clampTo32(costs_.sumOfFirst() - from.cost);
    text.margin = clampTo32(margin);
    text.mode = from.mode;
    text.hasCheck = from.hasCheck ? 1 : 0;
    text.passesCheck = from.passesCheck ? 1 : 0;
    text.numOpen = from.numOpen;
    return findResult(from, text.resultIndex);
  }

  qsys_status write(qoc_ocrDictionaryResolution &resolution) const {
    const std::size_t numTexts = std::min(texts_.size(), static_cast<std::size_t>(rules_.maxTexts));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryResolvedText_resize(&resolution.texts, static_cast<std::int32_t>(numTexts)));
    const auto texts = editAs<qoc_ocrDictionaryResolvedText>(resolution.texts);
    for (std::size_t i = 0; i < numTexts; ++i) {
      const Text &text = texts_[i];
      const bool isWord = text.mode == qoc_ocrDictionaryMode_lexicon;
      const Cost freeText = costs_.freeText(isWord ? rules_.freeWord : rules_.freeShape);
      const Cost next = i + 1 < texts_.size() ? std::min(texts_[i + 1].cost, freeText) : freeText;
      QOC_TRY(write(text, next - text.cost, texts[i]));
    }
    if (numTexts > 0) {
      const qoc_ocrDictionaryResolvedText &best = texts[0];
      const bool isChecked = best.hasCheck != 0 ? best.passesCheck != 0 : rules_.requiresCheck == 0;
      const bool isSure = best.numOpen == 0 && best.margin >= rules_.minMargin && isChecked;
      resolution.outcome = isSure ? qoc_ocrDictionaryOutcome_sure : qoc_ocrDictionaryOutcome_unsure;
    }
    return QSYS_STATUS_OK;
  }

  const qoc_ocrDictionaryResolverRules &rules_;
  const Knowledge *knowledge_;
  const qoc_ocrDictionaryStringMulti &reading_;
  const qoc_ocrDictionaryRunParams &params_;
  const qoc_swapCharSet *set_;
  std::span<const qoc_ocrDictionaryResult> results_;
  Penalties penalties_;
  ReadingCosts costs_;
  Reach reach_;
  MultiSwaps swaps_;
  std::size_t numWanted_;
  std::deque<HeldResults> matched_;
  std::vector<Lattice> lattices_;
  std::vector<Text> texts_;
};

}  // namespace

qsys_status qoc_ocrDictionaryResolver_resolve(const qoc_ocrDictionaryResolver *resolver,
                                              const qoc_ocrDictionaryStringMulti *reading,
                                              const qoc_ocrDictionaryRunParams *params, const qoc_swapCharSet *set,
                                              const qoc_ocrDictionaryResultSet *results,
                                              qoc_ocrDictionaryResolution *resolution) {
  if (!present({resolver, reading, results, resolution})) {
    return QSYS_STATUS_OK;
  }
  return inFrame<1>([&](Frame<1> &) -> qsys_status {
    resolution->outcome = qoc_ocrDictionaryOutcome_none;
    QOC_TRY(qstd_vector_qoc_ocrDictionaryResolvedText_resize(&resolution->texts, 0));
    qoc_ocrDictionaryRunParams defaults = {};
    QOC_TRY(qoc_ocrDictionaryRunParams_construct(&defaults));
    return Resolving(*resolver, *reading, params != nullptr ? *params : defaults, set, *results).run(*resolution);
  });
}
