// The life of wrapped values, failures, and text.

#include <gtest/gtest.h>
#include <qoc/qoc.hpp>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/allocator.hpp"

namespace {

using namespace std::string_literals;

template <class T>
class ValueLife : public testing::Test {};

/// A value of each type that is not empty.
template <class T>
T filled() = delete;
template <>
qoc::String filled() {
  return "word";
}
template <>
qoc::Reading filled() {
  return "word";
}
template <>
qoc::Lexicon filled() {
  return {"word", "words"};
}
template <>
qoc::PositionFielding filled() {
  return qoc::PositionFielding(QOC_FIELDING_DIGIT, "-");
}
template <>
qoc::LineFielding filled() {
  return {qoc::PositionFielding(QOC_FIELDING_DIGIT)};
}
template <>
qoc::RegularExpression filled() {
  return qoc::RegularExpression("[A-Z]{2}-?[0-9]+");
}
template <>
qoc::SwapSet filled() {
  return qoc::SwapSet::ofGroups({"O0", "Il1"});
}
template <>
qoc::Dictionary filled() {
  qoc::Dictionary dictionary;
  dictionary.add(filled<qoc::Lexicon>());
  dictionary.setSwaps(filled<qoc::SwapSet>());
  return dictionary;
}

using Values = testing::Types<qoc::String, qoc::Reading, qoc::Lexicon, qoc::PositionFielding, qoc::LineFielding,
                              qoc::RegularExpression, qoc::SwapSet, qoc::Dictionary>;
TYPED_TEST_SUITE(ValueLife, Values);

TYPED_TEST(ValueLife, MovesThrowNothingSoThatVectorsMove) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<TypeParam>);
  EXPECT_TRUE(std::is_nothrow_swappable_v<TypeParam>);
}

TYPED_TEST(ValueLife, CopiesAreEqualAndIndependent) {
  TypeParam first = filled<TypeParam>();
  const TypeParam copy(first);
  EXPECT_EQ(copy, first);
  first = TypeParam();
  EXPECT_EQ(copy, filled<TypeParam>());
  EXPECT_NE(copy, first);
  first = copy;
  EXPECT_EQ(first, copy);
}

TYPED_TEST(ValueLife, AssignmentToItselfChangesNothing) {
  TypeParam value = filled<TypeParam>();
  TypeParam &same = value;
  value = same;
  EXPECT_EQ(value, filled<TypeParam>());
  value = std::move(same);
  EXPECT_EQ(value, filled<TypeParam>());
}

TYPED_TEST(ValueLife, WhatWasMovedFromIsEmptyAndUsable) {
  TypeParam first = filled<TypeParam>();
  TypeParam second(std::move(first));
  EXPECT_EQ(second, filled<TypeParam>());
  EXPECT_EQ(first, TypeParam());  // NOLINT(bugprone-use-after-move): that is the promise.
  first = std::move(second);
  EXPECT_EQ(first, filled<TypeParam>());
  EXPECT_EQ(second, TypeParam());  // NOLINT(bugprone-use-after-move)
}

TYPED_TEST(ValueLife, GrowingVectorsKeepTheirValues) {
  std::vector<TypeParam> values;
  for (int i = 0; i < 20; ++i) {
    values.push_back(filled<TypeParam>());  // NOLINT(performance-inefficient-vector-operation): it is to grow.
  }
  for (const TypeParam &value : values) {
    EXPECT_EQ(value, filled<TypeParam>());
  }
}

TEST(Failures, CarryTheStatusItsNameAndItsSentence) {
  try {
    const qoc::Lexicon refused{"one", "one"};
    FAIL() << "a duplicate was accepted";
  } catch (const qoc::Error &error) {
    EXPECT_EQ(error.status(), qoc::Status(QOC_STATUS_STRING_DUPLICATE));
    EXPECT_STREQ(error.status().name(), "QOC_STATUS_STRING_DUPLICATE");
    EXPECT_STREQ(error.what(), qoc_status_getText(QOC_STATUS_STRING_DUPLICATE));
  }
}

TEST(Failures, AttemptGivesTheValueOrTheStatus) {
  auto good = qoc::attempt([] { return qoc::Lexicon{"one"}; });
  ASSERT_TRUE(good);
  EXPECT_EQ(good->size(), 1u);
  EXPECT_TRUE(good.error().isSuccess());

  auto bad = qoc::attempt([] { return qoc::Lexicon{"one", ""}; });
  EXPECT_FALSE(bad.has_value());
  EXPECT_EQ(bad.error(), qoc::Status(QOC_STATUS_STRING_EMPTY));
  EXPECT_THROW((void)bad.value(), qoc::Error);
  EXPECT_EQ(bad.value_or(qoc::Lexicon{"two"}), qoc::Lexicon{"two"});
}

TEST(Failures, AttemptOfACallWithoutValueGivesAStatus) {
  qoc::Lexicon lexicon{"one"};
  EXPECT_TRUE(qoc::attempt([&] { lexicon.add("two"); }).isSuccess());
  EXPECT_EQ(qoc::attempt([&] { lexicon.add("two"); }), qoc::Status(QOC_STATUS_STRING_DUPLICATE));
}

TEST(Failures, ExpectedGoesOnWithItsValueOnly) {
  const auto size = [](const char *word) {
    return qoc::attempt([&] { return qoc::String(word); }).transform([](const qoc::String &s) { return s.size(); });
  };
  EXPECT_EQ(size("\u00C4pfel").value(), 5u);
  EXPECT_EQ(size("\xFF").error(), qoc::Status(QOC_STATUS_NO_SUCH_VALUE));
  auto chained = qoc::attempt([] { return 1; }).and_then([](int) {
    return qoc::Expected<int>(qoc::Status(QSYS_STATUS_INTERNAL));
  });
  EXPECT_EQ(chained.error(), qoc::Status(QSYS_STATUS_INTERNAL));
}

TEST(Text, IsReadAsUtf8AndAsCodes) {
  const qoc::String fromUtf8("a\u00E4\u20AC\U0001F600"), fromCodes(U"a\u00E4\u20AC\U0001F600");
  EXPECT_EQ(fromUtf8, fromCodes);
  EXPECT_EQ(fromUtf8, qoc::String(u8"a\u00E4\u20AC\U0001F600"));
  EXPECT_EQ(fromUtf8.codes(), U"a\u00E4\u20AC\U0001F600");
  EXPECT_EQ(fromUtf8.utf8(), "a\u00E4\u20AC\U0001F600");
  EXPECT_EQ(fromUtf8.size(), 4u);
}

TEST(Text, EveryCodePointComesBack) {
  for (char32_t code = 1; code <= 0x10FFFF; code += code < 0x3000 ? 1 : 37) {
    if ((code >= 0xD800 && code <= 0xDFFF) || qoc::isReserved(code)) {
      continue;
    }
    const std::u32string text(1, code);
    const std::string utf8 = qoc::String(text).utf8();
    ASSERT_EQ(qoc::String(utf8).codes(), text) << std::hex << static_cast<std::uint32_t>(code);
  }
}

TEST(Text, RefusesWhatIsNotUtf8) {
  for (const std::string &text :
       {"\x80"s, "\xC0\x80"s, "\xC1\xBF"s, "\xE0\x80\x80"s, "\xE0\x9F\xBF"s, "\xED\xA0\x80"s, "\xF0\x8F\xBF\xBF"s,
        "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s, "\xC3"s, "\xE2\x82"s, "\xE2\x28\xA1"s, "ok\xFF"s}) {
    EXPECT_THROW(qoc::String{text}, qoc::Error) << text;
  }
}

TEST(Text, SaysWhichByteIsNotUtf8) {
  try {
    const qoc::String string("ok\xFF");
    FAIL();
  } catch (const qoc::Error &error) {
    EXPECT_NE(std::string(error.what()).find("byte 3"), std::string::npos) << error.what();
  }
}

TEST(Text, FromOutsideCannotBecomeAWildcard) {
  EXPECT_THROW(qoc::String("a\uF801"), qoc::Error);
  EXPECT_THROW(qoc::String("a\0b"s), qoc::Error);
  EXPECT_EQ(qoc::String(U"a\uF801").size(), 2u);  // Codes are meant as they stand.
}

TEST(Text, LeavesEmptyCharactersOutOfUtf8) { EXPECT_EQ(qoc::String(U"a\uF800b").utf8(), "ab"); }

TEST(Memory, OutOfMemoryIsAnErrorLikeEveryOther) {
  qoc::test::LibraryAllocator allocator;
  const qoc::Dictionary dictionary = filled<qoc::Dictionary>();
  allocator.failFrom(0);
  EXPECT_EQ(qoc::attempt([&] { return qoc::Dictionary(dictionary); }).error(), qoc::Status(QSYS_STATUS_OUT_OF_MEMORY));
}

TEST(Memory, MovesNeedNone) {
  qoc::test::LibraryAllocator allocator;
  qoc::Dictionary first = filled<qoc::Dictionary>();
  const qoc::Dictionary expected(first);
  allocator.failFrom(0);
  qoc::Dictionary second(std::move(first));
  EXPECT_EQ(second, expected);
  allocator.failFrom(-1);
  first = second;  // NOLINT(bugprone-use-after-move): assigning to it is always possible.
  EXPECT_EQ(first, expected);
}

}  // namespace
