// Formatted output.

#include <gtest/gtest.h>
#include <qoc/system.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "support/allocator.hpp"
#include "support/handlers.hpp"

namespace {

using qoc::test::FailedChecks;
using qoc::test::LibraryAllocator;
using qoc::test::PrintedText;

TEST(Print, FormatsForTheHandler) {
  const PrintedText printed;
  EXPECT_EQ(qsys_printfA("%s has %d of %c", "abc", 3, 'x'), QSYS_STATUS_OK);
  EXPECT_EQ(qsys_printfA("!"), QSYS_STATUS_OK);
  EXPECT_EQ(printed.text(), "abc has 3 of x!");
}

TEST(Print, GoesToTheStandardOutputWithoutAHandler) {
  ::testing::internal::CaptureStdout();
  EXPECT_GE(qsys_printfA("%d;", 42), 0);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "42;");
}

TEST(Print, KeepsZeroCharacters) {
  const PrintedText printed;
  EXPECT_GE(qsys_printfA("a%cb", 0), 0);
  EXPECT_EQ(printed.text(), std::string("a\0b", 3));
}

TEST(Print, PrintsTextsOfAnyLength) {
  for (const std::size_t length : {0u, 1u, 254u, 255u, 256u, 257u, 100'000u}) {
    SCOPED_TRACE(length);
    const PrintedText printed;
    const std::string text(length, 'q');
    EXPECT_GE(qsys_printfA("%s", text.c_str()), 0);
    EXPECT_EQ(printed.text(), text);
  }
}

TEST(Print, GivesTheHandlersFailure) {
  const PrintedText printed(1, -77);
  EXPECT_GE(qsys_printfA("first"), 0);
  EXPECT_EQ(qsys_printfA("second"), -77);
  EXPECT_EQ(printed.text(), "first");
}

TEST(Print, FailsWhenALongTextFindsNoMemory) {
  LibraryAllocator memory;
  const PrintedText printed;
  memory.failFrom(0);
  EXPECT_EQ(qsys_printfA("%s", std::string(5000, 'x').c_str()), QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(printed.text(), "");
}

TEST(Print, LeavesNoMemoryBehind) {
  LibraryAllocator memory;
  {
    const PrintedText printed(0, -5);
    EXPECT_EQ(qsys_printfA("%s", std::string(5000, 'x').c_str()), -5);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

TEST(Print, TheHandlerIsItsThreadsOwn) {
  const PrintedText here;
  std::string there;
  std::thread([&] {
    const PrintedText printed;
    qsys_printfA("there");
    there = printed.text();
  }).join();
  qsys_printfA("here");
  EXPECT_EQ(here.text(), "here");
  EXPECT_EQ(there, "there");
}

TEST(Print, AMissingFormatIsReportedAndNothingIsPrinted) {
  FailedChecks checks;
  const PrintedText printed;
  const char *missing = nullptr;
  EXPECT_EQ(qsys_printfA(missing, 1), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(printed.text(), "");
}

TEST(Print, FailsWhenATextCannotBeFormatted) {
  const PrintedText printed;
  EXPECT_EQ(qsys_printfA("%ls", L"\u20AC"), QSYS_STATUS_PRINT_FAILED);  // The locale is C.
  EXPECT_EQ(printed.text(), "");
}

TEST(PrintDeathTest, FailsWhenTheStandardOutputTakesNothing) {
  const auto print = [] {
    const bool isOpen = std::freopen("/dev/full", "w", stdout) != nullptr;
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    std::exit(isOpen && qsys_printfA("text") == QSYS_STATUS_PRINT_FAILED ? 0 : 1);
  };
  EXPECT_EXIT(print(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
