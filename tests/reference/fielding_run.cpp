#include "reference/fielding_run.hpp"

#include <algorithm>

#include "reference/alignment.hpp"
#include "reference/ranking.hpp"

namespace reference {

namespace {

bool isEmptyCharacterOnly(const Position &position) { return position.size() == 1 && position[0].code == emptyCode; }

int32_t worst(const std::vector<int32_t> &statuses) {
  int32_t out = 0;
  for (int32_t status : statuses) out = std::max(out, status);
  return out;
}

Reading singleCandidates(const Word &word) {
  Reading reading;
  for (const Character &character : word) reading.push_back({character});
  return reading;
}

struct Best {
  Character character;
  int32_t status = noMatch;
};

Best bestCharacter(const PositionFielding &fielding, const Position &candidates, const Swaps *swaps, Polls &polls) {
  polls.poll();
  if (candidates.empty()) throw Failed{wrap(0x800013BE)};
  const Character &first = candidates[0];
  if (fielding.isMatch(first, nullptr)) return {first, primary};
  Word others;
  for (uint32_t code : equivalents(first.code, swaps)) {
    Character other{code, 0};
    for (size_t i = 1; i < candidates.size(); ++i)
      if (candidates[i].code == code) other.score = candidates[i].score;
    others.push_back(other);
  }
  std::sort(others.begin(), others.end(), [](const Character &a, const Character &b) {
    return a.score != b.score ? a.score > b.score : a.code < b.code;
  });
  for (const Character &other : others)
    if (fielding.isMatch(other, nullptr)) return {{other.code, first.score}, primarySwap};
  for (size_t i = 1; i < candidates.size(); ++i) {
    if (fielding.isMatch(candidates[i], nullptr)) return {candidates[i], secondary};
    for (uint32_t code : equivalents(candidates[i].code, swaps))
      if (fielding.isMatch({code, 0}, nullptr)) return {{code, candidates[i].score}, secondarySwap};
  }
  if (fielding.isSingleCharacter()) return {{fielding.singleCharacter(), 0}, substituted};
  if (fielding.allowsSpace()) return {{space, 0}, substitutedSpace};
  return {{emptyCode, 0}, noMatch};
}

/** What stands at a position outside the reading. */
Best outsideCharacter(const PositionFielding &fielding) {
  if (fielding.isSingleCharacter()) return {{fielding.singleCharacter(), 0}, inserted};
  return {{fielding.allowsSpace() ? space : emptyCode, 0}, inserted};
}

struct Run {
  const std::vector<PositionFielding> &line;
  const Swaps *swaps;
  const Reading &reading;
  const FieldingRunParams &params;
  Polls &polls;
  int32_t spanBegin, spanEnd;

  /** Positions [s, s + length) of the line with the first at offset o. */
  Result place(int32_t s, int32_t length, int32_t o) const {
    const int32_t n = sizeOf(reading);
    Result result;
    result.isComputed = true;
    result.mode = modeFielding;
    result.given = reading;
    result.givenSwap = reading;
    for (int32_t i = 0; i < length; ++i) {
      const PositionFielding &fielding = at(line, s + i);
      const int32_t r = o + i;
      Best best = r >= 0 && r < n ? bestCharacter(fielding, at(reading, r), swaps, polls) : outsideCharacter(fielding);
      result.resultStringStatus.push_back(best.status);
      result.dictionaryString.push_back(best.character);
      if (best.status >= substituted) ++result.numEdits;
    }
    result.valid = singleCandidates(result.dictionaryString);
    result.numIgnoredPrefixCharacters = std::max(o, 0);
    result.numIgnoredSuffixCharacters = std::max(n - (o + length), 0);
    result.numEdits += result.numIgnoredPrefixCharacters + result.numIgnoredSuffixCharacters;
    result.resultStringLineStatus = worst(result.resultStringStatus);
    result.scoreStatusMask = params.rankingVariant;
    result.startFieldIndex = s;
    result.overlapInputString = std::max(std::min(o + length, spanEnd) - std::max(o, spanBegin), 0);
    result.ignoreDeletedSpaces = params.fieldingOption7 != 0;
    result.statusWRTInputStringSwapChar = inputStatuses(result);
    return result;
  }

  Result sweep() const {
    const int32_t size = sizeOf(line);
    Result kept;
    for (int32_t o = 1 - size; o <= sizeOf(reading) - 1; ++o) {
      polls.poll();
      Result candidate = place(0, size, o);
      if (sizeOf(candidate.resultStringStatus) >= size && ranksBefore(candidate, kept, params.rankingVariant))
        kept = candidate;
    }
    return kept;
  }

  Result searchParts() const {
    const int32_t size = sizeOf(line);
    const int32_t n = sizeOf(reading);
    Result kept;
    int64_t bound = 0;
    for (int32_t s = 0; s <= params.limitA && s < size; ++s) {
      int32_t longest = std::min(size - s, params.maxStringLength);
      if (params.limitA == 0x7FFFFFFF && n >= params.minStringLength && int64_t{n} + s > params.limitB)
        longest = std::min(longest, n);
      const int64_t shortest = std::max(int64_t{params.minStringLength}, int64_t{params.limitB} + 1 - s);
      for (int32_t length = longest; length >= shortest && length >= bound; --length) {
        polls.poll();
        for (int32_t o = 1 - length; o <= n - 1; ++o) {
          polls.poll();
          const int32_t overlap = o >= 0 ? std::min(length, n - o) : std::min(length + o, n);
          if (overlap < bound) continue;
          Result candidate = place(s, length, o);
          const bool replaces = candidate.overlapInputString > kept.overlapInputString ||
                                (candidate.overlapInputString == kept.overlapInputString &&
                                 ranksBefore(candidate, kept, params.rankingVariant));
          if (!replaces) continue;
          kept = candidate;
          bound = 0;
          for (int32_t status : kept.resultStringStatus)
            if (status == primary || (status == secondary && params.rankingVariant == 15)) ++bound;
        }
      }
    }
    return kept;
  }
};

Result passThrough(const Reading &reading, const FieldingRunParams &params) {
  Result result;
  result.isComputed = true;
  result.mode = modeFielding;
  result.given = reading;
  result.givenSwap = reading;
  for (const Position &position : reading) {
    if (position.empty()) throw Failed{wrap(0x800013A0)};
    result.valid.push_back({position[0]});
    result.resultStringStatus.push_back(isEmptyCharacterOnly(position) ? int32_t{noMatch} : int32_t{primary});
  }
  result.statusWRTInputStringSwapChar = result.resultStringStatus;
  result.resultStringLineStatus = worst(result.resultStringStatus);
  result.scoreStatusMask = params.rankingVariant;
  return result;
}

bool hasEqualCodes(const Position &position) {
  for (size_t i = 0; i < position.size(); ++i)
    for (size_t j = i + 1; j < position.size(); ++j)
      if (position[i].code == position[j].code) return true;
  return false;
}

int32_t check(const std::vector<PositionFielding> &line, const Reading &reading, const FieldingRunParams &params) {
  for (const PositionFielding &fielding : line)
    if (fielding.isEmpty()) return wrap(0x800013AC);
  if (reading.empty()) return wrap(0x800013A8);
  for (const Position &position : reading)
    if (position.empty()) return wrap(0x800013BE);
  for (const Position &position : reading)
    if (hasEqualCodes(position)) return wrap(0x80001406);
  if (params.fieldingMode != 0) return 0;
  if (sizeOf(line) <= params.limitB) return wrap(0x80001441);
  return sizeOf(line) < params.minStringLength ? wrap(0x80001442) : 0;
}

}  // namespace

int32_t validate(const FieldingRunParams &params) {
  if (params.minStringLength < 1) return wrap(0x800013BA);
  if (params.minStringLength > params.maxStringLength) return wrap(0x800013B9);
  if (params.limitA < 0) return wrap(0x800013C0);
  if (params.limitB < 0) return wrap(0x800013C1);
  return params.rankingVariant == 3 || params.rankingVariant == 15 ? 0 : wrap(0x80001445);
}

ResultSet runFielding(const LineFielding &line, const Swaps *swaps, const Reading &reading,
                      const FieldingRunParams &params, Polls &polls) {
  ResultSet out;
  int32_t status = validate(params);
  if (status < 0) throw Failed{status};
  if (line.positions.empty()) {
    out.results = {passThrough(reading, params)};
  } else {
    status = check(line.positions, reading, params);
    if (status < 0) throw Failed{status};
    Run run{line.positions, swaps, reading, params, polls, 0, sizeOf(reading)};
    if (params.fieldingMode == 1) {
      out.results = {run.sweep()};
    } else {
      if (params.trimEmptyEnds != 0) {
        while (run.spanBegin < sizeOf(reading) && isEmptyCharacterOnly(at(reading, run.spanBegin))) ++run.spanBegin;
        while (run.spanEnd > 0 && isEmptyCharacterOnly(at(reading, run.spanEnd - 1))) --run.spanEnd;
      }
      out.results = {run.searchParts()};
    }
  }
  out.isComputed = true;
  return out;
}

}  // namespace reference
