#include "json_output.hpp"

#include "text.hpp"

#include <algorithm>

namespace qoc::program {
namespace {

bool standsForItself(char character) {
  return static_cast<unsigned char>(character) >= 0x20 && character != '"' && character != '\\';
}

}  // namespace

JsonText::JsonText(const JsonScalar &value) : text_(value.dump(-1, ' ', false, JsonScalar::error_handler_t::replace)) {}

JsonText::JsonText(std::string_view value) {
  if (std::all_of(value.begin(), value.end(), standsForItself) && isUtf8(value)) {
    text_.reserve(value.size() + 2);
    ((text_ += '"') += value) += '"';
  } else {
    text_ = JsonText(JsonScalar(value)).text_;
  }
}

JsonText JsonText::array(std::initializer_list<JsonText> elements) {
  JsonText list = nullptr;
  list.text_ = "[]";
  for (const JsonText &element : elements) list.push(element);
  return list;
}

JsonText JsonText::object(std::initializer_list<std::pair<std::string_view, JsonText>> members) {
  JsonText object = nullptr;
  object.text_ = "{}";
  for (const auto &[key, value] : members) object.set(key, value);
  return object;
}

void JsonText::set(std::string_view key, const JsonText &value) { insert(JsonText(key).text_ + ":", value); }

void JsonText::insert(std::string_view before, const JsonText &element) {
  const char end = text_.back();
  text_.pop_back();
  if (text_.size() > 1) text_ += ',';
  ((text_ += before) += element.text_) += end;
}

std::string JsonText::indented() const {
  std::string lines;
  std::size_t depth = 0;
  const auto newLine = [&] { lines.append(1, '\n').append(2 * depth, ' '); };
  bool isInString = false;
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const char character = text_[i];
    if (isInString) {
      lines += character;
      if (character == '\\') lines += text_[++i];
      isInString = character != '"';
      continue;
    }
    const bool isBegin = character == '[' || character == '{', isEnd = character == ']' || character == '}';
    const bool isEmpty = (isBegin && text_[i + 1] == character + 2) || (isEnd && text_[i - 1] == character - 2);
    if (isEnd && !isEmpty) {
      --depth;
      newLine();
    }
    lines += character;
    isInString = character == '"';
    if (isBegin && !isEmpty) ++depth;
    if ((isBegin && !isEmpty) || character == ',') newLine();
    if (character == ':') lines += ' ';
  }
  return lines;
}

}  // namespace qoc::program
