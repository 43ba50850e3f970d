#include "reference/ranking.hpp"

#include <algorithm>
#include <utility>

namespace reference {

namespace {

using Compare = int (*)(Result &a, Result &b);

int32_t countStatus(const Result &result, int32_t first, int32_t last) {
  int32_t count = 0;
  for (int32_t status : result.resultStringStatus)
    if (status >= first && status <= last) ++count;
  return count;
}

/** -1 where the smaller value comes first, 1 where the other way round, 0 on a tie. */
int smallerFirst(int64_t a, int64_t b) { return a < b ? -1 : a > b ? 1 : 0; }
int largerFirst(int64_t a, int64_t b) { return smallerFirst(b, a); }

void computeScore(Result &result) {
  if (result.scoreIsCached) return;
  result.score = 0;
  for (size_t i = 0; i < result.dictionaryString.size() && i < result.resultStringStatus.size(); ++i) {
    int32_t status = result.resultStringStatus[i];
    bool counts = false;
    if (result.scoreStatusMask == 3)
      counts = status == primary || status == primarySwap;
    else if (result.scoreStatusMask == 15)
      counts = status >= 1 && status <= 4;
    if (counts) result.score = wrap(int64_t{result.score} + result.dictionaryString[i].score);
  }
  result.scoreIsCached = true;
}

void computeNumInserted(Result &result) {
  if (result.numInsertedIsCached) return;
  result.numInserted = countStatus(result, inserted, inserted);
  result.numInsertedIsCached = true;
}

void computeNumMatchedPositions(Result &result) {
  if (result.numMatchedPositionsIsCached) return;
  result.numMatchedPositions = countStatus(result, 1, 7);
  result.numMatchedPositionsIsCached = true;
}

/** The answer where not both are computed: true, and the answer itself. */
bool decidedByComputed(const Result &a, const Result &b, int &answer) {
  if (a.isComputed && b.isComputed) return false;
  answer = a.isComputed ? -1 : 1;
  return true;
}

int compareDefault(Result &a, Result &b) {
  int answer = 0;
  if (decidedByComputed(a, b, answer)) return answer;
  if ((answer = smallerFirst(a.numEdits, b.numEdits)) != 0) return answer;
  if ((answer = smallerFirst(int64_t(a.deleted.size()), int64_t(b.deleted.size()))) != 0) return answer;
  if ((answer = largerFirst(countStatus(a, primary, primary), countStatus(b, primary, primary))) != 0) return answer;
  if ((answer = largerFirst(countStatus(a, secondary, secondary), countStatus(b, secondary, secondary))) != 0)
    return answer;
  return smallerFirst(a.orderIndex, b.orderIndex);
}

/** What the two scoring orders share from their third key on, with the line statuses to be compared. */
int compareScores(Result &a, Result &b, int32_t mask, int32_t lineStatusA, int32_t lineStatusB) {
  int answer = 0;
  a.scoreStatusMask = mask;
  b.scoreStatusMask = mask;
  if ((answer = smallerFirst(lineStatusA, lineStatusB)) != 0) return answer;
  computeNumMatchedPositions(a);
  computeNumMatchedPositions(b);
  // What is compared here are the two flags, both set by now.
  if ((answer = largerFirst(a.numMatchedPositionsIsCached, b.numMatchedPositionsIsCached)) != 0) return answer;
  computeScore(a);
  computeScore(b);
  if ((answer = largerFirst(a.score, b.score)) != 0) return answer;
  if ((answer = smallerFirst(int64_t(a.deleted.size()), int64_t(b.deleted.size()))) != 0) return answer;
  computeNumInserted(a);
  computeNumInserted(b);
  if ((answer = smallerFirst(a.numInserted, b.numInserted)) != 0) return answer;
  return smallerFirst(a.orderIndex, b.orderIndex);
}

int comparePrimaryRank(Result &a, Result &b) {
  int answer = 0;
  if (decidedByComputed(a, b, answer)) return answer;
  if ((answer = smallerFirst(a.numEdits, b.numEdits)) != 0) return answer;
  if ((answer = largerFirst(countStatus(a, primary, primary), countStatus(b, primary, primary))) != 0) return answer;
  return compareScores(a, b, 3, a.resultStringLineStatus, b.resultStringLineStatus);
}

int32_t withoutSecondary(int32_t lineStatus) {
  return lineStatus == secondary ? int32_t{primary} : lineStatus == secondarySwap ? int32_t{primarySwap} : lineStatus;
}

int comparePrimaryAndSecondary(Result &a, Result &b) {
  int answer = 0;
  if (decidedByComputed(a, b, answer)) return answer;
  if ((answer = smallerFirst(a.numEdits, b.numEdits)) != 0) return answer;
  int32_t readA = countStatus(a, primary, primary) + countStatus(a, secondary, secondary);
  int32_t readB = countStatus(b, primary, primary) + countStatus(b, secondary, secondary);
  if ((answer = largerFirst(readA, readB)) != 0) return answer;
  return compareScores(a, b, 15, withoutSecondary(a.resultStringLineStatus),
                       withoutSecondary(b.resultStringLineStatus));
}

/** The merge walk's order: negated, and with the orders paired the other way round than in ranking. */
int mergeOrder(Result &a, Result &b, const RunParams *params) {
  if (params && params->rankingMode == 1) return -compareDefault(a, b);
  return -comparePrimaryRank(a, b);
}

/** Takes the inserted positions out; the position that moves into a removed one's place is not looked at. */
void removeInserted(Result &result) {
  std::vector<int32_t> &statuses = result.resultStringStatus;
  for (size_t p = 0; p < statuses.size(); ++p) {
    if (statuses[p] != inserted) continue;
    for (size_t q = p; q + 1 < statuses.size(); ++q) statuses[q] = statuses[q + 1];
    // A shorter `valid` has nothing for the last positions, and so nothing that could be left behind there.
    if (p < result.valid.size()) result.valid.erase(result.valid.begin() + static_cast<std::ptrdiff_t>(p));
    statuses.resize(statuses.size() - 1);
    result.valid.resize(statuses.size());
  }
}

}  // namespace

bool isSameResult(const Result &a, const Result &b) {
  if (a.isComputed != b.isComputed) return false;
  if (!a.isComputed) return true;
  if (a.resultStringLineStatus != b.resultStringLineStatus) return false;
  if (a.numEdits != b.numEdits) return false;
  if (a.numIgnoredSuffixCharacters != b.numIgnoredSuffixCharacters) return false;
  if (a.numIgnoredPrefixCharacters != b.numIgnoredPrefixCharacters) return false;
  if (!sameCodes(a.given, b.given)) return false;
  if (!sameCodes(a.givenSwap, b.givenSwap)) return false;
  if (!sameCodes(a.valid, b.valid)) return false;
  if (a.resultStringStatus != b.resultStringStatus) return false;
  return a.deleted == b.deleted;
}

bool compareEqual(const Result &a, const Result &b) { return a.mode == b.mode && isSameResult(a, b); }

void sortResults(Results &results, const RunParams *params, bool descending) {
  if (results.size() < 2) return;
  for (size_t i = 0; i < results.size(); ++i) results[i].orderIndex = static_cast<int32_t>(i);
  Compare compare = compareDefault;
  if (params && params->rankingMode == 1)
    compare = params->rankingVariant == 3 ? comparePrimaryRank : comparePrimaryAndSecondary;
  for (size_t i = 1; i < results.size(); ++i)
    for (size_t k = i; k > 0; --k) {
      int order = compare(results[k - 1], results[k]);
      if (!descending) order = -order;
      if (order <= 0) break;
      std::swap(results[k - 1], results[k]);
    }
}

bool ranksBefore(Result &a, Result &b, int32_t rankingVariant) {
  return (rankingVariant == 3 ? comparePrimaryRank(a, b) : comparePrimaryAndSecondary(a, b)) < 0;
}

void addToBuckets(Buckets &buckets, const Result &result) {
  size_t k = static_cast<size_t>(result.numEdits);
  if (buckets.size() <= k) buckets.resize(k + 1);
  buckets[k].push_back(result);
  buckets[k].back().givenSwap = buckets[k].back().given;
}

void addToBuckets(Buckets &buckets, const Results &results) {
  for (const Result &result : results) addToBuckets(buckets, result);
}

bool hasResults(const Buckets &buckets) { return !buckets.empty() && !buckets[0].empty(); }

void merge(ResultSet &target, ResultSet &partial, const RunParams *params) {
  if (!partial.isComputed || partial.results.empty()) return;
  if (!target.isComputed) {
    target.results.clear();
    target.isComputed = true;
  }
  Results walked = std::move(target.results);
  const size_t before = walked.size();
  size_t i = 0;
  size_t j = 0;
  while (j < partial.results.size()) {
    int decision = 1;
    if (i < before) {
      if (isSameResult(walked[i], partial.results[j]))
        decision = 0;
      else
        decision = mergeOrder(walked[i], partial.results[j], params);
    }
    if (decision < 0) {
      ++i;
    } else if (decision == 0) {
      ++i;
      ++j;
    } else {
      walked.push_back(partial.results[j]);
      ++j;
    }
  }
  sortResults(walked, params, true);
  target.results.clear();
  for (Result &result : walked)
    if (target.results.empty() || !isSameResult(target.results.back(), result))
      target.results.push_back(std::move(result));
}

void mergeBuckets(ResultSet &target, const Buckets &buckets, const RunParams *params) {
  ResultSet partial;
  partial.isComputed = true;
  for (const Results &bucket : buckets) {
    partial.results = bucket;
    sortResults(partial.results, params, true);
    merge(target, partial, params);
  }
}

void setGiven(ResultSet &set, const Reading &given, const std::vector<int32_t> &inputIndices) {
  for (Result &result : set.results) {
    result.given = given;
    result.inputIndices = inputIndices;
  }
}

bool isExactBest(const ResultSet &set) { return !set.results.empty() && set.results[0].numEdits == 0; }

void finalize(ResultSet &set, const RunParams *params) {
  sortResults(set.results, params, true);
  if (!params) return;
  if (params->returnBestOnly != 0 && !set.results.empty()) set.results.resize(1);
  if (params->finalizeEachResult != 0)
    for (Result &result : set.results) removeInserted(result);
  for (Result &result : set.results) {
    result.resultStringLineStatus = 0;
    for (int32_t status : result.resultStringStatus)
      result.resultStringLineStatus = std::max(result.resultStringLineStatus, status);
    if (result.isComputed) result.statusWRTInputStringSwapChar = inputStatuses(result);
  }
}

std::vector<int32_t> inputStatuses(const Result &result) {
  const int32_t n = static_cast<int32_t>(result.given.size());
  std::vector<int32_t> out(result.given.size(), primary);
  auto write = [&](int64_t index, int32_t status) {
    if (index >= 0 && index < n) out[static_cast<size_t>(index)] = status;
  };
  for (int32_t i = 0; i < n; ++i)
    if (i < result.numIgnoredPrefixCharacters || i >= int64_t{n} - result.numIgnoredSuffixCharacters)
      write(i, deletedIgnored);
  for (int32_t d : result.deleted) {
    bool isSpace = false;
    if (d >= 0 && d < n) {
      const Position &position = result.given[static_cast<size_t>(d)];
      isSpace = position.size() == 1 && position[0].code == 32;
    }
    write(d, result.ignoreDeletedSpaces && isSpace ? deletedIgnored : deleted);
  }
  int64_t q = result.numIgnoredPrefixCharacters;
  for (size_t r = 0; r < result.resultStringStatus.size() && q < n; ++r) {
    while (q < n && q >= 0 && out[static_cast<size_t>(q)] >= deleted) ++q;
    int32_t status = result.resultStringStatus[r];
    if (status >= 1 && status <= 7) {
      write(q, status);
      ++q;
    }
  }
  return out;
}

}  // namespace reference
