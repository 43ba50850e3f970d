#include "text.hpp"

#include "trouble.hpp"

#include <utf8.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace qoc::program {

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

bool isUtf8(std::string_view text) { return isAscii(text) || utf8::is_valid(text.begin(), text.end()); }

void checkUtf8(std::string_view text, const std::string &place) {
  const auto invalid = utf8::find_invalid(text.begin(), text.end());
  if (invalid == text.end()) return;
  char value[8];
  std::snprintf(value, sizeof value, "0x%02X", static_cast<unsigned>(static_cast<unsigned char>(*invalid)));
  throw Trouble(place + ": byte " + std::to_string(std::distance(text.begin(), invalid) + 1) + " (" + value +
                ") is not UTF-8; expected UTF-8 text");
}

std::string validUtf8(std::string_view text) {
  std::string valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  return valid;
}

std::vector<Char32> decodeUtf8(std::string_view text) {
  std::vector<Char32> codes;
  codes.reserve(text.size());
  utf8::utf8to32(text.begin(), text.end(), std::back_inserter(codes));
  return codes;
}

std::string whyRefused(Char32 code) {
  const bool isReserved = (code >= 0xF800 && code <= 0xF8FF) || (code >= 0xFF000 && code <= 0xFFFFD);
  if (code != 0 && !isReserved) return {};
  char name[16];
  std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(code));
  return std::string("the character ") + name +
         " is reserved; expected characters other than U+0000, U+F800 to U+F8FF and U+FF000 to U+FFFFD";
}

bool isEncodable(Char32 code) { return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF); }

void appendUtf8(std::string &text, Char32 code) {
  utf8::append(isEncodable(code) ? code : 0xFFFD, std::back_inserter(text));
}

std::string encodeUtf8(Char32 code) {
  std::string text;
  appendUtf8(text, code);
  return text;
}

Char32 visible(Char32 code) {
  if (code < 0x20) return code + 0x2400;
  if (code == 0x7F) return 0x2421;
  return code >= 0x80 && code < 0xA0 ? 0xFFFD : code;
}

std::string visible(const std::string &text) {
  std::string shown;
  for (const Char32 code : decodeUtf8(text)) appendUtf8(shown, visible(code));
  return shown;
}

std::string quoted(const std::string &text) { return "\"" + visible(text) + "\""; }

void dropCarriageReturn(std::string &line) {
  if (!line.empty() && line.back() == '\r') line.pop_back();
}

} // namespace qoc::program
