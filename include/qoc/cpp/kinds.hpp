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
#include <vector>

namespace qoc {
inline namespace v0 {

namespace detail {

/// The library's matching for a kind of entry.
template <class Record>
struct Kind;

#define QOC_CPP_KIND(T)                               \
  template <>                                         \
  struct Kind<T> {                                    \
    static constexpr auto isMatch = T##_isMatchMulti; \
    static constexpr auto match = T##_matchMulti;     \
  };
QOC_CPP_KIND(qoc_ocrDictionaryLexicon)
QOC_CPP_KIND(qoc_ocrDictionaryLineFielding)
QOC_CPP_KIND(qoc_ocrDictionaryRegularExpression)
#undef QOC_CPP_KIND

}  // namespace detail

/// What can be asked of an entry of any kind, whoever owns it. Without swaps, none are allowed.
template <class Self>
class EntryQueries {
 public:
  /// Whether a reading can be read as this entry.
  bool isMatch(const Reading &reading, const Parameters &parameters = {}, const SwapSet *swaps = nullptr,
               const StopToken &stop = {}) const {
    qsys_bool isMatch = 0;
    call([](auto... arguments) { return Operations<>::isMatch(arguments...); }, reading, parameters, swaps, stop,
         &isMatch);
    return isMatch != 0;
  }

  /// Every way in which a reading can be read as this entry, ranked.
  Results match(const Reading &reading, const Parameters &parameters = {}, const SwapSet *swaps = nullptr,
                const StopToken &stop = {}) const {
    Results results;
    call([](auto... arguments) { return Operations<>::match(arguments...); }, reading, parameters, swaps, stop,
         results.c());
    return results;
  }

 private:
  // Self is complete only when an operation is called.
  template <class S = Self>
  using Operations = detail::Kind<typename S::Record>;

  template <class Operation, class Out>
  void call(Operation operation, const Reading &reading, const Parameters &parameters, const SwapSet *swaps,
            const StopToken &stop, Out *out) const {
    const qoc_ocrDictionaryRunParams params = parameters.c();
    require(qoc_ocrDictionaryRunParams_validate(&params));
    const auto *record = static_cast<const Self &>(*this).c();
    const qoc_swapCharSet *set = swaps != nullptr ? swaps->c() : nullptr;
    require(detail::interruptible(stop, [&] { return operation(record, reading.c(), &params, set, out); }));
  }
};

/// What can be asked of a word list, whoever owns it.
template <class Self>
class LexiconQueries : public EntryQueries<Self> {
 public:
  using Words = Sequence<qoc_ocrDictionaryString, detail::viewString>;

  /// The words, shortest first.
  Words words() const noexcept { return Words(detail::elements(static_cast<const Self &>(*this).c()->strings)); }
  std::size_t size() const noexcept { return words().size(); }
  bool empty() const noexcept { return words().empty(); }
};

/// A word list that belongs to a dictionary.
class LexiconView : public View<qoc_ocrDictionaryLexicon>, public LexiconQueries<LexiconView> {
 public:
  using View::View;
};

/// Ranges of words: of String, or of what makes one.
template <class R>
concept WordRange =
    std::ranges::input_range<R> && std::convertible_to<std::ranges::range_reference_t<R>, String> && !Text<R>;

/// A word list, kept by length, shortest first.
class Lexicon : public Value<qoc_ocrDictionaryLexicon>, public LexiconQueries<Lexicon> {
 public:
  using Value::Value;
  Lexicon() = default;

  /// What becomes of words that are empty or stand twice.
  enum class Faults { refuse, skip };

  /// From words. Throws Error for an empty word and for one that stands twice, unless they are to be skipped.
  template <WordRange R>
  explicit Lexicon(R &&words, Faults faults = Faults::refuse) {
    set(std::forward<R>(words), faults);
  }
  Lexicon(std::initializer_list<String> words) { set(words, Faults::refuse); }

  /// Adds a word. Throws Error where it is there already.
  void add(const String &word) { require(qoc_ocrDictionaryLexicon_addString(c(), word.c())); }
  /// Removes a word. Throws Error where it is not there.
  void remove(const String &word) { require(qoc_ocrDictionaryLexicon_removeString(c(), word.c())); }

 private:
  template <WordRange R>
  void set(R &&words, Faults faults) {
    Value<qstd_vector_qoc_ocrDictionaryString> strings;
    for (auto &&word : words) detail::moveInto(*strings.c(), String(word));
    const auto setStrings =
        faults == Faults::skip ? qoc_ocrDictionaryLexicon_setStringsSafe : qoc_ocrDictionaryLexicon_setStrings;
    require(setStrings(c(), strings.c()));
  }
};

/// What can be asked of a position of a line, whoever owns it.
template <class Self>
class PositionFieldingQueries {
 public:
  /// The classes admitted: a sum of QOC_FIELDING_UPPER and its like.
  std::uint32_t classes() const noexcept { return static_cast<const Self &>(*this).c()->fieldingBits; }
  /// The listed characters.
  std::span<const Char32> characters() const noexcept {
    return detail::elements(static_cast<const Self &>(*this).c()->fieldingCharacters);
  }
};

/// A position of a line that belongs to another object.
class PositionFieldingView : public View<qoc_ocrDictionaryPositionFielding>,
                             public PositionFieldingQueries<PositionFieldingView> {
 public:
  using View::View;
};

/// What one position of a line admits: classes of characters, and listed ones.
class PositionFielding : public Value<qoc_ocrDictionaryPositionFielding>,
                         public PositionFieldingQueries<PositionFielding> {
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
inline PositionFieldingView viewPosition(const qoc_ocrDictionaryPositionFielding &position) noexcept {
  return position;
}
}  // namespace detail

/// What can be asked of a line fielding, whoever owns it.
template <class Self>
class LineFieldingQueries : public EntryQueries<Self> {
 public:
  using Positions = Sequence<qoc_ocrDictionaryPositionFielding, detail::viewPosition>;

  Positions positions() const noexcept {
    return Positions(detail::elements(static_cast<const Self &>(*this).c()->positions));
  }
  std::size_t size() const noexcept { return positions().size(); }
  bool empty() const noexcept { return positions().empty(); }

  /// Forces a reading into the shape; exactly one result, which is not computed where nothing could be placed.
  Results force(const Reading &reading, const FieldingParameters &parameters = {}, const SwapSet *swaps = nullptr,
                const StopToken &stop = {}) const {
    const qoc_ocrDictionaryFieldingRunParams params = parameters.c();
    const auto *record = static_cast<const Self &>(*this).c();
    const qoc_swapCharSet *set = swaps != nullptr ? swaps->c() : nullptr;
    Results results;
    require(detail::interruptible(stop, [&] {
      return qoc_ocrDictionaryLineFielding_runFieldingParams(record, set, reading.c(), &params, results.c());
    }));
    return results;
  }
};

/// A line fielding that belongs to a dictionary.
class LineFieldingView : public View<qoc_ocrDictionaryLineFielding>, public LineFieldingQueries<LineFieldingView> {
 public:
  using View::View;
};

/// The shape of a line: for every position what it admits.
class LineFielding : public Value<qoc_ocrDictionaryLineFielding>, public LineFieldingQueries<LineFielding> {
 public:
  using Value::Value;
  LineFielding() = default;
  LineFielding(std::initializer_list<PositionFielding> positions) {
    for (const PositionFielding &position : positions) append(position);
  }

  void append(PositionFielding position) { detail::moveInto(c()->positions, std::move(position)); }
};

/// What can be asked of a regular expression, whoever owns it.
template <class Self>
class RegularExpressionQueries : public EntryQueries<Self> {
 public:
  /// The source as UTF-8.
  std::string source() const {
    Value<qstd_string> text;
    require(qoc_ocrDictionaryRegularExpression_getString(static_cast<const Self &>(*this).c(), text.c()));
    const std::span<const char> bytes = detail::elements(*text.c());
    return {bytes.begin(), bytes.end()};
  }
  bool empty() const {
    return detail::flag(qoc_ocrDictionaryRegularExpression_getIsEmpty, static_cast<const Self &>(*this).c());
  }
};

/// A regular expression that belongs to a dictionary.
class RegularExpressionView : public View<qoc_ocrDictionaryRegularExpression>,
                              public RegularExpressionQueries<RegularExpressionView> {
 public:
  using View::View;
};

/// A regular expression, which matches a reading as a whole. What it may hold stands in qoc/regex.h.
class RegularExpression : public Value<qoc_ocrDictionaryRegularExpression>,
                          public RegularExpressionQueries<RegularExpression> {
 public:
  using Value::Value;
  RegularExpression() = default;
  /// From a source. Throws Error with the status of its first fault.
  template <Text T>
  explicit RegularExpression(const T &source) {
    std::wstring codes;
    for (const Candidate &character : detail::decode(source)) codes += static_cast<wchar_t>(character.code);
    require(qoc_ocrDictionaryRegularExpression_setStringT(c(), codes.c_str()));
  }
};

}  // namespace v0
}  // namespace qoc

#endif
