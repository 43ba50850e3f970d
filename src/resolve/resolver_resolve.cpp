// Resolving: the best texts of a reading, and what is said of them.

#include <algorithm>

#include "frame/frame.hpp"
#include "platform/containers/view.hpp"
#include "resolve/clear_text.hpp"
#include "resolve/shape_texts.hpp"
#include "resolve/word_texts.hpp"

using namespace qoc;

namespace {

std::int32_t clampTo32(Cost cost) { return static_cast<std::int32_t>(std::clamp<Cost>(cost, INT32_MIN, INT32_MAX)); }

/// Resolves one reading.
class Resolving {
 public:
  explicit Resolving(Task &task) : task_(task) {}

  qsys_status run(const qoc_ocrDictionaryResultSet &results, qoc_ocrDictionaryResolution &resolution) {
    resolution.hasScores = task_.costs.penalties().hasScores() ? 1 : 0;
    if (results.isComputed != 0 && task_.results.empty()) {
      return write(resolution);
    }
    Text text;
    const Clarity clarity = findClearText(task_, text);
    const bool isWord = text.mode == qoc_ocrDictionaryMode_lexicon;
    const Cost knownWord = clarity == Clarity::bound && isWord ? text.cost : noWay;
    if (clarity != Clarity::none && knownWord == noWay) texts_.add(std::move(text));
    bool isDone = clarity == Clarity::clear;
    const bool isWalked = clarity == Clarity::bound && !isWord && task_.knowsMoreShapes();
    if (isWalked) QOC_TRY(shapes_.walk(isDone));
    if (!isDone) QOC_TRY(collect(knownWord, isWalked));
    return write(resolution);
  }

 private:
  /// @param knownWord the cost of a word that the reading can be; noWay where none is known
  /// @param isWalked whether the shapes' texts were gone through in vain
  qsys_status collect(Cost knownWord, bool isWalked) {
    QOC_TRY(collectWords(task_, knownWord, texts_));
    const bool knowsMore = task_.knowsMoreShapes();
    const TextList words = knowsMore ? texts_ : TextList();
    bool isDone = !knowsMore;
    // To find one text of the set that passes its checks takes as much as to look for all.
    if (!isDone && !isWalked && task_.hasChecks()) {
      QOC_TRY(shapes_.walk(isDone));
      if (isDone) {
        return QSYS_STATUS_OK;
      }
      texts_ = words;
    }
    if (!task_.needsChecksOfEntries()) {
      QOC_TRY(shapes_.takeSet());
      QOC_TRY(shapes_.collect(noWay));
    }
    if (!isDone && !isWalked && !task_.hasChecks()) QOC_TRY(shapes_.walk(isDone));
    if (!isDone && !shapes_.isComplete()) {
      const Cost best = texts_.best();
      texts_ = words;
      QOC_TRY(shapes_.matchAgain(best));
      QOC_TRY(shapes_.collect(best));
    }
    if (texts_.empty() && task_.hasChecks()) {
      task_.isChecked = false;
      QOC_TRY(collectWords(task_, noWay, texts_));
      QOC_TRY(shapes_.collect(noWay));
    }
    return QSYS_STATUS_OK;
  }

  /// The result of the set that a text comes from; -1 where there is none.
  std::int32_t resultOf(const Text &text) const {
    if (text.result != unknownResult) {
      return text.result;
    }
    const auto isIt = [&](const qoc_ocrDictionaryResult &result) {
      const auto word = viewAs<qoc_ocrDictionaryChar>(result.dictionaryString.characters);
      return result.mode == text.mode &&
             (text.mode != qoc_ocrDictionaryMode_lexicon
                  ? isShownBy(result, task_.costs.size(), text)
                  : std::equal(word.begin(), word.end(), text.choices.begin(), text.choices.end(),
                               [](const qoc_ocrDictionaryChar &a, const Choice &b) { return a.code == b.code; }));
    };
    const auto found = std::find_if(task_.results.begin(), task_.results.end(), isIt);
    return found != task_.results.end() ? static_cast<std::int32_t>(found - task_.results.begin()) : -1;
  }

  qsys_status write(const Text &from, Cost margin, qoc_ocrDictionaryResolvedText &text) const {
    const auto n = static_cast<std::int32_t>(from.choices.size());
    QOC_TRY(qstd_vector_qoc_ocrDictionaryChar_resize(&text.text.characters, n));
    QOC_TRY(qstd_vector32s_resize(&text.candidateIndices, n));
    QOC_TRY(qstd_vector32s_assignElements(&text.inputIndices, from.inputs.data(), n));
    const auto characters = editAs<qoc_ocrDictionaryChar>(text.text.characters);
    const auto candidates = editAs<std::int32_t>(text.candidateIndices);
    for (std::size_t i = 0; i < from.choices.size(); ++i) {
      characters[i] = {from.choices[i].code, from.choices[i].score};
      candidates[i] = from.choices[i].candidate;
    }
    const Cost cost = task_.costs.penalties().hasScores() ? from.cost : from.cost % differenceCost;
    text.total = clampTo32(task_.costs.sumOfFirst() - cost);
    text.margin = clampTo32(margin);
    text.mode = from.mode;
    text.hasCheck = from.hasCheck ? 1 : 0;
    text.passesCheck = from.passesCheck ? 1 : 0;
    text.numOpen = from.numOpen;
    text.resultIndex = resultOf(from);
    return QSYS_STATUS_OK;
  }

  /// The differences from the first candidates; for a reading without scores.
  static Cost numDifferences(const Text &text) { return text.cost / differenceCost; }

  Cost marginOf(std::size_t i) const {
    const Text &text = texts_[i];
    const bool isWord = text.mode == qoc_ocrDictionaryMode_lexicon;
    const Cost freeText = task_.costs.freeText(isWord ? task_.rules.freeWord : task_.rules.freeShape);
    const Cost next = i + 1 < texts_.size() ? std::min(texts_[i + 1].cost, freeText) : freeText;
    return std::min(next - text.cost, task_.greatestMargin());
  }

  /// Whether the best text leads far enough. One that another equals never does.
  bool leads() const {
    const bool isAlone = texts_.size() == 1;
    if (task_.costs.penalties().hasScores()) {
      return marginOf(0) >= task_.rules.minMargin && (isAlone || texts_[1].cost > texts_[0].cost);
    }
    return isAlone || numDifferences(texts_[1]) > numDifferences(texts_[0]);
  }

  qsys_status write(qoc_ocrDictionaryResolution &resolution) const {
    const std::size_t numTexts = std::min(texts_.size(), static_cast<std::size_t>(task_.rules.maxTexts));
    QOC_TRY(qstd_vector_qoc_ocrDictionaryResolvedText_resize(&resolution.texts, static_cast<std::int32_t>(numTexts)));
    const auto texts = editAs<qoc_ocrDictionaryResolvedText>(resolution.texts);
    for (std::size_t i = 0; i < numTexts; ++i) {
      QOC_TRY(write(texts_[i], task_.costs.penalties().hasScores() ? marginOf(i) : 0, texts[i]));
    }
    if (numTexts > 0) {
      const qoc_ocrDictionaryResolvedText &best = texts[0];
      const bool isChecked = best.hasCheck != 0 ? best.passesCheck != 0 : task_.rules.requiresCheck == 0;
      const bool isSure = best.numOpen == 0 && isChecked && leads();
      resolution.outcome = isSure ? qoc_ocrDictionaryOutcome_sure : qoc_ocrDictionaryOutcome_unsure;
    }
    return QSYS_STATUS_OK;
  }

  Task &task_;
  TextList texts_;
  ShapeTexts shapes_{task_, texts_};
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
  // Texts of an earlier call are written over, which takes less than making them anew.
  const qsys_status status = inFrame<1>([&](Frame<1> &) -> qsys_status {
    resolution->outcome = qoc_ocrDictionaryOutcome_none;
    resolution->hasScores = 0;
    qoc_ocrDictionaryRunParams defaults = {};
    qoc_ocrDictionaryRunParams_construct(&defaults);
    const Confusions none;
    const Kept *kept = keptBy(*resolver);
    const Confusions &confusions = kept != nullptr && kept->confusions ? *kept->confusions : none;
    Task task(*resolver, confusions, *reading, params != nullptr ? *params : defaults, set, *results);
    return Resolving(task).run(*results, *resolution);
  });
  if (status < 0) clear(resolution->texts);
  return status;
}
