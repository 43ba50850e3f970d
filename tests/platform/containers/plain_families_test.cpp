// Numbers, character codes, texts and spans.

#include <gtest/gtest.h>
#include <qoc/containers.h>

#include <string>

#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;

template <class V>
qsys_bool areEqual(const Owned<V> &a, const Owned<V> &b,
                   qsys_status (*compareEqual)(const V *, const V *, qsys_bool *)) {
  qsys_bool isEqual = 77;
  EXPECT_EQ(compareEqual(a, b, &isEqual), QSYS_STATUS_OK);
  return isEqual;
}

TEST(PlainVectors, DefaultElementsAreZero) {
  EXPECT_EQ(values(Owned<qstd_vector32s>([](auto *v) { return qstd_vector32s_construct(v, 2); })),
            (std::vector<int32_t>{0, 0}));
  EXPECT_EQ(values(Owned<qstd_vectorb>([](auto *v) { return qstd_vectorb_construct(v, 2); })),
            (std::vector<uint8_t>{0, 0}));
  EXPECT_EQ(values(Owned<qstd_vector_tchar>([](auto *v) { return qstd_vector_tchar_construct(v, 3); })),
            (std::vector<CharT>{0, 0, 0}));
}

TEST(PlainVectors, AFilledVectorHoldsTheValueEverywhere) {
  const int32_t value = 0x3FFFFFFF;
  const Owned<qstd_vector32s> filled([&](auto *v) { return qstd_vector32s_constructFill(v, 3, &value); });
  EXPECT_EQ(values(filled), (std::vector<int32_t>{value, value, value}));
}

TEST(PlainVectors, AFlagIsOneByte) {
  int32_t size = 0;
  EXPECT_EQ(qstd_vectorb_getElementSize(Owned<qstd_vectorb>(), &size), QSYS_STATUS_OK);
  EXPECT_EQ(size, 1);
}

TEST(PlainVectors, CompareEqualLooksAtEverySizeAndElement) {
  const auto a = vectorOf<qstd_vector32s>({1, 2}), same = vectorOf<qstd_vector32s>({1, 2}),
             other = vectorOf<qstd_vector32s>({1, 3}), longer = vectorOf<qstd_vector32s>({1, 2, 3});
  EXPECT_EQ(areEqual(a, same, qstd_vector32s_compareEqual), 1u);
  EXPECT_EQ(areEqual(a, other, qstd_vector32s_compareEqual), 0u);
  EXPECT_EQ(areEqual(a, longer, qstd_vector32s_compareEqual), 0u);
}

TEST(PlainVectors, VectorsOfVectorsCompareByTheirElements) {
  const auto inner = vectorOf<qstd_vectorChar32>({65, 66}), other = vectorOf<qstd_vectorChar32>({65, 67});
  const auto a = vectorOf<qstd_vector_vectorChar32>({*inner, *inner});
  const auto same = vectorOf<qstd_vector_vectorChar32>({*inner, *inner});
  const auto different = vectorOf<qstd_vector_vectorChar32>({*inner, *other});
  EXPECT_EQ(areEqual(a, same, qstd_vector_vectorChar32_compareEqual), 1u);
  EXPECT_EQ(areEqual(a, different, qstd_vector_vectorChar32_compareEqual), 0u);
}

TEST(PlainVectors, AVectorOfVectorsOwnsCopies) {
  auto inner = vectorOf<qstd_vector32s>({1, 2});
  const auto outer = vectorOf<qstd_vector_vector32s>({*inner});
  ASSERT_EQ(qstd_vector32s_clear(inner), QSYS_STATUS_OK);
  EXPECT_EQ(values(elements(outer)[0]), (std::vector<int32_t>{1, 2}));
}

TEST(Find, GivesTheFirstEqualElementOrNull) {
  const auto numbers = vectorOf<qstd_vector32s>({5, -7, 5, -7});
  const int32_t *found = nullptr;
  EXPECT_EQ(qstd_vector32s_find(numbers, -7, &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, elements(numbers).data() + 1);
  EXPECT_EQ(qstd_vector32s_find(numbers, 6, &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, nullptr);

  const auto codes = vectorOf<qstd_vectorChar32>({0xF800, 66, 66});
  const Char32 *code = nullptr;
  EXPECT_EQ(qstd_vectorChar32_find(codes, 66, &code), QSYS_STATUS_OK);
  EXPECT_EQ(code, elements(codes).data() + 1);
  EXPECT_EQ(qstd_vectorChar32_find(codes, 0xF801, &code), QSYS_STATUS_OK);
  EXPECT_EQ(code, nullptr);
}

TEST(Find, AnEmptyVectorHoldsNothing) {
  const int32_t some = 0;
  const int32_t *found = &some;
  EXPECT_EQ(qstd_vector32s_find(Owned<qstd_vector32s>(), 0, &found), QSYS_STATUS_OK);
  EXPECT_EQ(found, nullptr);
}

TEST(SortUnique, SortsBothWaysAsUnsignedNumbersAndKeepsOneOfEach) {
  auto codes = vectorOf<qstd_vectorChar32>({66, 0xFFFFFF80, 65, 66, 65, 0});
  EXPECT_EQ(qstd_vectorChar32_sortUnique(codes, 1), QSYS_STATUS_OK);
  EXPECT_EQ(values(codes), (std::vector<Char32>{0, 65, 66, 0xFFFFFF80}));
  EXPECT_EQ(qstd_vectorChar32_sortUnique(codes, 0), QSYS_STATUS_OK);
  EXPECT_EQ(values(codes), (std::vector<Char32>{0xFFFFFF80, 66, 65, 0}));
}

TEST(SortUnique, LeavesAnEmptyVectorEmpty) {
  Owned<qstd_vectorChar32> codes;
  EXPECT_EQ(qstd_vectorChar32_sortUnique(codes, 1), QSYS_STATUS_OK);
  EXPECT_TRUE(values(codes).empty());
}

TEST(String, IsMadeOfAZeroTerminatedText) {
  const Owned<qstd_string> string([](auto *s) { return qstd_string_constructString(s, "abc"); });
  EXPECT_EQ(show(string), "abc");
  const Owned<qstd_string> empty([](auto *s) { return qstd_string_constructString(s, ""); });
  EXPECT_EQ(show(empty), "");
}

TEST(String, AssignStringReplacesTheText) {
  auto string = stdString("a longer text");
  EXPECT_EQ(qstd_string_assignString(string, "xy"), QSYS_STATUS_OK);
  EXPECT_EQ(show(string), "xy");
  EXPECT_EQ(qstd_string_assignString(string, ""), QSYS_STATUS_OK);
  EXPECT_EQ(show(string), "");
}

TEST(String, MayContainZeroCharacters) {
  const auto string = stdString(std::string_view("a\0b", 3));
  EXPECT_EQ(show(string), std::string("a\0b", 3));
}

TEST(String, ComparesByItsCharacters) {
  EXPECT_EQ(areEqual(stdString("ab"), stdString("ab"), qstd_string_compareEqual), 1u);
  EXPECT_EQ(areEqual(stdString("ab"), stdString("aB"), qstd_string_compareEqual), 0u);
}

TEST(WideString, IsMadeOfAZeroTerminatedText) {
  const Owned<qstd_wstring> string([](auto *s) { return qstd_wstring_constructString(s, L"a\u20AC"); });
  EXPECT_EQ(values(string), (std::vector<wchar_t>{L'a', L'\u20AC'}));
}

TEST(String, MissingTextsAreReportedAndTouchNothing) {
  FailedChecks checks;
  auto string = stdString("abc");
  EXPECT_EQ(qstd_string_assignString(string, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(show(string), "abc");
  EXPECT_EQ(qstd_string_constructString(nullptr, "abc"), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_wstring_constructString(nullptr, L"abc"), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 2);
}

TEST(Span, IsEmptyAtZeroAfterConstruction) {
  const Owned<qstd_span32> span;
  EXPECT_EQ(span->begin, 0);
  EXPECT_EQ(span->end, 0);
}

TEST(Span, CopiesAndComparesBothEnds) {
  const qstd_span32 span = {2, 5}, otherBegin = {1, 5}, otherEnd = {2, 6};
  const Owned<qstd_span32> copy(span);
  qsys_bool isEqual = 77;
  EXPECT_EQ(qstd_span32_compareEqual(&span, copy, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
  EXPECT_EQ(qstd_span32_compareEqual(&span, &otherBegin, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
  isEqual = 77;
  EXPECT_EQ(qstd_span32_compareEqual(&span, &otherEnd, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 0u);
}

TEST(Span, SizeIsTheNumberOfPositions) {
  const struct {
    qstd_span32 span;
    int32_t size;
  } cases[] = {{{2, 5}, 3}, {{2, 2}, 0}, {{5, 2}, 0}, {{-3, 1}, 4}};
  for (const auto &[span, size] : cases) {
    int32_t n = -1;
    EXPECT_EQ(qstd_span32_getSize(&span, &n), QSYS_STATUS_OK);
    EXPECT_EQ(n, size);
  }
}

TEST(Span, MissingArgumentsAreReported) {
  FailedChecks checks;
  qstd_span32 span = {1, 2};
  EXPECT_EQ(qstd_span32_construct(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_span32_assign(&span, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_span32_getSize(&span, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_span32_compareEqual(&span, &span, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 4);
  EXPECT_EQ(span.begin, 1);
  EXPECT_EQ(span.end, 2);
}

TEST(Integers, MinAndMaxCompareSigned) {
  EXPECT_EQ(qxfIMin(-1, 1), -1);
  EXPECT_EQ(qxfIMin(INT32_MAX, INT32_MIN), INT32_MIN);
  EXPECT_EQ(qxfIMax(-1, 1), 1);
  EXPECT_EQ(qxfIMax(INT32_MAX, INT32_MIN), INT32_MAX);
  EXPECT_EQ(qxfIMin(4, 4), 4);
  EXPECT_EQ(qxfIMax(4, 4), 4);
}

}  // namespace
