// Multi-candidate characters.

#include <gtest/gtest.h>
#include <qoc/dictionary_char.h>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;
using Multi = qoc_ocrDictionaryCharMulti;

qsys_bool isEqual(const char *a, const char *b) {
  qsys_bool flag = 77;
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_compareEqual(position(a), position(b), &flag), QSYS_STATUS_OK);
  return flag;
}

TEST(DictionaryCharMulti, AnEmptyOneHasNoCandidates) {
  const Owned<Multi> multi;
  qsys_bool isEmpty = 77;
  int32_t n = 77;
  qoc_ocrDictionaryChar out = character('x', 5);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getIsEmpty(multi, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getNumCharacters(multi, &n), QSYS_STATUS_OK);
  EXPECT_EQ(n, 0);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getPrimaryCharacter(multi, &out), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getSingleCharacter(multi, &out), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(out.code, static_cast<Char32>('x'));
  EXPECT_EQ(out.score, 5);
}

TEST(DictionaryCharMulti, AnEmptyOnePrintsItsBracketsOnly) {
  const PrintedText printed;
  EXPECT_GE(qoc_ocrDictionaryCharMulti_print(Owned<Multi>()), 0);
  EXPECT_EQ(printed.text(), "[]");
}

TEST(DictionaryCharMulti, PrintsItsCandidatesInOrderWithABlankBehindEach) {
  const PrintedText printed;
  EXPECT_GE(qoc_ocrDictionaryCharMulti_print(position("b|a7|c")), 0);
  EXPECT_EQ(printed.text(), "[b a c ]");
}

TEST(DictionaryCharMulti, PrintEndsWithTheFirstFailure) {
  const PrintedText printed(2, -9);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_print(position("b|a")), -9);
}

TEST(DictionaryCharMulti, OfTwoCandidatesThereIsAPrimaryButNoSingleOne) {
  const auto multi = position("a3|b9");
  qoc_ocrDictionaryChar out = character('x', 5);
  CharT text = 'x';
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getSingleCharacter(multi, &out), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(out.code, static_cast<Char32>('x'));
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getCharT(multi, &text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(text, 'x');
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getPrimaryCharacter(multi, &out), QSYS_STATUS_OK);
  EXPECT_EQ(out.code, static_cast<Char32>('a'));
  EXPECT_EQ(out.score, 3);
}

TEST(DictionaryCharMulti, ASingleCandidateIsGivenInEveryForm) {
  const auto multi = position("a3");
  qoc_ocrDictionaryChar single = character('x'), primary = character('x');
  CharT text = 'x';
  int32_t n = 0;
  qsys_bool isEmpty = 77;
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getSingleCharacter(multi, &single), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getPrimaryCharacter(multi, &primary), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getCharT(multi, &text), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getNumCharacters(multi, &n), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getIsEmpty(multi, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(single.code, static_cast<Char32>('a'));
  EXPECT_EQ(single.score, 3);
  EXPECT_EQ(primary.score, 3);
  EXPECT_EQ(text, 'a');
  EXPECT_EQ(n, 1);
  EXPECT_EQ(isEmpty, 0u);
}

TEST(DictionaryCharMulti, ASingleCandidateThatIsNoTextCharacterDoesNotConvert) {
  const Owned<Multi> multi([](Multi *m) { return qoc_ocrDictionaryCharMulti_constructCharCode(m, 0x20AC); });
  CharT text = 'x';
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_getCharT(multi, &text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(text, 'x');
}

TEST(DictionaryCharMulti, IsConstructedOfCharactersInTheirOrder) {
  const auto list = characters("b1|a9|b1");
  const Owned<Multi> multi([&](Multi *m) { return qoc_ocrDictionaryCharMulti_constructCharacters(m, list); });
  EXPECT_EQ(show(multi), "b1|a9|b1");
}

TEST(DictionaryCharMulti, IsConstructedOfATextCharacterOrACodeWithScoreZero) {
  const Owned<Multi> ofText(
      [](Multi *m) { return qoc_ocrDictionaryCharMulti_constructCharT(m, static_cast<CharT>(-2)); });
  const Owned<Multi> ofCode([](Multi *m) { return qoc_ocrDictionaryCharMulti_constructCharCode(m, 0x20AC); });
  EXPECT_EQ(show(ofText), "{FFFFFFFE}");
  EXPECT_EQ(show(ofCode), "{20AC}");
}

TEST(DictionaryCharMulti, CopiesAreDeep) {
  auto source = position("a1|b2");
  const auto copy = source;
  Owned<Multi> assigned = position("x|y|z");
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_assign(assigned, source), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_assign(source, source), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharT(source, 'q'), QSYS_STATUS_OK);
  EXPECT_EQ(show(copy), "a1|b2");
  EXPECT_EQ(show(assigned), "a1|b2");
}

TEST(DictionaryCharMulti, SetCharMakesTheCharacterTheOnlyCandidate) {
  for (const char *before : {"~", "a1", "a1|b2"}) {
    auto multi = position(before);
    const qoc_ocrDictionaryChar one = character('q', -4);
    EXPECT_EQ(qoc_ocrDictionaryCharMulti_setChar(multi, &one), QSYS_STATUS_OK);
    EXPECT_EQ(show(multi), "q-4");
  }
}

TEST(DictionaryCharMulti, SetCharTakesACandidateOfItsOwn) {
  auto multi = position("a1|b2");
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setChar(multi, &elements(multi->candidates)[1]), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "b2");
}

TEST(DictionaryCharMulti, SetCharacterCodeScoreSetsBothFields) {
  for (const char *before : {"~", "a1", "a1|b2"}) {
    auto multi = position(before);
    EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharacterCodeScore(multi, 'q', 44), QSYS_STATUS_OK);
    EXPECT_EQ(show(multi), "q44");
  }
}

TEST(DictionaryCharMulti, SetCharactersReplacesTheList) {
  auto multi = position("x|y|z");
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharacters(multi, characters("b1|a2")), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "b1|a2");
}

TEST(DictionaryCharMulti, SetCharTKeepsTheScoreOfTheFirstCandidate) {
  auto multi = position("A7|B3");
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharT(multi, 'x'), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "x7");
}

TEST(DictionaryCharMulti, SetCharTOfAnEmptyOneGivesScoreZero) {
  Owned<Multi> multi;
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharT(multi, 'x'), QSYS_STATUS_OK);
  EXPECT_EQ(show(multi), "x");
}

TEST(DictionaryCharMulti, StaysEmptyWithoutMemoryForACandidate) {
  LibraryAllocator memory;
  Owned<qoc_ocrDictionaryCharMulti> multi;
  memory.failFrom(0);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharT(multi, 'a'), QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharacterCodeScore(multi, 'a', 1), QSYS_STATUS_OUT_OF_MEMORY);
  memory.failFrom(-1);
  EXPECT_EQ(show(multi), "~");
}

TEST(DictionaryCharMulti, ComparesCodesInOrderAndNotScores) {
  EXPECT_EQ(isEqual("A1", "A9"), 1u);
  EXPECT_EQ(isEqual("A1|B1", "B1|A1"), 0u);
  EXPECT_EQ(isEqual("A|B", "A"), 0u);
  EXPECT_EQ(isEqual("~", "~"), 1u);
  EXPECT_EQ(isEqual("~", "A"), 0u);
}

TEST(DictionaryCharMulti, ACodeMatchesAnyCandidate) {
  const auto multi = position("a|b");
  const struct {
    Char32 code;
    qsys_bool isMatch;
  } cases[] = {{'a', 1}, {'b', 1}, {'c', 0}};
  for (const auto &[code, wanted] : cases) {
    SCOPED_TRACE(code);
    qsys_bool flag = 77;
    EXPECT_EQ(qoc_ocrDictionaryCharMulti_isMatchChar32(multi, code, nullptr, &flag), QSYS_STATUS_OK);
    EXPECT_EQ(flag, wanted);
  }
}

TEST(DictionaryCharMulti, EveryMissingArgumentIsOneReportAndTouchesNothing) {
  FailedChecks checks;
  const auto expectReport = [&](qsys_status status, const char *what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(status, QSYS_STATUS_OK);
    EXPECT_EQ(checks.numNew(), 1);
  };
  auto multi = position("a1|b2");
  Multi storage;
  qoc_ocrDictionaryChar out = character('x', 5);
  CharT text = 'x';
  qsys_bool flag = 55;
  int32_t n = 55;
#define EXPECT_REPORT(call) expectReport(call, #call)
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_construct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_constructCopy(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_constructCharacters(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_constructCharT(nullptr, 'a'));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_constructCharCode(nullptr, 'a'));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_assign(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_destruct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getIsEmpty(nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getIsEmpty(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getNumCharacters(nullptr, &n));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getNumCharacters(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getSingleCharacter(nullptr, &out));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getPrimaryCharacter(nullptr, &out));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getPrimaryCharacter(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_setChar(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_setChar(nullptr, &out));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_setCharacterCodeScore(nullptr, 'a', 1));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_setCharacters(multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_getCharT(nullptr, &text));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_setCharT(nullptr, 'a'));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_compareEqual(multi, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_compareEqual(multi, multi, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_isMatchChar32(nullptr, 'a', nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_isMatchChar32(multi, 'a', nullptr, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryCharMulti_print(nullptr));
#undef EXPECT_REPORT
  EXPECT_EQ(show(multi), "a1|b2");
  EXPECT_EQ(out.code, static_cast<Char32>('x'));
  EXPECT_EQ(text, 'x');
  EXPECT_EQ(flag, 55u);
  EXPECT_EQ(n, 55);
}

TEST(DictionaryCharMulti, TakesNoZeroForACharacter) {
  FailedChecks failed;
  auto multi = position("a3|b");
  Multi unconstructed = {};
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_setCharT(multi, '\0'), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryCharMulti_constructCharT(&unconstructed, '\0'), QSYS_STATUS_OK);
  EXPECT_EQ(failed.numNew(), 2);
  EXPECT_EQ(show(*multi), show(*position("a3|b")));
  EXPECT_EQ(unconstructed.candidates.core.elements, nullptr);
}

}  // namespace
