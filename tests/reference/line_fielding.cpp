#include "reference/line_fielding.hpp"

#include <functional>
#include <optional>

#include "reference/alignment.hpp"
#include "reference/expansion.hpp"
#include "reference/ranking.hpp"

namespace reference {

namespace {

using Line = std::vector<PositionFielding>;

bool allowsEdits(const RunParams *params) { return params && params->maxEdits != 0; }

/** The one-range test in its yes/no form. */
bool testRange(const Line &line, const Reading &reading, const RunParams *params, const Swaps *swaps, int32_t start,
               int32_t end) {
  const int32_t length = end - start;
  const int32_t size = sizeOf(line);
  auto isAdmitted = [&](int32_t position, int32_t character) {
    return at(line, position).isMatchMulti(at(reading, start + character), swaps);
  };
  if (satisfiesStringLength(params, length) && length == size) {
    bool answer = true;
    for (int32_t i = 0; i < size && answer; ++i) answer = isAdmitted(i, i);
    if (answer) return true;
  }
  if (!allowsEdits(params)) return false;
  if (params->matchOption2 != 0 && satisfiesStringLength(params, length + 1) && length + 1 == size)
    for (int32_t k = 0; k < size; ++k) {
      bool answer = !at(line, k).isEmpty();
      for (int32_t d = 0; d < length; ++d) {
        answer = isAdmitted(d < k ? d : d + 1, d);
        if (!answer) break;
      }
      if (answer) return true;
    }
  if (params->matchOption4 != 0 && satisfiesStringLength(params, length - 1) && length - 1 == size)
    for (int32_t k = 0; k < size; ++k) {
      bool answer = true;
      for (int32_t d = 0; d < length && answer; ++d)
        if (d != k) answer = isAdmitted(d < k ? d : d - 1, d);
      if (answer) return true;
    }
  if (params->matchOption1 != 0 && satisfiesStringLength(params, length) && length == size)
    for (int32_t k = 0; k < size; ++k) {
      bool answer = true;
      for (int32_t i = 0; i < size && answer; ++i)
        if (i != k) answer = isAdmitted(i, i);
      if (answer) return true;
    }
  return false;
}

/** What a position has that was not compared: the listed characters, and deliberately not those of its classes. */
Position uncompared(const PositionFielding &fielding) {
  if (fielding.isAnyCharacter()) return {Character{anyCode, 0}};
  Position out;
  for (uint32_t code : fielding.listed) out.push_back({code, 0});
  return out;
}

/** The one-range test that files a result for every alignment. */
void buildRange(const Line &line, const Reading &reading, const RunParams *params, const Swaps *swaps, int32_t start,
                int32_t end, Buckets &buckets) {
  const int32_t length = end - start;
  const int32_t size = sizeOf(line);
  // For every position of the line the character of the range compared with it, or none.
  using Pairs = std::vector<std::optional<int32_t>>;
  auto build = [&](const Pairs &pairs, int32_t uncomparedStatus, int32_t numEdits,
                   const std::vector<int32_t> &deletedIndices) {
    std::vector<int32_t> statuses;
    for (int32_t i = 0; i < size; ++i) {
      int32_t status = uncomparedStatus;
      if (at(pairs, i) && !at(line, i).isMatchMultiStatus(at(reading, start + *at(pairs, i)), swaps, status))
        return false;
      statuses.push_back(status);
    }
    Result result;
    result.isComputed = true;
    result.mode = modeFielding;
    result.given = reading;
    result.resultStringStatus = statuses;
    for (int32_t i = 0; i < size; ++i)
      result.valid.push_back(at(pairs, i) ? at(line, i).matchMulti(at(reading, start + *at(pairs, i)), swaps)
                                          : uncompared(at(line, i)));
    result.numIgnoredPrefixCharacters = start;
    result.numIgnoredSuffixCharacters = sizeOf(reading) - end;
    result.numEdits = numEdits;
    result.overlapInputString = length;
    result.deleted = deletedIndices;
    addToBuckets(buckets, result);
    return true;
  };
  if (satisfiesStringLength(params, length) && length == size) {
    Pairs pairs;
    for (int32_t i = 0; i < size; ++i) pairs.push_back(i);
    if (build(pairs, 0, 0, {}) && params && params->returnBestOnly != 0) return;
  }
  if (!allowsEdits(params)) return;
  if (params->matchOption2 != 0 && satisfiesStringLength(params, length + 1) && length + 1 == size)
    for (int32_t k = 0; k < size; ++k) {
      if (at(line, k).isEmpty() && (k == 0 || length == 0)) continue;
      Pairs pairs;
      for (int32_t i = 0; i < size; ++i)
        pairs.push_back(i == k ? std::nullopt : std::optional<int32_t>(i < k ? i : i - 1));
      build(pairs, inserted, 1, {});
    }
  if (params->matchOption4 != 0 && satisfiesStringLength(params, length - 1) && length - 1 == size)
    for (int32_t k = 0; k < size; ++k) {
      Pairs pairs;
      for (int32_t i = 0; i < size; ++i) pairs.push_back(i < k ? i : i + 1);
      build(pairs, 0, 1, {start + k});
    }
  if (params->matchOption1 != 0 && satisfiesStringLength(params, length) && length == size)
    for (int32_t k = 0; k < size; ++k) {
      Pairs pairs;
      for (int32_t i = 0; i < size; ++i) pairs.push_back(i == k ? std::nullopt : std::optional<int32_t>(i));
      build(pairs, substituted, 1, {});
    }
}

/** Calls back for every range [start, end) of the search, polling once a start, until the callback says so. The
 * callback may change the parameters. */
void searchRanges(int32_t n, const RunParams &params, Polls &polls,
                  const std::function<bool(int32_t start, int32_t end)> &range) {
  for (int32_t start = 0; start < n; ++start) {
    polls.poll();
    for (int32_t end = wrap(int64_t{start} + params.minStringLength - params.maxEdits);
         end <= n && !aboveUnsigned(end, wrap(int64_t{start} + params.maxStringLength + 1 + params.maxEdits)); ++end)
      if (end > start && range(start, end)) return;
  }
}

bool testReading(const Line &line, const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) {
  polls.poll();
  if (testRange(line, reading, params, swaps, 0, sizeOf(reading))) return true;
  if (!params || params->matchOption9 == 0) return false;
  bool found = false;
  searchRanges(sizeOf(reading), *params, polls, [&](int32_t start, int32_t end) {
    found = testRange(line, reading, params, swaps, start, end);
    return found;
  });
  return found;
}

ResultSet matchReading(const Line &line, const Reading &reading, const RunParams *params, const Swaps *swaps,
                       Polls &polls) {
  RunParams working{};
  if (params) working = *params;
  ResultSet out;
  out.isComputed = true;
  Buckets buckets;
  buildRange(line, reading, params, swaps, 0, sizeOf(reading), buckets);
  if (params && params->matchOption9 != 0)
    searchRanges(sizeOf(reading), working, polls, [&](int32_t start, int32_t end) {
      if (working.returnBestOnly != 0 && working.maxEdits == 1 && hasResults(buckets)) working.maxEdits = 0;
      buildRange(line, reading, &working, swaps, start, end, buckets);
      return false;
    });
  mergeBuckets(out, buckets, params);
  return out;
}

}  // namespace

bool LineFielding::isMatchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                                Polls &polls) const {
  if (!hasMultiSwap(swaps)) return testReading(positions, reading, params, swaps, polls);
  for (const Variant &variant : expand(reading, *swaps, polls))
    if (testReading(positions, variant.reading, params, swaps, polls)) return true;
  return false;
}

ResultSet LineFielding::matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                                   Polls &polls) const {
  ResultSet out;
  if (!hasMultiSwap(swaps)) {
    out = matchReading(positions, reading, params, swaps, polls);
  } else {
    RunParams working{};
    if (params) working = *params;
    bool isFirst = true;
    for (const Variant &variant : expand(reading, *swaps, polls)) {
      if (params && params->returnBestOnly != 0 && params->maxEdits == 1 && isExactBest(out)) working.maxEdits = 0;
      ResultSet found = matchReading(positions, variant.reading, params ? &working : nullptr, swaps, polls);
      setGiven(found, reading, variant.positions);
      if (isFirst)
        out = found;
      else
        merge(out, found, params);
      isFirst = false;
    }
  }
  finalize(out, params);
  out.isComputed = true;
  return out;
}

}  // namespace reference
