// Swaps, sets, queries and expansion on random small cases, compared with the slow reference.
//
// Few letters, so that groups and records share characters all the time.

#include <qoc/swap_char_set.h>

#include <gtest/gtest.h>

#include "random/random_cases.hpp"
#include "random/swap_record.hpp"
#include "reference/expansion.hpp"
#include "reference/swap_reference.hpp"
#include "support/text.hpp"
#include "swap/swaps.hpp"

namespace qoc::test {
namespace {

namespace reference = qoc::swap_reference;
using random_cases::compareCases;
using random_cases::Random;
using reference::Code;

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

Code randomLetter(Random &random, int32_t numLetters) { return static_cast<Code>('a' + random.below(numLetters)); }

Codes randomCodes(Random &random, int32_t numLetters, int32_t maxSize) {
  Codes result(static_cast<std::size_t>(random.between(0, maxSize)));
  for (Code &code : result) {
    code = randomLetter(random, numLetters);
  }
  return result;
}

/// Two sequences that make a swap of sorts, each with at least one code.
reference::Swap randomSwap(Random &random, int32_t numLetters, int32_t maxSize) {
  reference::Swap swap;
  do {
    swap.first = randomCodes(random, numLetters, maxSize);
    swap.second = randomCodes(random, numLetters, maxSize);
  } while (swap.first.empty() || swap.second.empty());
  return swap;
}

TEST(SwapCharRandom, IsRefusedAsTheReferenceRefuses) {
  compareCases([](Random &random) -> std::string {
    const reference::Swap pair = randomSwap(random, 2, 5);
    const auto string = [](const Codes &codes) { return word(std::u32string(codes.begin(), codes.end())); };
    Owned<qoc_swapChar> swap;
    const qsys_status status = qoc_swapChar_setStrings(swap, string(pair.first), string(pair.second));
    EXPECT_EQ(status, reference::isSwapRefused(pair.first, pair.second) ? QOC_STATUS_SWAP_CONTAINED : QSYS_STATUS_OK)
        << show(string(pair.first)) << " / " << show(string(pair.second));
    return "";
  });
}

TEST(SwapCharSetRandom, OfGroupsIsAsTheReference) {
  Owned<qoc_swapCharSet> set;
  reference::SwapSet expected;
  compareCases([&](Random &random) -> std::string {
    std::vector<Codes> groups(static_cast<std::size_t>(random.between(0, 4)));
    for (Codes &group : groups) {
      // Mostly valid groups; the codes 1000 and 1997 collide in the pair filter.
      const auto size = static_cast<std::size_t>(random.oneIn(12) ? random.between(0, 1) : random.between(2, 4));
      while (group.size() < size) {
        const Code code = random.oneIn(80)   ? 0xF800u + static_cast<Code>(random.below(301))
                          : random.oneIn(10) ? (random.oneIn(2) ? 1000u : 1997u)
                                             : randomLetter(random, 8);
        if (random.oneIn(20) || std::find(group.begin(), group.end(), code) == group.end()) {
          group.push_back(code);
        }
      }
    }
    SCOPED_TRACE(testing::PrintToString(groups));
    const qsys_status status = statusOf(expected.setEquiv(groups));
    EXPECT_EQ(qoc_swapCharSet_setEquiv(set, groupsOfCodes(groups)), status);
    expectSame(*set, expected);
    expectSameEquivalents(*set, expected, randomCodes(random, 8, 4));
    return "";
  });
}

TEST(SwapCharSetRandom, OfSwapsIsAsTheReference) {
  Owned<qoc_swapCharSet> set;
  reference::SwapSet expected;
  int numAccepted = 0;
  compareCases([&](Random &random) -> std::string {
    std::vector<reference::Swap> swaps(static_cast<std::size_t>(random.between(0, 6)));
    for (reference::Swap &swap : swaps) {
      swap = randomSwap(random, 5, random.oneIn(3) ? 3 : 1);
    }
    const qsys_status status = statusOf(expected.setSwaps(swaps));
    EXPECT_EQ(qoc_swapCharSet_setSwapCharacters(set, swapsOfReference(swaps)), status);
    numAccepted += status == QSYS_STATUS_OK ? 1 : 0;
    expectSame(*set, expected);
    EXPECT_EQ(elements(set->expansion->oneToTwo).size(), expected.oneToTwo.size());
    EXPECT_EQ(elements(set->expansion->twoToTwo).size(), expected.twoToTwo.size());
    return "";
  });
  EXPECT_GE(numAccepted, random_cases::numCases() / 20) << "too few cases of accepted swaps";
}

TEST(StringExpandRandom, GivesTheVariantsOfTheReference) {
  int numSwapped = 0;
  compareCases([&](Random &random) -> std::string {
    const random_cases::Alphabet alphabet{{'a', 'b', 'c', 'd'}, 30};
    const std::optional<::reference::Swaps> swaps = random_cases::randomSwaps(random, alphabet);
    if (!swaps) {
      return "";
    }
    ::reference::Reading input = random_cases::randomReading(random, alphabet, 5);
    random_cases::limitVariants(input, swaps);
    const random_cases::SwapRecord set(swaps);
    ::reference::HeldMulti given;
    toRecord(input, &given);

    // The variants in order, their positions and the polls, as text.
    const int64_t limit = random_cases::randomPollLimit(random);
    const auto append = [](std::string &text, const ::reference::Reading &reading, const std::vector<int32_t> &list) {
      text += "\n  " + toText(reading) + " " + testing::PrintToString(list);
    };
    const auto expected = random_cases::ofModel<std::string>(limit, [&](::reference::Polls &polls) {
      std::string text;
      for (const ::reference::Variant &variant : expand(input, *swaps, polls)) {
        append(text, variant.reading, variant.positions);
      }
      return text;
    });
    Owned<qstd_vector_qoc_ocrDictionaryStringMulti> variants;
    Owned<qstd_vector_vector32s> positions;
    const auto actual = random_cases::ofLibrary<std::string>(limit, [&](std::string &text) {
      const qsys_status status = qoc_swapCharSet_multiSwapStrings(set.get(), &given, variants, positions);
      for (std::size_t k = 0; k < elements(variants).size(); ++k) {
        const bool hasList = k < elements(positions).size();
        append(text, ::reference::fromRecord(elements(variants)[k]),
               hasList ? values(elements(positions)[k]) : std::vector<int32_t>());
      }
      return status;
    });
    EXPECT_EQ(elements(positions).size(), input.empty() ? 0u : elements(variants).size());
    numSwapped += elements(variants).size() > 1 ? 1 : 0;
    const std::string course = courseDifference(expected, actual);
    return course.empty() && expected.status >= 0 && expected.value != actual.value
               ? "the variants are" + actual.value + "\nnot" + expected.value + "\n  swaps " + toText(&*swaps)
               : course;
  });
  EXPECT_GE(numSwapped, random_cases::numCases() / 50) << "too few cases with swaps";
}

}  // namespace
}  // namespace qoc::test
