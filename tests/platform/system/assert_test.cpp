// Reports of failed checks.

#include <gtest/gtest.h>
#include <qoc/dictionary_char.h>

#include <vector>

#include "support/handlers.hpp"

namespace {

using qoc::test::FailedChecks;

TEST(Assert, TellsTheHandlerTheLineAndReturns) {
  FailedChecks checks;
  qstd_assert_(123);
  qstd_assert_(7);
  EXPECT_EQ(checks.lines(), (std::vector<int32_t>{123, 7}));
}

TEST(Assert, WithoutAHandlerWritesOneLineToTheErrorStream) {
  ASSERT_EQ(qsys_assert_setHandler(nullptr, nullptr), QSYS_STATUS_OK);
  ::testing::internal::CaptureStderr();
  qstd_assert_(4711);
  const std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(written.find("4711"), std::string::npos) << written;
  EXPECT_EQ(written.find('\n'), written.size() - 1);
}

TEST(Assert, AHandlerMayReplaceItself) {
  // The handler is called outside any lock of the library.
  static int numCalls = 0;
  numCalls = 0;
  qsys_assert_setHandler(
      [](void *, int32_t) {
        ++numCalls;
        qsys_assert_setHandler([](void *, int32_t) { numCalls += 10; }, nullptr);
      },
      nullptr);
  qstd_assert_(1);
  qstd_assert_(2);
  qsys_assert_setHandler(nullptr, nullptr);
  EXPECT_EQ(numCalls, 11);
}

TEST(NullArgument, IsReportedOnceAndTheOperationSucceedsUntouched) {
  FailedChecks checks;
  qoc_ocrDictionaryChar character = {'a', 5};

  EXPECT_EQ(qoc_ocrDictionaryChar_construct(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qoc_ocrDictionaryChar_assign(&character, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(character.code, static_cast<Char32>('a'));
  EXPECT_EQ(character.score, 5);
}

TEST(NullArgument, SeveralAtOnceAreOneReport) {
  FailedChecks checks;
  EXPECT_EQ(qoc_ocrDictionaryChar_assign(nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

TEST(NullArgument, IsReportedAtALineOfTheLibrary) {
  FailedChecks checks;
  qoc_ocrDictionaryChar_reset(nullptr);
  ASSERT_EQ(checks.lines().size(), 1u);
  EXPECT_GT(checks.lines()[0], 0);
}

}  // namespace
