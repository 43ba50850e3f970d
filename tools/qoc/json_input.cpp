#include "json_input.hpp"

#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <vector>

namespace qoc::program {
namespace {

/// The library's sentence without its own idea of the place.
std::string plainReason(const Json::exception &error) {
  std::string reason = error.what();
  for (const char *cut : {"] ", "parse error", ": "}) {
    const std::size_t found = reason.find(cut);
    if (found == std::string::npos) break;
    if (std::string_view(cut) != "parse error") reason.erase(0, found + std::string_view(cut).size());
  }
  return reason;
}

/// "NAME:LINE:COLUMN" of a byte, counted from 1.
std::string placeOf(std::string_view text, std::size_t byte, const std::string &name, std::uint64_t firstLine) {
  std::size_t at = std::min(byte > 0 ? byte - 1 : 0, text.size());
  // The parser may stop within a character.
  while (at > 0 && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U) --at;
  const std::string_view before = text.substr(0, at);
  const auto line = firstLine + static_cast<std::uint64_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t lineStart = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
  const std::size_t column = decodeUtf8(before.substr(lineStart)).size() + 1;
  return name + ":" + std::to_string(line) + ":" + std::to_string(column);
}

/// Walks over a text and counts how far the parser has come.
struct CountingIterator {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char *;
  using reference = const char &;

  const char *at;
  std::size_t *count;

  reference operator*() const { return *at; }
  CountingIterator &operator++() {
    ++at;
    ++*count;
    return *this;
  }
  bool operator==(const CountingIterator &other) const { return at == other.at; }
};

} // namespace

Json parseJson(std::string_view text, const std::string &name, std::uint64_t firstLine) {
  for (std::size_t start = 0, line = firstLine; start < text.size(); ++line) {
    const std::size_t feed = std::min(text.find('\n', start), text.size());
    checkUtf8(text.substr(start, feed - start), name + ":" + std::to_string(line));
    start = feed + 1;
  }
  std::size_t numRead = 0;
  std::vector<std::set<std::string>> openObjects;
  const auto refuseRepeatedKeys = [&](int, Json::parse_event_t event, Json &parsed) {
    if (event == Json::parse_event_t::object_start) openObjects.emplace_back();
    if (event == Json::parse_event_t::object_end) openObjects.pop_back();
    if (event == Json::parse_event_t::key && !openObjects.back().insert(parsed.get<std::string>()).second) {
      throw Trouble(placeOf(text, numRead, name, firstLine) + ": the key " + parsed.dump() +
                    " stands twice in one object; expected it once");
    }
    return true;
  };
  try {
    const char *end = text.data() + text.size();
    return Json::parse(CountingIterator{text.data(), &numRead}, CountingIterator{end, &numRead}, refuseRepeatedKeys);
  } catch (const Json::parse_error &error) {
    throw Trouble(placeOf(text, error.byte, name, firstLine) + ": not JSON: " + plainReason(error));
  } catch (const Json::out_of_range &error) {
    throw Trouble(placeOf(text, numRead, name, firstLine) + ": not usable JSON: " + plainReason(error) +
                  "; expected numbers that a double can hold");
  }
}

void JsonNode::fail(const std::string &message) const { throw Trouble(where() + ": " + message); }

void JsonNode::failExpected(const std::string &expected) const {
  std::string found = value_.is_structured() ? value_.type_name() : value_.dump();
  if (found.size() > 60) found = value_.type_name();
  fail("found " + found + "; expected " + expected);
}

void JsonNode::requireObject(const std::string &what) const {
  if (!value_.is_object()) failExpected(what);
}

void JsonNode::requireObject(std::initializer_list<std::string_view> keys) const {
  std::string known;
  for (const std::string_view key : keys) known += (known.empty() ? "\"" : ", \"") + std::string(key) + "\"";
  requireObject("an object with keys of " + known);
  for (const auto &[key, unused] : value_.items()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      attempt([this, &known, &name = key] { member(name).fail("unknown key; expected one of " + known); });
    }
  }
}

std::size_t JsonNode::requireArray(const std::string &what) const {
  if (!value_.is_array()) failExpected(what);
  return value_.size();
}

JsonNode JsonNode::member(std::string_view key) const {
  JsonNode node(*value_.find(key), place_, faults_);
  node.path_ = path_ + "/";
  for (const char character : key) { // As RFC 6901 writes keys.
    if (character == '~') node.path_ += "~0";
    else if (character == '/') node.path_ += "~1";
    else node.path_ += character;
  }
  return node;
}

JsonNode JsonNode::element(std::size_t index) const {
  JsonNode node(value_[index], place_, faults_);
  node.path_ = path_ + "/" + std::to_string(index);
  return node;
}

const std::string &JsonNode::string(const std::string &what) const {
  if (!value_.is_string()) failExpected(what);
  return value_.get_ref<const std::string &>();
}

bool JsonNode::boolean() const {
  if (!value_.is_boolean()) failExpected("true or false");
  return value_.get<bool>();
}

std::int32_t JsonNode::integer(std::int32_t least, std::int32_t greatest) const {
  const bool isInside =
      value_.is_number_integer() &&
      (value_.is_number_unsigned()
           ? value_.get<std::uint64_t>() <= static_cast<std::uint64_t>(std::max(greatest, 0)) &&
                 static_cast<std::int64_t>(value_.get<std::uint64_t>()) >= least
           : value_.get<std::int64_t>() >= least && value_.get<std::int64_t>() <= greatest);
  if (!isInside) {
    failExpected("a whole number from " + std::to_string(least) + " to " + std::to_string(greatest));
  }
  return value_.get<std::int32_t>();
}

} // namespace qoc::program
