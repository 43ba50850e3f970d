#include "reference/regular_expression.hpp"

#include <functional>

#include "reference/alignment.hpp"
#include "reference/expansion.hpp"
#include "reference/ranking.hpp"

namespace reference {

namespace {

using Sequence = std::vector<TokenCodes>;

TokenCodes tokensOf(const Position &position, const Swaps *swaps) {
  if (position.empty()) return {emptyCode};
  TokenCodes tokens = {position[0].code};
  for (uint32_t code : equivalentsMulti(position, swaps)) tokens.push_back(code);
  return tokens;
}

enum class Edit { none, insertion, deletion, substitution };

/** Takes the ways of one sequence of a span, and says whether to go on. */
using OnWays = std::function<bool(Edit edit, int32_t place, const std::vector<MatchedWay> &ways)>;

/** Matches the span [s, e) as it is and with every edit. @return false when it was stopped */
bool matchSpan(const Pattern &pattern, const Reading &reading, int32_t s, int32_t e, const RunParams *params,
               const Swaps *swaps, const OnWays &onWays) {
  Sequence sequence;
  for (int32_t i = s; i < e; ++i) sequence.push_back(tokensOf(reading[static_cast<size_t>(i)], swaps));
  const int32_t length = e - s;
  if (satisfiesStringLength(params, length) && !onWays(Edit::none, 0, findWays(pattern, sequence))) return false;
  if (!params || params->maxEdits == 0) return true;
  if (params->matchOption2 != 0 && satisfiesStringLength(params, length + 1)) {
    for (int32_t j = 0; j <= length; ++j) {
      Sequence edited = sequence;
      edited.insert(edited.begin() + j, {anyCode});
      if (!onWays(Edit::insertion, j, findWays(pattern, edited))) return false;
    }
  }
  if (params->matchOption4 != 0 && satisfiesStringLength(params, length - 1)) {
    for (int32_t j = 0; j < length; ++j) {
      Sequence edited = sequence;
      edited.erase(edited.begin() + j);
      if (!onWays(Edit::deletion, j, findWays(pattern, edited))) return false;
    }
  }
  if (params->matchOption1 != 0 && satisfiesStringLength(params, length)) {
    for (int32_t j = 0; j < length; ++j) {
      Sequence edited = sequence;
      edited[static_cast<size_t>(j)] = {anyCode};
      if (!onWays(Edit::substitution, j, findWays(pattern, edited))) return false;
    }
  }
  return true;
}

/** Runs onSpan(s, e) for every span of the search, until it says stop. */
void searchSpans(const Reading &reading, const RunParams &params, Polls &polls,
                 const std::function<bool(int32_t, int32_t)> &onSpan) {
  const int32_t n = static_cast<int32_t>(reading.size());
  for (int32_t s = 0; s < n; ++s) {
    polls.poll();
    const int32_t bound = wrap(int64_t{s} + params.maxStringLength + 1 + params.maxEdits);
    for (int32_t e = wrap(int64_t{s} + params.minStringLength - params.maxEdits); e <= n; ++e) {
      if (aboveUnsigned(e, bound)) break;
      if (e > s && !onSpan(s, e)) return;
    }
  }
}

bool isReadingMatch(const Pattern &pattern, const Reading &reading, const RunParams *params, const Swaps *swaps,
                    Polls &polls) {
  polls.poll();
  bool isMatch = false;
  OnWays stopAtFirst = [&](Edit, int32_t, const std::vector<MatchedWay> &ways) {
    isMatch = !ways.empty();
    return !isMatch;
  };
  matchSpan(pattern, reading, 0, static_cast<int32_t>(reading.size()), params, swaps, stopAtFirst);
  if (isMatch || !params || params->matchOption9 == 0) return isMatch;
  searchSpans(reading, *params, polls, [&](int32_t s, int32_t e) {
    return matchSpan(pattern, reading, s, e, params, swaps, stopAtFirst);
  });
  return isMatch;
}

Result resultOf(const Reading &reading, int32_t s, int32_t e, Edit edit, int32_t place, const MatchedWay &way) {
  Result result;
  result.isComputed = true;
  result.mode = modeRegularExpression;
  result.given = reading;
  for (const MatchedPlace &matched : way) {
    Position valid;
    for (uint32_t code : matched.codes) valid.push_back({code, 0});
    result.valid.push_back(valid);
    result.resultStringStatus.push_back(matched.isPrimary ? primary : secondary);
  }
  if (edit == Edit::insertion) result.resultStringStatus[static_cast<size_t>(place)] = inserted;
  if (edit == Edit::substitution) result.resultStringStatus[static_cast<size_t>(place)] = substituted;
  if (edit == Edit::deletion) result.deleted.push_back(s + place);
  result.numEdits = edit == Edit::none ? 0 : 1;
  result.numIgnoredPrefixCharacters = s;
  result.numIgnoredSuffixCharacters = static_cast<int32_t>(reading.size()) - e;
  return result;
}

ResultSet matchReading(const Pattern &pattern, const Reading &reading, const RunParams *params, const Swaps *swaps,
                       Polls &polls) {
  ResultSet out;
  out.isComputed = true;
  Buckets buckets;
  size_t numWays = 0;
  const auto match = [&](int32_t s, int32_t e) {
    matchSpan(pattern, reading, s, e, params, swaps,
              [&](Edit edit, int32_t place, const std::vector<MatchedWay> &ways) {
                numWays += ways.size();
                if (numWays > 5000) throw TooManySteps();
                for (const MatchedWay &way : ways) addToBuckets(buckets, resultOf(reading, s, e, edit, place, way));
                return true;
              });
  };
  const auto isEnough = [&] {
    return params && params->returnBestOnly != 0 && params->maxEdits == 1 && hasResults(buckets);
  };
  match(0, static_cast<int32_t>(reading.size()));
  if (params && params->matchOption9 != 0 && !isEnough()) {
    searchSpans(reading, *params, polls, [&](int32_t s, int32_t e) {
      if (isEnough()) return false;
      match(s, e);
      return true;
    });
  }
  mergeBuckets(out, buckets, params);
  return out;
}

}  // namespace

bool RegularExpression::isMatchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                                     Polls &polls) const {
  if (!hasMultiSwap(swaps)) return isReadingMatch(pattern, reading, params, swaps, polls);
  for (const Variant &variant : expand(reading, *swaps, polls))
    if (isReadingMatch(pattern, variant.reading, params, swaps, polls)) return true;
  return false;
}

ResultSet RegularExpression::matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps,
                                        Polls &polls) const {
  ResultSet out;
  if (hasMultiSwap(swaps)) {
    bool isFirst = true;
    for (const Variant &variant : expand(reading, *swaps, polls)) {
      if (params && params->returnBestOnly != 0 && params->maxEdits == 1 && isExactBest(out)) break;
      ResultSet found = matchReading(pattern, variant.reading, params, swaps, polls);
      setGiven(found, reading, variant.positions);
      if (isFirst)
        out = found;
      else
        merge(out, found, params);
      isFirst = false;
    }
  } else {
    out = matchReading(pattern, reading, params, swaps, polls);
  }
  finalize(out, params);
  return out;
}

}  // namespace reference
