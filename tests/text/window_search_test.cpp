// Which windows of a reading are tried.

#include "text/window_search.hpp"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/handlers.hpp"

namespace {

using qoc::findWindowEnds;
using qoc::firstEndBehind;
using qoc::Window;
using qoc::test::Polls;

using Ends = std::pair<std::int32_t, std::int32_t>;
using Windows = std::vector<Ends>;

Ends endsOf(const qoc::WindowEnds &ends) { return {ends.first, ends.last}; }

/// The windows of a search in order; it is ended behind so many.
Windows windowsOf(std::int32_t n, std::int32_t m, const qoc_ocrDictionaryRunParams &params, std::size_t most = 1000) {
  Windows windows;
  EXPECT_EQ(qoc::searchWindows(n, m, params,
                               [&](Window window, bool &isDone) -> qsys_status {
                                 windows.emplace_back(window.start, window.end);
                                 isDone = windows.size() == most;
                                 return QSYS_STATUS_OK;
                               }),
            QSYS_STATUS_OK);
  return windows;
}

qoc_ocrDictionaryRunParams paramsOf(std::int32_t least, std::int32_t longest, std::int32_t maxEdits) {
  qoc_ocrDictionaryRunParams params;
  qoc_ocrDictionaryRunParams_construct(&params);
  params.minStringLength = least;
  params.maxStringLength = longest;
  params.maxEdits = maxEdits;
  return params;
}

TEST(WindowEnds, AnEndBehindTheStartIsTheFirst) {
  EXPECT_EQ(firstEndBehind(2, 3, 9), 3);
  EXPECT_EQ(firstEndBehind(2, 7, 9), 7);
  EXPECT_EQ(firstEndBehind(2, 7, 3), 7);
}

TEST(WindowEnds, EndsUpToTheStartAreCountedUntilOneIsBehindTheLast) {
  EXPECT_EQ(firstEndBehind(2, 2, 9), 3);
  EXPECT_EQ(firstEndBehind(2, 0, 2), 3);
  EXPECT_EQ(firstEndBehind(2, 0, 1), -1);
  EXPECT_EQ(firstEndBehind(0, 0, 0), 1);
}

TEST(WindowEnds, ANegativeEndStopsTheSearchUnlessNothingIsBehindTheLast) {
  EXPECT_EQ(firstEndBehind(2, -1, 9), -1);
  EXPECT_EQ(firstEndBehind(2, -1, UINT32_MAX - 1), -1);
  EXPECT_EQ(firstEndBehind(2, -1, UINT32_MAX), 3);
}

TEST(WindowEnds, EndWithTheReading) {
  EXPECT_EQ(endsOf(findWindowEnds(1, 6, 3, 4)), Ends(3, 4));
  EXPECT_EQ(endsOf(findWindowEnds(1, 6, 3, 60)), Ends(3, 6));
  EXPECT_EQ(endsOf(findWindowEnds(1, 6, -3, 60)), Ends(-1, -2)) << "the search is stopped";
  EXPECT_EQ(endsOf(findWindowEnds(0, 6, 0, 60)), Ends(1, 6));
}

TEST(WindowEnds, AreThoseOfTheLengthsAndTheEdits) {
  EXPECT_EQ(endsOf(findWindowEnds(1, 20, paramsOf(4, 6, 0))), Ends(5, 8));
  EXPECT_EQ(endsOf(findWindowEnds(1, 20, paramsOf(4, 6, 2))), Ends(3, 10));
  // 1 + (2^31 - 1) + 1 + (2^31 - 2) is the largest number of all.
  EXPECT_EQ(endsOf(findWindowEnds(1, 20, paramsOf(4, INT32_MAX, INT32_MAX - 1))), Ends(2, 20));
  EXPECT_EQ(endsOf(findWindowEnds(1, 20, paramsOf(4, INT32_MAX, INT32_MAX - 2))), Ends(-1, -2));
}

TEST(WindowSearch, TriesWindowsThatAreShorterOrLongerByTheEdits) {
  EXPECT_EQ(windowsOf(4, 2, paramsOf(1, 9, 0)), (Windows{{0, 2}, {0, 3}, {1, 3}, {1, 4}, {2, 4}}));
  EXPECT_EQ(windowsOf(3, 2, paramsOf(2, 9, 1)), (Windows{{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}}));
}

TEST(WindowSearch, KeepsToTheLengthsOfTheParameters) {
  EXPECT_EQ(windowsOf(5, 2, paramsOf(3, 9, 0)), (Windows{{0, 3}, {1, 4}, {2, 5}}));
  EXPECT_EQ(windowsOf(4, 3, paramsOf(1, 2, 0)), (Windows{{0, 3}, {1, 4}}));
  EXPECT_EQ(windowsOf(4, 3, paramsOf(1, 1, 0)), Windows{});
}

TEST(WindowSearch, EndsWhenItIsTold) {
  EXPECT_EQ(windowsOf(4, 2, paramsOf(1, 9, 0), 1), (Windows{{0, 2}}));
  EXPECT_EQ(windowsOf(4, 2, paramsOf(1, 9, 0), 3), (Windows{{0, 2}, {0, 3}, {1, 3}}));
}

TEST(WindowSearch, AdmitsALengthThatSatisfiesOrThatAnEditMightMend) {
  const auto strict = paramsOf(2, 3, 0), lenient = paramsOf(2, 3, 1);
  EXPECT_TRUE(qoc::admitsLength(nullptr, {0, 7}));
  EXPECT_TRUE(qoc::admitsLength(&strict, {1, 3}));
  EXPECT_TRUE(qoc::admitsLength(&strict, {1, 4}));
  EXPECT_FALSE(qoc::admitsLength(&strict, {1, 2}));
  EXPECT_FALSE(qoc::admitsLength(&strict, {1, 5}));
  EXPECT_TRUE(qoc::admitsLength(&lenient, {1, 5}));
}

TEST(WindowSearch, IsPassedOverWithAPollForEveryStart) {
  auto params = paramsOf(1, 9, 0);
  Polls polls(7, -4242);
  params.matchOption9 = 0;
  EXPECT_EQ(qoc::passOverWindows(5, &params), QSYS_STATUS_OK);
  EXPECT_EQ(qoc::passOverWindows(5, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(polls.count(), 0);
  params.matchOption9 = 1;
  EXPECT_EQ(qoc::passOverWindows(5, &params), QSYS_STATUS_OK);
  EXPECT_EQ(polls.count(), 5);
  EXPECT_EQ(qoc::passOverWindows(5, &params), -4242);
  EXPECT_EQ(polls.count(), 8);
}

}  // namespace
