// The cleanup stack of an operation.

#include <gtest/gtest.h>
#include <qoc/system.h>

#include <vector>

#include "support/handlers.hpp"

namespace {

using qoc::test::FailedChecks;

/// An object that notes when it is destroyed, and what its destructor says.
struct Noted {
  int name;
  std::vector<int> *destroyed;
  qsys_status answer = QSYS_STATUS_OK;
};

qsys_status destructNoted(void *object) {
  const auto *noted = static_cast<Noted *>(object);
  noted->destroyed->push_back(noted->name);
  return noted->answer;
}

class Cleanup : public ::testing::Test {
 protected:
  void add(uint32_t kind, qsys_status answer = QSYS_STATUS_OK) {
    objects_[count_] = {count_, &destroyed_, answer};
    entries_[count_] = {static_cast<uint32_t>(count_), kind, &objects_[count_], destructNoted};
    ++count_;
  }
  void execute(qsys_status status) {
    status_ = status;
    EXPECT_EQ(qsys_cleanupExecute_(entries_, &count_, &status_, qsys_cleanup_getNextTag()), QSYS_STATUS_OK);
  }

  std::vector<int> destroyed_;
  Noted objects_[4] = {};
  qsys_cleanupEntry entries_[4] = {};
  int32_t count_ = 0;
  qsys_status status_ = QSYS_STATUS_OK;
};

TEST_F(Cleanup, KeepsTheOutputOfASuccess) {
  add(QSYS_CLEANUP_OUTPUT);
  execute(QSYS_STATUS_OK);
  EXPECT_TRUE(destroyed_.empty());
  EXPECT_EQ(count_, 0);
}

TEST_F(Cleanup, CountsEveryStatusFromZeroOnAsASuccess) {
  add(QSYS_CLEANUP_OUTPUT);
  execute(5);
  EXPECT_TRUE(destroyed_.empty());
  EXPECT_EQ(status_, 5);
}

TEST_F(Cleanup, DestroysTheOutputOfAFailure) {
  add(QSYS_CLEANUP_OUTPUT);
  execute(QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(destroyed_, std::vector<int>{0});
  EXPECT_EQ(count_, 0);
  EXPECT_EQ(status_, QOC_STATUS_NO_SUCH_VALUE);
}

TEST_F(Cleanup, DestroysLocalsOnSuccessAndOnFailureAlike) {
  for (const qsys_status status : {QSYS_STATUS_OK, QSYS_STATUS_INTERRUPTED}) {
    SCOPED_TRACE(status);
    destroyed_.clear();
    add(QSYS_CLEANUP_LOCAL);
    execute(status);
    EXPECT_EQ(destroyed_, std::vector<int>{0});
    EXPECT_EQ(count_, 0);
    EXPECT_EQ(status_, status);
  }
}

TEST_F(Cleanup, TheKindsAreTheNumbers34And50) {
  EXPECT_EQ(QSYS_CLEANUP_OUTPUT, 34u);
  EXPECT_EQ(QSYS_CLEANUP_LOCAL, 50u);
}

TEST_F(Cleanup, DestroysTheLastRegisteredFirst) {
  add(QSYS_CLEANUP_OUTPUT);
  add(QSYS_CLEANUP_LOCAL);
  add(QSYS_CLEANUP_LOCAL);
  execute(QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(destroyed_, (std::vector<int>{2, 1, 0}));
}

TEST_F(Cleanup, KeepsAFailureWhenADestructorFailsToo) {
  add(QSYS_CLEANUP_LOCAL, QSYS_STATUS_INTERNAL);
  add(QSYS_CLEANUP_LOCAL);
  execute(QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(status_, QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(destroyed_, (std::vector<int>{1, 0}));
}

TEST_F(Cleanup, ADestructorsFirstFailureReplacesASuccess) {
  add(QSYS_CLEANUP_LOCAL, QSYS_STATUS_PRINT_FAILED);
  add(QSYS_CLEANUP_LOCAL, QSYS_STATUS_INTERNAL);
  execute(QSYS_STATUS_OK);
  EXPECT_EQ(status_, QSYS_STATUS_INTERNAL);
  EXPECT_EQ(destroyed_, (std::vector<int>{1, 0}));
}

TEST_F(Cleanup, LeavesWhatIsNeitherOutputNorLocal) {
  add(33);
  add(51);
  execute(QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_TRUE(destroyed_.empty());
  EXPECT_EQ(count_, 0);
}

TEST_F(Cleanup, ReportsEachMissingArgumentOnceAndDestroysNothing) {
  add(QSYS_CLEANUP_LOCAL);
  FailedChecks checks;
  EXPECT_EQ(qsys_cleanupExecute_(nullptr, &count_, &status_, 1), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qsys_cleanupExecute_(entries_, nullptr, &status_, 1), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qsys_cleanupExecute_(entries_, &count_, nullptr, 1), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(count_, 1);
  EXPECT_TRUE(destroyed_.empty());
}

TEST(CleanupGetNextTag, GivesAFreshTagEachTime) {
  const uint32_t first = qsys_cleanup_getNextTag();
  const uint32_t second = qsys_cleanup_getNextTag();
  EXPECT_NE(first, second);
  EXPECT_NE(second, qsys_cleanup_getNextTag());
}

}  // namespace
