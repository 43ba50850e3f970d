#pragma once

/// @file JSON that people or programs wrote: parsing and checking, with messages that say where.

#include "trouble.hpp"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

/// A string, a number, true, false or null. Arrays and objects are never held so: destroying them takes memory, and
/// where that has run out, the process ends.
using JsonScalar = nlohmann::json;

/// A JSON document. Its values lie in one block, so that destroying it takes neither memory nor, however deeply it is
/// nested, much of the stack.
class JsonDocument {
public:
  enum class Kind : std::uint8_t { scalar, array, object };

  // NOLINTNEXTLINE(bugprone-exception-escape): moving a scalar is noexcept; clang-tidy 14 looks into its checks.
  struct Value {
    JsonScalar scalar; ///< Null where the value is an array or an object.
    Kind kind = Kind::scalar;
    std::size_t first = 0; ///< Where its elements begin in the block; an object's are each key and, behind it, its value.
    std::size_t size = 0;  ///< The number of its elements or keys.
  };

  const Value &root() const { return values_.back(); }
  const Value &element(const Value &array, std::size_t index) const { return values_[array.first + index]; }
  /// The keys of an object are in ascending order.
  const std::string &key(const Value &object, std::size_t index) const {
    return values_[object.first + 2 * index].scalar.get_ref<const std::string &>();
  }
  /// The value of a key; null where the value is no object or does not have it.
  const Value *find(const Value &value, std::string_view key) const;
  /// A value's text, without space.
  std::string dump(const Value &value) const;

private:
  friend class JsonBuilder;

  std::vector<Value> values_; ///< Every value behind its elements.
};

/// Parses one JSON value that spans the text. Keys that stand twice in an object are refused.
/// @param name what messages call the text: the file
/// @param firstLine the line at which the text starts, in messages; the text is one line of many where `isOneLine`
/// Throws Trouble "NAME:LINE:COLUMN: …", or "NAME:LINE: …" for invalid UTF-8.
JsonDocument parseJson(std::string_view text, const std::string &name, std::uint64_t firstLine = 1);

/// A value within a JSON document, and the way to it.
class JsonNode {
public:
  /// The document's outermost value.
  /// @param document outlives the node
  /// @param place what messages start with, such as the file's name
  /// @param faults takes the messages of faults that `attempt` meets; null: the first fault is thrown
  JsonNode(const JsonDocument &document, std::string place, std::vector<std::string> *faults = nullptr)
      : JsonNode(document, document.root(), std::move(place), faults) {}

  bool isArray() const { return value_.kind == JsonDocument::Kind::array; }
  bool isObject() const { return value_.kind == JsonDocument::Kind::object; }
  bool isNull() const { return value_.kind == JsonDocument::Kind::scalar && value_.scalar.is_null(); }
  bool isString() const { return value_.scalar.is_string(); }
  bool isNumber() const { return value_.scalar.is_number(); }
  /// The value; null where it is an array or an object.
  const JsonScalar &scalar() const { return value_.scalar; }
  /// The value's text, without space and with the keys of objects in ascending order.
  std::string dump() const { return document_.dump(value_); }
  /// What messages about this value start with: "FILE: /path".
  std::string where() const;

  /// Throws Trouble "FILE: /path: MESSAGE".
  [[noreturn]] void fail(const std::string &message) const;
  /// Throws Trouble that says what was expected instead of this value.
  [[noreturn]] void failExpected(const std::string &expected) const;

  /// Does a part of the reading that others do not depend on: where faults are collected, one in it does not keep the
  /// rest from being read.
  template <typename Part> void attempt(const Part &part) const {
    try {
      part();
    } catch (const Trouble &trouble) {
      if (faults_ == nullptr) throw;
      faults_->emplace_back(trouble.what());
    }
  }

  /// Requires an object that has no other keys than these.
  void requireObject(std::initializer_list<std::string_view> keys) const;
  /// Requires an object. @param what what was expected, for the message
  void requireObject(const std::string &what) const;
  /// Requires an array and gives its size. @param what what was expected, for the message
  std::size_t requireArray(const std::string &what) const;
  /// The keys of an object, in ascending order.
  std::vector<std::string> keys() const;
  bool has(std::string_view key) const { return document_.find(value_, key) != nullptr; }
  JsonNode member(std::string_view key) const;
  JsonNode element(std::size_t index) const;

  const std::string &string(const std::string &what) const;
  bool boolean() const;
  /// A whole number within the bounds, both included.
  std::int32_t integer(std::int32_t least, std::int32_t greatest) const;

private:
  JsonNode(const JsonDocument &document, const JsonDocument::Value &value, std::string place,
           std::vector<std::string> *faults)
      : document_(document), value_(value), place_(std::move(place)), faults_(faults) {}

  const JsonDocument &document_;
  const JsonDocument::Value &value_;
  std::string place_;
  std::string path_;
  std::vector<std::string> *faults_;
};

} // namespace qoc::program
