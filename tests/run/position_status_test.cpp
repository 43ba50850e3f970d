// Position statuses and modes: their printed names, and the vector of statuses.

#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

TEST(PositionStatusPrint, WritesTheFullNameOfEveryValue) {
  const char *names[] = {"primary",     "primarySwap",      "secondary", "secondarySwap", "substituted",
                         "substitutedSpace", "noMatch", "inserted",  "deleted",       "deletedIgnored"};

  for (Status status = 1; status <= 10; ++status) {
    PrintedText printed;
    EXPECT_EQ(qoc_ocrDictionaryPositionStatus_print(status), QSYS_STATUS_OK);
    EXPECT_EQ(printed.text(), std::string("qoc_ocrDictionaryPositionStatus_") + names[status - 1]);
  }
}

TEST(PositionStatusPrint, WritesNothingForAValueOutsideTheTable) {
  for (const Status status : {0, 11, -1, INT32_MAX, INT32_MIN}) {
    SCOPED_TRACE(status);
    PrintedText printed;
    EXPECT_EQ(qoc_ocrDictionaryPositionStatus_print(status), QSYS_STATUS_OK);
    EXPECT_EQ(printed.text(), "");
  }
}

TEST(ModePrint, WritesTheFullNameOfEveryValue) {
  PrintedText printed;

  EXPECT_EQ(qoc_ocrDictionaryMode_print(1), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryMode_print(2), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryMode_print(4), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(),
            "qoc_ocrDictionaryMode_fieldingqoc_ocrDictionaryMode_lexiconqoc_ocrDictionaryMode_regularExpression");
}

TEST(ModePrint, WritesNothingForSeveralModesTogetherOrNone) {
  for (const qoc_ocrDictionaryMode mode : {3, 0, 5, 8, -1}) {
    SCOPED_TRACE(mode);
    PrintedText printed;
    EXPECT_EQ(qoc_ocrDictionaryMode_print(mode), QSYS_STATUS_OK);
    EXPECT_EQ(printed.text(), "");
  }
}

TEST(PositionStatusPrint, PassesAFailureOfTheOutputOn) {
  PrintedText refusing(0, -901);

  EXPECT_EQ(qoc_ocrDictionaryPositionStatus_print(primary), -901);
  EXPECT_EQ(qoc_ocrDictionaryMode_print(qoc_ocrDictionaryMode_lexicon), -901);
}

TEST(PositionStatusVectorPrint, WritesBothBracesOfAnEmptyVector) {
  PrintedText printed;

  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryPositionStatus_print(vectorOf<StatusVector>({})), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), " {  } ");
}

TEST(PositionStatusVectorPrint, SeparatesNeighboursByCommas) {
  PrintedText printed;

  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryPositionStatus_print(vectorOf<StatusVector>({primary, inserted, deleted})),
            QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(),
            " { qoc_ocrDictionaryPositionStatus_primary , qoc_ocrDictionaryPositionStatus_inserted , "
            "qoc_ocrDictionaryPositionStatus_deleted } ");
}

TEST(PositionStatusVectorPrint, LeavesAGapForAValueOutsideTheTable) {
  PrintedText printed;

  EXPECT_EQ(qstd_vector_qoc_ocrDictionaryPositionStatus_print(vectorOf<StatusVector>({0, primary})), QSYS_STATUS_OK);

  EXPECT_EQ(printed.text(), " {  , qoc_ocrDictionaryPositionStatus_primary } ");
}

TEST(PositionStatusVectorPrint, EndsAtTheFirstPrintThatFails) {
  const auto vector = vectorOf<StatusVector>({primary, inserted});
  const std::string whole =
      " { qoc_ocrDictionaryPositionStatus_primary , qoc_ocrDictionaryPositionStatus_inserted } ";

  bool isComplete = false;
  for (int n = 0; !isComplete; ++n) {
    SCOPED_TRACE(n);
    ASSERT_LT(n, 20);
    PrintedText printed(n, -901);
    const qsys_status status = qstd_vector_qoc_ocrDictionaryPositionStatus_print(vector);
    EXPECT_EQ(printed.text(), whole.substr(0, printed.text().size()));
    isComplete = status >= 0;
    EXPECT_EQ(status, isComplete ? QSYS_STATUS_OK : -901);
    EXPECT_TRUE(!isComplete || printed.text() == whole);
  }
}

TEST(PositionStatusVectorReverse, TurnsTheOrderRoundInPlace) {
  const Statuses lists[] = {{}, {primary}, {primary, inserted}, {primary, inserted, deleted}};

  for (const Statuses &list : lists) {
    SCOPED_TRACE(list.size());
    auto vector = vectorOf<StatusVector>(list);
    EXPECT_EQ(qstd_vector_qoc_ocrDictionaryPositionStatus_reverse(vector), QSYS_STATUS_OK);
    EXPECT_EQ(values(vector), Statuses(list.rbegin(), list.rend()));
  }
}

TEST(PositionStatusVectorCompareEqual, RequiresTheSameStatusesInTheSameOrder) {
  const struct {
    Statuses a, b;
    qsys_bool isEqual;
  } cases[] = {{{}, {}, 1},
               {{primary, inserted}, {primary, inserted}, 1},
               {{primary, inserted}, {inserted, primary}, 0},
               {{primary}, {primary, primary}, 0},
               {{primary}, {}, 0}};

  for (const auto &[a, b, expected] : cases) {
    SCOPED_TRACE(testing::PrintToString(a) + " and " + testing::PrintToString(b));
    qsys_bool isEqual = 7;
    EXPECT_EQ(qstd_vector_qoc_ocrDictionaryPositionStatus_compareEqual(vectorOf<StatusVector>(a), vectorOf<StatusVector>(b),
                                                                       &isEqual),
              QSYS_STATUS_OK);
    EXPECT_EQ(isEqual, expected);
  }
}

}  // namespace
