#pragma once

/// @file Text between its UTF-8 form and character codes.

#include <qoc/base.h>

#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

/// The largest code that position fieldings know.
inline constexpr Char32 max7Bits = 0x7F;

bool isUtf8(std::string_view text);
bool isAscii(std::string_view text);

/// Throws Trouble "PLACE: byte N: …" where the text is not UTF-8; N counts from 1.
void checkUtf8(std::string_view text, const std::string &place);

/// The text with U+FFFD for what is not UTF-8.
std::string validUtf8(std::string_view text);

/// The character codes of a valid UTF-8 text.
std::vector<Char32> decodeUtf8(std::string_view text);

/// Why a code cannot stand in a word or a reading, as the end of a sentence; empty where it can.
std::string whyRefused(Char32 code);

/// A code as a text of one character; see appendUtf8.
std::string encodeUtf8(Char32 code);

/// Appends a code as UTF-8. Codes that UTF-8 cannot express become U+FFFD; see isEncodable.
void appendUtf8(std::string &text, Char32 code);

/// Whether UTF-8 can express the code: a Unicode code point that is not a surrogate.
bool isEncodable(Char32 code);

/// The code in a form that does not command a terminal: control characters become their pictures.
Char32 visible(Char32 code);
std::string visible(const std::string &text);

/// The same in quotes, for messages.
std::string quoted(const std::string &text);

/// Removes one carriage return from the end, so that lines may end with CR LF.
void dropCarriageReturn(std::string &line);

} // namespace qoc::program
