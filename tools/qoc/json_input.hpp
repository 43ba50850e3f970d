#pragma once

/// @file JSON that people or programs wrote: parsing and checking, with messages that say where.

#include "trouble.hpp"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

using Json = nlohmann::json;

/// Parses one JSON value that spans the text. Keys that stand twice in an object are refused.
/// @param name what messages call the text: the file
/// @param firstLine the line at which the text starts, in messages; the text is one line of many where `isOneLine`
/// Throws Trouble "NAME:LINE:COLUMN: …", or "NAME:LINE: …" for invalid UTF-8.
Json parseJson(std::string_view text, const std::string &name, std::uint64_t firstLine = 1);

/// A value within a JSON document, and the way to it.
class JsonNode {
public:
  /// @param value outlives the node
  /// @param place what messages start with, such as the file's name
  /// @param faults takes the messages of faults that `attempt` meets; null: the first fault is thrown
  JsonNode(const Json &value, std::string place, std::vector<std::string> *faults = nullptr)
      : value_(value), place_(std::move(place)), faults_(faults) {}

  const Json &value() const { return value_; }
  /// What messages about this value start with: "FILE: /path".
  std::string where() const { return place_ + ": " + (path_.empty() ? "/" : path_); }

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
  bool has(std::string_view key) const { return value_.contains(key); }
  JsonNode member(std::string_view key) const;
  JsonNode element(std::size_t index) const;

  const std::string &string(const std::string &what) const;
  bool boolean() const;
  /// A whole number within the bounds, both included.
  std::int32_t integer(std::int32_t least, std::int32_t greatest) const;

private:
  const Json &value_;
  std::string place_;
  std::string path_;
  std::vector<std::string> *faults_;
};

} // namespace qoc::program
