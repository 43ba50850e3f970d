#ifndef QOC_CPP_TEXT_HPP
#define QOC_CPP_TEXT_HPP

/// @file Text between UTF-8 and character codes.

#include <qoc/dictionary_char.h>
#include <qoc/cpp/status.hpp>

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qoc {
inline namespace v0 {

/// A character code with a score: one candidate of a reading, or one character of a string. `{U'A', 90}` makes one.
using Candidate = qoc_ocrDictionaryChar;

/// UTF-8: std::string, std::string_view, a literal, or their char8_t kin.
template <class T>
concept Utf8Text =
    std::convertible_to<const T &, std::string_view> || std::convertible_to<const T &, std::u8string_view>;

/// Text of character codes: std::u32string, std::u32string_view, or a literal U"...".
template <class T>
concept CodeText = std::convertible_to<const T &, std::u32string_view>;

/// What a reading, a word or a pattern can be made of.
template <class T>
concept Text = Utf8Text<T> || CodeText<T>;

/// Whether a text must not hold the code: U+0000, and what the library keeps for itself (U+F800 to U+F8FF, U+FF000 to
/// U+FFFFD), wildcards among it.
constexpr bool isReserved(Char32 code) noexcept {
  return code == 0 || (code >= 0xF800 && code <= 0xF8FF) || (code >= 0xFF000 && code <= 0xFFFFD);
}

/// Appends a code as UTF-8; one that UTF-8 cannot express becomes U+FFFD.
inline void appendUtf8(std::string &text, Char32 code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = 0xFFFD;
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | (code >> 6));
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | (code >> 12));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0 | (code >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

namespace detail {

[[noreturn]] inline void refuseByte(std::size_t byte, const char *why) {
  throw Error(QOC_STATUS_NO_SUCH_VALUE, "byte " + std::to_string(byte + 1) + " of the text " + why);
}

/// The code that starts at a byte of a UTF-8 text; `at` moves behind it. Throws Error for what is not UTF-8.
inline Char32 decodeOne(std::string_view text, std::size_t &at) {
  const std::size_t start = at;
  const auto lead = static_cast<unsigned char>(text[at++]);
  if (lead < 0x80) return lead;
  const int numTails = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4) refuseByte(start, "is not UTF-8");
  Char32 code = lead & (0x3F >> numTails);
  for (int i = 0; i < numTails; ++i) {
    if (at == text.size() || (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) refuseByte(start, "is not UTF-8");
    code = code << 6 | (static_cast<unsigned char>(text[at++]) & 0x3F);
  }
  constexpr Char32 least[] = {0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < least[numTails - 1] || code > 0x10FFFF || isSurrogate) refuseByte(start, "is not UTF-8");
  return code;
}

/// A text as characters with score 0. UTF-8 must be valid and free of reserved codes: it is text from outside, and must
/// not become a wildcard. Codes are taken as they are, reserved ones too: whoever writes codes means them.
template <Text T>
std::vector<Candidate> decode(const T &text) {
  std::vector<Candidate> characters;
  if constexpr (CodeText<T>) {
    const std::u32string_view codes = text;
    characters.reserve(codes.size());
    for (const char32_t code : codes) characters.push_back({code, 0});
  } else {
    std::string_view bytes;
    if constexpr (std::convertible_to<const T &, std::string_view>) {
      bytes = text;
    } else {
      const std::u8string_view view = text;
      bytes = {reinterpret_cast<const char *>(view.data()), view.size()};
    }
    characters.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
      const std::size_t start = at;
      const Char32 code = decodeOne(bytes, at);
      if (isReserved(code)) refuseByte(start, "starts a reserved character");
      characters.push_back({code, 0});
    }
  }
  return characters;
}

}  // namespace detail

/// Characters as UTF-8, empty ones (0xF800) left out.
inline std::string toUtf8(std::span<const Candidate> characters) {
  std::string text;
  text.reserve(characters.size());
  for (const Candidate &character : characters) {
    if (character.code != QOC_CHAR_EMPTY) appendUtf8(text, character.code);
  }
  return text;
}

}  // namespace v0
}  // namespace qoc

#endif
