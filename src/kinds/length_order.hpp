#pragma once
// The order in which a lexicon keeps its words.

#include <cstdint>
#include <span>
#include <vector>

#include "platform/system/work_meter.hpp"

namespace qoc {

/// The order into which words of the given lengths are brought by exchanges: for every place i in turn, and every place
/// j behind it in turn, the two are exchanged when the word at j is shorter. Gives for every place the index of the
/// word that ends there.
///
/// Words of equal length thus end in an order that depends on the exchanges, and that is what this function preserves,
/// in O(n d log n) for d different lengths instead of the quadratic number of comparisons. Throws Interrupted when the
/// meter's check says so.
std::vector<std::int32_t> orderByLength(std::span<const std::int32_t> lengths, WorkMeter &meter);

}  // namespace qoc
