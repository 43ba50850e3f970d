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

/** Holds the library's swap set for the model's; null where the model has none. */
class SwapRecord {
 public:
  explicit SwapRecord(const std::optional<reference::Swaps> &swaps) {
    if (!swaps) {
      return;
    }
    HeldGroups groups;
    qstd_vector_vectorChar32_resize(&groups, static_cast<int32_t>(swaps->groups.size()));
    for (size_t i = 0; i < swaps->groups.size(); ++i) {
      qstd_vectorChar32 *group = nullptr;
      qstd_vector_vectorChar32_getElement(&groups, static_cast<int32_t>(i), &group);
      qstd_vectorChar32_assignElements(group, swaps->groups[i].data(), static_cast<int32_t>(swaps->groups[i].size()));
    }
    set_ = std::make_unique<HeldSwapCharSet>();
    EXPECT_EQ(qoc_swapCharSet_setEquiv(set_->get(), &groups), 0);
  }
  const qoc_swapCharSet *get() const { return set_ ? set_->get() : nullptr; }

 private:
  std::unique_ptr<HeldSwapCharSet> set_;
};

}  // namespace random_cases

#endif
