// Dictionary strings.

#include <gtest/gtest.h>
#include <qoc/dictionary_string.h>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/long_text.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;
using String = qoc_ocrDictionaryString;
using Characters = qstd_vector_qoc_ocrDictionaryChar;

std::string window(const char *text, int32_t start, int32_t length) {
  auto out = characters("o|l|d");
  EXPECT_EQ(qoc_ocrDictionaryString_getSubstrExtend(word(text), start, length, out), QSYS_STATUS_OK);
  return show(out);
}

TEST(DictionaryString, IsEmptyAfterConstruction) {
  const Owned<String> string;
  qsys_bool isEmpty = 77;
  int32_t size = 77;
  EXPECT_EQ(qoc_ocrDictionaryString_getIsEmpty(string, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryString_getSize(string, &size), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);
  EXPECT_EQ(size, 0);
}

TEST(DictionaryString, TheEmptyTextGivesAnEmptyString) {
  const Owned<String> string([](String *s) { return qoc_ocrDictionaryString_constructStringT(s, ""); });
  qsys_bool isEmpty = 77;
  EXPECT_EQ(qoc_ocrDictionaryString_getIsEmpty(string, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);
  EXPECT_EQ(qoc_ocrDictionaryString_getIsEmpty(word("a"), &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 0u);
}

TEST(DictionaryString, AnEmptyStringGivesTheEmptyText) {
  auto text = stdString("old");
  EXPECT_EQ(qoc_ocrDictionaryString_getStdString(Owned<String>(), text), QSYS_STATUS_OK);
  EXPECT_EQ(show(text), "");
}

TEST(DictionaryString, IsConstructedOfATextWithOneCharacterForEachByte) {
  const Owned<String> string([](String *s) { return qoc_ocrDictionaryString_constructStringT(s, "a\xC3\xA4"); });
  EXPECT_EQ(show(string), "a{FFFFFFC3}{FFFFFFA4}");
  for (const qoc_ocrDictionaryChar &one : elements(string->characters)) {
    EXPECT_EQ(one.score, 0);
  }
}

TEST(DictionaryString, IsConstructedOfAStdString) {
  const Owned<String> string([](String *s) { return qoc_ocrDictionaryString_constructStdString(s, stdString("abc")); });
  EXPECT_EQ(show(string), "abc");
}

TEST(DictionaryString, AStdStringMayContainZeros) {
  Owned<String> string;
  EXPECT_EQ(qoc_ocrDictionaryString_setStdString(string, stdString(std::string_view("a\0b", 3))), QSYS_STATUS_OK);
  int32_t size = 0;
  EXPECT_EQ(qoc_ocrDictionaryString_getSize(string, &size), QSYS_STATUS_OK);
  EXPECT_EQ(size, 3);
}

TEST(DictionaryString, GetStdStringWritesUpToTheFirstZero) {
  const auto string = word(std::string_view("a\0b", 3));
  auto text = stdString("old");
  EXPECT_EQ(qoc_ocrDictionaryString_getStdString(string, text), QSYS_STATUS_OK);
  EXPECT_EQ(show(text), "a");
}

TEST(DictionaryString, TextsGoThereAndBack) {
  auto text = stdString("old");
  EXPECT_EQ(qoc_ocrDictionaryString_getStdString(word("a\x80\xFFz"), text), QSYS_STATUS_OK);
  EXPECT_EQ(show(text), "a\x80\xFFz");
}

TEST(DictionaryString, GetStdStringIsAllOrNothing) {
  auto text = stdString("old");
  EXPECT_EQ(qoc_ocrDictionaryString_getStdString(word(U"ab\u20AC"), text), QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(show(text), "old");
}

TEST(DictionaryString, SettingATextKeepsTheScoresOfKeptCharacters) {
  for (const bool isStd : {false, true}) {
    Owned<String> string(
        [](String *s) { return qoc_ocrDictionaryString_constructCharacters(s, characters("x7|y8|z9")); });
    EXPECT_EQ(isStd ? qoc_ocrDictionaryString_setStdString(string, stdString("ab"))
                    : qoc_ocrDictionaryString_setStringT(string, "ab"),
              QSYS_STATUS_OK);
    EXPECT_EQ(show(string), "ab");
    EXPECT_EQ(elements(string->characters)[0].score, 7);
    EXPECT_EQ(elements(string->characters)[1].score, 8);
  }
}

TEST(DictionaryString, CharactersGoInAndOutWithTheirScores) {
  Owned<String> string;
  Owned<Characters> out = characters("o|l|d");
  EXPECT_EQ(qoc_ocrDictionaryString_setCharacters(string, characters("a1|b2")), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryString_getCharacters(string, out), QSYS_STATUS_OK);
  EXPECT_EQ(show(out), "ab");
  EXPECT_EQ(elements(out)[1].score, 2);
}

TEST(DictionaryString, ComparesCodesAndNotScores) {
  const Owned<String> scored(
      [](String *s) { return qoc_ocrDictionaryString_constructCharacters(s, characters("a1|b2")); });
  const struct {
    const char *other;
    qsys_bool isEqual;
  } cases[] = {{"ab", 1}, {"ba", 0}, {"a", 0}, {"abc", 0}, {"", 0}};
  for (const auto &[other, wanted] : cases) {
    SCOPED_TRACE(other);
    qsys_bool isEqual = 77;
    EXPECT_EQ(qoc_ocrDictionaryString_compareEqual(scored, word(other), &isEqual), QSYS_STATUS_OK);
    EXPECT_EQ(isEqual, wanted);
  }
}

TEST(DictionaryString, CopiesAreDeepAndSelfAssignmentDoesNothing) {
  auto source = word("abc");
  const auto copy = source;
  EXPECT_EQ(qoc_ocrDictionaryString_assign(source, source), QSYS_STATUS_OK);
  EXPECT_EQ(show(source), "abc");
  EXPECT_EQ(qoc_ocrDictionaryString_setStringT(source, "xy"), QSYS_STATUS_OK);
  EXPECT_EQ(show(copy), "abc");
}

TEST(DictionaryStringGetSubstrExtend, PadsBehindTheEndWithTheWindowsOwnFirstCharacter) {
  EXPECT_EQ(window("abc", 1, 4), "bcbb");
  EXPECT_EQ(window("abc", 2, 3), "ccc");
  EXPECT_EQ(window("abc", 0, 5), "abcaa");
}

TEST(DictionaryStringGetSubstrExtend, GivesDefaultCharactersFromTheEndOn) {
  EXPECT_EQ(window("abc", 3, 2), "{F800}{F800}");
  EXPECT_EQ(window("abc", 100, 1), "{F800}");
  EXPECT_EQ(window("", 0, 2), "{F800}{F800}");
  auto out = characters("x9|y9");
  ASSERT_EQ(qoc_ocrDictionaryString_getSubstrExtend(word("abc"), 3, 2, out), QSYS_STATUS_OK);
  EXPECT_EQ(elements(out)[0].score, 0);
}

TEST(DictionaryStringGetSubstrExtend, GivesNothingForALengthOfZeroOrLess) {
  EXPECT_EQ(window("abc", 0, 0), "");
  EXPECT_EQ(window("abc", 1, -1), "");
  EXPECT_EQ(window("abc", 1, INT32_MIN), "");
  EXPECT_EQ(window("abc", 3, 0), "");
  EXPECT_EQ(window("abc", 3, -2), "");
}

TEST(DictionaryStringGetSubstrExtend, GivesTheExactWindowInside) {
  EXPECT_EQ(window("abcd", 1, 2), "bc");
  EXPECT_EQ(window("abcd", 0, 4), "abcd");
}

TEST(DictionaryStringGetSubstrExtend, RefusesANegativeStart) {
  auto out = characters("o|l|d");
  EXPECT_EQ(qoc_ocrDictionaryString_getSubstrExtend(word("abc"), -1, 2, out), QOC_STATUS_INDEX_NEGATIVE);
  EXPECT_EQ(qoc_ocrDictionaryString_getSubstrExtend(word("abc"), INT32_MIN, 2, out), QOC_STATUS_INDEX_NEGATIVE);
}

/// For want of memory, or because no object may be as large where addresses have 32 bits.
TEST(DictionaryStringGetSubstrExtend, ALengthThatThereIsNoRoomForChangesNothing) {
  LibraryAllocator memory;
  memory.refuseAbove(std::size_t{1} << 20);
  auto out = characters("o|l|d");
  for (const int32_t start : {0, 3}) {
    EXPECT_LT(qoc_ocrDictionaryString_getSubstrExtend(word("abc"), start, INT32_MAX, out), 0);
    EXPECT_EQ(show(out), "old");
  }
}

TEST(DictionaryStringGetSubstrExtend, KeepsTheScores) {
  const Owned<String> string(
      [](String *s) { return qoc_ocrDictionaryString_constructCharacters(s, characters("a1|b2")); });
  Owned<Characters> out;
  ASSERT_EQ(qoc_ocrDictionaryString_getSubstrExtend(string, 1, 2, out), QSYS_STATUS_OK);
  EXPECT_EQ(elements(out)[1].score, 2);
}

TEST(DictionaryStringConcatenate, AppendsTheSecondToTheFirstAndLeavesBothUnchanged) {
  const auto a = word("ab"), b = word("c");
  auto out = word("old");
  EXPECT_EQ(qoc_ocrDictionaryString_concatenate(a, b, out), QSYS_STATUS_OK);
  EXPECT_EQ(show(out), "abc");
  EXPECT_EQ(show(a), "ab");
  EXPECT_EQ(show(b), "c");
}

TEST(DictionaryStringConcatenate, TheOutputMayBeEitherInput) {
  auto a = word("ab"), b = word("c");
  EXPECT_EQ(qoc_ocrDictionaryString_concatenate(a, b, a), QSYS_STATUS_OK);
  EXPECT_EQ(show(a), "abc");
  EXPECT_EQ(qoc_ocrDictionaryString_concatenate(a, b, b), QSYS_STATUS_OK);
  EXPECT_EQ(show(b), "abcc");
  EXPECT_EQ(qoc_ocrDictionaryString_concatenate(a, a, a), QSYS_STATUS_OK);
  EXPECT_EQ(show(a), "abcabc");
}

TEST(DictionaryStringVector, FindsTheFirstStringOfTheSameCodes) {
  const auto strings = vectorOf<qstd_vector_qoc_ocrDictionaryString>({*word("ab"), *word("cd"), *word("cd")});
  const String *found = nullptr;
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryString_find(strings, word("cd"), &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, elements(strings).data() + 1);
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryString_find(strings, word("c"), &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, nullptr);
}

TEST(DictionaryStringVector, ComparesStringByString) {
  using Strings = qstd_vector_qoc_ocrDictionaryString;
  const auto a = vectorOf<Strings>({*word("ab"), *word("c")}), same = vectorOf<Strings>({*word("ab"), *word("c")}),
             other = vectorOf<Strings>({*word("ab"), *word("d")});
  qsys_bool isEqual = 77;
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryString_compareEqual(a, same, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryString_compareEqual(a, other, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
}

TEST(CharacterStrings, AreMadeOfTextsInTheirOrder) {
  using Strings = qstd_vector_vector_qoc_ocrDictionaryChar;
  const auto texts = vectorOf<qstd_vector_qstd_string>({*stdString("ab"), *stdString(""), *stdString("c\x80")});
  Owned<Strings> strings(
      [&](Strings *s) { return qstd_vector_vector_qoc_ocrDictionaryChar_constructStdStrings(s, texts); });
  ASSERT_EQ(elements(strings).size(), 3u);
  EXPECT_EQ(show(elements(strings)[0]), "ab");
  EXPECT_EQ(show(elements(strings)[1]), "");
  EXPECT_EQ(show(elements(strings)[2]), "c{FFFFFF80}");

  const auto fewer = vectorOf<qstd_vector_qstd_string>({*stdString("z")});
  EXPECT_EQ(qstd_vector_vector_qoc_ocrDictionaryChar_setStdStrings(strings, fewer), QSYS_STATUS_OK);
  ASSERT_EQ(elements(strings).size(), 1u);
  EXPECT_EQ(show(elements(strings)[0]), "z");
}

TEST(DictionaryString, EveryMissingArgumentIsOneReportAndTouchesNothing) {
  FailedChecks checks;
  const auto expectReport = [&](qsys_status status, const char *what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(status, QSYS_STATUS_OK);
    EXPECT_EQ(checks.numNew(), 1);
  };
  auto string = word("abc");
  auto out = characters("x");
  auto text = stdString("old");
  const auto params = runParams();
  String storage;
  Owned<qoc_ocrDictionaryResultSet> results;
  qsys_bool flag = 55;
  int32_t n = 55;
#define EXPECT_REPORT(call) expectReport(call, #call)
  EXPECT_REPORT(qoc_ocrDictionaryString_construct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_constructCopy(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_constructCharacters(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_constructStringT(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_constructStringT(nullptr, "a"));
  EXPECT_REPORT(qoc_ocrDictionaryString_constructStdString(&storage, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_assign(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_destruct(nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_setStringT(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_setStdString(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_getStdString(nullptr, text));
  EXPECT_REPORT(qoc_ocrDictionaryString_getStdString(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_getIsEmpty(nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryString_getSize(nullptr, &n));
  EXPECT_REPORT(qoc_ocrDictionaryString_getSize(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_compareEqual(string, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryString_compareEqual(string, string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_setCharacters(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_getCharacters(string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_getCharacters(nullptr, out));
  EXPECT_REPORT(qoc_ocrDictionaryString_getSubstrExtend(nullptr, 0, 1, out));
  EXPECT_REPORT(qoc_ocrDictionaryString_getSubstrExtend(string, 0, 1, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_concatenate(string, nullptr, string));
  EXPECT_REPORT(qoc_ocrDictionaryString_concatenate(string, string, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_editDistance(nullptr, string, nullptr, &n));
  EXPECT_REPORT(qoc_ocrDictionaryString_editDistance(string, nullptr, nullptr, &n));
  EXPECT_REPORT(qoc_ocrDictionaryString_editDistance(string, string, nullptr, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_isMatch(nullptr, string, params, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryString_isMatch(string, nullptr, params, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryString_isMatch(string, string, params, nullptr, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_isMatchMulti(nullptr, reading("a"), params, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryString_isMatchMulti(string, nullptr, params, nullptr, &flag));
  EXPECT_REPORT(qoc_ocrDictionaryString_match(nullptr, string, params, nullptr, results));
  EXPECT_REPORT(qoc_ocrDictionaryString_match(string, nullptr, params, nullptr, results));
  EXPECT_REPORT(qoc_ocrDictionaryString_match(string, string, params, nullptr, nullptr));
  EXPECT_REPORT(qoc_ocrDictionaryString_matchMulti(nullptr, reading("a"), params, nullptr, results));
  EXPECT_REPORT(qoc_ocrDictionaryString_matchMulti(string, nullptr, params, nullptr, results));
  EXPECT_REPORT(qoc_ocrDictionaryString_matchMulti(string, reading("a"), params, nullptr, nullptr));
#undef EXPECT_REPORT
  EXPECT_EQ(show(string), "abc");
  EXPECT_EQ(show(out), "x");
  EXPECT_EQ(show(text), "old");
  EXPECT_EQ(flag, 55u);
  EXPECT_EQ(n, 55);
  EXPECT_EQ(results->isComputed, 0u);
}

#if defined(__linux__) && SIZE_MAX > UINT32_MAX
TEST(DictionaryString, TextsBeyondWhatASizeCanTellAreRefused) {
  const LongText text;
  if (text.data() == nullptr) {
    GTEST_SKIP() << "no room";
  }
  auto string = word("kept");
  auto multi = reading("k e");
  Owned<qstd_string> plain = stdString("kept");
  EXPECT_EQ(qoc_ocrDictionaryString_setStringT(string, text.data()), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_setStringT(multi, text.data()), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(qstd_string_assignString(plain, text.data()), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(show(*string), "kept");
  EXPECT_EQ(show(*multi), "k e");
  EXPECT_EQ(elements(plain).size(), 4u);
}
#endif

}  // namespace
