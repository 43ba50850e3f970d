#include "reference/alignment.hpp"

#include <algorithm>
#include <functional>
#include <set>

#include "reference/ranking.hpp"

namespace reference {

namespace {

constexpr int32_t unreachable = 0x3FFFFFFF;

/** A table of (m + 1) by (n + 1) cells, reached as table(i, j). */
template <typename T>
class Table {
 public:
  Table(int32_t m, int32_t n, const T &fill)
      : width_(m + 1), cells_(static_cast<size_t>(m + 1) * static_cast<size_t>(n + 1), fill) {}
  T &operator()(int32_t i, int32_t j) {
    return cells_[static_cast<size_t>(i) + static_cast<size_t>(j) * static_cast<size_t>(width_)];
  }

 private:
  int32_t width_;
  std::vector<T> cells_;
};

/** Calls back for every window [start, end) of a search, polling once a start; ends where the callback says so. */
void searchWindows(int32_t n, int32_t m, const RunParams &params, Polls &polls,
                   const std::function<bool(int32_t start, int32_t end)> &window) {
  const int64_t e = params.maxEdits;
  for (int32_t start = 0; start < n; ++start) {
    polls.poll();
    for (int32_t end = wrap(int64_t{start} + params.minStringLength - e); end <= n; ++end) {
      if (aboveUnsigned(end, wrap(int64_t{start} + m + 1 + e))) break;
      if (aboveUnsigned(end, wrap(int64_t{start} + params.maxStringLength + 1 + e))) break;
      if (end > start && end >= wrap(int64_t{start} + m - e) && window(start, end)) return;
    }
  }
}

bool oneEditTest(const Word &a, const Reading &w, const RunParams &params, const Swaps *swaps) {
  const int32_t m = sizeOf(a);
  const int32_t k = sizeOf(w);
  int32_t p = 0;
  while (p < m && p < k && isMatchMulti(at(a, p), at(w, p), swaps)) ++p;
  int32_t s = 0;
  while (s < m && s < k && isMatchMulti(at(a, m - 1 - s), at(w, k - 1 - s), swaps)) ++s;
  if (m == k && params.matchOption1 != 0 && p + s + 1 >= m) return true;
  if (m == k + 1 && params.matchOption2 != 0 && p + s + 1 >= m) return true;
  return m == k - 1 && params.matchOption4 != 0 && p + s >= m;
}

bool testWindow(const Word &a, const Reading &reading, const RunParams *params, const Swaps *swaps, int32_t start,
                int32_t end) {
  const int32_t length = end - start;
  if (!satisfiesStringLength(params, length) && (!params || params->maxEdits == 0)) return false;
  const Reading w = substrExtend(reading, start, length);
  const int32_t m = sizeOf(a);
  const int32_t k = sizeOf(w);
  if (m == k) {
    bool all = true;
    for (int32_t i = 0; i < m; ++i) all = isMatchMulti(at(a, i), at(w, i), swaps) && all;
    if (all) return true;
  }
  if (!params || params->maxEdits == 0) return false;
  if (params->maxEdits == 1) return oneEditTest(a, w, *params, swaps);
  Table<int32_t> cost(m, k, unreachable);
  for (int32_t i = 0; i <= m; ++i) cost(i, 0) = i;
  for (int32_t j = 0; j <= k; ++j) cost(0, j) = j;
  for (int32_t j = 1; j <= k; ++j)
    for (int32_t i = 1; i <= m; ++i) {
      if (isMatchMulti(at(a, i - 1), at(w, j - 1), swaps)) {
        cost(i, j) = cost(i - 1, j - 1);
        continue;
      }
      int32_t deletion = params->matchOption2 != 0 ? cost(i - 1, j) + 1 : unreachable;
      int32_t insertion = params->matchOption4 != 0 ? cost(i, j - 1) + 1 : unreachable;
      int32_t substitution = params->matchOption1 != 0 ? cost(i - 1, j - 1) + 1 : unreachable;
      cost(i, j) = std::min(deletion, std::min(insertion, substitution));
    }
  return cost(m, k) <= params->maxEdits;
}

enum class Step { match, deletion, insertion, substitution };

/** Makes the destination cell's list the source cell's, each path extended by the step. */
void extendPaths(Results &destination, const Results &source, const Position &input, int32_t inputIndex,
                 const Character &dictionary, Step step) {
  destination.resize(source.size());
  for (size_t i = 0; i < source.size(); ++i) {
    Result &result = destination[i];
    result = source[i];
    if (step == Step::match) result.resultStringStatus.push_back(primary);
    if (step == Step::insertion) result.resultStringStatus.push_back(inserted);
    if (step == Step::substitution) result.resultStringStatus.push_back(substituted);
    if (step == Step::deletion)
      result.deleted.push_back(inputIndex);
    else
      result.given.push_back(input);
    if (step != Step::insertion) result.dictionaryString.push_back(dictionary);
    if (step != Step::match) ++result.numEdits;
  }
}

/** What the results of one window have in common. */
Result windowResult(int32_t prefix, int32_t suffix) {
  Result result;
  result.isComputed = true;
  result.mode = modeLexicon;
  result.numIgnoredPrefixCharacters = prefix;
  result.numIgnoredSuffixCharacters = suffix;
  return result;
}

/** The edit table of a window: files the paths of its last cell where they need no more edits than allowed. */
void alignEdits(const Word &a, const Reading &w, const RunParams &params, const Swaps *swaps, int32_t prefix,
                int32_t suffix, Buckets &buckets) {
  const int32_t m = sizeOf(a);
  const int32_t k = sizeOf(w);
  Table<int32_t> cost(m, k, unreachable);
  Table<Results> paths(m, k, Results());
  for (int32_t i = 0; i <= m; ++i) {
    Result result = windowResult(prefix, suffix);
    result.dictionaryString = substrExtend(a, 0, i);
    result.numEdits = i;
    cost(i, 0) = i;
    paths(i, 0) = {result};
  }
  for (int32_t j = 1; j <= k; ++j) {
    Result result = windowResult(prefix, suffix);
    result.dictionaryString = substrExtend(a, 0, j);
    result.resultStringStatus.assign(static_cast<size_t>(j), inserted);
    result.numEdits = j;
    cost(0, j) = j;
    paths(0, j) = {result};
  }
  for (int32_t j = 1; j <= k; ++j)
    for (int32_t i = 1; i <= m; ++i) {
      auto write = [&](int32_t fromI, int32_t fromJ, Step step) {
        extendPaths(paths(i, j), paths(fromI, fromJ), at(w, j - 1), j - 1, at(a, i - 1), step);
      };
      if (isMatchMulti(at(a, i - 1), at(w, j - 1), swaps)) {
        cost(i, j) = cost(i - 1, j - 1);
        write(i - 1, j - 1, Step::match);
        continue;
      }
      int32_t deletion = params.matchOption2 != 0 ? cost(i - 1, j) + 1 : unreachable;
      int32_t insertion = params.matchOption4 != 0 ? cost(i, j - 1) + 1 : unreachable;
      int32_t substitution = params.matchOption1 != 0 ? cost(i - 1, j - 1) + 1 : unreachable;
      int32_t least = std::min(deletion, std::min(insertion, substitution));
      cost(i, j) = least;
      if (deletion == least) write(i - 1, j, Step::deletion);
      if (insertion == least) write(i, j - 1, Step::insertion);
      if (substitution == least) write(i - 1, j - 1, Step::substitution);
    }
  if (cost(m, k) <= params.maxEdits) addToBuckets(buckets, paths(m, k));
}

/** Whether word and window are equally long and match at every position. */
bool isExact(const Word &a, const Reading &w, const Swaps *swaps) {
  if (a.size() != w.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (!isMatchMulti(a[i], w[i], swaps)) return false;
  return true;
}

Result exactResult(const Word &a, const Reading &w, const Reading &reading, int32_t prefix, int32_t suffix) {
  Result result = windowResult(prefix, suffix);
  result.given = reading;
  result.dictionaryString = a;
  for (size_t i = 0; i < a.size(); ++i)
    result.resultStringStatus.push_back(a[i].code == w[i][0].code ? primary : secondary);
  return result;
}

void alignPlainWindow(const Word &a, const Reading &input, const RunParams *params, const Swaps *swaps, int32_t start,
                      int32_t end, Buckets &buckets) {
  const int32_t suffix = sizeOf(input) - end;
  if (!satisfiesStringLength(params, end - start) && (!params || params->maxEdits == 0)) return;
  const Reading w = substrExtend(input, start, end - start);
  if (params && params->maxEdits != 0) alignEdits(a, w, *params, swaps, start, suffix, buckets);
  if (isExact(a, w, swaps)) addToBuckets(buckets, exactResult(a, w, input, start, suffix));
}

/** The alignments with exactly one edit, told from the matching ends of word and window. */
void buildOneEdit(const Word &a, const Reading &w, const Reading &reading, const RunParams &params, const Swaps *swaps,
                  int32_t start, int32_t suffix, Buckets &buckets) {
  const int32_t m = sizeOf(a);
  const int32_t k = sizeOf(w);
  std::vector<int32_t> front;
  for (int32_t i = 0; i < m && i < k; ++i) {
    int32_t status = matchStatus(at(a, i), at(w, i), swaps);
    if (status == noMatch) break;
    front.push_back(status);
  }
  std::vector<int32_t> back;
  for (int32_t i = 0; i < m && i < k; ++i) {
    int32_t status = matchStatus(at(a, m - 1 - i), at(w, k - 1 - i), swaps);
    if (status == noMatch) break;
    back.push_back(status);
  }
  const int32_t p = sizeOf(front);
  int32_t s = sizeOf(back);
  if (k == m + 1 && p + s >= m) s = m - p;
  if (k == m && p + s >= k - 1) s = k - 1 - p;
  if (k == m - 1 && p + s > k) s = k - p;
  if (s >= 0) {
    back.resize(static_cast<size_t>(s));
    std::reverse(back.begin(), back.end());
  }
  auto build = [&](const std::vector<int32_t> &middle, const std::vector<int32_t> &deletedIndices) {
    Result result = windowResult(start, suffix);
    result.given = reading;
    result.dictionaryString = a;
    result.numEdits = 1;
    result.resultStringStatus = front;
    result.resultStringStatus.insert(result.resultStringStatus.end(), middle.begin(), middle.end());
    result.resultStringStatus.insert(result.resultStringStatus.end(), back.begin(), back.end());
    result.deleted = deletedIndices;
    addToBuckets(buckets, result);
  };
  if (k == m && params.matchOption1 != 0 && p + s + 1 >= m) build({substituted}, {});
  if (m == k + 1 && params.matchOption2 != 0 && p + s + 1 >= m) build({inserted}, {});
  if (m == k - 1 && params.matchOption4 != 0 && p + s >= m) build({}, {start + p});
}

void alignMultiWindow(const Word &a, const Reading &reading, const RunParams *params, const Swaps *swaps, int32_t start,
                      int32_t end, Buckets &buckets) {
  const int32_t suffix = sizeOf(reading) - end;
  if (!satisfiesStringLength(params, end - start) && (!params || params->maxEdits == 0)) return;
  const Reading w = substrExtend(reading, start, end - start);
  if (isExact(a, w, swaps)) {
    addToBuckets(buckets, exactResult(a, w, reading, start, suffix));
    if (params && params->returnBestOnly != 0) return;
  }
  if (!params || params->maxEdits == 0) return;
  if (params->maxEdits == 1)
    buildOneEdit(a, w, reading, *params, swaps, start, suffix, buckets);
  else
    alignEdits(a, w, *params, swaps, start, suffix, buckets);
}

ResultSet finished(const Buckets &buckets, const RunParams *params) {
  ResultSet set;
  set.isComputed = true;
  mergeBuckets(set, buckets, params);
  finalize(set, params);
  return set;
}

}  // namespace

std::vector<uint32_t> equivalents(uint32_t code, const Swaps *swaps) {
  if (!swaps || swaps->groups.empty()) return {};
  std::set<uint32_t> reached{code};
  for (bool grows = true; grows;) {
    grows = false;
    for (const std::vector<uint32_t> &group : swaps->groups) {
      bool touches = std::any_of(group.begin(), group.end(), [&](uint32_t c) { return reached.count(c) > 0; });
      if (touches)
        for (uint32_t c : group) grows = reached.insert(c).second || grows;
    }
  }
  reached.erase(code);
  return std::vector<uint32_t>(reached.begin(), reached.end());
}

std::vector<uint32_t> equivalentsMulti(const Position &candidates, const Swaps *swaps) {
  if (candidates.empty()) return {};
  std::vector<uint32_t> out = equivalents(candidates[0].code, swaps);
  auto contains = [&](uint32_t code) { return std::find(out.begin(), out.end(), code) != out.end(); };
  for (size_t k = 1; k < candidates.size(); ++k) {
    if (!contains(candidates[k].code)) out.push_back(candidates[k].code);
    for (uint32_t code : equivalents(candidates[k].code, swaps))
      if (!contains(code) && code != candidates[0].code) out.push_back(code);
  }
  return out;
}

bool isMatch(const Character &a, const Character &b, const Swaps *swaps) {
  if (a.code == emptyCode || b.code == emptyCode) return false;
  if (a.code == b.code || a.code == anyCode || b.code == anyCode) return true;
  const std::vector<uint32_t> others = equivalents(a.code, swaps);
  return std::find(others.begin(), others.end(), b.code) != others.end();
}

bool isMatchMulti(const Character &a, const Position &candidates, const Swaps *swaps) {
  for (const Character &candidate : candidates)
    if (isMatch(candidate, a, swaps)) return true;
  return false;
}

int32_t matchStatus(const Character &a, const Position &candidates, const Swaps *swaps) {
  if (!isMatchMulti(a, candidates, swaps)) return noMatch;
  if (isMatch(a, candidates[0], nullptr)) return primary;
  if (isMatch(a, candidates[0], swaps)) return primarySwap;
  return isMatchMulti(a, candidates, nullptr) ? secondary : secondarySwap;
}

bool satisfiesStringLength(const RunParams *params, int32_t length) {
  return !params || (params->minStringLength <= length && length <= params->maxStringLength);
}

Reading toReading(const Word &string) {
  Reading reading;
  for (const Character &character : string) reading.push_back({character});
  return reading;
}

int32_t editDistance(const Word &first, const Word &second, const Swaps *swaps) {
  const int32_t m = sizeOf(first);
  const int32_t n = sizeOf(second);
  Table<int32_t> cost(m, n, unreachable);
  for (int32_t i = 0; i <= m; ++i) cost(i, 0) = i;
  for (int32_t j = 0; j <= n; ++j) cost(0, j) = j;
  for (int32_t j = 1; j <= n; ++j)
    for (int32_t i = 1; i <= m; ++i)
      if (isMatch(at(first, i - 1), at(second, j - 1), swaps))
        cost(i, j) = cost(i - 1, j - 1);
      else
        cost(i, j) = std::min({cost(i - 1, j) + 1, cost(i, j - 1) + 1, cost(i - 1, j - 1) + 1});
  return cost(m, n);
}

bool isMatchMulti(const Word &word, const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) {
  if (testWindow(word, reading, params, swaps, 0, sizeOf(reading))) return true;
  if (!params || params->matchOption9 == 0) return false;
  bool found = false;
  searchWindows(sizeOf(reading), sizeOf(word), *params, polls, [&](int32_t start, int32_t end) {
    found = testWindow(word, reading, params, swaps, start, end);
    return found;
  });
  return found;
}

bool isMatch(const Word &word, const Word &input, const RunParams *params, const Swaps *swaps, Polls &polls) {
  return isMatchMulti(word, toReading(input), params, swaps, polls);
}

ResultSet match(const Word &word, const Word &input, const RunParams *params, const Swaps *swaps, Polls &polls) {
  // A plain input is aligned as a reading with one candidate a position: a character's match is the same either way.
  const Reading reading = toReading(input);
  Buckets buckets;
  alignPlainWindow(word, reading, params, swaps, 0, sizeOf(reading), buckets);
  if (params && params->matchOption9 != 0)
    searchWindows(sizeOf(reading), sizeOf(word), *params, polls, [&](int32_t start, int32_t end) {
      alignPlainWindow(word, reading, params, swaps, start, end, buckets);
      return false;
    });
  return finished(buckets, params);
}

ResultSet matchMulti(const Word &word, const Reading &reading, const RunParams *params, const Swaps *swaps,
                     Polls &polls) {
  RunParams copy{};
  if (params) copy = *params;
  RunParams *own = params ? &copy : nullptr;
  Buckets buckets;
  auto stopEarly = [&]() {
    if (own && own->returnBestOnly != 0 && own->maxEdits == 1 && hasResults(buckets)) own->maxEdits = 0;
  };
  alignMultiWindow(word, reading, own, swaps, 0, sizeOf(reading), buckets);
  stopEarly();
  if (params && params->matchOption9 != 0)
    searchWindows(sizeOf(reading), sizeOf(word), *params, polls, [&](int32_t start, int32_t end) {
      stopEarly();
      alignMultiWindow(word, reading, own, swaps, start, end, buckets);
      return false;
    });
  return finished(buckets, params);
}

}  // namespace reference
