#ifndef QOC_CPP_DICTIONARY_HPP
#define QOC_CPP_DICTIONARY_HPP

/// @file The dictionary: what readings may be, and its runs.

#include <qoc/cpp/kinds.hpp>

namespace qoc {
inline namespace v0 {

namespace detail {
inline LexiconView viewLexicon(const qoc_ocrDictionaryLexicon &lexicon) noexcept { return lexicon; }
inline LineFieldingView viewLineFielding(const qoc_ocrDictionaryLineFielding &line) noexcept { return line; }
inline RegularExpressionView viewRegularExpression(const qoc_ocrDictionaryRegularExpression &expression) noexcept {
  return expression;
}
}  // namespace detail

/// What a reading may legitimately be: entries of any kind, and what the reader confuses.
///
/// Any number of threads may run one dictionary at once, while nobody changes it.
class Dictionary : public Value<qoc_ocrDictionary> {
 public:
  using Lexicons = Sequence<qoc_ocrDictionaryLexicon, detail::viewLexicon>;
  using LineFieldings = Sequence<qoc_ocrDictionaryLineFielding, detail::viewLineFielding>;
  using RegularExpressions = Sequence<qoc_ocrDictionaryRegularExpression, detail::viewRegularExpression>;
  using Value::Value;

  /// Adds an entry behind the others of its kind. Moved in, it costs no copy.
  void add(Lexicon lexicon) { detail::moveInto(c()->lexicons, std::move(lexicon)); }
  void add(RegularExpression expression) { detail::moveInto(c()->regularExpressions, std::move(expression)); }
  void add(LineFielding lineFielding) { detail::moveInto(c()->fieldings, std::move(lineFielding)); }

  /// The entries of each kind, in order: ranges of views.
  Lexicons lexicons() const noexcept { return Lexicons(detail::elements(c()->lexicons)); }
  LineFieldings lineFieldings() const noexcept { return LineFieldings(detail::elements(c()->fieldings)); }
  RegularExpressions regularExpressions() const noexcept {
    return RegularExpressions(detail::elements(c()->regularExpressions));
  }
  /// Replaces an entry by a copy. Throws Error for an index that is too big.
  void set(std::size_t index, const Lexicon &lexicon) {
    require(qoc_ocrDictionary_setLexiconI(c(), detail::count(index), lexicon.c()));
  }
  void set(std::size_t index, const LineFielding &lineFielding) {
    require(qoc_ocrDictionary_setFieldingI(c(), detail::count(index), lineFielding.c()));
  }
  void set(std::size_t index, const RegularExpression &expression) {
    require(qoc_ocrDictionary_setRegularExpressionI(c(), detail::count(index), expression.c()));
  }
  /// Removes a word list; later ones move down.
  void removeLexicon(std::size_t index) { require(qoc_ocrDictionary_removeLexiconI(c(), detail::count(index))); }
  /// Whether there is no entry; swaps do not count.
  bool empty() const { return detail::flag(qoc_ocrDictionary_getIsEmpty, c()); }

  /// A copy of what the reader confuses.
  SwapSet swaps() const { return SwapSet(c()->swapCharSet); }
  void setSwaps(const SwapSet &swaps) { require(qoc_ocrDictionary_setSwapCharSet(c(), swaps.c())); }

  /**
   * Matches a reading with every entry and ranks the results, best first.
   *
   * @param stop interrupts the run: an Error with the status QSYS_STATUS_INTERRUPTED
   */
  Results run(const Reading &reading, const Parameters &parameters = {}, const StopToken &stop = {}) const {
    Results results;
    require(tryRun(reading, parameters, results, stop));
    return results;
  }
  /// The same with other swaps than the dictionary's own.
  Results run(const Reading &reading, const Parameters &parameters, const SwapSet &swaps,
              const StopToken &stop = {}) const {
    Results results;
    require(tryRun(reading, parameters, swaps, results, stop));
    return results;
  }

  /// As run, into results that can be used again and again; throws nothing. After a failure the results may hold what
  /// was merged so far.
  Status tryRun(const Reading &reading, const Parameters &parameters, Results &results,
                const StopToken &stop = {}) const noexcept {
    return runWith(reading, parameters, &c()->swapCharSet, results, stop);
  }
  Status tryRun(const Reading &reading, const Parameters &parameters, const SwapSet &swaps, Results &results,
                const StopToken &stop = {}) const noexcept {
    return runWith(reading, parameters, swaps.c(), results, stop);
  }

 private:
  Status runWith(const Reading &reading, const Parameters &parameters, const qoc_swapCharSet *swaps, Results &results,
                 const StopToken &stop) const noexcept {
    const qoc_ocrDictionaryRunParams params = parameters.c();
    const Status valid = qoc_ocrDictionaryRunParams_validate(&params);
    if (!valid.isSuccess()) return valid;
    return detail::interruptible(
        stop, [&] { return qoc_ocrDictionary_runSwapCharSetMulti(c(), reading.c(), &params, swaps, results.c()); });
  }
};

}  // namespace v0
}  // namespace qoc

#endif
