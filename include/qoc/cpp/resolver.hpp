#ifndef QOC_CPP_RESOLVER_HPP
#define QOC_CPP_RESOLVER_HPP

/// @file One text out of the results of a run, and how sure it is.

#include <qoc/cpp/dictionary.hpp>

#include <cstdint>
#include <span>
#include <string>

namespace qoc {
inline namespace v0 {

#define QOC_CPP_ENUMERATOR(name, value) name = value,
/// What came of resolving a reading; see QOC_OUTCOME_LIST.
enum class Outcome : std::int32_t { QOC_OUTCOME_LIST(QOC_CPP_ENUMERATOR) };
#undef QOC_CPP_ENUMERATOR

/// The name of an outcome, such as "sure".
inline const char *name(Outcome outcome) noexcept {
  return qoc_ocrDictionaryOutcome_getName(static_cast<qoc_ocrDictionaryOutcome>(outcome));
}

/// One text that a reading can be; belongs to a Resolution.
class ResolvedTextView : public View<qoc_ocrDictionaryResolvedText> {
 public:
  using View::View;

  /// Its characters with the scores that they count.
  std::span<const Candidate> characters() const noexcept { return StringView(c()->text).characters(); }
  std::string utf8() const { return toUtf8(characters()); }
  /// Scores less penalties.
  std::int32_t total() const noexcept { return c()->total; }
  /// The lead over the next different text, or over the reading as free text; 0 without scores.
  std::int32_t margin() const noexcept { return c()->margin; }
  /// The result of the set that it comes from, or -1.
  std::int32_t resultIndex() const noexcept { return c()->resultIndex; }
  Mode mode() const noexcept { return static_cast<Mode>(c()->mode); }
  /// For each character its position in the reading, or -1.
  std::span<const std::int32_t> readingIndices() const noexcept { return detail::elements(c()->inputIndices); }
  /// For each character the candidate of its position that it is or stands for, or -1.
  std::span<const std::int32_t> candidateIndices() const noexcept { return detail::elements(c()->candidateIndices); }
  bool hasCheck() const noexcept { return c()->hasCheck != 0; }
  bool passesCheck() const noexcept { return c()->passesCheck != 0; }
  /// Characters that are not known; they stand as "?".
  std::int32_t numOpen() const noexcept { return c()->numOpen; }
};

namespace detail {
inline ResolvedTextView viewText(const qoc_ocrDictionaryResolvedText &text) noexcept { return text; }
}  // namespace detail

/// What came of resolving one reading: a range of different texts, best first, and whether the best one is sure.
class Resolution : public Value<qoc_ocrDictionaryResolution> {
 public:
  using Texts = Sequence<qoc_ocrDictionaryResolvedText, detail::viewText>;
  using Value::Value;

  Outcome outcome() const noexcept { return static_cast<Outcome>(c()->outcome); }
  /// Whether the reading has scores, and the texts so have margins.
  bool hasScores() const noexcept { return c()->hasScores != 0; }
  Texts texts() const noexcept { return Texts(detail::elements(c()->texts)); }
  auto begin() const noexcept { return texts().begin(); }
  auto end() const noexcept { return texts().end(); }
  std::size_t size() const noexcept { return texts().size(); }
  bool empty() const noexcept { return texts().empty(); }
  /// The best text, which must be there.
  ResolvedTextView front() const { return texts().front(); }
};

/// How texts are weighed against each other; the fields of `c()` are the numbers.
class ResolverRules : public Value<qoc_ocrDictionaryResolverRules> {
 public:
  using Value::Value;
};

/// Chooses among the texts that the results of a run stand for. Any number of threads may use one at once.
class Resolver : public Value<qoc_ocrDictionaryResolver> {
 public:
  using Value::Value;
  Resolver() = default;
  /// Knows a dictionary, of which it keeps what it needs.
  explicit Resolver(const Dictionary &dictionary) {
    require(qoc_ocrDictionaryResolver_setDictionary(c(), dictionary.c()));
  }
  Resolver(const Dictionary &dictionary, const ResolverRules &rules) {
    setRules(rules);
    require(qoc_ocrDictionaryResolver_setDictionary(c(), dictionary.c()));
  }

  /// Throws Error for rules that are out of range.
  void setRules(const ResolverRules &rules) { require(qoc_ocrDictionaryResolver_setRules(c(), rules.c())); }

  /// The best texts of a reading. @param parameters, swaps, results those of the run, and what came of it
  Resolution resolve(const Reading &reading, const Parameters &parameters, const SwapSet *swaps, const Results &results,
                     const StopToken &stop = {}) const {
    const qoc_ocrDictionaryRunParams params = parameters.c();
    const qoc_swapCharSet *set = swaps != nullptr ? swaps->c() : nullptr;
    Resolution resolution;
    require(detail::interruptible(stop, [&] {
      return qoc_ocrDictionaryResolver_resolve(c(), reading.c(), &params, set, results.c(), resolution.c());
    }));
    return resolution;
  }
};

}  // namespace v0
}  // namespace qoc

#endif
