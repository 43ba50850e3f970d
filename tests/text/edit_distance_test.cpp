// The edit distance of two strings.

#include <gtest/gtest.h>
#include <qoc/dictionary_string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;

int32_t distance(const qoc_ocrDictionaryString *a, const qoc_ocrDictionaryString *b) {
  int32_t edits = -1;
  EXPECT_EQ(qoc_ocrDictionaryString_editDistance(a, b, nullptr, &edits), QSYS_STATUS_OK);
  return edits;
}
int32_t distance(std::string_view a, std::string_view b) { return distance(word(a), word(b)); }

TEST(EditDistance, TwoEmptyStringsAreTheSame) { EXPECT_EQ(distance("", ""), 0); }

TEST(EditDistance, FromAnEmptyStringEveryCharacterIsInserted) { EXPECT_EQ(distance("", "abcd"), 4); }

TEST(EditDistance, ToAnEmptyStringEveryCharacterIsDeleted) { EXPECT_EQ(distance("abc", ""), 3); }

TEST(EditDistance, AMissingCharacterIsOneEdit) { EXPECT_EQ(distance("abc", "ac"), 1); }

TEST(EditDistance, AnExtraCharacterIsOneEdit) { EXPECT_EQ(distance("ac", "abc"), 1); }

TEST(EditDistance, AnotherCharacterIsOneEdit) { EXPECT_EQ(distance("abc", "axc"), 1); }

TEST(EditDistance, ExchangedNeighboursAreTwoEdits) { EXPECT_EQ(distance("ab", "ba"), 2); }

TEST(EditDistance, CountsSeveralEdits) {
  EXPECT_EQ(distance("kitten", "sitting"), 3);
  EXPECT_EQ(distance("intention", "execution"), 5);
}

TEST(EditDistance, IgnoresScores) {
  Owned<qoc_ocrDictionaryString> scored;
  ASSERT_EQ(qoc_ocrDictionaryString_setCharacters(scored, characters("a7|b-3")), QSYS_STATUS_OK);
  int32_t edits = -1;
  EXPECT_EQ(qoc_ocrDictionaryString_editDistance(scored, word("ab"), nullptr, &edits), QSYS_STATUS_OK);
  EXPECT_EQ(edits, 0);
}

TEST(EditDistance, WithoutSwapsDifferentCodesAreAnEdit) { EXPECT_EQ(distance("0", "O"), 1); }

TEST(EditDistance, TheWildcardCostsNothingAndTheEmptyCharacterAnEdit) {
  EXPECT_EQ(distance(word(U"a\uF801c"), word("axc")), 0);
  EXPECT_EQ(distance(word(U"\uF800"), word(U"\uF800")), 1);
}

TEST(EditDistance, IsNotWrittenWhenMemoryRunsOut) {
  LibraryAllocator memory;
  const auto a = word("abc"), b = word("abd");
  int32_t edits = 77;
  memory.failFrom(0);
  const qsys_status status = qoc_ocrDictionaryString_editDistance(a, b, nullptr, &edits);
  memory.failFrom(-1);
  // A distance that needs no memory of the library's allocator may well succeed.
  EXPECT_EQ(edits, status < 0 ? 77 : 1);
  EXPECT_TRUE(status == QSYS_STATUS_OUT_OF_MEMORY || status == QSYS_STATUS_OK);
}

TEST(EditDistance, OfLongStringsCanBeInterrupted) {
  const auto a = word(std::string(1'000, 'a')), b = word(std::string(1'000, 'b'));
  int32_t edits = 77;
  int64_t numPolls = 0;
  {
    const Polls polls;
    EXPECT_EQ(qoc_ocrDictionaryString_editDistance(a, b, nullptr, &edits), QSYS_STATUS_OK);
    EXPECT_EQ(edits, 1'000);
    numPolls = polls.count();
    EXPECT_GT(numPolls, 0);
  }
  for (int64_t n = 0; n < numPolls; ++n) {
    const Polls polls(n, -777);
    edits = 77;
    EXPECT_EQ(qoc_ocrDictionaryString_editDistance(a, b, nullptr, &edits), -777);
    EXPECT_EQ(polls.count(), n + 1);
    EXPECT_EQ(edits, 77);
  }
}

/// The definition, without any table.
int32_t plainDistance(std::string_view a, std::string_view b) {
  if (a.empty() || b.empty()) {
    return static_cast<int32_t>(a.size() + b.size());
  }
  if (a.back() == b.back()) {
    return plainDistance(a.substr(0, a.size() - 1), b.substr(0, b.size() - 1));
  }
  return 1 + std::min({plainDistance(a.substr(0, a.size() - 1), b), plainDistance(a, b.substr(0, b.size() - 1)),
                       plainDistance(a.substr(0, a.size() - 1), b.substr(0, b.size() - 1))});
}

TEST(EditDistance, IsTheLeastNumberOfEditsForAllShortWordsOverTwoLetters) {
  std::vector<std::string> words = {""};
  for (std::size_t i = 0; i < words.size() && words[i].size() < 4; ++i) {
    for (const char letter : {'a', 'b'}) {
      std::string longer = words[i];
      longer += letter;
      words.push_back(longer);
    }
  }
  ASSERT_EQ(words.size(), 31u);
  for (const std::string &a : words) {
    for (const std::string &b : words) {
      ASSERT_EQ(distance(a, b), plainDistance(a, b)) << a << " and " << b;
    }
  }
}

}  // namespace
