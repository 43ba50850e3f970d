#ifndef QOC_CPP_KINDS_HPP
#define QOC_CPP_KINDS_HPP

/// @file The kinds of dictionary entry.

#include <qoc/cpp/attention.hpp>
#include <qoc/cpp/parameters.hpp>
#include <qoc/cpp/results.hpp>
#include <qoc/cpp/swaps.hpp>

#include <cstdint>
#include <initializer_list>
#include <ranges>
#include <string>

namespace qoc {
inline namespace v0 {

namespace detail {

/// The matching that all kinds of entry have. Self names its operations.
template <class Self>
class Matching {
 public:
  /// Whether a reading can be read as this entry.
  bool isMatch(const Reading &reading, const Parameters &parameters = {}, const SwapSet *swaps = nullptr,
               const StopToken &stop = {}) const {
    const qoc_ocrDictionaryRunParams params = parameters.c();
    require(qoc_ocrDictionaryRunParams_validate(&params));
    qsys_bool isMatch = 0;
    require(interruptible(stop, [&] {
      return Self::isMatchOperation(record(), reading.c(), &params, swaps ? swaps->c() : nullptr, &isMatch);
    }));
    return isMatch != 0;
  }

  /// Every way in which a reading can be read as this entry, ranked.
  Results match(const Reading &reading, const Parameters &parameters = {}, const SwapSet *swaps = nullptr,
                const StopToken &stop = {}) const {
    const qoc_ocrDictionaryRunParams params = parameters.c();
    require(qoc_ocrDictionaryRunParams_validate(&params));
    Results results;
    require(interruptible(stop, [&] {
      return Self::matchOperation(record(), reading.c(), &params, swaps ? swaps->c() : nullptr, results.c());
    }));
    return results;
  }

 private:
  const auto *record() const noexcept { return static_cast<const Self &>(*this).c(); }
};

}  // namespace detail

/// Ranges of words: of String, or of what makes one.
template <class R>
concept WordRange =
    std::ranges::input_range<R> && std::convertible_to<std::ranges::range_reference_t<R>, String> && !Text<R>;

/// A word list, kept by length, shortest first.
class Lexicon : public Value<qoc_ocrDictionaryLexicon>, public detail::Matching<Lexicon> {
 public:
  using Words = Sequence<qoc_ocrDictionaryString, detail::viewString>;
  using Value::Value;
  Lexicon() = default;

  /// What becomes of words that are empty or stand twice.
  enum class Faults { refuse, skip };

  /// From words. Throws Error for an empty word and for one that stands twice, unless they are to be skipped.
  template <WordRange R>
  requires(!std::same_as<std::remove_cvref_t<R>, Lexicon>) explicit Lexicon(R &&words, Faults faults = Faults::refuse) {
    set(std::forward<R>(words), faults);
  }
  Lexicon(std::initializer_list<String> words) { set(words, Faults::refuse); }

  /// The words, shortest first.
  Words words() const noexcept { return Words(detail::elements(c()->strings)); }
  std::size_t size() const noexcept { return words().size(); }
  bool empty() const noexcept { return words().empty(); }
  /// Adds a word. Throws Error where it is there already.
  void add(const String &word) { require(qoc_ocrDictionaryLexicon_addString(c(), word.c())); }
  /// Removes a word. Throws Error where it is not there.
  void remove(const String &word) { require(qoc_ocrDictionaryLexicon_removeString(c(), word.c())); }

 private:
  friend detail::Matching<Lexicon>;
  static constexpr auto isMatchOperation = qoc_ocrDictionaryLexicon_isMatchMulti;
  static constexpr auto matchOperation = qoc_ocrDictionaryLexicon_matchMulti;

  template <WordRange R>
  void set(R &&words, Faults faults) {
    Value<qstd_vector_qoc_ocrDictionaryString> strings;
    for (auto &&word : words) detail::moveInto(*strings.c(), String(word));
    const auto setStrings =
        faults == Faults::skip ? qoc_ocrDictionaryLexicon_setStringsSafe : qoc_ocrDictionaryLexicon_setStrings;
    require(setStrings(c(), strings.c()));
  }
};

/// What one position of a line admits: classes of characters, and listed ones.
class PositionFielding : public Value<qoc_ocrDictionaryPositionFielding> {
 public:
  using Value::Value;
  /// Everything but the space.
  PositionFielding() = default;
  /// @param classes a sum of QOC_FIELDING_UPPER and its like
  /// @param characters further ones
  explicit PositionFielding(std::uint32_t classes, const String &characters = {}) { set(classes, characters); }
  /// Listed characters alone.
  template <Text T>
  explicit PositionFielding(const T &characters) {
    set(0, String(characters));
  }

  std::uint32_t classes() const noexcept { return c()->fieldingBits; }
  /// The listed characters.
  std::span<const Char32> characters() const noexcept { return detail::elements(c()->fieldingCharacters); }

 private:
  void set(std::uint32_t classes, const String &characters) {
    std::vector<Char32> codes;
    for (const Candidate &character : characters.characters()) codes.push_back(character.code);
    Value<qstd_vectorChar32> list;
    detail::assign(*list.c(), codes);
    require(qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(c(), list.c(), classes));
  }
};

namespace detail {
/// A position of a line fielding, to be read.
class PositionFieldingView : public View<qoc_ocrDictionaryPositionFielding> {
 public:
  using View::View;
  std::uint32_t classes() const noexcept { return c()->fieldingBits; }
  std::span<const Char32> characters() const noexcept { return elements(c()->fieldingCharacters); }
};
inline PositionFieldingView viewPositionFielding(const qoc_ocrDictionaryPositionFielding &position) noexcept {
  return position;
}
}  // namespace detail

/// The shape of a line: for every position what it admits.
class LineFielding : public Value<qoc_ocrDictionaryLineFielding>, public detail::Matching<LineFielding> {
 public:
  using Positions = Sequence<qoc_ocrDictionaryPositionFielding, detail::viewPositionFielding>;
  using Value::Value;
  LineFielding() = default;
  LineFielding(std::initializer_list<PositionFielding> positions) {
    for (const PositionFielding &position : positions) append(position);
  }

  void append(PositionFielding position) { detail::moveInto(c()->positions, std::move(position)); }
  Positions positions() const noexcept { return Positions(detail::elements(c()->positions)); }
  std::size_t size() const noexcept { return positions().size(); }
  bool empty() const noexcept { return positions().empty(); }

  /// Forces a reading into the shape; exactly one result, which is not computed where nothing could be placed.
  Results force(const Reading &reading, const FieldingParameters &parameters = {}, const SwapSet *swaps = nullptr,
                const StopToken &stop = {}) const {
    const qoc_ocrDictionaryFieldingRunParams params = parameters.c();
    Results results;
    require(detail::interruptible(stop, [&] {
      return qoc_ocrDictionaryLineFielding_runFieldingParams(c(), swaps ? swaps->c() : nullptr, reading.c(), &params,
                                                             results.c());
    }));
    return results;
  }

 private:
  friend detail::Matching<LineFielding>;
  static constexpr auto isMatchOperation = qoc_ocrDictionaryLineFielding_isMatchMulti;
  static constexpr auto matchOperation = qoc_ocrDictionaryLineFielding_matchMulti;
};

/// A regular expression, which matches a reading as a whole. What it may hold stands in qoc/regex.h.
class RegularExpression : public Value<qoc_ocrDictionaryRegularExpression>, public detail::Matching<RegularExpression> {
 public:
  using Value::Value;
  RegularExpression() = default;
  /// From a source. Throws Error with the status of its first fault.
  template <Text T>
  explicit RegularExpression(const T &source) {
    std::wstring codes;
    for (const Candidate &character : detail::decode(source)) {
      codes += static_cast<wchar_t>(character.code);
    }
    require(qoc_ocrDictionaryRegularExpression_setStringT(c(), codes.c_str()));
  }

  /// The source as UTF-8.
  std::string source() const {
    Value<qstd_string> text;
    require(qoc_ocrDictionaryRegularExpression_getString(c(), text.c()));
    const std::span<const char> bytes = detail::elements(*text.c());
    return {bytes.begin(), bytes.end()};
  }
  bool empty() const { return detail::flag(qoc_ocrDictionaryRegularExpression_getIsEmpty, c()); }

 private:
  friend detail::Matching<RegularExpression>;
  static constexpr auto isMatchOperation = qoc_ocrDictionaryRegularExpression_isMatchMulti;
  static constexpr auto matchOperation = qoc_ocrDictionaryRegularExpression_matchMulti;
};

}  // namespace v0
}  // namespace qoc

#endif
