// Interrupts.

#include <gtest/gtest.h>
#include <qoc/system.h>

#include <atomic>
#include <thread>

#include "platform/system/attention.hpp"
#include "support/handlers.hpp"

namespace {

using qoc::test::FailedChecks;
using qoc::test::Polls;

/// Takes the handler away again when the test ends.
class Attention : public ::testing::Test {
 protected:
  ~Attention() override { qsys_attention_setHandler(nullptr, nullptr); }
};

TEST_F(Attention, WithoutAHandlerTheWorkGoesOn) { EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK); }

TEST_F(Attention, EveryCheckAsksTheHandlerAndHandsItsNegativeStatusOn) {
  const Polls polls(2, -4242);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
  EXPECT_EQ(qsys_attention_check(), -4242);
  EXPECT_EQ(polls.count(), 3);
}

TEST_F(Attention, AnAnswerFromZeroOnIsZero) {
  qsys_attention_setHandler([](void *) -> qsys_status { return 9; }, nullptr);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
}

TEST_F(Attention, ANullHandlerRemovesTheHandler) {
  qsys_attention_setHandler([](void *) -> qsys_status { return QSYS_STATUS_INTERRUPTED; }, nullptr);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_INTERRUPTED);
  qsys_attention_setHandler(nullptr, nullptr);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
}

TEST_F(Attention, GetHandlerGivesWhatIsInstalled) {
  qsys_attentionHandler handler = qsys_attention_flagHandler;
  int32_t flag = 0;
  void *context = &flag;
  EXPECT_EQ(qsys_attention_getHandler(&handler, &context), QSYS_STATUS_OK);
  EXPECT_EQ(handler, nullptr);
  EXPECT_EQ(context, nullptr);

  qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
  EXPECT_EQ(qsys_attention_getHandler(&handler, &context), QSYS_STATUS_OK);
  EXPECT_EQ(handler, &qsys_attention_flagHandler);
  EXPECT_EQ(context, &flag);
}

TEST_F(Attention, AHandlerIsAskedInItsOwnThreadOnly) {
  qsys_attention_setHandler([](void *) -> qsys_status { return QSYS_STATUS_INTERRUPTED; }, nullptr);
  qsys_status inOtherThread = -1, withOwnHandler = 0;
  std::thread([&] {
    inOtherThread = qsys_attention_check();
    qsys_attention_setHandler([](void *) -> qsys_status { return -99; }, nullptr);
    withOwnHandler = qsys_attention_check();
  }).join();
  EXPECT_EQ(inOtherThread, QSYS_STATUS_OK);
  EXPECT_EQ(withOwnHandler, -99);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_INTERRUPTED);
}

TEST_F(Attention, TheFlagHandlerInterruptsWhileTheFlagIsNotZero) {
  std::atomic<int32_t> flag = 0;
  qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
  flag = 1;
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_INTERRUPTED);
  flag = -1;
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_INTERRUPTED);
  flag = 0;
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
}

TEST_F(Attention, TheFlagMayBeSetByAnotherThread) {
  std::atomic<int32_t> flag = 0;
  qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
  std::thread setter([&] { flag = 1; });
  while (qsys_attention_check() == QSYS_STATUS_OK) {
    std::this_thread::yield();
  }
  setter.join();
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_INTERRUPTED);
}

TEST_F(Attention, TheDeadlineHandlerInterruptsBehindTheDeadline) {
  uint64_t deadline = UINT64_MAX;
  qsys_attention_setHandler(qsys_attention_deadlineHandler, &deadline);
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_OK);
  deadline = 0;
  EXPECT_EQ(qsys_attention_check(), QSYS_STATUS_INTERRUPTED);
}

TEST_F(Attention, ADeadlineComes) {
  uint64_t deadline = qsys_attention_getTimeNs() + 1'000'000;
  qsys_attention_setHandler(qsys_attention_deadlineHandler, &deadline);
  while (qsys_attention_check() == QSYS_STATUS_OK) {}
  EXPECT_GT(qsys_attention_getTimeNs(), deadline);
}

TEST_F(Attention, TheClockNeverRunsBackwards) {
  uint64_t last = qsys_attention_getTimeNs();
  for (int i = 0; i < 1000; ++i) {
    const uint64_t now = qsys_attention_getTimeNs();
    ASSERT_GE(now, last);
    last = now;
  }
}

TEST_F(Attention, MissingContextsAndOutputsAreReportedAndTheWorkGoesOn) {
  FailedChecks checks;
  EXPECT_EQ(qsys_attention_flagHandler(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qsys_attention_deadlineHandler(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);

  qsys_attentionHandler handler = qsys_attention_flagHandler;
  void *context = &handler;
  EXPECT_EQ(qsys_attention_getHandler(nullptr, &context), QSYS_STATUS_OK);
  EXPECT_EQ(qsys_attention_getHandler(&handler, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 2);
  EXPECT_EQ(handler, &qsys_attention_flagHandler);
  EXPECT_EQ(context, &handler);
}

/// A handler that only looks is asked once where another one would be asked for every piece of work.
TEST_F(Attention, TheReadyHandlersAreNotCounted) {
  EXPECT_FALSE(qoc::isAttentionCounted());
  EXPECT_EQ(qoc::checkAttention(3), QSYS_STATUS_OK);
  {
    const Polls polls(4, -4242);
    EXPECT_TRUE(qoc::isAttentionCounted());
    EXPECT_EQ(qoc::checkAttention(0), QSYS_STATUS_OK);
    EXPECT_EQ(polls.count(), 0);
    EXPECT_EQ(qoc::checkAttention(3), QSYS_STATUS_OK);
    EXPECT_EQ(polls.count(), 3);
    EXPECT_EQ(qoc::checkAttention(3), -4242);
    EXPECT_EQ(polls.count(), 5);
  }
  int32_t flag = 0;
  qsys_attention_setHandler(qsys_attention_flagHandler, &flag);
  EXPECT_FALSE(qoc::isAttentionCounted());
  EXPECT_EQ(qoc::checkAttention(INT64_MAX), QSYS_STATUS_OK) << "it would not end";
  flag = 1;
  EXPECT_EQ(qoc::checkAttention(0), QSYS_STATUS_OK);
  EXPECT_EQ(qoc::checkAttention(1), QSYS_STATUS_INTERRUPTED);
  EXPECT_EQ(qoc::checkAttention(7), QSYS_STATUS_INTERRUPTED);
  uint64_t deadline = UINT64_MAX;
  qsys_attention_setHandler(qsys_attention_deadlineHandler, &deadline);
  EXPECT_FALSE(qoc::isAttentionCounted());
  EXPECT_EQ(qoc::checkAttention(INT64_MAX), QSYS_STATUS_OK);
}

}  // namespace
