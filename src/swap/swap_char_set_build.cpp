// Swap character sets: from groups of interchangeable characters to the tables that queries read.
//
// Characters that stand in one group are equivalent, and groups that share a character merge into one class. The
// classes are found by joining the members of every group (union-find: Tarjan 1975, with path halving) instead of
// closing the table transitively; the table that results is the same. With K distinct characters it has K rows of K
// bytes; the row of a class is made once and copied for each of its members. {0 O} and {O D} over the sorted characters
// 0 D O give the chain 0 - O - D, so all three rows are [1 1 1].
//
// The pair filter looks at the groups alone: {0 O} and {O D} put the pairs of 0 with O and of O with D in it, and not 0
// with D.
//
// Cost: O(K^2 + L + C), with L the largest code and C the number of codes in all groups; see enterPairs for the
// filter's part.

#include <qoc/swap_char_set.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>
#include <vector>

#include "frame/frame.hpp"
#include "platform/system/shortcuts.hpp"
#include "platform/system/work_meter.hpp"
#include "swap/pair_filter.hpp"
#include "text/views.hpp"

using qoc::editAs;
using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::viewAs;
using qoc::WorkMeter;

namespace {

using Codes = std::span<const Char32>;

/// Up to this many codes the lists of equivalents take together; the classes beyond are read off the table when asked
/// for. It bounds the cache to 16 MB, where a single class of ten thousand characters alone would take 400 MB.
constexpr std::int64_t maxCachedCodes = std::int64_t{1} << 22;

/// Up to this many characters, comparing each with each is faster than sorting a copy.
constexpr std::size_t maxComparedPairwise = 64;

std::span<const qstd_vectorChar32> groupsOf(const qstd_vector_vectorChar32 &groups) {
  return viewAs<qstd_vectorChar32>(groups);
}

bool isReserved(Char32 code) { return (code >= 0xF800u && code <= 0xF8FFu) || (code >= 0xFF000u && code <= 0xFFFFDu); }

bool hasDuplicate(Codes codes, WorkMeter &meter) {
  if (codes.size() <= maxComparedPairwise) {
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const auto end = codes.begin() + static_cast<std::ptrdiff_t>(i);
      if (std::find(codes.begin(), end, codes[i]) != end) {
        return true;
      }
    }
    return false;
  }
  std::vector<Char32> sorted(codes.begin(), codes.end());
  std::ranges::sort(sorted, [&meter](Char32 a, Char32 b) {
    meter.spend(1);
    return a < b;
  });
  return std::ranges::adjacent_find(sorted) != sorted.end();
}

/// Throws Interrupted, as all that follows does, when the meter's check says so.
qsys_status validate(const qstd_vector_vectorChar32 &groups, WorkMeter &meter) {
  for (const qstd_vectorChar32 &group : groupsOf(groups)) {
    const Codes codes = viewAs<Char32>(group);
    meter.spend(8 + codes.size());
    if (codes.empty()) {
      return QOC_STATUS_GROUP_EMPTY;
    }
    if (codes.size() == 1) {
      return QOC_STATUS_GROUP_SINGLE;
    }
    if (std::any_of(codes.begin(), codes.end(), isReserved)) {
      return QOC_STATUS_GROUP_RESERVED;
    }
    if (hasDuplicate(codes, meter)) {
      return QOC_STATUS_GROUP_DUPLICATE;
    }
  }
  return QSYS_STATUS_OK;
}

/// Up to this many entries of a table or codes of a group are gone through at once.
constexpr std::int32_t entriesPerPart = 1 << 18;

/// Makes the table from code to index, with 0 where a code stands in a group and -1 elsewhere; empty without groups.
qsys_status markCodes(const qstd_vector_vectorChar32 &groups, qstd_vector32s *table, WorkMeter &meter) {
  std::int64_t size = 0;
  for (const qstd_vectorChar32 &group : groupsOf(groups)) {
    meter.spend(8 + viewAs<Char32>(group).size());
    for (const Char32 code : viewAs<Char32>(group)) {
      size = std::max(size, std::int64_t{code} + 1);
    }
  }
  if (size > INT32_MAX) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  const std::int32_t absent = -1;
  QOC_TRY(qstd_vector32s_reserve(table, static_cast<std::int32_t>(size)));
  while (table->core.size < size) {
    meter.spend(entriesPerPart);
    const std::int64_t end = std::min(size, std::int64_t{table->core.size} + entriesPerPart);
    qstd_vector32s_resizeFill(table, static_cast<std::int32_t>(end), &absent);  // There is room for all of them.
  }
  const std::span<std::int32_t> indexOf = editAs<std::int32_t>(*table);
  for (const qstd_vectorChar32 &group : groupsOf(groups)) {
    for (const Char32 code : viewAs<Char32>(group)) {
      indexOf[code] = 0;
    }
  }
  return QSYS_STATUS_OK;
}

/// Numbers the marked codes in ascending order, and lists them.
qsys_status numberCodes(qstd_vector32s *table, qstd_vectorChar32 *distinctCharacters, WorkMeter &meter) {
  const std::span<std::int32_t> indexOf = editAs<std::int32_t>(*table);
  std::ptrdiff_t numDistinct = 0;
  for (std::size_t first = 0; first < indexOf.size(); first += entriesPerPart) {
    meter.spend(entriesPerPart / 4);
    const auto part = indexOf.subspan(first, std::min<std::size_t>(entriesPerPart, indexOf.size() - first));
    numDistinct += std::count(part.begin(), part.end(), 0);
  }
  QOC_TRY(qstd_vectorChar32_resize(distinctCharacters, static_cast<std::int32_t>(numDistinct)));
  const std::span<Char32> codes = editAs<Char32>(*distinctCharacters);
  std::size_t numFound = 0;
  for (std::size_t code = 0; code < indexOf.size(); ++code) {
    if (code % entriesPerPart == 0) {
      meter.spend(entriesPerPart / 2);
    }
    if (indexOf[code] == 0) {
      indexOf[code] = static_cast<std::int32_t>(numFound);
      codes[numFound++] = static_cast<Char32>(code);
    }
  }
  return QSYS_STATUS_OK;
}

/// The classes of equivalent characters, by index.
class Classes {
 public:
  explicit Classes(std::size_t numCharacters) : parents_(numCharacters) {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }

  void join(std::size_t a, std::size_t b) { parents_[rootOf(a)] = rootOf(b); }

  /// The members of every class, ascending; the classes are in no particular order.
  std::vector<std::vector<std::size_t>> members(WorkMeter &meter) {
    std::vector<std::size_t> classOfRoot(parents_.size(), parents_.size());
    std::vector<std::vector<std::size_t>> classes;
    for (std::size_t i = 0; i < parents_.size(); ++i) {
      meter.spend(8);
      std::size_t &index = classOfRoot[rootOf(i)];
      if (index == parents_.size()) {
        index = classes.size();
        classes.emplace_back();
      }
      classes[index].push_back(i);
    }
    return classes;
  }

 private:
  std::size_t rootOf(std::size_t i) {
    while (parents_[i] != i) {
      parents_[i] = parents_[parents_[i]];
      i = parents_[i];
    }
    return i;
  }

  std::vector<std::size_t> parents_;
};

std::vector<std::vector<std::size_t>> findClasses(const qoc_swapCharSet &set, WorkMeter &meter) {
  const auto indexOf = viewAs<std::int32_t>(set.swapCharCodeToIndexLUT);
  Classes classes(static_cast<std::size_t>(set.distinctCharacters.core.size));
  for (const qstd_vectorChar32 &group : groupsOf(set.groups)) {
    const Codes codes = viewAs<Char32>(group);
    for (const Char32 code : codes) {
      meter.spend(8);
      classes.join(static_cast<std::size_t>(indexOf[code]), static_cast<std::size_t>(indexOf[codes.front()]));
    }
  }
  return classes.members(meter);
}

qsys_status fillEquivalenceTable(qoc_swapCharSet *set, const std::vector<std::vector<std::size_t>> &classes,
                                 WorkMeter &meter) {
  const std::int32_t numCharacters = set->distinctCharacters.core.size;
  QOC_TRY(qstd_vector_vectorb_resize(&set->swapCharEquivalenceTable, numCharacters));
  const auto rows = editAs<qstd_vectorb>(set->swapCharEquivalenceTable);
  for (const std::vector<std::size_t> &members : classes) {
    qstd_vectorb &row = rows[members.front()];
    QOC_TRY(qstd_vectorb_resize(&row, numCharacters));
    const std::span<std::uint8_t> isEquivalent = editAs<std::uint8_t>(row);
    for (const std::size_t member : members) {
      isEquivalent[member] = 1;
    }
    for (const std::size_t member : members) {
      meter.spend(16 + static_cast<std::size_t>(numCharacters) / 8);
      QOC_TRY(qstd_vectorb_assign(&rows[member], &row));
    }
  }
  return QSYS_STATUS_OK;
}

/// Fills the cache of equivalents at once, so that queries need not write it: class by class, while there is room.
qsys_status fillEquivalentsCache(qoc_swapCharSet *set, const std::vector<std::vector<std::size_t>> &classes,
                                 WorkMeter &meter) {
  const std::int32_t numCharacters = set->distinctCharacters.core.size;
  QOC_TRY(qstd_vector_vectorChar32_resize(&set->equivalentsCacheLists, numCharacters));
  QOC_TRY(qstd_vectorb_resize(&set->equivalentsCacheFlags, numCharacters));
  const Codes codes = viewAs<Char32>(set->distinctCharacters);
  const auto lists = editAs<qstd_vectorChar32>(set->equivalentsCacheLists);
  const auto isCached = editAs<std::uint8_t>(set->equivalentsCacheFlags);
  std::int64_t numCached = 0;
  for (const std::vector<std::size_t> &members : classes) {
    const auto listSize = static_cast<std::int64_t>(members.size()) - 1;
    const std::int64_t numAdded = listSize * static_cast<std::int64_t>(members.size());
    if (numCached + numAdded > maxCachedCodes || !qoc::shortcuts().usesEquivalentsCache) {
      continue;
    }
    numCached += numAdded;
    for (const std::size_t member : members) {
      meter.spend(16 + members.size());
      QOC_TRY(qstd_vectorChar32_resize(&lists[member], static_cast<std::int32_t>(listSize)));
      const std::span<Char32> list = editAs<Char32>(lists[member]);
      std::size_t numListed = 0;
      for (const std::size_t other : members) {
        if (other != member) {
          list[numListed++] = codes[other];
        }
      }
      isCached[member] = 1;
    }
  }
  return QSYS_STATUS_OK;
}

/// The members of one group by their share of a slot: for each share that occurs, how often, and where first.
class Shares {
 public:
  struct Share {
    std::uint32_t value;
    std::int32_t count;
    std::size_t first;
  };

  void add(std::uint32_t value, std::size_t position) {
    std::int32_t &index = indexes_[value];
    if (index == 0) {
      shares_.push_back({value, 0, position});
      index = static_cast<std::int32_t>(shares_.size());
    }
    ++shares_[static_cast<std::size_t>(index - 1)].count;
  }
  const std::vector<Share> &all() const { return shares_; }

 private:
  std::array<std::int32_t, qoc::pairFilterSize> indexes_{};  // 1 + the index in shares_, or 0.
  std::vector<Share> shares_;
};

/// Enters the ordered pairs of a group's distinct positions. A slot is the sum of a share of the first code and one of
/// the second, and there are 997 shares, so at most 997 x 997 sums are looked at, however large the group is. Two
/// shares make a pair unless each has one member and that is the same one.
void enterPairs(Codes codes, std::span<std::uint8_t> filter, WorkMeter &meter) {
  Shares firsts, seconds;
  meter.spend(qoc::pairFilterSize + 4 * codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    firsts.add(qoc::firstShareOf(codes[i]), i);
    seconds.add(qoc::secondShareOf(codes[i]), i);
  }
  for (const Shares::Share &a : firsts.all()) {
    meter.spend(seconds.all().size());
    for (const Shares::Share &b : seconds.all()) {
      if (a.count > 1 || b.count > 1 || a.first != b.first) {
        filter[qoc::slotOfShares(a.value, b.value)] = 1;
      }
    }
  }
}

qsys_status fillPairFilter(qoc_swapCharSet *set, WorkMeter &meter) {
  set->isEmpty = 1;
  QOC_TRY(qstd_vectorb_resize(&set->pairFilter, qoc::pairFilterSize));
  for (const qstd_vectorChar32 &group : groupsOf(set->groups)) {
    set->isEmpty = 0;  // A valid group has members.
    enterPairs(viewAs<Char32>(group), editAs<std::uint8_t>(set->pairFilter), meter);
  }
  return qstd_vectorb_getBeginConst(&set->pairFilter, &set->pairFilterData);
}

/// Builds everything from valid groups, which may be the set's own. On failure the set is partly built.
qsys_status build(qoc_swapCharSet *set, const qstd_vector_vectorChar32 &groups, WorkMeter &meter) {
  qstd_vector32s table;
  qstd_vector_vectorChar32 copy;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    // The table of codes comes first: it is what cannot be made when a code is very large.
    frame.emptyLocal<qstd_vector32s_constructEmpty, qstd_vector32s_destruct>(&table);
    QOC_TRY(markCodes(groups, &table, meter));
    QOC_TRY(qstd_vector_vectorChar32_constructCopy(&copy, &groups));
    frame.local<qstd_vector_vectorChar32_destruct>(&copy);

    qoc_swapCharSet_reset(set);
    std::swap(set->swapCharCodeToIndexLUT, table);
    std::swap(set->groups, copy);
    QOC_TRY(numberCodes(&set->swapCharCodeToIndexLUT, &set->distinctCharacters, meter));
    const std::vector<std::vector<std::size_t>> classes = findClasses(*set, meter);
    QOC_TRY(fillEquivalenceTable(set, classes, meter));
    QOC_TRY(fillEquivalentsCache(set, classes, meter));
    return fillPairFilter(set, meter);
  });
}

/// Constructs the set and sets its groups; a set that could not be set is destroyed again.
template <auto SetEquiv, class Groups>
qsys_status constructThenSet(qoc_swapCharSet *set, const Groups *groups, int line = __builtin_LINE()) {
  if (!present({set, groups}, line)) {
    return QSYS_STATUS_OK;
  }
  return qoc::constructThen<qoc_swapCharSet_construct, qoc_swapCharSet_destruct>(set,
                                                                                 [&] { return SetEquiv(set, groups); });
}

/// Sets groups given as sequences of something else than codes; codeOf makes the code of one element.
template <class Element, class Sequence, class Groups, class CodeOf>
qsys_status setEquivAs(qoc_swapCharSet *set, const Groups &groups, CodeOf codeOf) {
  qstd_vector_vectorChar32 codes;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    const std::span<const Sequence> sequences = viewAs<Sequence>(groups);
    QOC_TRY(qstd_vector_vectorChar32_construct(&codes, static_cast<std::int32_t>(sequences.size())));
    frame.template local<qstd_vector_vectorChar32_destruct>(&codes);
    for (std::size_t i = 0; i < sequences.size(); ++i) {
      const std::span<const Element> elements = viewAs<Element>(sequences[i]);
      qstd_vectorChar32 &group = editAs<qstd_vectorChar32>(codes)[i];
      QOC_TRY(qstd_vectorChar32_resize(&group, static_cast<std::int32_t>(elements.size())));
      std::transform(elements.begin(), elements.end(), editAs<Char32>(group).begin(), codeOf);
    }
    return qoc_swapCharSet_setEquiv(set, &codes);
  });
}

qsys_status setEquivDictChar(qoc_swapCharSet *set, const qstd_vector_vector_qoc_ocrDictionaryChar *groups) {
  return setEquivAs<qoc_ocrDictionaryChar, qstd_vector_qoc_ocrDictionaryChar>(
      set, *groups, [](const qoc_ocrDictionaryChar &character) { return character.code; });
}

/// Sets copies of the given groups, and the two characters as one group more.
qsys_status setGroupsAndPair(qoc_swapCharSet *set, const qstd_vector_vectorChar32 *groups, Char32 first,
                             Char32 second) {
  if (first == second) {
    return QOC_STATUS_SINGLE_SWAP_EQUAL;
  }
  qstd_vector_vectorChar32 all;
  qstd_vectorChar32 pair;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    QOC_TRY(groups != nullptr ? qstd_vector_vectorChar32_constructCopy(&all, groups)
                              : qstd_vector_vectorChar32_constructEmpty(&all));
    frame.local<qstd_vector_vectorChar32_destruct>(&all);
    const std::array<Char32, 2> codes = {first, second};
    QOC_TRY(qstd_vectorChar32_constructFromBlock(&pair, codes.data(), 2));
    frame.local<qstd_vectorChar32_destruct>(&pair);
    QOC_TRY(qstd_vector_vectorChar32_pushBack(&all, &pair));
    return qoc_swapCharSet_setEquiv(set, &all);
  });
}

}  // namespace

qsys_status qoc_swapCharSet_setEquiv(qoc_swapCharSet *set, const qstd_vector_vectorChar32 *groups) {
  if (!present({set, groups})) {
    return QSYS_STATUS_OK;
  }
  WorkMeter meter;
  QOC_TRY(qoc::withoutExceptions([&] { return validate(*groups, meter); }));
  const qsys_status status = build(set, *groups, meter);
  if (status < 0) {
    // A half-built set answers queries from tables that do not fit together.
    qoc_swapCharSet_reset(set);
  }
  return status;
}

qsys_status qoc_swapCharSet_constructEquiv(qoc_swapCharSet *set, const qstd_vector_vectorChar32 *groups) {
  return constructThenSet<qoc_swapCharSet_setEquiv>(set, groups);
}

qsys_status qoc_swapCharSet_setEquivStdStrings(qoc_swapCharSet *set, const qstd_vector_qstd_string *groups) {
  return present({set, groups}) ? setEquivAs<CharT, qstd_string>(set, *groups, qoc::codeOf) : QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_constructEquivStdStrings(qoc_swapCharSet *set, const qstd_vector_qstd_string *groups) {
  return constructThenSet<qoc_swapCharSet_setEquivStdStrings>(set, groups);
}

qsys_status qoc_swapCharSet_setEquivStringTs(qoc_swapCharSet *set, const qstd_vector_qstd_wstring *groups) {
  if (!present({set, groups})) {
    return QSYS_STATUS_OK;
  }
  return setEquivAs<wchar_t, qstd_wstring>(set, *groups, [](wchar_t text) { return static_cast<Char32>(text); });
}

qsys_status qoc_swapCharSet_constructEquivStringTs(qoc_swapCharSet *set, const qstd_vector_qstd_wstring *groups) {
  return constructThenSet<qoc_swapCharSet_setEquivStringTs>(set, groups);
}

qsys_status qoc_swapCharSet_constructEquivDictChar(qoc_swapCharSet *set,
                                                   const qstd_vector_vector_qoc_ocrDictionaryChar *groups) {
  return constructThenSet<setEquivDictChar>(set, groups);
}

qsys_status qoc_swapCharSet_setSingleSwap(qoc_swapCharSet *set, Char32 first, Char32 second) {
  return present({set}) ? setGroupsAndPair(set, nullptr, first, second) : QSYS_STATUS_OK;
}

qsys_status qoc_swapCharSet_appendSingleSwap(qoc_swapCharSet *set, Char32 first, Char32 second) {
  // Deliberate: setting the groups again drops the multi-character swaps.
  return present({set}) ? setGroupsAndPair(set, &set->groups, first, second) : QSYS_STATUS_OK;
}
