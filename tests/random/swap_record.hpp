#ifndef QOC_TESTS_RANDOM_SWAP_RECORD_HPP
#define QOC_TESTS_RANDOM_SWAP_RECORD_HPP

/** @file The library's swap set for one of the reference model. */

#include <gtest/gtest.h>
#include <qoc/swap_char_set.h>

#include <memory>
#include <optional>

#include "reference/convert.hpp"

namespace random_cases {

using HeldSwapCharSet = reference::Held<qoc_swapCharSet, qoc_swapCharSet_construct, qoc_swapCharSet_destruct>;
using HeldGroups = reference::Held<qstd_vector_vectorChar32, qstd_vector_vectorChar32_constructEmpty,
                                   qstd_vector_vectorChar32_destruct>;
using HeldCodes = reference::Held<qstd_vectorChar32, qstd_vectorChar32_constructEmpty, qstd_vectorChar32_destruct>;
using HeldSwapChar = reference::Held<qoc_swapChar, qoc_swapChar_construct, qoc_swapChar_destruct>;
using HeldSwapChars = reference::Held<qstd_vector_qoc_swapChar, qstd_vector_qoc_swapChar_constructEmpty,
                                      qstd_vector_qoc_swapChar_destruct>;

/** Holds the library's swap set for the model's; null where the model has none. */
class SwapRecord {
 public:
  explicit SwapRecord(const std::optional<reference::Swaps> &swaps) {
    if (!swaps) {
      return;
    }
    set_ = std::make_unique<HeldSwapCharSet>();
    if (swaps->swaps.empty()) {
      HeldGroups groups;
      for (const std::vector<uint32_t> &group : swaps->groups) {
        HeldCodes codes;
        reference::toRecord(group, &codes);
        qstd_vector_vectorChar32_pushBack(&groups, codes.get());
      }
      EXPECT_EQ(qoc_swapCharSet_setEquiv(set_->get(), &groups), 0);
    } else {
      HeldSwapChars list;
      for (const reference::Swap &swap : swaps->swaps) {
        HeldSwapChar record;
        reference::toRecord(swap.first, &record->first);
        reference::toRecord(swap.second, &record->second);
        qstd_vector_qoc_swapChar_pushBack(&list, record.get());
      }
      EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set_->get(), &list), 0);
    }
  }
  const qoc_swapCharSet *get() const { return set_ ? set_->get() : nullptr; }

 private:
  std::unique_ptr<HeldSwapCharSet> set_;
};

}  // namespace random_cases

#endif
