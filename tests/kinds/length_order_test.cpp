// The order of a lexicon's words by length, which is that of stated exchanges.

#include "kinds/length_order.hpp"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <utility>

namespace {

/// The order that the exchanges give, made one by one.
std::vector<std::int32_t> exchanged(const std::vector<std::int32_t> &lengths) {
  std::vector<std::int32_t> order(lengths.size());
  std::iota(order.begin(), order.end(), 0);
  for (std::size_t i = 0; i < order.size(); ++i) {
    for (std::size_t j = i + 1; j < order.size(); ++j) {
      if (lengths[static_cast<std::size_t>(order[j])] < lengths[static_cast<std::size_t>(order[i])]) {
        std::swap(order[i], order[j]);
      }
    }
  }
  return order;
}

TEST(LengthOrder, IsThatOfTheExchangesHoweverManyLengthsThereAre) {
  std::mt19937 random(12);
  // Beyond some hundreds of lengths their places are kept in another way.
  for (const unsigned numLengths : {1u, 2u, 5u, 100u, 700u, 5000u}) {
    for (const std::size_t size : {0u, 1u, 2u, 10u, 1500u}) {
      std::vector<std::int32_t> lengths(size);
      for (std::int32_t &length : lengths) {
        length = static_cast<std::int32_t>(random() % numLengths);
      }
      qoc::WorkMeter meter;
      EXPECT_EQ(qoc::orderByLength(lengths, meter), exchanged(lengths)) << size << " of " << numLengths;
    }
  }
}

}  // namespace
