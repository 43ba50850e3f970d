// Which machines are taken for ones with wide registers.

#include "kinds/wide_registers.hpp"

#include <gtest/gtest.h>

namespace {

constexpr unsigned tellsSaved = 1u << 27, integers = 1u << 5;

struct Machine {
  unsigned lastQuestion = 7;
  unsigned c1 = tellsSaved;
  std::uint64_t saved = 7;
  unsigned b7 = integers;

  bool ask(unsigned number, qoc::ProcessorAnswer &answer) const {
    answer = {0, number == 7 ? b7 : 0, number == 1 ? c1 : 0, 0};
    return number <= lastQuestion;
  }
  std::uint64_t savedRegisters() const {
    EXPECT_NE(c1 & tellsSaved, 0u) << "asked of a machine that does not tell";
    return saved;
  }
};

TEST(WideRegisters, AreThereWhereTheProcessorHasThemAndTheSystemKeepsThem) {
  EXPECT_TRUE(qoc::hasWideRegisters(Machine{}));
  EXPECT_FALSE(qoc::hasWideRegisters(Machine{.lastQuestion = 0}));
  EXPECT_FALSE(qoc::hasWideRegisters(Machine{.c1 = ~tellsSaved}));
  EXPECT_FALSE(qoc::hasWideRegisters(Machine{.saved = 3}));
  EXPECT_FALSE(qoc::hasWideRegisters(Machine{.lastQuestion = 6}));
  EXPECT_FALSE(qoc::hasWideRegisters(Machine{.b7 = ~integers}));
}

}  // namespace
