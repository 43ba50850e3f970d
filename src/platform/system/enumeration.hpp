#pragma once
// The texts that stand for the values of an enumeration.

#include <algorithm>
#include <cstdint>
#include <span>

namespace qoc {

struct EnumerationEntry {
  std::int32_t value;
  const char *text;
};

/// The text of a value; "" for a number that is none.
inline const char *textIn(std::span<const EnumerationEntry> entries, std::int32_t value) noexcept {
  const auto found = std::ranges::find(entries, value, &EnumerationEntry::value);
  return found != entries.end() ? found->text : "";
}

}  // namespace qoc
