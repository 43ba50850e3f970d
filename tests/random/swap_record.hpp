#ifndef QOC_TESTS_RANDOM_SWAP_RECORD_HPP
#define QOC_TESTS_RANDOM_SWAP_RECORD_HPP

#include <memory>
#include <optional>

#include <qoc/swap_char_set.h>

#include "reference/records.hpp"

namespace random_cases {

using HeldSwapCharSet = reference::Held<qoc_swapCharSet, qoc_swapCharSet_construct, qoc_swapCharSet_destruct>;

/** The library's empty swap set for the model's empty one; null where the model has none. */
class SwapRecord {
 public:
  explicit SwapRecord(const std::optional<reference::Swaps> &swaps) {
    if (swaps) {
      set_ = std::make_unique<HeldSwapCharSet>();
    }
  }
  const qoc_swapCharSet *get() const { return set_ ? &std::as_const(*set_) : nullptr; }

 private:
  std::unique_ptr<HeldSwapCharSet> set_;
};

}  // namespace random_cases

#endif
