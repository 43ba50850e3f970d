// Dictionary characters and vectors of them.

#include <gtest/gtest.h>
#include <qoc/dictionary_char.h>

#include <cstdlib>

#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;

void expectCharacter(const qoc_ocrDictionaryChar &one, Char32 code, int32_t score) {
  EXPECT_EQ(one.code, code);
  EXPECT_EQ(one.score, score);
}

bool isMatch(const qoc_ocrDictionaryChar &a, const qoc_ocrDictionaryChar &b) {
  qsys_bool flag = 77;
  EXPECT_EQ(qoc_ocrDictionaryChar_isMatch(&a, &b, nullptr, &flag), QSYS_STATUS_OK);
  EXPECT_LE(flag, 1u);
  return flag != 0;
}

TEST(DictionaryChar, IsEmptyWithScoreZeroAfterConstruction) {
  qoc_ocrDictionaryChar one = {'a', 9};
  EXPECT_EQ(qoc_ocrDictionaryChar_construct(&one), QSYS_STATUS_OK);
  expectCharacter(one, 0xF800, 0);
  EXPECT_EQ(qoc_ocrDictionaryChar_destruct(&one), QSYS_STATUS_OK);
}

TEST(DictionaryChar, IsEmptyWithScoreZeroAfterReset) {
  qoc_ocrDictionaryChar one = {'a', 9};
  EXPECT_EQ(qoc_ocrDictionaryChar_reset(&one), QSYS_STATUS_OK);
  expectCharacter(one, 0xF800, 0);
}

TEST(DictionaryChar, ConstructCharCodeSetsTheCodeAndLeavesTheScoreAsTheStorageHeldIt) {
  qoc_ocrDictionaryChar one = {1, 1234};
  EXPECT_EQ(qoc_ocrDictionaryChar_constructCharCode(&one, 0x20AC), QSYS_STATUS_OK);
  expectCharacter(one, 0x20AC, 1234);
}

TEST(DictionaryChar, ConstructCharTSetsTheCodeAndLeavesTheScoreAsTheStorageHeldIt) {
  qoc_ocrDictionaryChar one = {1, 1234};
  EXPECT_EQ(qoc_ocrDictionaryChar_constructCharT(&one, 'A'), QSYS_STATUS_OK);
  expectCharacter(one, 0x41, 1234);
}

TEST(DictionaryChar, ATextCharacterBecomesACodeBySignExtension) {
  qoc_ocrDictionaryChar one = {1, 2};
  const auto minusOne = static_cast<CharT>(-1);
  EXPECT_EQ(qoc_ocrDictionaryChar_constructCharT(&one, minusOne), QSYS_STATUS_OK);
  expectCharacter(one, 0xFFFFFFFF, 2);
  EXPECT_EQ(qoc_ocrDictionaryChar_setCharT(&one, static_cast<CharT>(0x80)), QSYS_STATUS_OK);
  expectCharacter(one, 0xFFFFFF80, 2);
}

TEST(DictionaryChar, CopyAndAssignTakeCodeAndScore) {
  const qoc_ocrDictionaryChar source = {'q', -5};
  qoc_ocrDictionaryChar copy = {1, 1}, assigned = {2, 2};
  EXPECT_EQ(qoc_ocrDictionaryChar_constructCopy(&copy, &source), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryChar_assign(&assigned, &source), QSYS_STATUS_OK);
  expectCharacter(copy, 'q', -5);
  expectCharacter(assigned, 'q', -5);
  EXPECT_EQ(qoc_ocrDictionaryChar_assign(&copy, &copy), QSYS_STATUS_OK);
  expectCharacter(copy, 'q', -5);
}

TEST(DictionaryCharGetCharT, RefusesTheEmptyCharacterAndLeavesTheOutputAlone) {
  const Owned<qoc_ocrDictionaryChar> one;
  CharT text = 'x';
  EXPECT_EQ(qoc_ocrDictionaryChar_getCharT(one, &text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(text, 'x');
}

TEST(DictionaryCharGetCharT, ConvertsExactlyTheSignExtensionsOfOneByte) {
  const struct {
    Char32 code;
    bool converts;
  } cases[] = {{0, true},          {0x41, true},       {0x7F, true},       {0x80, false},
               {0xFF, false},      {0x100, false},     {0x10041, false},   {0xFFFFFF7F, false},
               {0xFFFFFF80, true}, {0xFFFFFFFF, true}, {0x80000041, false}};
  for (const auto &[code, converts] : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << code);
    const qoc_ocrDictionaryChar one = {code, 0};
    CharT text = 'x';
    EXPECT_EQ(qoc_ocrDictionaryChar_getCharT(&one, &text), converts ? QSYS_STATUS_OK : QOC_STATUS_NO_SUCH_VALUE);
    EXPECT_EQ(static_cast<uint8_t>(text), converts ? code & 0xFF : static_cast<uint8_t>('x'));
  }
}

TEST(DictionaryChar, SetCharTKeepsTheScore) {
  qoc_ocrDictionaryChar one = {'a', 17};
  EXPECT_EQ(qoc_ocrDictionaryChar_setCharT(&one, 'b'), QSYS_STATUS_OK);
  expectCharacter(one, 'b', 17);
}

TEST(DictionaryChar, CharactersOfEqualCodesAndDifferentScoresAreEqual) {
  const qoc_ocrDictionaryChar a = {'a', 1}, sameCode = {'a', 99}, other = {'b', 1};
  qsys_bool isEqual = 77;
  EXPECT_EQ(qoc_ocrDictionaryChar_compareEqual(&a, &sameCode, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(qoc_ocrDictionaryChar_compareEqual(&a, &other, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
}

TEST(DictionaryChar, CompareQsortOrdersByUnsignedCode) {
  const qoc_ocrDictionaryChar a = {1, 5}, b = {0xFFFFFFFF, 9}, alsoA = {1, 7};
  EXPECT_EQ(qoc_ocrDictionaryChar_compareQsort(&a, &b), -1);
  EXPECT_EQ(qoc_ocrDictionaryChar_compareQsort(&b, &a), 1);
  EXPECT_EQ(qoc_ocrDictionaryChar_compareQsort(&a, &alsoA), 0);
}

TEST(DictionaryChar, SortingByScoresGivesTheHighestFirstAndTiesByCode) {
  qoc_ocrDictionaryChar list[] = {{66, 5}, {65, 5}, {67, 9}};
  std::qsort(list, 3, sizeof list[0], qoc_ocrDictionaryChar_compareScoresQsort);
  expectCharacter(list[0], 67, 9);
  expectCharacter(list[1], 65, 5);
  expectCharacter(list[2], 66, 5);
}

TEST(DictionaryChar, ScoresAreComparedSigned) {
  const qoc_ocrDictionaryChar low = {'a', INT32_MIN}, high = {'b', INT32_MAX}, sameAsLow = {'a', INT32_MIN};
  EXPECT_EQ(qoc_ocrDictionaryChar_compareScoresQsort(&low, &high), 1);
  EXPECT_EQ(qoc_ocrDictionaryChar_compareScoresQsort(&high, &low), -1);
  EXPECT_EQ(qoc_ocrDictionaryChar_compareScoresQsort(&low, &sameAsLow), 0);
}

TEST(DictionaryCharIsMatch, WithoutSwapsOnlyEqualCodesMatch) {
  EXPECT_TRUE(isMatch(character('a', 1), character('a', 2)));
  EXPECT_FALSE(isMatch(character('a'), character('b')));
}

TEST(DictionaryCharIsMatch, TheEmptyCharacterMatchesNothingNotEvenItself) {
  EXPECT_FALSE(isMatch(character(QOC_CHAR_EMPTY), character(QOC_CHAR_EMPTY)));
  EXPECT_FALSE(isMatch(character(QOC_CHAR_EMPTY), character('a')));
  EXPECT_FALSE(isMatch(character('a'), character(QOC_CHAR_EMPTY)));
}

TEST(DictionaryCharIsMatch, TheWildcardMatchesEverythingButTheEmptyCharacter) {
  EXPECT_TRUE(isMatch(character(QOC_CHAR_ANY), character('a')));
  EXPECT_TRUE(isMatch(character(' '), character(QOC_CHAR_ANY)));
  EXPECT_FALSE(isMatch(character(QOC_CHAR_ANY), character(QOC_CHAR_EMPTY)));
  EXPECT_FALSE(isMatch(character(QOC_CHAR_EMPTY), character(QOC_CHAR_ANY)));
}

TEST(DictionaryCharIsMatch, ABareCodeMatchesAsACharacterWould) {
  const qoc_ocrDictionaryChar a = character('a');
  const struct {
    Char32 code;
    qsys_bool isMatch;
  } cases[] = {{'a', 1}, {'b', 0}, {QOC_CHAR_EMPTY, 0}, {QOC_CHAR_ANY, 1}};
  for (const auto &[code, wanted] : cases) {
    SCOPED_TRACE(code);
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryChar_isMatchChar32(&a, code, nullptr, &flag), QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
  }
}

TEST(DictionaryCharIsMatchMulti, OneMatchingCandidateIsEnough) {
  const struct {
    const char *candidates;
    qsys_bool isMatch;
  } cases[] = {{"a", 1}, {"x|a", 1}, {"x|y|a5|z", 1}, {"x|y", 0}, {"", 0}};
  const qoc_ocrDictionaryChar a = character('a');
  for (const auto &[candidates, wanted] : cases) {
    SCOPED_TRACE(candidates);
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryChar_isMatchMulti(&a, characters(candidates), nullptr, &flag), QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
  }
}

TEST(DictionaryCharIsMatchMultiStatus, GradesByThePlaceOfTheMatchingCandidate) {
  const struct {
    const char *candidates;
    qsys_bool isMatch;
    qoc_ocrDictionaryPositionStatus status;
  } cases[] = {
      {"a", 1, qoc_ocrDictionaryPositionStatus_primary},     {"a|b", 1, qoc_ocrDictionaryPositionStatus_primary},
      {"b|a", 1, qoc_ocrDictionaryPositionStatus_secondary}, {"b|c|a", 1, qoc_ocrDictionaryPositionStatus_secondary},
      {"b|c", 0, qoc_ocrDictionaryPositionStatus_noMatch},   {"", 0, qoc_ocrDictionaryPositionStatus_noMatch},
  };
  const qoc_ocrDictionaryChar a = character('a');
  for (const auto &[candidates, wanted, wantedStatus] : cases) {
    SCOPED_TRACE(candidates);
    qsys_bool flag = 77;
    qoc_ocrDictionaryPositionStatus status = 77;
    EXPECT_EQ(qoc_ocrDictionaryChar_isMatchMultiStatus(&a, characters(candidates), nullptr, &flag, &status),
              QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
    EXPECT_EQ(status, wantedStatus);
  }
}

TEST(DictionaryCharVector, ComparesCodesInOrderAndNotScores) {
  const auto isEqual = [](const char *a, const char *b) {
    qsys_bool flag = 77;
    EXPECT_EQ(qstd_vector_qoc_ocrDictionaryChar_compareEqual(characters(a), characters(b), &flag), QSYS_STATUS_OK);
    return flag;
  };
  EXPECT_EQ(isEqual("a1|b2", "a|b"), 1u);
  EXPECT_EQ(isEqual("a|b", "b|a"), 0u);
  EXPECT_EQ(isEqual("a", "a|a"), 0u);
  EXPECT_EQ(isEqual("", ""), 1u);
}

TEST(DictionaryCharVector, VectorsOfVectorsCompareByTheirStrings) {
  using Strings = qstd_vector_vector_qoc_ocrDictionaryChar;
  const auto a = vectorOf<Strings>({*characters("a|b"), *characters("c")});
  const auto same = vectorOf<Strings>({*characters("a7|b"), *characters("c8")});
  const auto other = vectorOf<Strings>({*characters("a|b"), *characters("d")});
  qsys_bool isEqual = 77;
  EXPECT_EQ(qstd_vector_vector_qoc_ocrDictionaryChar_compareEqual(a, same, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(qstd_vector_vector_qoc_ocrDictionaryChar_compareEqual(a, other, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
}

TEST(DictionaryCharVectorFind, GivesTheFirstOfTheSameCodeOrNull) {
  const auto vector = characters("a|b1|b2");
  const qoc_ocrDictionaryChar b = character('b', 50), c = character('c');
  const qoc_ocrDictionaryChar *found = nullptr;
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryChar_find(vector, &b, &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, elements(vector).data() + 1);
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryChar_find(vector, &c, &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, nullptr);
}

TEST(DictionaryCharVectorRemoveDup, KeepsTheFirstOfEveryCodeInOrder) {
  auto vector = vectorOf<qstd_vector_qoc_ocrDictionaryChar>({{65, 1}, {66, 2}, {65, 3}, {67, 4}, {66, 5}});
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryChar_removeDup(vector), QSYS_STATUS_OK);
  const auto left = values(vector);
  ASSERT_EQ(left.size(), 3u);
  expectCharacter(left[0], 65, 1);
  expectCharacter(left[1], 66, 2);
  expectCharacter(left[2], 67, 4);
}

TEST(DictionaryCharVectorRemoveDup, LeavesVectorsWithoutDuplicatesAlone) {
  for (const char *text : {"", "a", "a|b|c"}) {
    auto vector = characters(text);
    EXPECT_EQ(qstd_vector_qoc_ocrDictionaryChar_removeDup(vector), QSYS_STATUS_OK);
    EXPECT_EQ(show(vector), show(characters(text)));
  }
}

TEST(DictionaryCharVector, IsConstructedOfATextWithScoresZero) {
  using Vector = qstd_vector_qoc_ocrDictionaryChar;
  const Owned<Vector> vector([](Vector *v) { return qstd_vector_qoc_ocrDictionaryChar_constructStringT(v, "a\x80"); });
  const auto list = values(vector);
  ASSERT_EQ(list.size(), 2u);
  expectCharacter(list[0], 'a', 0);
  expectCharacter(list[1], 0xFFFFFF80, 0);
}

TEST(DictionaryCharVector, SetStringTKeepsTheScoresThatWereThere) {
  auto vector = characters("x7|y8");
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryChar_setStringT(vector, "abc"), QSYS_STATUS_OK);
  const auto list = values(vector);
  ASSERT_EQ(list.size(), 3u);
  expectCharacter(list[0], 'a', 7);
  expectCharacter(list[1], 'b', 8);
  expectCharacter(list[2], 'c', 0);
}

TEST(DictionaryChar, EveryMissingArgumentIsOneReportAndTouchesNothing) {
  FailedChecks checks;
  const auto expectReport = [&](qsys_status status, const char *what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(status, QSYS_STATUS_OK);
    EXPECT_EQ(checks.numNew(), 1);
  };
  qoc_ocrDictionaryChar one = {'a', 3};
  auto candidates = characters("a|b");
  CharT text = 'x';
  qsys_bool flag = 55;
  qoc_ocrDictionaryPositionStatus status = 55;
  const qoc_ocrDictionaryChar *found = &one;
#define EXPECT_REPORT(call) expectReport(call, #call)
  EXPECT_REPORT(qoc_ocrDictionaryChar_construct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_constructCopy(&one, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_constructCopy(nullptr, &one));
  EXPECT_REPORT(qoc_ocrDictionaryChar_constructCharCode(nullptr, 'a'));
  EXPECT_REPORT(qoc_ocrDictionaryChar_constructCharT(nullptr, 'a'));
  EXPECT_REPORT(qoc_ocrDictionaryChar_assign(&one, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_assign(nullptr, &one));
  EXPECT_REPORT(qoc_ocrDictionaryChar_destruct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_reset(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_getCharT(nullptr, &text));
  EXPECT_REPORT(qoc_ocrDictionaryChar_getCharT(&one, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_setCharT(nullptr, 'b'));
  EXPECT_REPORT(qoc_ocrDictionaryChar_compareEqual(nullptr, &one, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_compareEqual(&one, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_compareEqual(&one, &one, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatch(nullptr, &one, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatch(&one, nullptr, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatch(&one, &one, nullptr, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMulti(nullptr, candidates, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMulti(&one, nullptr, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMulti(&one, candidates, nullptr, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMultiStatus(nullptr, candidates, nullptr, &flag, &status));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMultiStatus(&one, nullptr, nullptr, &flag, &status));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMultiStatus(&one, candidates, nullptr, nullptr, &status));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchMultiStatus(&one, candidates, nullptr, &flag, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchChar32(nullptr, 'a', nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryChar_isMatchChar32(&one, 'a', nullptr, nullptr));
  EXPECT_REPORT(qstd_vector_qoc_ocrDictionaryChar_find(nullptr, &one, &found));
  EXPECT_REPORT(qstd_vector_qoc_ocrDictionaryChar_find(candidates, nullptr, &found));
  EXPECT_REPORT(qstd_vector_qoc_ocrDictionaryChar_find(candidates, &one, nullptr));
  EXPECT_REPORT(qstd_vector_qoc_ocrDictionaryChar_removeDup(nullptr));
  EXPECT_REPORT(qstd_vector_qoc_ocrDictionaryChar_setStringT(candidates, nullptr));
  EXPECT_REPORT(qstd_vector_qoc_ocrDictionaryChar_setStringT(nullptr, "a"));
#undef EXPECT_REPORT
  expectCharacter(one, 'a', 3);
  EXPECT_EQ(show(candidates), "ab");
  EXPECT_EQ(text, 'x');
  EXPECT_EQ(flag, 55u);
  EXPECT_EQ(status, 55);
  EXPECT_EQ(found, &one);
}

TEST(DictionaryChar, AZeroCodeOrTextCharacterIsReported) {
  FailedChecks checks;
  qoc_ocrDictionaryChar one = {'a', 3};
  EXPECT_EQ(qoc_ocrDictionaryChar_constructCharCode(&one, 0), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qoc_ocrDictionaryChar_constructCharT(&one, 0), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qoc_ocrDictionaryChar_setCharT(&one, 0), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

}  // namespace
