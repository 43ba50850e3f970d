#ifndef QOC_CPP_STRING_HPP
#define QOC_CPP_STRING_HPP

/// @file Strings of characters, and readings: strings with several scored candidates for every position.

#include <qoc/cpp/sequence.hpp>
#include <qoc/cpp/text.hpp>
#include <qoc/cpp/value.hpp>

#include <initializer_list>
#include <ranges>
#include <string>

namespace qoc {
inline namespace v0 {

/// What can be asked of a string, whoever owns it.
template <class Self>
class StringQueries {
 public:
  /// The characters with their scores.
  std::span<const Candidate> characters() const noexcept {
    return detail::elements(static_cast<const Self &>(*this).c()->characters);
  }
  std::size_t size() const noexcept { return characters().size(); }
  bool empty() const noexcept { return characters().empty(); }
  /// As UTF-8, empty characters (0xF800) left out; U+FFFD for codes that UTF-8 cannot express.
  std::string utf8() const { return toUtf8(characters()); }
  /// The codes.
  std::u32string codes() const {
    std::u32string codes;
    codes.reserve(size());
    for (const Candidate &character : characters()) codes += static_cast<char32_t>(character.code);
    return codes;
  }
};

/// A string that belongs to another object.
class StringView : public View<qoc_ocrDictionaryString>, public StringQueries<StringView> {
 public:
  using View::View;
};

/// A string of characters: a word, or a reading without alternatives.
class String : public Value<qoc_ocrDictionaryString>, public StringQueries<String> {
 public:
  using Value::Value;
  String() = default;
  /// From text, with score 0 for every character. UTF-8 must be valid and free of reserved codes (see isReserved);
  /// codes (std::u32string_view) are taken as they are.
  template <Text T>
  String(const T &text) {
    assign(detail::decode(text));
  }
  /// From characters with scores.
  explicit String(std::span<const Candidate> characters) { assign(characters); }

 private:
  void assign(std::span<const Candidate> characters) { detail::assign(c()->characters, characters); }
};

namespace detail {
inline std::span<const Candidate> candidatesOf(const qoc_ocrDictionaryCharMulti &position) noexcept {
  return elements(position.candidates);
}
inline StringView viewString(const qoc_ocrDictionaryString &string) noexcept { return string; }
}  // namespace detail

/// What can be asked of a reading, whoever owns it.
template <class Self>
class ReadingQueries {
 public:
  using Positions = Sequence<qoc_ocrDictionaryCharMulti, detail::candidatesOf>;

  /// For every position its candidates, the primary one first.
  Positions positions() const noexcept {
    return Positions(detail::elements(static_cast<const Self &>(*this).c()->positions));
  }
  auto begin() const noexcept { return positions().begin(); }
  auto end() const noexcept { return positions().end(); }
  std::span<const Candidate> operator[](std::size_t position) const { return positions()[position]; }
  std::size_t size() const noexcept { return positions().size(); }
  bool empty() const noexcept { return positions().empty(); }
  /// The primary candidates as UTF-8; positions without candidates and empty characters are left out.
  std::string utf8() const {
    std::string text;
    for (const std::span<const Candidate> candidates : positions()) {
      if (!candidates.empty()) text += toUtf8(candidates.first(1));
    }
    return text;
  }
};

/// A reading that belongs to another object.
class ReadingView : public View<qoc_ocrDictionaryStringMulti>, public ReadingQueries<ReadingView> {
 public:
  using View::View;
};

/// Ranges of positions, each a contiguous range of candidates, such as std::vector<std::vector<Candidate>>.
template <class R>
concept PositionRange =
    std::ranges::input_range<R> && std::convertible_to<std::ranges::range_reference_t<R>, std::span<const Candidate>>;

/// What the reader saw: for every position its candidates, the primary one first, with scores (higher is better; the
/// scale is the reader's own).
class Reading : public Value<qoc_ocrDictionaryStringMulti>, public ReadingQueries<Reading> {
 public:
  using Value::Value;
  Reading() = default;
  /// From text: one candidate with score 0 for every character. See String for what the text may hold.
  template <Text T>
  Reading(const T &text) : Reading(String(text)) {}
  /// One candidate for every character.
  explicit Reading(const String &string) { require(qoc_ocrDictionaryStringMulti_setString(c(), string.c())); }
  /// From candidates: `{{{U'O', 90}, {U'0', 70}}, {{U'K', 99}}}`.
  Reading(std::initializer_list<std::initializer_list<Candidate>> positions) {
    for (const std::initializer_list<Candidate> &candidates : positions) append(candidates);
  }
  /// From a range of positions, each a contiguous range of candidates.
  template <PositionRange R>
  requires(!Text<R> && !Wrapper<std::remove_cvref_t<R>>) explicit Reading(R &&positions) {
    for (auto &&candidates : positions) append(candidates);
  }

  /// Appends a position.
  void append(std::span<const Candidate> candidates) {
    Value<qoc_ocrDictionaryCharMulti> position;
    detail::assign(position.c()->candidates, candidates);
    detail::moveInto(c()->positions, std::move(position));
  }
  void append(std::initializer_list<Candidate> candidates) {
    append(std::span<const Candidate>(candidates.begin(), candidates.size()));
  }
};

}  // namespace v0
}  // namespace qoc

#endif
