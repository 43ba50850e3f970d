// Which positions of a reading a code matches, worked out at once or on demand.

#include "text/reading_matches.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/heap.hpp"
#include "support/text.hpp"
#include "swap/swaps.hpp"

namespace {

using namespace qoc::test;
using qoc::ReadingMatches;
using qoc::WordRows;

constexpr Char32 asked[] = {'a',         'b', 'c', 'o', 'q', 0x7F, 0x80, 0xE4, 0x4E00, 0x4E01, 0x4E02, QOC_CHAR_EMPTY,
                            QOC_CHAR_ANY};

/// The positions written down so many times over.
template <class Text>
Owned<qoc_ocrDictionaryStringMulti> repeated(const Text &text, int times) {
  const auto once = reading(text);
  Owned<qoc_ocrDictionaryStringMulti> made;
  for (int i = 0; i < times; ++i) {
    require(qstd_vector_qoc_ocrDictionaryCharMulti_append(&made->positions, &once->positions));
  }
  return made;
}

/// Asks position by position what the rows tell at once.
void expectRows(const qoc_ocrDictionaryStringMulti &reading, const qoc_swapCharSet *set,
                std::span<const Char32> codes = asked) {
  const ReadingMatches matches(reading, set);
  const auto positions = elements(reading.positions);
  ASSERT_EQ(static_cast<std::size_t>(matches.size()), positions.size());
  for (const Char32 code : codes) {
    SCOPED_TRACE(code);
    const auto one = character(code);
    const std::uint64_t *row = matches.row(code);
    ASSERT_EQ(matches.row(code), row) << "asked again";
    bool isAnyMatched = false;
    for (std::size_t i = 0; i < positions.size(); ++i) {
      qsys_bool isMatch = 7;
      require(qoc_ocrDictionaryChar_isMatchMulti(&one, &positions[i].candidates, set, &isMatch));
      ASSERT_EQ(ReadingMatches::test(row, static_cast<std::int32_t>(i)), isMatch == 1) << i;
      isAnyMatched = isAnyMatched || isMatch == 1;
    }
    if (isAnyMatched) {
      EXPECT_NE(matches.coveredCodes() & ReadingMatches::codeBit(code), 0u);
    }
  }
}

TEST(ReadingMatches, TellWhatEachPositionMatches) {
  Owned<qoc_swapCharSet> set;
  require(qoc_swapCharSet_setEquiv(set, groupsOf({U"bo", U"cq", U"\u4E00\u4E01"})));
  for (const std::u32string_view text : {U"", U"a", U"a b|c", U"a ~ b", U"\u00E4 b|\u00E4", U"\uF801", U"\uF801 a",
                                         U"c|\uF801 q", U"\u4E00 a|\u4E02", U"\uF800|b x", U"\u007F \u0080|b"}) {
    for (const int times : {1, 100, 2'500}) {
      SCOPED_TRACE(testing::Message() << text.size() << " characters, " << times << " times");
      const auto made = repeated(text, times);
      expectRows(*made, nullptr);
      expectRows(*made, set);
    }
  }
}

TEST(ReadingMatches, KeepManyCodesApart) {
  // A third of them is in the reading, in an order in which they do not follow one another.
  std::u32string text = U"\u0080";
  std::vector<Char32> codes = {0x80};
  for (std::uint32_t i = 0; i < 500; ++i) {
    text += {U' ', static_cast<char32_t>(0x4E00 + 3 * (i * 211 % 500))};
    codes.insert(codes.end(), {0x4E00 + 3 * i, 0x4E01 + 3 * i, 0x4E02 + 3 * i});
  }
  expectRows(*reading(text), nullptr, codes);
}

TEST(ReadingMatches, OfALongReadingTakeMemoryForTheCodesThatAreAskedAlone) {
  std::u32string text;
  for (char32_t i = 0; i < 20'000; ++i) {
    text += {U' ', 0x10000 + i};
  }
  const auto made = reading(std::u32string_view(text).substr(1));
  const std::int64_t before = numHeapBytes();
  const ReadingMatches matches(*made, nullptr);
  EXPECT_TRUE(ReadingMatches::test(matches.row(0x10007), 7));
  EXPECT_LT(numHeapBytes() - before, 10'000) << "a row has 2,500 bytes, all of them 50 million";
}

TEST(WordRows, TellWhatACharacterMatchesInAWindow) {
  const auto made = repeated("a b c", 50);
  const ReadingMatches matches(*made, nullptr);
  WordRows rows;
  const auto letters = word("abz");
  rows.set(qoc::view(*letters), matches);
  ASSERT_EQ(rows.size(), 3);
  for (std::int32_t start = 0; start <= matches.size(); ++start) {
    for (std::int32_t end = start; end <= std::min(start + 64, matches.size()); ++end) {
      for (std::int32_t i = 0; i < rows.size(); ++i) {
        const std::uint64_t bits = rows.matchesIn(i, {start, end});
        for (std::int32_t position = start; position < end; ++position) {
          ASSERT_EQ((bits >> (position - start) & 1) != 0, i < 2 && position % 3 == i) << start << " " << end;
          ASSERT_EQ(rows.isMatch(i, position), i < 2 && position % 3 == i);
        }
      }
    }
  }
}

}  // namespace
