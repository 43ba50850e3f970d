// Tokens and the records of how they matched.

#include <gtest/gtest.h>

#include "platform/regex/regexes.hpp"
#include "support/allocator.hpp"
#include "support/handlers.hpp"

namespace {

using namespace qoc::test;

Char32 codeOf(const qstd_token &token) {
  Char32 code = 7;
  EXPECT_EQ(qstd_token_getChar(&token, &code), QSYS_STATUS_OK);
  return code;
}

template <class Compare, class T>
bool areEqual(Compare compare, const T &a, const T &b) {
  qsys_bool isEqual = 7;
  EXPECT_EQ(compare(a, b, &isEqual), QSYS_STATUS_OK);
  return isEqual == 1;
}

TEST(Token, HoldsItsCodeFirstAndItsFlagsAsTheSeventhField) {
  EXPECT_EQ(offsetof(qstd_token, code), 0u);
  EXPECT_EQ(offsetof(qstd_token, flags), 6 * sizeof(uint32_t));
}

TEST(Token, IsAWildcardUntilItIsSet) {
  Owned<qstd_token> token;
  EXPECT_EQ(codeOf(*token), QOC_CHAR_ANY);
  EXPECT_NE(token->flags, 0u);
  EXPECT_EQ(qstd_token_setChar32(token, 'a'), QSYS_STATUS_OK);
  EXPECT_EQ(codeOf(*token), Char32{'a'});
  EXPECT_EQ(token->flags, 0u);
}

TEST(Token, GivesTheWildcardCodeWheneverItsFlagsAreNotZero) {
  Owned<qstd_token> token;
  require(qstd_token_setChar32(token, 'a'));
  token->flags = 0x80000000;
  EXPECT_EQ(codeOf(*token), QOC_CHAR_ANY);
}

TEST(Token, OfTheWildcardCodeIsAWildcard) {
  Owned<qstd_token> token;
  require(qstd_token_setChar32(token, 'a'));
  require(qstd_token_setChar32(token, QOC_CHAR_ANY));
  EXPECT_NE(token->flags, 0u);
}

TEST(Token, ComparesByWhatItStandsFor) {
  Owned<qstd_token> a, b;
  EXPECT_TRUE(areEqual(qstd_token_compareEqual, a, b));
  require(qstd_token_setChar32(a, 'a'));
  EXPECT_FALSE(areEqual(qstd_token_compareEqual, a, b));
  require(qstd_token_setChar32(b, 'a'));
  b->reserved[2] = 5;
  EXPECT_TRUE(areEqual(qstd_token_compareEqual, a, b));
  a->flags = b->flags = 1;
  require(qstd_token_setChar32(b, 'b'));
  b->flags = 1;
  EXPECT_TRUE(areEqual(qstd_token_compareEqual, a, b));
}

TEST(TokenMulti, IsAnyOneCharacterUntilItIsSet) {
  Owned<qstd_tokenMulti> multi;
  const qstd_token *primary = nullptr;
  const qstd_vector_qstd_token *alternatives = nullptr;
  EXPECT_EQ(qstd_tokenMulti_getPrimary(multi, &primary), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_tokenMulti_getAlternatives(multi, &alternatives), QSYS_STATUS_OK);
  EXPECT_EQ(codeOf(*primary), QOC_CHAR_ANY);
  EXPECT_TRUE(elements(*alternatives).empty());
}

TEST(TokenMulti, TakesACodeAndAlternatives) {
  Owned<qstd_tokenMulti> multi;
  Owned<qstd_token> token;
  Owned<qstd_vector_qstd_token> alternatives;
  require(qstd_token_setChar32(token, 'b'));
  require(qstd_vector_qstd_token_pushBack(alternatives, token));
  EXPECT_EQ(qstd_tokenMulti_setChar32(multi, 'a'), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_tokenMulti_setAlternatives(multi, alternatives), QSYS_STATUS_OK);
  EXPECT_EQ(codeOf(multi->primary), Char32{'a'});
  ASSERT_EQ(elements(multi->alternatives).size(), 1u);
  EXPECT_EQ(codeOf(elements(multi->alternatives)[0]), Char32{'b'});

  EXPECT_EQ(qstd_tokenMulti_setPrimary(multi, token), QSYS_STATUS_OK);
  EXPECT_EQ(codeOf(multi->primary), Char32{'b'});
  EXPECT_EQ(elements(multi->alternatives).size(), 1u);

  EXPECT_EQ(qstd_tokenMulti_setChar32(multi, 'c'), QSYS_STATUS_OK);
  EXPECT_TRUE(elements(multi->alternatives).empty());
}

TEST(TokenMulti, CopiesCompareEqualUntilOneChanges) {
  const auto source = sequence("a|b|c");
  Owned<qstd_tokenMulti> copy(elements(source)[0]), assigned;
  require(qstd_tokenMulti_assign(assigned, copy));
  EXPECT_TRUE(areEqual(qstd_tokenMulti_compareEqual, copy, assigned));
  require(qstd_vector_qstd_token_popBack(&assigned->alternatives));
  EXPECT_FALSE(areEqual(qstd_tokenMulti_compareEqual, copy, assigned));
  require(qstd_tokenMulti_assign(assigned, copy));
  require(qstd_token_setChar32(&assigned->primary, 'x'));
  EXPECT_FALSE(areEqual(qstd_tokenMulti_compareEqual, copy, assigned));
}

TEST(TokenMulti, IsLeftAsItWasWithoutMemoryForAnother) {
  LibraryAllocator memory;
  Owned<qstd_tokenMulti> full, empty;
  Owned<qstd_tokenMatcherResult> fullResult, emptyResult;
  Owned<qstd_token> token;
  require(qstd_token_setChar32(token, 'a'));
  require(qstd_tokenMulti_setPrimary(full, token));
  require(qstd_vector_qstd_token_pushBack(&full->alternatives, token));
  require(qstd_vector_qstd_token_pushBack(&fullResult->tokens, token));
  fullResult->isPrimary = 1;
  memory.failFrom(0);
  EXPECT_EQ(qstd_tokenMulti_assign(empty, full), QSYS_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(qstd_tokenMatcherResult_assign(emptyResult, fullResult), QSYS_STATUS_OUT_OF_MEMORY);
  memory.failFrom(-1);
  qsys_bool isEqual = 7;
  EXPECT_EQ(qstd_tokenMulti_compareEqual(empty, Owned<qstd_tokenMulti>(), &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1);
  EXPECT_EQ(qstd_tokenMatcherResult_compareEqual(emptyResult, Owned<qstd_tokenMatcherResult>(), &isEqual),
            QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1);
}

TEST(TokenMatcherResults, CopyAndCompareByTokensAndFlags) {
  Owned<qstd_vector_qstd_tokenMatcherResultWord> words;
  require(qstd_regex_parseTokenMulti(regex(".[bc]"), sequence("a|b b|c"), words));
  ASSERT_EQ(elements(words).size(), 1u);
  Owned<qstd_tokenMatcherResultWord> copy(elements(words)[0]), other(elements(words)[0]);
  EXPECT_TRUE(areEqual(qstd_tokenMatcherResultWord_compareEqual, copy, other));

  const qstd_vector_qstd_tokenMatcherResult *positions = nullptr;
  require(qstd_tokenMatcherResultWord_getPositions(copy, &positions));
  ASSERT_EQ(elements(*positions).size(), 2u);
  const qstd_vector_qstd_token *tokens = nullptr;
  qsys_bool isPrimary = 7;
  require(qstd_tokenMatcherResult_getTokens(&elements(*positions)[0], &tokens));
  require(qstd_tokenMatcherResult_getIsPrimary(&elements(*positions)[0], &isPrimary));
  EXPECT_EQ(elements(*tokens).size(), 2u);
  EXPECT_EQ(isPrimary, 1u);

  Owned<qstd_tokenMatcherResult> result(elements(*positions)[0]), changed;
  require(qstd_tokenMatcherResult_assign(changed, result));
  EXPECT_TRUE(areEqual(qstd_tokenMatcherResult_compareEqual, result, changed));
  changed->isPrimary = 0;
  EXPECT_FALSE(areEqual(qstd_tokenMatcherResult_compareEqual, result, changed));
  changed->isPrimary = 1;
  require(qstd_vector_qstd_token_popBack(&changed->tokens));
  EXPECT_FALSE(areEqual(qstd_tokenMatcherResult_compareEqual, result, changed));

  require(qstd_vector_qstd_tokenMatcherResult_popBack(&other->positions));
  EXPECT_FALSE(areEqual(qstd_tokenMatcherResultWord_compareEqual, copy, other));
  require(qstd_tokenMatcherResultWord_assign(other, copy));
  EXPECT_TRUE(areEqual(qstd_tokenMatcherResultWord_compareEqual, copy, other));
}

TEST(Token, ReportsMissingArguments) {
  FailedChecks checks;
  Owned<qstd_token> token;
  Owned<qstd_tokenMulti> multi;
  EXPECT_EQ(qstd_token_getChar(token, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qstd_token_setChar32(nullptr, 'a'), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qstd_tokenMulti_setChar32(nullptr, 'a'), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(qstd_tokenMulti_setAlternatives(multi, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

}  // namespace
