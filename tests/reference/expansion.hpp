#ifndef QOC_TESTS_REFERENCE_EXPANSION_HPP
#define QOC_TESTS_REFERENCE_EXPANSION_HPP

/** @file Reference model of the readings that multi-character swaps make of one. */

#include "reference/records.hpp"

namespace reference {

/** A reading that swaps make of another, and for its characters the positions that they come from. */
struct Variant {
  Reading reading;
  std::vector<int32_t> positions;
};

/** Whether some swap is one-to-two, two-to-one or two-to-two. @param[in] swaps may be null */
bool hasMultiSwap(const Swaps *swaps);

/** Every variant, in order; polls once for each position and then once for each variant. */
std::vector<Variant> expand(const Reading &reading, const Swaps &swaps, Polls &polls);

}  // namespace reference

#endif
