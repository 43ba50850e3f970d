#pragma once
// Swap character sets, step by step and slow. The library is compared with this; it must never ship.

#include <algorithm>
#include <cstdint>
#include <vector>

namespace qoc::swap_reference {

using Code = std::uint32_t;
using Codes = std::vector<Code>;
using Groups = std::vector<Codes>;

inline constexpr Code emptyCode = 0xF800, anyCode = 0xF801;

enum class GroupFault { none, empty, single, reserved, duplicate };

struct Swap {
  Codes first, second;

  bool isSingle() const { return first.size() == 1 && second.size() == 1; }
  bool operator==(const Swap &) const = default;
};

struct OneToTwo {
  Code single, pairFirst, pairSecond;
};
struct TwoToTwo {
  Code fromFirst, fromSecond, toFirst, toSecond;
};

/// Whether the pair is refused as a swap: equal, or the shorter in the longer, but for its very end.
inline bool isSwapRefused(const Codes &a, const Codes &b) {
  if (a.size() == b.size()) {
    return a == b;
  }
  const Codes &longer = a.size() > b.size() ? a : b, &shorter = a.size() > b.size() ? b : a;
  for (std::size_t i = 0; i < longer.size() - shorter.size(); ++i) {
    if (Codes(longer.begin() + static_cast<std::ptrdiff_t>(i),
              longer.begin() + static_cast<std::ptrdiff_t>(i + shorter.size())) == shorter) {
      return true;
    }
  }
  return false;
}

class SwapSet {
 public:
  Groups groups;
  std::vector<Swap> swaps;
  std::vector<std::int32_t> indexes;
  Codes distinct;
  std::vector<std::vector<bool>> table;
  std::vector<bool> filter;
  std::vector<OneToTwo> oneToTwo;
  std::vector<TwoToTwo> twoToTwo;
  bool isEmpty = true;

  static GroupFault faultOf(const Groups &groups) {
    for (const Codes &group : groups) {
      if (group.empty()) return GroupFault::empty;
      if (group.size() == 1) return GroupFault::single;
      for (const Code code : group) {
        if ((code >= 0xF800 && code <= 0xF8FF) || (code >= 0xFF000 && code <= 0xFFFFD)) return GroupFault::reserved;
      }
      for (std::size_t i = 0; i < group.size(); ++i) {
        for (std::size_t j = i + 1; j < group.size(); ++j) {
          if (group[i] == group[j]) return GroupFault::duplicate;
        }
      }
    }
    return GroupFault::none;
  }

  GroupFault setEquiv(const Groups &newGroups) {
    if (const GroupFault fault = faultOf(newGroups); fault != GroupFault::none) return fault;
    *this = SwapSet();
    groups = newGroups;
    for (const Codes &group : groups) {
      for (const Code code : group) {
        if (std::find(distinct.begin(), distinct.end(), code) == distinct.end()) distinct.push_back(code);
      }
    }
    std::sort(distinct.begin(), distinct.end());
    indexes.assign(distinct.empty() ? 0 : distinct.back() + 1, -1);
    for (std::size_t k = 0; k < distinct.size(); ++k) indexes[distinct[k]] = static_cast<std::int32_t>(k);
    makeTable();
    filter.assign(997, false);
    for (const Codes &group : groups) {
      isEmpty = isEmpty && group.empty();
      for (std::size_t a = 0; a < group.size(); ++a) {
        for (std::size_t b = 0; b < group.size(); ++b) {
          if (a != b) filter[slot(group[a], group[b])] = true;
        }
      }
    }
    return GroupFault::none;
  }

  GroupFault setSwaps(const std::vector<Swap> &newSwaps) {
    const Groups merged = mergedGroups(newSwaps);
    if (const GroupFault fault = setEquiv(merged); fault != GroupFault::none) return fault;
    for (const Swap &swap : newSwaps) {
      if (swap.isSingle()) continue;
      swaps.push_back(swap);
      const Codes &f = swap.first, &s = swap.second;
      if (f.size() == 1 && s.size() == 2) oneToTwo.push_back({f[0], s[0], s[1]});
      if (f.size() == 2 && s.size() == 1) oneToTwo.push_back({s[0], f[0], f[1]});
      if (f.size() == 2 && s.size() == 2) twoToTwo.push_back({f[0], f[1], s[0], s[1]});
    }
    return GroupFault::none;
  }

  static std::size_t slot(Code a, Code b) {
    return static_cast<std::size_t>((std::uint64_t{Code(a * 61u)} + std::uint64_t{Code(b * 251u)}) % 997);
  }

  bool contains(Code code) const { return code < indexes.size() && indexes[code] != -1; }

  Codes equivalents(Code code) const {
    Codes result;
    if (!contains(code)) return result;
    for (std::size_t j = 0; j < distinct.size(); ++j) {
      const auto i = static_cast<std::size_t>(indexes[code]);
      if (j != i && table[i][j]) result.push_back(distinct[j]);
    }
    return result;
  }

  Codes group(Code code) const {
    Codes result = equivalents(code);
    if (!result.empty()) result.push_back(code);
    return result;
  }

  Codes equivalentsMulti(const Codes &candidates) const {
    Codes result;
    if (candidates.empty()) return result;
    result = equivalents(candidates[0]);
    const auto isIn = [&](Code code) { return std::find(result.begin(), result.end(), code) != result.end(); };
    for (std::size_t k = 1; k < candidates.size(); ++k) {
      if (!isIn(candidates[k])) result.push_back(candidates[k]);
      for (const Code e : equivalents(candidates[k])) {
        if (!isIn(e) && e != candidates[0]) result.push_back(e);
      }
    }
    return result;
  }

  bool isMatch(Code a, Code b) const {
    if (filter.empty() || !filter[slot(a, b)]) return false;
    if (indexes.empty() || a == emptyCode || b == emptyCode || !contains(a) || !contains(b)) return false;
    const Codes all = equivalents(a);
    return std::find(all.begin(), all.end(), b) != all.end();
  }

  bool isMatchChar(Code a, Code b) const {
    if (a == emptyCode || b == emptyCode) return false;
    if (a == b || a == anyCode || b == anyCode) return true;
    return contains(a) && contains(b) &&
           table[static_cast<std::size_t>(indexes[a])][static_cast<std::size_t>(indexes[b])];
  }

 private:
  void makeTable() {
    const std::size_t numCharacters = distinct.size();
    table.assign(numCharacters, std::vector<bool>(numCharacters, false));
    for (std::size_t i = 0; i < numCharacters; ++i) table[i][i] = true;
    for (const Codes &group : groups) {
      for (const Code p : group) {
        for (const Code q : group) {
          table[static_cast<std::size_t>(indexes[p])][static_cast<std::size_t>(indexes[q])] = true;
          table[static_cast<std::size_t>(indexes[q])][static_cast<std::size_t>(indexes[p])] = true;
        }
      }
    }
    for (bool isChanged = true; isChanged;) {
      isChanged = false;
      for (std::size_t i = 0; i < numCharacters; ++i) {
        for (std::size_t k = 0; k < numCharacters; ++k) {
          for (std::size_t j = 0; j < numCharacters; ++j) {
            if (table[i][k] && table[k][j] && !table[i][j]) {
              table[i][j] = true;
              isChanged = true;
            }
          }
        }
      }
    }
  }

  static Groups mergedGroups(const std::vector<Swap> &newSwaps) {
    Groups merged;
    const auto collect = [&](Code code) {
      for (const Codes &group : merged) {
        if (group[0] == code) return;
      }
      merged.push_back({code});
    };
    for (const Swap &swap : newSwaps) {
      if (swap.isSingle()) {
        collect(swap.first[0]);
        collect(swap.second[0]);
      }
    }
    for (const Swap &swap : newSwaps) {
      if (!swap.isSingle()) continue;
      std::size_t gx = 0, gy = 0;
      for (std::size_t g = 0; g < merged.size(); ++g) {
        for (const Code code : merged[g]) {
          if (code == swap.first[0]) gx = g;
          if (code == swap.second[0]) gy = g;
        }
      }
      if (gx == gy) continue;
      const Codes moved = merged[gx];
      merged[gy].insert(merged[gy].end(), moved.begin(), moved.end());
      if (gx != merged.size() - 1) {
        merged[gx] = merged.back();
        merged.pop_back();
      }
    }
    return merged;
  }
};

}  // namespace qoc::swap_reference
