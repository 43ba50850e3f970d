#include "reference/lexicon.hpp"

#include "reference/alignment.hpp"
#include "reference/expansion.hpp"
#include "reference/ranking.hpp"

namespace reference {

namespace {

constexpr int32_t duplicateStatus = wrap(0x800013A7);
constexpr int32_t emptyStatus = wrap(0x800013A8);
constexpr int32_t absentStatus = wrap(0x800013A9);

/** Exchanges until no string is behind a longer one. */
void sortByLength(std::vector<Word> &strings) {
  for (size_t i = 0; i < strings.size(); ++i)
    for (size_t j = i + 1; j < strings.size(); ++j)
      if (strings[j].size() < strings[i].size()) std::swap(strings[i], strings[j]);
}

bool contains(const std::vector<Word> &strings, const Word &word) {
  for (const Word &string : strings)
    if (sameCodes(string, word)) return true;
  return false;
}

int32_t checkList(const std::vector<Word> &list) {
  for (const Word &word : list)
    if (word.empty()) return emptyStatus;
  for (size_t i = 0; i < list.size(); ++i)
    for (size_t j = i + 1; j < list.size(); ++j)
      if (sameCodes(list[i], list[j])) return duplicateStatus;
  return 0;
}

/** The index of the first word that is at least `length` long. */
int64_t firstIndex(const std::vector<Word> &strings, int64_t length) {
  int64_t index = 0;
  for (const Word &word : strings) {
    if (static_cast<int64_t>(word.size()) >= length) return index;
    ++index;
  }
  return index;
}

struct Range {
  int64_t first, end;
};

/** The words whose lengths are worth trying for an input of n positions. */
Range lengthRange(const std::vector<Word> &strings, int64_t n, const RunParams *params) {
  int64_t d = params ? params->maxEdits : 0;
  Range range{firstIndex(strings, n - d), firstIndex(strings, n + d + 1)};
  if (params && params->matchOption9 != 0) range.first = 0;
  return range;
}

/** Whether some word of the input's own length range matches. */
bool testWords(const std::vector<Word> &strings, const Reading &reading, const RunParams *params, const Swaps *swaps,
               Polls &polls) {
  Range range = lengthRange(strings, static_cast<int64_t>(reading.size()), params);
  for (int64_t k = range.first; k < range.end; ++k) {
    if (k % 128 == 0) polls.poll();
    if (isMatchMulti(strings[static_cast<size_t>(k)], reading, params, swaps, polls)) return true;
  }
  return false;
}

ResultSet matchWords(const std::vector<Word> &strings, const Reading &reading, const RunParams *params,
                     const Swaps *swaps, Polls &polls) {
  ResultSet out;
  RunParams copy{};
  if (params) copy = *params;
  const RunParams *working = params ? &copy : nullptr;
  Range range = lengthRange(strings, static_cast<int64_t>(reading.size()), params);
  for (int64_t k = range.first; k < range.end; ++k) {
    if (k % 128 == 0) polls.poll();
    if (params && params->returnBestOnly != 0 && copy.maxEdits == 1 && isExactBest(out)) copy.maxEdits = 0;
    ResultSet scratch = matchMulti(strings[static_cast<size_t>(k)], reading, working, swaps, polls);
    merge(out, scratch, params);
  }
  sortResults(out.results, params, true);
  return out;
}

/** Whether some word matches the reading or, where no windows are searched, a part of it. */
bool testReading(const std::vector<Word> &strings, const Reading &reading, const RunParams *params, const Swaps *swaps,
                 Polls &polls) {
  if (testWords(strings, reading, params, swaps, polls)) return true;
  if (params && params->matchOption9 != 0) return false;
  const int64_t shortest = params ? params->minStringLength : 1;
  const int64_t longest = params ? params->maxStringLength : 0x7FFFFFFF;
  const int64_t edits = params ? params->maxEdits : 0;
  const int32_t n = static_cast<int32_t>(reading.size());
  for (int32_t s = 0; s < n; ++s) {
    polls.poll();
    for (int32_t end = wrap(s + shortest - edits); end <= n; ++end) {
      if (aboveUnsigned(end, wrap(s + longest + 1 + edits))) break;
      if (end > s && testWords(strings, substrExtend(reading, s, end - s), params, swaps, polls)) return true;
    }
  }
  return false;
}

}  // namespace

int32_t Lexicon::setStrings(const std::vector<Word> &list) {
  int32_t status = checkList(list);
  if (status < 0) return status;
  strings = list;
  sortByLength(strings);
  return 0;
}

int32_t Lexicon::setStringsSafe(const std::vector<Word> &list) {
  std::vector<Word> kept;
  for (const Word &word : list)
    if (!word.empty() && !contains(kept, word)) kept.push_back(word);
  return setStrings(kept);
}

int32_t Lexicon::addString(const Word &word) {
  if (contains(strings, word)) return duplicateStatus;
  strings.push_back(word);
  sortByLength(strings);
  return 0;
}

int32_t Lexicon::removeString(const Word &word) {
  if (!contains(strings, word)) return absentStatus;
  std::vector<Word> kept;
  for (const Word &string : strings)
    if (!sameCodes(string, word)) kept.push_back(string);
  strings = kept;
  sortByLength(strings);
  return 0;
}

bool Lexicon::isMatchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) const {
  if (!hasMultiSwap(swaps)) return testReading(strings, reading, params, swaps, polls);
  for (const Variant &variant : expand(reading, *swaps, polls))
    if (testReading(strings, variant.reading, params, swaps, polls)) return true;
  return false;
}

ResultSet Lexicon::matchMulti(const Reading &reading, const RunParams *params, const Swaps *swaps, Polls &polls) const {
  ResultSet out;
  if (!hasMultiSwap(swaps)) {
    out = matchWords(strings, reading, params, swaps, polls);
  } else {
    RunParams working{};
    if (params) working = *params;
    bool isFirst = true;
    for (const Variant &variant : expand(reading, *swaps, polls)) {
      if (params && params->returnBestOnly != 0 && working.maxEdits == 1 && isExactBest(out)) working.maxEdits = 0;
      ResultSet scratch = matchWords(strings, variant.reading, params ? &working : nullptr, swaps, polls);
      setGiven(scratch, reading, variant.positions);
      if (isFirst)
        out = scratch;
      else
        merge(out, scratch, params);
      isFirst = false;
    }
  }
  out.isComputed = true;
  finalize(out, params);
  return out;
}

ResultSet Lexicon::matchStrings(const std::vector<Word> &inputs, const RunParams *params, const Swaps *swaps,
                                Polls &polls) const {
  ResultSet out;
  for (size_t i = 0; i < inputs.size(); ++i) {
    ResultSet scratch = matchMulti(toReading(inputs[i]), params, swaps, polls);
    for (Result &result : scratch.results) result.inputIndices = {static_cast<int32_t>(i)};
    merge(out, scratch, params);
  }
  out.isComputed = true;
  finalize(out, params);
  return out;
}

}  // namespace reference
