#pragma once

/// @file JSON that the program writes.

#include "json_input.hpp"

#include <array>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace qoc::program {

/// What every record of the program says of its form.
constexpr int formatVersion = 1;

/// A JSON value as its text, which arrays and objects grow by: whatever fails meanwhile, nothing of it has to be taken
/// apart. Text that is not UTF-8, as a file's name may be, is written with U+FFFD for what is not.
class JsonText {
 public:
  JsonText(std::nullptr_t) : text_("null") {}
  JsonText(std::same_as<bool> auto value) : text_(value ? "true" : "false") {}
  template <std::integral T>
  requires(!std::same_as<T, bool>) JsonText(T value) : text_(std::to_string(value)) {}
  JsonText(double value) : JsonText(JsonScalar(value)) {}
  JsonText(const JsonScalar &value);
  JsonText(std::string_view value);
  JsonText(const std::string &value) : JsonText(std::string_view(value)) {}
  JsonText(const char *value) : JsonText(std::string_view(value)) {}

  static JsonText array(std::initializer_list<JsonText> elements = {});
  template <std::size_t N>
  static JsonText array(const std::array<JsonScalar, N> &elements) {
    JsonText list = array();
    for (const JsonScalar &element : elements) list.push(element);
    return list;
  }
  static JsonText object(std::initializer_list<std::pair<std::string_view, JsonText>> members = {});

  /// Appends an element to an array.
  void push(const JsonText &element) { insert("", element); }
  /// Appends a member to an object, which does not have the key.
  void set(std::string_view key, const JsonText &value);

  /// The text, without space, in one line.
  const std::string &text() const { return text_; }
  /// The same in lines, for people: every element and member in one of its own, two spaces deeper than what it is in.
  std::string indented() const;

 private:
  void insert(std::string_view before, const JsonText &element);

  std::string text_;
};

}  // namespace qoc::program
