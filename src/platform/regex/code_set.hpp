#pragma once
// A set of character codes: what one character position of an expression accepts.

#include <qoc/base.h>

#include <algorithm>
#include <vector>

namespace qoc {

class CodeSet {
 public:
  struct Range {
    Char32 first, last;
    bool operator==(const Range &) const = default;
  };

  CodeSet() = default;
  CodeSet(std::initializer_list<Range> ranges) : ranges_(ranges) { normalise(); }

  void add(Char32 first, Char32 last) { ranges_.push_back({first, last}); }
  void add(const CodeSet &other) { ranges_.insert(ranges_.end(), other.ranges_.begin(), other.ranges_.end()); }

  /// Brings the ranges into ascending order, with gaps between them. To be called when the last one has been added.
  void normalise() {
    std::sort(ranges_.begin(), ranges_.end(), [](Range a, Range b) { return a.first < b.first; });
    std::vector<Range> joined;
    for (const Range &range : ranges_) {
      if (!joined.empty() && (joined.back().last == lastCode || range.first <= joined.back().last + 1)) {
        joined.back().last = std::max(joined.back().last, range.last);
      } else {
        joined.push_back(range);
      }
    }
    ranges_ = std::move(joined);
  }

  /// All codes that are not in this normalised set.
  CodeSet complement() const {
    CodeSet others;
    Char32 next = 0;
    for (const Range &range : ranges_) {
      if (range.first > next) {
        others.add(next, range.first - 1);
      }
      if (range.last == lastCode) {
        return others;
      }
      next = range.last + 1;
    }
    others.add(next, lastCode);
    return others;
  }

  const std::vector<Range> &ranges() const noexcept { return ranges_; }

  bool contains(Char32 code) const noexcept {
    const auto behind = std::upper_bound(ranges_.begin(), ranges_.end(), code,
                                         [](Char32 c, const Range &range) { return c < range.first; });
    return behind != ranges_.begin() && code <= std::prev(behind)->last;
  }

  bool operator==(const CodeSet &) const = default;

 private:
  static constexpr Char32 lastCode = 0xFFFFFFFF;
  std::vector<Range> ranges_;
};

}  // namespace qoc
