// Readings.

#include <gtest/gtest.h>
#include <qoc/dictionary_string.h>

#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;
using Multi = qoc_ocrDictionaryStringMulti;
using Positions = qstd_vector_qoc_ocrDictionaryCharMulti;

std::string window(const char *text, int32_t start, int32_t length) {
  Owned<Positions> out = Owned<Positions>(reading("o l d")->positions);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getSubstrExtend(reading(text), start, length, out), QSYS_STATUS_OK);
  return show(out);
}

TEST(DictionaryStringMulti, IsEmptyAfterConstruction) {
  qsys_bool isEmpty = 77;
  int32_t size = 77;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getIsEmpty(Owned<Multi>(), &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getSize(Owned<Multi>(), &size), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);
  EXPECT_EQ(size, 0);
}

TEST(DictionaryStringMulti, CountsItsPositions) {
  qsys_bool isEmpty = 77;
  int32_t size = 77;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getIsEmpty(reading("a|b ~"), &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getSize(reading("a|b ~"), &size), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 0u);
  EXPECT_EQ(size, 2);
}

TEST(DictionaryStringMulti, IsConstructedOfPositionsAsTheyAre) {
  const auto source = reading("a1|b2 ~ c3");
  const Owned<Multi> multi(
      [&](Multi *m) { return qoc_ocrDictionaryStringMulti_constructCharacters(m, &source->positions); });
  EXPECT_EQ(show(multi), "a1|b2 ~ c3");
}

TEST(DictionaryStringMulti, IsConstructedOfAStringWithItsScores) {
  Owned<qoc_ocrDictionaryString> string;
  ASSERT_EQ(qoc_ocrDictionaryString_setCharacters(string, characters("a1|b2")), QSYS_STATUS_OK);
  const Owned<Multi> multi([&](Multi *m) { return qoc_ocrDictionaryStringMulti_constructString(m, string); });
  EXPECT_EQ(show(multi), "a1 b2");
}

TEST(DictionaryStringMulti, IsConstructedOfATextWithOnePositionForEachByte) {
  const Owned<Multi> multi([](Multi *m) { return qoc_ocrDictionaryStringMulti_constructStringT(m, "a\x80"); });
  EXPECT_EQ(show(multi), "a {FFFFFF80}");
}

TEST(DictionaryStringMulti, SetStringReplacesEveryPositionWithItsScores) {
  auto multi = reading("x7|y8 z9 q");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_setString(multi, word("ab")), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "a b");
}

TEST(DictionaryStringMulti, SetStringTReplacesEveryPositionAndItsScores) {
  auto multi = reading("x7|y8 z9");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_setStringT(multi, "abc"), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "a b c");
}

TEST(DictionaryStringMulti, SetStdStringKeepsTheScoresOfFirstCandidates) {
  auto multi = reading("x7|y8 z9");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_setStdString(multi, stdString("abc")), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "a7 b9 c");
}

TEST(DictionaryStringMulti, GetStringGivesTheOnlyCandidatesWithTheirScores) {
  auto string = word("old one");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getString(reading("a1 b2"), string), QSYS_STATUS_OK);
  EXPECT_EQ(show(string), "ab");
  EXPECT_EQ(elements(string->characters)[1].score, 2);
}

TEST(DictionaryStringMulti, GetStringRefusesAPositionOfTwoCandidates) {
  Owned<qoc_ocrDictionaryString> string;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getString(reading("a b|c"), string), QOC_STATUS_NO_SUCH_VALUE);
}

TEST(DictionaryStringMulti, GetStringRefusesAPositionWithoutCandidates) {
  Owned<qoc_ocrDictionaryString> string;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getString(reading("~ a"), string), QOC_STATUS_NO_SUCH_VALUE);
}

TEST(DictionaryStringMulti, GetStdStringGivesTheText) {
  auto text = stdString("old");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getStdString(reading("a1 _ c"), text), QSYS_STATUS_OK);
  EXPECT_EQ(show(text), "a c");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getStdString(reading(""), text), QSYS_STATUS_OK);
  EXPECT_EQ(show(text), "");
}

TEST(DictionaryStringMulti, GetStdStringIsAllOrNothing) {
  auto text = stdString("old");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getStdString(reading("a b|c"), text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getStdString(reading("a ~"), text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getStdString(reading(U"a \u20AC"), text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(show(text), "old");
}

TEST(DictionaryStringMulti, SetCharactersReplacesThePositions) {
  auto multi = reading("x y z");
  const auto source = reading("a1|b2");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_setCharacters(multi, &source->positions), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "a1|b2");
}

TEST(DictionaryStringMulti, AppendCharAddsAPositionWithOneCandidate) {
  auto multi = reading("a|b");
  const qoc_ocrDictionaryChar one = character('c', 5);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_appendChar(multi, &one), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "a|b c5");
}

TEST(DictionaryStringMulti, ComparesAllCandidatesInOrderAndNotScores) {
  const struct {
    const char *a, *b;
    qsys_bool isEqual;
  } cases[] = {{"a1|b c", "a|b2 c3", 1}, {"a|b c", "b|a c", 0}, {"a c", "a|b c", 0}, {"a", "a a", 0}, {"", "", 1}};
  for (const auto &[a, b, wanted] : cases) {
    SCOPED_TRACE(testing::Message() << a << " and " << b);
    qsys_bool isEqual = 77;
    EXPECT_EQ(qoc_ocrDictionaryStringMulti_compareEqual(reading(a), reading(b), &isEqual), QSYS_STATUS_OK);
    EXPECT_EQ(isEqual, wanted);
  }
}

TEST(DictionaryStringMulti, CompareEqualToStringIgnoresScores) {
  qsys_bool isEqual = 77;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_compareEqualToString(reading("a5 b5"), word("ab"), &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
}

TEST(DictionaryStringMulti, EqualsAStringOnlyWithOneCandidateAtEachPosition) {
  qsys_bool isEqual = 77;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_compareEqualToString(reading("a b|c"), word("ab"), &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_compareEqualToTString(reading("a5 b"), "ab", &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_compareEqualToTString(reading("a b"), "abc", &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
}

TEST(DictionaryStringMultiGetSubstrExtend, CutsAndPadsAsTheStringsOwnWindow) {
  EXPECT_EQ(window("a1|x b2 c", 0, 2), "a1|x b2");
  EXPECT_EQ(window("a b|q c", 1, 4), "b|q c b|q b|q");
  EXPECT_EQ(window("a b c", 3, 2), "~ ~");
  EXPECT_EQ(window("a b c", 9, 1), "~");
  EXPECT_EQ(window("a b c", 0, 0), "");
  EXPECT_EQ(window("a b c", 1, -1), "");
  EXPECT_EQ(window("a b c", 5, -1), "");
}

TEST(DictionaryStringMultiGetSubstrExtend, RefusesANegativeStart) {
  Owned<Positions> out;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_getSubstrExtend(reading("a b"), -1, 1, out), QOC_STATUS_INDEX_NEGATIVE);
}

TEST(DictionaryStringMulti, PrintsEveryPositionInBrackets) {
  const PrintedText printed;
  EXPECT_GE(qoc_ocrDictionaryStringMulti_print(reading("a|b c")), 0);
  EXPECT_EQ(printed.text(), "[[a b ][c ]]");
}

TEST(DictionaryStringMulti, PrintsTheEmptyReadingAsItsBrackets) {
  const PrintedText printed;
  EXPECT_GE(qoc_ocrDictionaryStringMulti_print(reading("")), 0);
  EXPECT_EQ(printed.text(), "[]");
}

TEST(DictionaryStringMulti, PrintEndsWithTheFirstFailure) {
  for (int64_t numPieces = 0; numPieces < 4; ++numPieces) {
    const PrintedText printed(numPieces, -9);
    EXPECT_EQ(qoc_ocrDictionaryStringMulti_print(reading("a|b c")), -9);
  }
}

TEST(DictionaryStringMulti, CopiesAreDeepAndSelfAssignmentDoesNothing) {
  auto source = reading("a1|b2 c");
  const auto copy = source;
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_assign(source, source), QSYS_STATUS_OK);
  EXPECT_EQ(show(source), "a1|b2 c");
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_setStringT(source, "xyz"), QSYS_STATUS_OK);
  EXPECT_EQ(show(copy), "a1|b2 c");
}

TEST(DictionaryStringMulti, EveryMissingArgumentIsOneReportAndTouchesNothing) {
  FailedChecks checks;
  const auto expectReport = [&](qsys_status status, const char *what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(status, QSYS_STATUS_OK);
    EXPECT_EQ(checks.numNew(), 1);
  };
  auto multi = reading("a|b c");
  auto string = word("old");
  auto text = stdString("old");
  Multi storage;
  Owned<Positions> out;
  qsys_bool flag = 55;
  int32_t n = 55;
#define EXPECT_REPORT(call) expectReport(call, #call)
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_construct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_constructCopy(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_constructCharacters(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_constructString(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_constructStringT(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_assign(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_destruct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_setString(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_setStringT(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_setStdString(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getString(nullptr, string));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getString(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getStdString(nullptr, text));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getStdString(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getSize(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getIsEmpty(nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_setCharacters(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_compareEqual(multi, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_compareEqual(multi, multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_compareEqualToString(multi, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_compareEqualToTString(multi, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_appendChar(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getSubstrExtend(nullptr, 0, 1, out));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_getSubstrExtend(multi, 0, 1, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryStringMulti_print(nullptr));
#undef EXPECT_REPORT
  EXPECT_EQ(show(multi), "a|b c");
  EXPECT_EQ(show(string), "old");
  EXPECT_EQ(show(text), "old");
  EXPECT_EQ(flag, 55u);
  EXPECT_EQ(n, 55);
}

}  // namespace
