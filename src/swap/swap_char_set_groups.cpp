// Swap character sets: groups from swap characters.
//
// Every character of a single-character swap starts as a group of its own; then the swaps merge groups one after the
// other. The merge has a gap that is kept as it is: a group that stands last is appended to its partner but stays in
// place as well, so its characters stand in two groups, and what is left over may be refused afterwards.
//
// The swaps (x, y) and (z, w) are refused that way: [x] [y] [z] [w] become [w] [y x] [z], then [w z] [y x] [z], and the
// single z is no valid group. The swaps (x, y) and (y, z) are accepted: [x] [y] [z] become [z] [y x], then [z y x] [y
// x].

#include <qoc/swap_char_set.h>

#include <algorithm>
#include <utility>

#include "frame/frame.hpp"
#include "platform/system/work_meter.hpp"
#include "text/views.hpp"

using qoc::editAs;
using qoc::Frame;
using qoc::inFrame;
using qoc::present;
using qoc::viewAs;
using qoc::WorkMeter;

namespace {

using Swaps = std::span<const qoc_swapChar>;

bool isSingle(const qoc_swapChar &swap) { return swap.first.core.size == 1 && swap.second.core.size == 1; }

Char32 firstOf(const qstd_vectorChar32 &sequence) { return viewAs<Char32>(sequence)[0]; }

/// Codes of a group that are gone through at once.
constexpr std::size_t codesPerPart = 1 << 18;

/// Throws Interrupted, as all that follows does, when the meter's check says so.
bool holds(const qstd_vectorChar32 &group, Char32 code, WorkMeter &meter) {
  for (auto rest = viewAs<Char32>(group); !rest.empty();) {
    const auto part = rest.first(std::min(codesPerPart, rest.size()));
    meter.spend(1 + part.size() / 4);
    if (std::ranges::find(part, code) != part.end()) {
      return true;
    }
    rest = rest.subspan(part.size());
  }
  return false;
}

qsys_status append(qstd_vectorChar32 &to, const qstd_vectorChar32 &from, WorkMeter &meter) {
  for (auto rest = viewAs<Char32>(from); !rest.empty();) {
    const auto part = rest.first(std::min(codesPerPart, rest.size()));
    meter.spend(part.size() / 2);
    QOC_TRY(qstd_vectorChar32_insert(&to, to.core.size, part.data(), static_cast<std::int32_t>(part.size())));
    rest = rest.subspan(part.size());
  }
  return QSYS_STATUS_OK;
}

/// Makes one group for each distinct character of the single-character swaps, in the order in which they appear.
qsys_status makeGroupPerCharacter(Swaps swaps, qstd_vector_vectorChar32 *groups, WorkMeter &meter) {
  qstd_vectorChar32 characters;
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    frame.emptyLocal<qstd_vectorChar32_constructEmpty, qstd_vectorChar32_destruct>(&characters);
    for (const qoc_swapChar &swap : swaps) {
      if (isSingle(swap)) {
        for (const Char32 code : {firstOf(swap.first), firstOf(swap.second)}) {
          if (!holds(characters, code, meter)) {
            QOC_TRY(qstd_vectorChar32_pushBack(&characters, &code));
          }
        }
      }
    }
    QOC_TRY(qstd_vector_vectorChar32_resize(groups, characters.core.size));
    for (std::int32_t i = 0; i < characters.core.size; ++i) {
      meter.spend(16);
      QOC_TRY(qstd_vectorChar32_pushBack(&editAs<qstd_vectorChar32>(*groups)[static_cast<std::size_t>(i)],
                                         &viewAs<Char32>(characters)[static_cast<std::size_t>(i)]));
    }
    return QSYS_STATUS_OK;
  });
}

/// The last group that holds the code. There always is one: no character is ever dropped from all groups.
std::size_t lastGroupWith(const qstd_vector_vectorChar32 &groups, Char32 code, WorkMeter &meter) {
  const auto all = viewAs<qstd_vectorChar32>(groups);
  std::size_t index = all.size() - 1;
  while (index > 0 && !holds(all[index], code, meter)) {
    --index;
  }
  return index;
}

qsys_status mergeGroups(Swaps swaps, qstd_vector_vectorChar32 *groups, WorkMeter &meter) {
  for (const qoc_swapChar &swap : swaps) {
    // Groups that stand twice grow with every merge, so this may run long.
    QOC_TRY(qsys_attention_check());
    if (!isSingle(swap)) {
      continue;
    }
    const std::size_t from = lastGroupWith(*groups, firstOf(swap.first), meter);
    const std::size_t to = lastGroupWith(*groups, firstOf(swap.second), meter);
    if (from == to) {
      continue;
    }
    const auto all = editAs<qstd_vectorChar32>(*groups);
    QOC_TRY(append(all[to], all[from], meter));
    // Deliberate: the last group stays in place, so its characters stand in two groups.
    if (from + 1 < all.size()) {
      std::swap(all[from], all.back());
      qstd_vector_vectorChar32_popBack(groups);
    }
  }
  return QSYS_STATUS_OK;
}

/// Copies the swaps that are not of a single character for a single character.
qsys_status copyMultiSwaps(Swaps swaps, qstd_vector_qoc_swapChar *multiSwaps) {
  for (const qoc_swapChar &swap : swaps) {
    if (!isSingle(swap)) {
      QOC_TRY(qstd_vector_qoc_swapChar_pushBack(multiSwaps, &swap));
    }
  }
  return QSYS_STATUS_OK;
}

/// Fills an empty expansion.
qsys_status makeRecords(Swaps swaps, qoc_stringExpand_ *expansion) {
  for (const qoc_swapChar &swap : swaps) {
    const auto first = viewAs<Char32>(swap.first);
    const auto second = viewAs<Char32>(swap.second);
    if ((first.size() == 1 && second.size() == 2) || (first.size() == 2 && second.size() == 1)) {
      // Deliberate: the record does not tell on which side the single character stood.
      const auto [single, pair] = first.size() == 1 ? std::pair(first, second) : std::pair(second, first);
      const qoc_stringExpandOneToTwo_ record = {single[0], pair[0], pair[1]};
      QOC_TRY(qstd_vector_qoc_stringExpandOneToTwo__pushBack(&expansion->oneToTwo, &record));
    } else if (first.size() == 2 && second.size() == 2) {
      const qoc_stringExpandTwoToTwo_ record = {first[0], first[1], second[0], second[1]};
      QOC_TRY(qstd_vector_qoc_stringExpandTwoToTwo__pushBack(&expansion->twoToTwo, &record));
    }
    // A swap with a longer sequence is kept without a record: nothing expands it.
  }
  return QSYS_STATUS_OK;
}

}  // namespace

qsys_status qoc_swapCharSet_setSwapCharacters(qoc_swapCharSet *set, const qstd_vector_qoc_swapChar *swaps) {
  if (!present({set, swaps})) {
    return QSYS_STATUS_OK;
  }
  qstd_vector_vectorChar32 groups;
  qstd_vector_qoc_swapChar multiSwaps;
  return inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    const Swaps all = viewAs<qoc_swapChar>(*swaps);
    frame.emptyLocal<qstd_vector_vectorChar32_constructEmpty, qstd_vector_vectorChar32_destruct>(&groups);
    WorkMeter meter;
    QOC_TRY(makeGroupPerCharacter(all, &groups, meter));
    QOC_TRY(mergeGroups(all, &groups, meter));
    // Copied before the set changes: they may be the set's own.
    frame.emptyLocal<qstd_vector_qoc_swapChar_constructEmpty, qstd_vector_qoc_swapChar_destruct>(&multiSwaps);
    QOC_TRY(copyMultiSwaps(all, &multiSwaps));

    // Validates the groups before anything changes, so that refused swaps leave the set, its swaps included, as it was.
    QOC_TRY(qoc_swapCharSet_setEquiv(set, &groups));
    std::swap(set->swaps, multiSwaps);
    const qsys_status status = makeRecords(viewAs<qoc_swapChar>(set->swaps), set->expansion);
    if (status < 0) {
      qoc_swapCharSet_reset(set);
    }
    return status;
  });
}
