// Swaps, sets, queries and expansion on random small cases, compared with the slow reference.
//
// Few letters, so that groups and records share characters all the time. QOC_TEST_SEED repeats a run.

#include <qoc/swap_char_set.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "reference/swap_reference.hpp"
#include "support/text.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

namespace reference = qoc::swap_reference;

class Dice {
 public:
  explicit Dice(uint32_t seed) : engine_(seed) {}
  int upTo(int n) { return std::uniform_int_distribution<int>(0, n)(engine_); }
  bool isOneIn(int n) { return upTo(n - 1) == 0; }
  Char32 letter(int numLetters) { return static_cast<Char32>('a' + upTo(numLetters - 1)); }

 private:
  std::mt19937 engine_;
};

uint32_t seed() {
  const char *given = std::getenv("QOC_TEST_SEED");
  const uint32_t value =
      given != nullptr ? static_cast<uint32_t>(std::strtoul(given, nullptr, 10)) : std::random_device()();
  std::printf("QOC_TEST_SEED=%u\n", value);
  return value;
}

qsys_status statusOf(reference::GroupFault fault) {
  switch (fault) {
    case reference::GroupFault::empty:
      return QOC_STATUS_GROUP_EMPTY;
    case reference::GroupFault::single:
      return QOC_STATUS_GROUP_SINGLE;
    case reference::GroupFault::reserved:
      return QOC_STATUS_GROUP_RESERVED;
    case reference::GroupFault::duplicate:
      return QOC_STATUS_GROUP_DUPLICATE;
    case reference::GroupFault::none:
      break;
  }
  return QSYS_STATUS_OK;
}

Owned<qstd_vector_qoc_swapChar> swapsOfReference(const std::vector<reference::Swap> &swaps) {
  Owned<qstd_vector_qoc_swapChar> result;
  for (const reference::Swap &swap : swaps) {
    require(qstd_vector_qoc_swapChar_pushBack(result, swapOf(swap.first, swap.second)));
  }
  return result;
}

/// Every table and every answer over the letters and some other codes.
void expectSame(const qoc_swapCharSet &set, const reference::SwapSet &expected) {
  ASSERT_EQ(groupsIn(set.groups), expected.groups);
  ASSERT_EQ(values(set.swapCharCodeToIndexLUT), expected.indexes);
  ASSERT_EQ(values(set.distinctCharacters), expected.distinct);
  std::vector<std::vector<bool>> table;
  for (const qstd_vectorb &row : elements(set.swapCharEquivalenceTable)) {
    table.emplace_back(elements(row).begin(), elements(row).end());
  }
  ASSERT_EQ(table, expected.table);
  const auto filter = values(set.pairFilter);
  ASSERT_EQ(std::vector<bool>(filter.begin(), filter.end()), expected.filter);
  ASSERT_EQ(answer(qoc_swapCharSet_getIsEmpty, &set), expected.isEmpty);
  ASSERT_EQ(elements(set.swaps).size(), expected.swaps.size());

  const Codes asked = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h', 0, 1000, 1997, reference::emptyCode, reference::anyCode};
  for (const Char32 a : asked) {
    ASSERT_EQ(answer(qoc_swapCharSet_contains, &set, a), expected.contains(a)) << a;
    ASSERT_EQ(groupOf(&set, a), expected.group(a)) << a;
    for (const Char32 b : asked) {
      ASSERT_EQ(isMatch(&set, a, b), expected.isMatch(a, b)) << a << " " << b;
      ASSERT_EQ(isMatchChar(&set, a, b), expected.isMatchChar(a, b)) << a << " " << b;
    }
  }
}

void expectSameEquivalents(const qoc_swapCharSet &set, const reference::SwapSet &expected, const Codes &candidates) {
  Owned<qstd_vector_qoc_ocrDictionaryChar> given, result;
  for (const Char32 code : candidates) {
    const qoc_ocrDictionaryChar one = character(code);
    require(qstd_vector_qoc_ocrDictionaryChar_pushBack(given, &one));
  }
  require(qoc_swapCharSet_getEquivalentCharactersMulti(&set, given, result));
  Codes found;
  for (const qoc_ocrDictionaryChar &one : elements(result)) {
    found.push_back(one.code);
  }
  ASSERT_EQ(found, expected.equivalentsMulti(candidates));
}

Codes randomCodes(Dice &dice, int numLetters, int maxSize) {
  Codes result(static_cast<std::size_t>(dice.upTo(maxSize)));
  for (Char32 &code : result) {
    code = dice.letter(numLetters);
  }
  return result;
}

TEST(SwapCharRandom, IsRefusedAsTheReferenceRefuses) {
  const uint32_t used = seed();
  Dice dice(used);
  for (int i = 0; i < 100000; ++i) {
    const Codes first = randomCodes(dice, 2, 5), second = randomCodes(dice, 2, 5);
    if (first.empty() || second.empty()) {
      continue;
    }
    const auto string = [](const Codes &codes) { return word(std::u32string(codes.begin(), codes.end())); };
    Owned<qoc_swapChar> swap;
    const qsys_status status = qoc_swapChar_setStrings(swap, string(first), string(second));
    ASSERT_EQ(status, reference::isSwapRefused(first, second) ? QOC_STATUS_SWAP_CONTAINED : QSYS_STATUS_OK)
        << show(string(first)) << " / " << show(string(second)) << ", seed " << used;
  }
}

TEST(SwapCharSetRandom, OfGroupsIsAsTheReference) {
  const uint32_t used = seed();
  Dice dice(used);
  Owned<qoc_swapCharSet> set;
  reference::SwapSet expected;
  for (int i = 0; i < 30000; ++i) {
    std::vector<Codes> groups(static_cast<std::size_t>(dice.upTo(4)));
    for (Codes &group : groups) {
      // Mostly valid groups; the codes 1000 and 1997 collide in the pair filter.
      const std::size_t size =
          dice.isOneIn(12) ? static_cast<std::size_t>(dice.upTo(1)) : 2 + static_cast<std::size_t>(dice.upTo(2));
      while (group.size() < size) {
        const Char32 code = dice.isOneIn(80)   ? 0xF800u + static_cast<Char32>(dice.upTo(300))
                            : dice.isOneIn(10) ? (dice.isOneIn(2) ? 1000u : 1997u)
                                               : dice.letter(8);
        if (dice.isOneIn(20) || std::find(group.begin(), group.end(), code) == group.end()) {
          group.push_back(code);
        }
      }
    }
    SCOPED_TRACE("seed " + std::to_string(used) + ", case " + std::to_string(i) + ": " +
                 testing::PrintToString(groups));
    const qsys_status status = statusOf(expected.setEquiv(groups));
    ASSERT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes(groups)), status);
    ASSERT_NO_FATAL_FAILURE(expectSame(*set, expected));
    ASSERT_NO_FATAL_FAILURE(expectSameEquivalents(*set, expected, randomCodes(dice, 8, 4)));
  }
}

TEST(SwapCharSetRandom, OfSwapsIsAsTheReference) {
  const uint32_t used = seed();
  Dice dice(used);
  Owned<qoc_swapCharSet> set;
  reference::SwapSet expected;
  int numAccepted = 0;
  for (int i = 0; i < 30000; ++i) {
    std::vector<reference::Swap> swaps(static_cast<std::size_t>(dice.upTo(6)));
    for (reference::Swap &swap : swaps) {
      const bool isSingle = !dice.isOneIn(3);
      do {
        swap.first = randomCodes(dice, 5, isSingle ? 1 : 3);
        swap.second = randomCodes(dice, 5, isSingle ? 1 : 3);
      } while (swap.first.empty() || swap.second.empty());
    }
    SCOPED_TRACE("seed " + std::to_string(used) + ", case " + std::to_string(i));
    const qsys_status status = statusOf(expected.setSwaps(swaps));
    ASSERT_EQ(qoc_swapCharSet_setSwapCharacters(set, swapsOfReference(swaps)), status);
    numAccepted += status == QSYS_STATUS_OK ? 1 : 0;
    ASSERT_NO_FATAL_FAILURE(expectSame(*set, expected));
    ASSERT_EQ(elements(set->expansion->oneToTwo).size(), expected.oneToTwo.size());
    ASSERT_EQ(elements(set->expansion->twoToTwo).size(), expected.twoToTwo.size());
  }
  EXPECT_GT(numAccepted, 3000) << "too few cases of accepted swaps";
}

TEST(StringExpandRandom, GivesTheVariantsOfTheReference) {
  const uint32_t used = seed();
  Dice dice(used);
  int numSwapped = 0;
  for (int i = 0; i < 100000; ++i) {
    // One-to-two, two-to-one and two-to-two swaps together, and at times a group that joins two of their characters.
    std::vector<reference::Swap> swaps(static_cast<std::size_t>(dice.upTo(3)));
    for (reference::Swap &swap : swaps) {
      do {
        swap.first = randomCodes(dice, 4, 2);
        swap.second = randomCodes(dice, 4, 2);
      } while (swap.first.empty() || swap.second.empty() || swap.isSingle());
    }
    if (dice.isOneIn(2)) {
      const Char32 first = dice.letter(3);
      swaps.push_back({{first}, {first + 1}});
    }
    reference::SwapSet expectedSet;
    ASSERT_EQ(expectedSet.setSwaps(swaps), reference::GroupFault::none);
    Owned<qoc_swapCharSet> set;
    ASSERT_EQ(qoc_swapCharSet_setSwapCharacters(set, swapsOfReference(swaps)), QSYS_STATUS_OK);

    reference::Reading input(static_cast<std::size_t>(dice.upTo(5)));
    Owned<qoc_ocrDictionaryStringMulti> given;
    for (reference::Position &position : input) {
      position = randomCodes(dice, 5, 2);
      if (dice.isOneIn(30)) {
        position.push_back(dice.isOneIn(2) ? reference::emptyCode : reference::anyCode);
      }
      Owned<qoc_ocrDictionaryCharMulti> multi;
      for (const Char32 code : position) {
        const qoc_ocrDictionaryChar candidate = character(code);
        require(qstd_vector_qoc_ocrDictionaryChar_pushBack(&multi->candidates, &candidate));
      }
      require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(&given->positions, multi));
    }

    const reference::Expansion expected = expectedSet.expand(input);
    Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
    Owned<qstd_vector_vector32s> positions;
    ASSERT_EQ(qoc_swapCharSet_multiSwapStrings(set, given, variants, positions), QSYS_STATUS_OK);

    SCOPED_TRACE("seed " + std::to_string(used) + ", case " + std::to_string(i) + ": " + show(given));
    std::vector<reference::Reading> found;
    for (const qoc_ocrDictionaryStringMulti &variant : elements(variants)) {
      found.emplace_back();
      for (const qoc_ocrDictionaryCharMulti &position : elements(variant.positions)) {
        found.back().emplace_back();
        for (const qoc_ocrDictionaryChar &candidate : elements(position.candidates)) {
          found.back().back().push_back(candidate.code);
        }
      }
    }
    ASSERT_EQ(found, expected.variants);
    std::vector<std::vector<int32_t>> foundPositions;
    for (const qstd_vector32s &list : elements(positions)) {
      foundPositions.push_back(values(list));
    }
    ASSERT_EQ(foundPositions, expected.positions);
    numSwapped += found.size() > 1 ? 1 : 0;
  }
  EXPECT_GT(numSwapped, 20000) << "too few cases with swaps";
}

}  // namespace
}  // namespace qoc::test
