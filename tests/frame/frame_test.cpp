// The frame of an operation.

#include "frame/frame.hpp"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "support/handlers.hpp"

namespace {

using qoc::Frame;
using qoc::inFrame;
using qoc::test::FailedChecks;

/// An object that counts how many of its kind live.
struct Counted {
  static inline int numLive = 0;
  static inline std::vector<int> destroyed;
  static inline qsys_status destructAnswer = QSYS_STATUS_OK;
  int name = 0;
};

qsys_status construct(Counted *object) {
  object->name = Counted::numLive++;
  return QSYS_STATUS_OK;
}
qsys_status destruct(Counted *object) {
  --Counted::numLive;
  Counted::destroyed.push_back(object->name);
  return Counted::destructAnswer;
}

qsys_status assign(Counted *, const Counted *) { return QSYS_STATUS_OK; }
qsys_status assignWithoutMemory(Counted *, const Counted *) { return QSYS_STATUS_OUT_OF_MEMORY; }

class FrameTest : public ::testing::Test {
 protected:
  FrameTest() {
    Counted::numLive = 0;
    Counted::destroyed.clear();
    Counted::destructAnswer = QSYS_STATUS_OK;
  }
};

/// A constructor as the library's: constructs its output, registers it, and may fail afterwards.
qsys_status constructThen(Counted *object, qsys_status later) {
  return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(construct(object));
    frame.output<destruct>(object);
    QOC_TRY(later);
    return QSYS_STATUS_OK;
  });
}

TEST_F(FrameTest, AConstructorThatFailsAfterRegisteringItsOutputLeavesNoLiveObject) {
  Counted object;
  EXPECT_EQ(constructThen(&object, QSYS_STATUS_OUT_OF_MEMORY), QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(Counted::numLive, 0);
}

TEST_F(FrameTest, AConstructorThatSucceedsKeepsItsOutput) {
  Counted object;
  EXPECT_EQ(constructThen(&object, QSYS_STATUS_OK), QSYS_STATUS_OK);
  EXPECT_EQ(Counted::numLive, 1);
}

TEST_F(FrameTest, ALocalIsDestroyedOnSuccessAndOnFailureAlike) {
  for (const int32_t status : {0, 3, int32_t{QSYS_STATUS_INTERRUPTED}}) {
    SCOPED_TRACE(status);
    Counted local;
    const qsys_status ended = inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(construct(&local));
      frame.local<destruct>(&local);
      EXPECT_EQ(Counted::numLive, 1);
      return status;
    });
    EXPECT_EQ(ended, status);
    EXPECT_EQ(Counted::numLive, 0);
  }
}

TEST_F(FrameTest, ALocalIsDestroyedOnAnEarlyReturnInTheMiddleOfTheWork) {
  Counted first, second;
  bool wentOn = false;
  const qsys_status status = inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    QOC_TRY(construct(&first));
    frame.local<destruct>(&first);
    QOC_TRY(static_cast<qsys_status>(QSTD_STATUS_INDEX_INVALID));
    wentOn = true;
    QOC_TRY(construct(&second));
    frame.local<destruct>(&second);
    return QSYS_STATUS_OK;
  });
  EXPECT_EQ(status, QSTD_STATUS_INDEX_INVALID);
  EXPECT_FALSE(wentOn);
  EXPECT_EQ(Counted::numLive, 0);
}

TEST_F(FrameTest, ObjectsAreDestroyedInReverseOrder) {
  Counted objects[3];
  inFrame<3>([&](Frame<3> &frame) -> qsys_status {
    for (Counted &object : objects) {
      QOC_TRY(construct(&object));
      frame.local<destruct>(&object);
    }
    return QSYS_STATUS_OK;
  });
  EXPECT_EQ(Counted::destroyed, (std::vector<int>{2, 1, 0}));
}

TEST_F(FrameTest, OnSuccessLocalsGoAndTheOutputStays) {
  Counted output, local;
  const qsys_status status = inFrame<2>([&](Frame<2> &frame) -> qsys_status {
    QOC_TRY(construct(&output));
    frame.output<destruct>(&output);
    QOC_TRY(construct(&local));
    frame.local<destruct>(&local);
    return QSYS_STATUS_OK;
  });
  EXPECT_EQ(status, QSYS_STATUS_OK);
  EXPECT_EQ(Counted::destroyed, std::vector<int>{1});
}

TEST_F(FrameTest, AnExceptionBecomesAStatusAndDestroysTheOutput) {
  Counted object;
  const auto run = [&](auto raise) {
    return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(construct(&object));
      frame.output<destruct>(&object);
      raise();
      return QSYS_STATUS_OK;
    });
  };
  EXPECT_EQ(run([] { throw std::bad_alloc(); }), QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(Counted::numLive, 0);
  EXPECT_EQ(run([] { throw std::runtime_error("?"); }), QSYS_STATUS_INTERNAL);
  EXPECT_EQ(Counted::numLive, 0);
  EXPECT_EQ(run([] { throw 7; }), QSYS_STATUS_INTERNAL);
  EXPECT_EQ(Counted::numLive, 0);
}

TEST_F(FrameTest, AFailingDestructorEndsASuccessButNotAFailure) {
  Counted local;
  const auto run = [&](qsys_status status) {
    return inFrame<1>([&](Frame<1> &frame) -> qsys_status {
      QOC_TRY(construct(&local));
      frame.local<destruct>(&local);
      return status;
    });
  };
  Counted::destructAnswer = QSYS_STATUS_INTERNAL;
  EXPECT_EQ(run(QSYS_STATUS_OK), QSYS_STATUS_INTERNAL);
  EXPECT_EQ(run(QSYS_STATUS_INTERRUPTED), QSYS_STATUS_INTERRUPTED);
}

TEST_F(FrameTest, ARegistrationBeyondTheCapacityIsReportedAtItsLineAndTheOthersAreStillDestroyed) {
  FailedChecks checks;
  Counted objects[2];
  int32_t line = 0;
  const qsys_status status = inFrame<1>([&](Frame<1> &frame) -> qsys_status {
    QOC_TRY(construct(&objects[0]));
    frame.local<destruct>(&objects[0]);
    QOC_TRY(construct(&objects[1]));
    line = __LINE__ + 1;
    frame.local<destruct>(&objects[1]);
    return QSYS_STATUS_OK;
  });
  EXPECT_EQ(status, QSYS_STATUS_OK);
  EXPECT_EQ(checks.lines(), std::vector<int32_t>{line});
  EXPECT_EQ(Counted::destroyed, std::vector<int>{0});
}

TEST_F(FrameTest, AnEmptyFrameGivesTheBodysStatus) {
  EXPECT_EQ(inFrame<1>([](Frame<1> &) -> qsys_status { return 12; }), 12);
  EXPECT_EQ(inFrame<1>([](Frame<1> &) -> qsys_status { return -12; }), -12);
}

TEST(Try, EndsTheFunctionOnNegativeStatusesOnly) {
  const auto run = [](qsys_status status) -> qsys_status {
    QOC_TRY(status);
    return 1000;
  };
  EXPECT_EQ(run(-1), -1);
  EXPECT_EQ(run(0), 1000);
  EXPECT_EQ(run(1), 1000);
}

TEST(Try, CallsOnce) {
  int numCalls = 0;
  const auto call = [&]() -> qsys_status { return ++numCalls; };
  const auto run = [&]() -> qsys_status {
    QOC_TRY(call());
    return QSYS_STATUS_OK;
  };
  run();
  EXPECT_EQ(numCalls, 1);
}

TEST(ConstructThenAssign, LeavesNoLiveObjectWhenTheAssignmentFails) {
  Counted::numLive = 0;
  Counted source, copy;
  EXPECT_EQ((qoc::constructThenAssign<construct, assignWithoutMemory, destruct>(&copy, &source)),
            QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(Counted::numLive, 0);
}

TEST(ConstructThenAssign, ReportsANullArgumentAtTheCallersLine) {
  FailedChecks checks;
  Counted::numLive = 0;
  Counted copy;
  const Counted *missing = nullptr;
  EXPECT_EQ((qoc::constructThenAssign<construct, assign, destruct>(&copy, missing)), QSYS_STATUS_OK);
  EXPECT_EQ(checks.lines(), std::vector<int32_t>{__LINE__ - 1});
  EXPECT_EQ(Counted::numLive, 0);
}

}  // namespace
