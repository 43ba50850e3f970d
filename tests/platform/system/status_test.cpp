// Names and sentences of statuses.

#include <gtest/gtest.h>
#include <qoc/base.h>

#include <set>
#include <string>

#include "platform/system/present.hpp"

namespace {

struct Listed {
  qsys_status value;
  uint32_t code;
  const char *name;
};

#define QOC_TEST_ENTRY(name, value, text) {name, value, #name},
constexpr Listed listed[] = {QOC_STATUS_LIST(QOC_TEST_ENTRY)};
#undef QOC_TEST_ENTRY

TEST(Status, EveryFailureIsNegativeAndNoValueIsGivenTwice) {
  std::set<qsys_status> seen;
  for (const Listed &entry : listed) {
    SCOPED_TRACE(entry.name);
    EXPECT_EQ(entry.value < 0, entry.code != 0);
    EXPECT_TRUE(seen.insert(entry.value).second);
  }
}

TEST(Status, TheLibrarysOwnCodesLieInTheirBlockAndThePlatformsOutside) {
  for (const Listed &entry : listed) {
    SCOPED_TRACE(entry.name);
    const bool liesInBlock = entry.code >= 0x800013A0u && entry.code <= 0x80001445u;
    EXPECT_EQ(liesInBlock, std::string(entry.name).starts_with("QOC_"));
  }
}

TEST(Status, TheFirstOfTheLibrarysCodesHasItsSignedValue) { EXPECT_EQ(QOC_STATUS_NO_SUCH_VALUE, -2147478624); }

TEST(StatusGetText, GivesEveryListedStatusItsOwnSentence) {
  std::set<std::string> texts;
  for (const Listed &entry : listed) {
    SCOPED_TRACE(entry.name);
    const std::string text = qoc_status_getText(entry.value);
    EXPECT_NE(text, "");
    EXPECT_NE(text, "unknown status");
    EXPECT_TRUE(texts.insert(text).second) << text;
  }
}

TEST(StatusGetText, CallsUnlistedNumbersFromZeroOnASuccessAndTheOthersUnknown) {
  EXPECT_STREQ(qoc_status_getText(0), "success");
  EXPECT_STREQ(qoc_status_getText(17), "success");
  EXPECT_STREQ(qoc_status_getText(INT32_MAX), "success");
  EXPECT_STREQ(qoc_status_getText(-1), "unknown status");
  EXPECT_STREQ(qoc_status_getText(INT32_MIN), "unknown status");
}

TEST(StatusGetName, GivesTheNameOfTheConstant) {
  for (const Listed &entry : listed) {
    EXPECT_STREQ(qoc_status_getName(entry.value), entry.name);
  }
  EXPECT_STREQ(qoc_status_getName(QOC_STATUS_INDEX_NEGATIVE), "QOC_STATUS_INDEX_NEGATIVE");
}

TEST(StatusGetName, IsEmptyForAnUnlistedNumber) {
  EXPECT_STREQ(qoc_status_getName(1), "");
  EXPECT_STREQ(qoc_status_getName(-1), "");
}

TEST(FirstFailure, IsThatOfTheFirstCallThatFailsOfAllThatAreMade) {
  std::string calls;
  const auto call = [&calls](char name, qsys_status status) {
    calls += name;
    return status;
  };
  EXPECT_EQ(qoc::firstFailure({call('a', 0), call('b', -2), call('c', 1), call('d', -4)}), -2);
  EXPECT_EQ(calls, "abcd");
  EXPECT_EQ(qoc::firstFailure({call('e', 3), call('f', 0)}), QSYS_STATUS_OK);
  EXPECT_EQ(qoc::firstFailure({}), QSYS_STATUS_OK);
}

}  // namespace
