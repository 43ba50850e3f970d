#include "json_input.hpp"

#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

namespace qoc::program {
namespace {

/// The library's sentence without its own idea of the place.
std::string plainReason(const JsonScalar::exception &error) {
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

/// Makes a document of what the parser finds. Values wait until all of their array or object are known; then these go
/// into the document together.
class JsonBuilder {
public:
  /// @param refuseKey called with a key that stands in its object already; does not return
  explicit JsonBuilder(std::function<void(const JsonScalar &)> refuseKey) : refuseKey_(std::move(refuseKey)) {}

  JsonDocument finish() {
    moveToDocument(waiting_.front());
    return std::move(document_);
  }

  // The parser's events; what they return says to go on.
  bool null() { return add(nullptr); }
  bool boolean(bool value) { return add(value); }
  bool number_integer(std::int64_t value) { return add(value); }
  bool number_unsigned(std::uint64_t value) { return add(value); }
  bool number_float(double value, const std::string &) { return add(value); }
  bool string(const std::string &value) { return add(value); }
  bool binary(const JsonScalar::binary_t &) { return false; } // JSON as text has none.
  bool start_array(std::size_t) { return open(JsonDocument::Kind::array); }
  bool start_object(std::size_t) { return open(JsonDocument::Kind::object); }
  bool key(const std::string &key) {
    add(key);
    const JsonScalar &added = waiting_.back().scalar;
    // The view stays as it is, wherever the value moves.
    if (!open_.back().keys.emplace(added.get_ref<const std::string &>(), waiting_.size() - 1).second) refuseKey_(added);
    return true;
  }
  bool end_array() {
    const std::size_t first = document_.values_.size();
    for (std::size_t i = open_.back().first; i < waiting_.size(); ++i) moveToDocument(waiting_[i]);
    return close(first, waiting_.size() - open_.back().first);
  }
  bool end_object() {
    const std::size_t first = document_.values_.size();
    for (const auto &[key, place] : open_.back().keys) {
      moveToDocument(waiting_[place]);
      moveToDocument(waiting_[place + 1]);
    }
    return close(first, open_.back().keys.size());
  }
  template <typename Error> bool parse_error(std::size_t, const std::string &, const Error &error) { throw error; }

private:
  /// An array or an object whose end was not yet found.
  struct Open {
    JsonDocument::Kind kind;
    std::size_t first;                            ///< Where its elements begin among the values that wait.
    std::map<std::string_view, std::size_t> keys; ///< An object's, and where each waits.
  };

  template <typename T> bool add(const T &value) {
    waiting_.push_back({JsonScalar(value)});
    return true;
  }
  bool open(JsonDocument::Kind kind) {
    open_.push_back({kind, waiting_.size(), {}});
    return true;
  }
  bool close(std::size_t first, std::size_t size) {
    waiting_.resize(open_.back().first);
    waiting_.push_back({nullptr, open_.back().kind, first, size});
    open_.pop_back();
    return true;
  }
  void moveToDocument(JsonDocument::Value &value) { document_.values_.push_back(std::move(value)); }

  std::function<void(const JsonScalar &)> refuseKey_;
  JsonDocument document_;
  std::vector<JsonDocument::Value> waiting_;
  std::vector<Open> open_;
};

const JsonDocument::Value *JsonDocument::find(const Value &value, std::string_view key) const {
  if (value.kind != Kind::object) return nullptr;
  std::size_t begin = 0, end = value.size;
  while (begin < end) {
    const std::size_t middle = begin + (end - begin) / 2;
    const int order = this->key(value, middle).compare(key);
    if (order == 0) return &values_[value.first + 2 * middle + 1];
    (order < 0 ? begin : end) = order < 0 ? middle + 1 : middle;
  }
  return nullptr;
}

std::string JsonDocument::dump(const Value &value) const {
  struct Open {
    const Value *value;
    std::size_t numWritten;
  };
  std::string text;
  std::vector<Open> open; // Not the stack, for values may be nested deeply.
  const auto begin = [&](const Value &next) {
    if (next.kind == Kind::scalar) {
      text += next.scalar.dump();
    } else {
      text += next.kind == Kind::array ? '[' : '{';
      open.push_back({&next, 0});
    }
  };
  begin(value);
  while (!open.empty()) {
    const Value &outer = *open.back().value;
    const std::size_t i = open.back().numWritten++;
    if (i == outer.size) {
      text += outer.kind == Kind::array ? ']' : '}';
      open.pop_back();
      continue;
    }
    if (i > 0) text += ',';
    if (outer.kind == Kind::array) {
      begin(element(outer, i));
    } else {
      text += values_[outer.first + 2 * i].scalar.dump() + ":";
      begin(values_[outer.first + 2 * i + 1]);
    }
  }
  return text;
}

JsonDocument parseJson(std::string_view text, const std::string &name, std::uint64_t firstLine) {
  for (std::size_t start = 0, line = firstLine; start < text.size(); ++line) {
    const std::size_t feed = std::min(text.find('\n', start), text.size());
    checkUtf8(text.substr(start, feed - start), name + ":" + std::to_string(line));
    start = feed + 1;
  }
  std::size_t numRead = 0;
  JsonBuilder builder([&](const JsonScalar &key) {
    throw Trouble(placeOf(text, numRead, name, firstLine) + ": the key " + key.dump() +
                  " stands twice in one object; expected it once");
  });
  try {
    const char *end = text.data() + text.size();
    JsonScalar::sax_parse(CountingIterator{text.data(), &numRead}, CountingIterator{end, &numRead}, &builder);
    return builder.finish();
  } catch (const JsonScalar::parse_error &error) {
    throw Trouble(placeOf(text, error.byte, name, firstLine) + ": not JSON: " + plainReason(error));
  } catch (const JsonScalar::out_of_range &error) {
    throw Trouble(placeOf(text, numRead, name, firstLine) + ": not usable JSON: " + plainReason(error) +
                  "; expected numbers that a double can hold");
  }
}

std::string JsonNode::where() const { return place_ + ": " + (path_.empty() ? "/" : visible(path_)); }

void JsonNode::fail(const std::string &message) const { throw Trouble(where() + ": " + message); }

void JsonNode::failExpected(const std::string &expected) const {
  const char *type = isArray() ? "array" : isObject() ? "object" : scalar().type_name();
  std::string found = isArray() || isObject() ? type : scalar().dump();
  if (found.size() > 60) found = type;
  fail("found " + found + "; expected " + expected);
}

void JsonNode::requireObject(const std::string &what) const {
  if (!isObject()) failExpected(what);
}

void JsonNode::requireObject(std::initializer_list<std::string_view> keys) const {
  std::string known;
  for (const std::string_view key : keys) known += (known.empty() ? "\"" : ", \"") + std::string(key) + "\"";
  requireObject("an object with keys of " + known);
  for (const std::string &key : this->keys()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      attempt([&] { member(key).fail("unknown key; expected one of " + known); });
    }
  }
}

std::size_t JsonNode::requireArray(const std::string &what) const {
  if (!isArray()) failExpected(what);
  return value_.size;
}

std::vector<std::string> JsonNode::keys() const {
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < value_.size; ++i) keys.push_back(document_.key(value_, i));
  return keys;
}

JsonNode JsonNode::member(std::string_view key) const {
  JsonNode node(document_, *document_.find(value_, key), place_, faults_);
  node.path_ = path_ + "/";
  for (const char character : key) { // As RFC 6901 writes keys.
    if (character == '~') node.path_ += "~0";
    else if (character == '/') node.path_ += "~1";
    else node.path_ += character;
  }
  return node;
}

JsonNode JsonNode::element(std::size_t index) const {
  JsonNode node(document_, document_.element(value_, index), place_, faults_);
  node.path_ = path_ + "/" + std::to_string(index);
  return node;
}

const std::string &JsonNode::string(const std::string &what) const {
  if (!isString()) failExpected(what);
  return scalar().get_ref<const std::string &>();
}

bool JsonNode::boolean() const {
  if (!scalar().is_boolean()) failExpected("true or false");
  return scalar().get<bool>();
}

std::int32_t JsonNode::integer(std::int32_t least, std::int32_t greatest) const {
  const bool isInside =
      scalar().is_number_integer() &&
      (scalar().is_number_unsigned()
           ? scalar().get<std::uint64_t>() <= static_cast<std::uint64_t>(std::max(greatest, 0)) &&
                 static_cast<std::int64_t>(scalar().get<std::uint64_t>()) >= least
           : scalar().get<std::int64_t>() >= least && scalar().get<std::int64_t>() <= greatest);
  if (!isInside) {
    failExpected("a whole number from " + std::to_string(least) + " to " + std::to_string(greatest));
  }
  return scalar().get<std::int32_t>();
}

} // namespace qoc::program
