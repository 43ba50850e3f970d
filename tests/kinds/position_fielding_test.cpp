// What one position of a line admits.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fieldings.hpp"
#include "support/handlers.hpp"

namespace {

using namespace qoc::test;
using testing::ElementsAre;

using PositionFielding = Owned<qoc_ocrDictionaryPositionFielding>;

bool admits(const PositionFielding &asked, Char32 code, const qoc_swapCharSet *set = nullptr) {
  const auto one = character(code);
  qsys_bool isMatch = 2;
  require(qoc_ocrDictionaryPositionFielding_isMatch(asked, &one, set, &isMatch));
  return isMatch == 1;
}

template <class Query>
qsys_bool ask(Query query, const PositionFielding &asked) {
  qsys_bool answer = 2;
  require(query(asked, &answer));
  return answer;
}

qsys_bool isEmpty(const PositionFielding &asked) { return ask(qoc_ocrDictionaryPositionFielding_isEmpty, asked); }
qsys_bool isAny(const PositionFielding &asked) { return ask(qoc_ocrDictionaryPositionFielding_isAnyCharacter, asked); }
qsys_bool isAnyNonspace(const PositionFielding &asked) {
  return ask(qoc_ocrDictionaryPositionFielding_isAnyNonspaceCharacter, asked);
}
qsys_bool isSingle(const PositionFielding &asked) {
  return ask(qoc_ocrDictionaryPositionFielding_getIsSingleCharacter, asked);
}
qsys_bool allowsSpace(const PositionFielding &asked) {
  return ask(qoc_ocrDictionaryPositionFielding_getAllowsSpace, asked);
}

Char32 singleOf(const PositionFielding &asked) {
  Char32 code = 0;
  require(qoc_ocrDictionaryPositionFielding_getSingleCharacter(asked, &code));
  return code;
}

uint32_t bitsOf(const PositionFielding &asked) {
  uint32_t bits = 99;
  require(qoc_ocrDictionaryPositionFielding_getFieldingBits(asked, &bits));
  return bits;
}

std::u32string allOf(const PositionFielding &asked) {
  const auto all = codeVector(U"left over");
  Owned<qstd_vectorChar32> out(*all);
  require(qoc_ocrDictionaryPositionFielding_getAllFieldingCharacters(asked, out));
  return show(*out);
}

/// A list that the checked setters would refuse.
PositionFielding unchecked(uint32_t bits, const std::vector<qoc_ocrDictionaryChar> &listed) {
  auto made = fielding(bits);
  require(
      qoc_ocrDictionaryPositionFielding_setDictCharacters(made, vectorOf<qstd_vector_qoc_ocrDictionaryChar>(listed)));
  return made;
}

TEST(PositionFieldingConstruct, AdmitsEverythingButTheSpace) {
  PositionFielding made;

  EXPECT_EQ(bitsOf(made), 16u);
  EXPECT_EQ(isEmpty(made), 0u);
  for (Char32 code = 0; code < 0x80; ++code) {
    EXPECT_EQ(admits(made, code), code != ' ') << code;
  }
}

TEST(PositionFieldingConstructFieldingBits, StoresTheBitsOrLeavesNothingConstructed) {
  qoc_ocrDictionaryPositionFielding made;
  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_constructFieldingBits(&made, 5), QSYS_STATUS_OK);
  EXPECT_EQ(made.fieldingBits, 5u);
  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_destruct(&made), QSYS_STATUS_OK);

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_constructFieldingBits(&made, 32), QOC_STATUS_FIELDING_BITS_INVALID);
}

TEST(PositionFieldingCompareEqual, ComparesBitsAndTheListInOrder) {
  const auto equal = [](const PositionFielding &a, const PositionFielding &b) {
    qsys_bool isEqual = 2;
    require(qoc_ocrDictionaryPositionFielding_compareEqual(a, b, &isEqual));
    return isEqual;
  };

  EXPECT_EQ(equal(fielding(4, U"ab"), fielding(4, U"ab")), 1u);
  EXPECT_EQ(equal(fielding(4, U"ab"), fielding(4, U"ba")), 0u);
  EXPECT_EQ(equal(fielding(4, U"ab"), fielding(4, U"abc")), 0u);
  EXPECT_EQ(equal(fielding(4, U"ab"), fielding(5, U"ab")), 0u);
}

TEST(PositionFieldingSetFieldingBits, RefusesBitsAboveTheFiveAndKeepsTheOldOnes) {
  auto made = fielding(5);
  for (const uint32_t bits : {32u, 33u, 0x80000000u}) {
    EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingBits(made, bits), QOC_STATUS_FIELDING_BITS_INVALID);
    EXPECT_EQ(bitsOf(made), 5u);
  }
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingBits(made, 31), QSYS_STATUS_OK);
  EXPECT_EQ(bitsOf(made), 31u);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingBits(made, 0), QSYS_STATUS_OK);
  uint32_t bits = 99;
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_getFielding(made, &bits), QSYS_STATUS_OK);
  EXPECT_EQ(bits, 0u);
}

TEST(PositionFieldingSetFieldingCharacters, RefusesDuplicatesFirstThenTheEmptyCharacterAndKeepsTheOldList) {
  auto made = fielding(0, U"xy");
  const struct {
    std::u32string_view list;
    qsys_status status;
  } cases[] = {
      {U"AA", QOC_STATUS_CHARACTER_DUPLICATE},           {U"ABCA", QOC_STATUS_CHARACTER_DUPLICATE},
      {U"\uF800", QOC_STATUS_CHARACTER_EMPTY},           {U"A\uF800B", QOC_STATUS_CHARACTER_EMPTY},
      {U"\uF800\uF800", QOC_STATUS_CHARACTER_DUPLICATE}, {U"\uF800AA", QOC_STATUS_CHARACTER_DUPLICATE},
  };
  for (const auto &one : cases) {
    EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingCharacters(made, codeVector(one.list)), one.status);
    EXPECT_EQ(show(made->fieldingCharacters), U"xy");
  }
}

TEST(PositionFieldingSetFieldingCharacters, KeepsTheOrderGivenAndHandsTheListOut) {
  auto made = fielding(0);

  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingCharacters(made, codeVector(U"zb\uF802a")), QSYS_STATUS_OK);

  const qstd_vectorChar32 *listed = nullptr;
  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_getFieldingCharacters(made, &listed), QSYS_STATUS_OK);
  EXPECT_EQ(listed, &made->fieldingCharacters);
  EXPECT_EQ(show(*listed), U"zb\uF802a");
}

TEST(PositionFieldingSetFieldingCharactersAndFieldingBits, LeavesTheNewBitsWhenTheListIsRefused) {
  auto made = fielding(1, U"x");

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(made, codeVector(U"AA"), 6),
            QOC_STATUS_CHARACTER_DUPLICATE);
  EXPECT_EQ(bitsOf(made), 6u);
  EXPECT_EQ(show(made->fieldingCharacters), U"x");

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingCharactersAndFieldingBits(made, codeVector(U"AA"), 64),
            QOC_STATUS_FIELDING_BITS_INVALID);
  EXPECT_EQ(bitsOf(made), 6u);
}

TEST(PositionFieldingSetDictCharacters, AcceptsDuplicatesAndTheEmptyCharacter) {
  auto made = fielding(3);
  const auto list = vectorOf<qstd_vector_qoc_ocrDictionaryChar>({{'A', 7}, {'A', 8}, {0xF800, 0}});

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharacters(made, list), QSYS_STATUS_OK);

  EXPECT_EQ(show(made->fieldingCharacters), U"AA\uF800");
  EXPECT_EQ(bitsOf(made), 3u);
}

TEST(PositionFieldingSetDictCharacters, RefusesCodesThatAreNoTextCharactersAndKeepsTheList) {
  auto made = fielding(3, U"x");
  for (const Char32 code : {0x80u, 0xE9u, 0xF801u, 0xF802u}) {
    const auto list = vectorOf<qstd_vector_qoc_ocrDictionaryChar>({{'A', 0}, {code, 0}});
    EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharacters(made, list), QOC_STATUS_NO_SUCH_VALUE);
    EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(made, list, 4),
              QOC_STATUS_NO_SUCH_VALUE);
    EXPECT_EQ(show(made->fieldingCharacters), U"x");
    EXPECT_EQ(bitsOf(made), 3u);
  }
}

TEST(PositionFieldingSetDictCharactersAndFieldingBits, IsChecked) {
  auto made = fielding(3, U"x");

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(made, characters("A|A"), 4),
            QOC_STATUS_CHARACTER_DUPLICATE);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(
                made, vectorOf<qstd_vector_qoc_ocrDictionaryChar>({{0xF800, 0}}), 4),
            QOC_STATUS_CHARACTER_EMPTY);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(made, characters("A|B"), 32),
            QOC_STATUS_FIELDING_BITS_INVALID);
  EXPECT_EQ(bitsOf(made), 4u);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setDictCharactersAndFieldingBits(made, characters("B|A"), 8),
            QSYS_STATUS_OK);
  EXPECT_EQ(show(made->fieldingCharacters), U"BA");
  EXPECT_EQ(bitsOf(made), 8u);
}

TEST(PositionFieldingQueries, TellWhatIsThere) {
  EXPECT_EQ(ask(qoc_ocrDictionaryPositionFielding_hasFieldingBits, fielding(0, U"a")), 0u);
  EXPECT_EQ(ask(qoc_ocrDictionaryPositionFielding_hasFieldingBits, fielding(8)), 1u);
  EXPECT_EQ(ask(qoc_ocrDictionaryPositionFielding_hasFieldingCharacters, fielding(8)), 0u);
  EXPECT_EQ(ask(qoc_ocrDictionaryPositionFielding_hasFieldingCharacters, fielding(0, U"a")), 1u);
  EXPECT_EQ(isEmpty(fielding(0, U"a")), 0u);
  EXPECT_EQ(isEmpty(fielding(1)), 0u);
}

TEST(PositionFieldingQueries, NothingSetAndNothingListedIsEmptyAndAdmitsNothing) {
  const auto nothing = fielding(0);

  EXPECT_EQ(isEmpty(nothing), 1u);
  EXPECT_EQ(allOf(nothing), U"");
  for (Char32 code = 0; code < 0x80; ++code) {
    EXPECT_FALSE(admits(nothing, code)) << code;
  }
}

TEST(PositionFieldingIsAnyCharacter, IsTrueForBothBitsAWildcardOrASpaceBesideTheRest) {
  EXPECT_EQ(isAny(fielding(24)), 1u);
  EXPECT_EQ(isAny(fielding(0, U"\uF801")), 1u);
  EXPECT_EQ(isAny(fielding(16, U" ")), 1u);
  EXPECT_EQ(isAny(fielding(0, U" \uF802")), 1u);
  EXPECT_EQ(isAny(fielding(16)), 0u);
  EXPECT_EQ(isAny(fielding(8)), 0u);
  EXPECT_EQ(isAny(fielding(0, U" ")), 0u);
  EXPECT_EQ(isAny(fielding(8, U"\uF802")), 0u) << "the space counts here as a listed character only";
}

TEST(PositionFieldingIsAnyNonspaceCharacter, IsFalseWhereTheSpaceIsAdmittedByName) {
  EXPECT_EQ(isAnyNonspace(fielding(16)), 1u);
  EXPECT_EQ(isAnyNonspace(fielding(0, U"\uF802")), 1u);
  EXPECT_EQ(isAnyNonspace(fielding(24)), 0u);
  EXPECT_EQ(isAnyNonspace(fielding(16, U" ")), 0u);
  EXPECT_EQ(isAnyNonspace(fielding(7)), 0u);
}

TEST(PositionFieldingQueries, AListedAnyIsAnyCharacterButNotAnyNonspace) {
  EXPECT_EQ(isAny(fielding(0, U"\uF801")), 1u);
  EXPECT_EQ(isAnyNonspace(fielding(0, U"\uF801")), 0u);
}

TEST(PositionFieldingSingleCharacter, IsTheSpaceAloneOrOneListedCharacterAlone) {
  EXPECT_EQ(isSingle(fielding(8)), 1u);
  EXPECT_EQ(singleOf(fielding(8)), Char32{' '});
  EXPECT_EQ(isSingle(fielding(0, U"7")), 1u);
  EXPECT_EQ(singleOf(fielding(0, U"7")), Char32{'7'});
  for (const auto &other : {fielding(4), fielding(0), fielding(8, U" "), fielding(0, U"78"), fielding(4, U"7")}) {
    EXPECT_EQ(isSingle(other), 0u);
    EXPECT_EQ(singleOf(other), 0xF800u);
  }
}

TEST(PositionFieldingGetAllowsSpace, CountsTheBitAndTheListedSpaceOnly) {
  EXPECT_EQ(allowsSpace(fielding(8)), 1u);
  EXPECT_EQ(allowsSpace(fielding(4, U"x ")), 1u);
  EXPECT_EQ(allowsSpace(fielding(16)), 0u);
  EXPECT_EQ(allowsSpace(fielding(0, U"\uF801")), 0u);
}

TEST(PositionFieldingIsMatch, FollowsTheClasses) {
  const struct {
    uint32_t bits;
    bool (*isIn)(Char32);
  } cases[] = {
      {QOC_FIELDING_UPPER, [](Char32 c) { return c >= 'A' && c <= 'Z'; }},
      {QOC_FIELDING_LOWER, [](Char32 c) { return c >= 'a' && c <= 'z'; }},
      {QOC_FIELDING_DIGIT, [](Char32 c) { return c >= '0' && c <= '9'; }},
      {QOC_FIELDING_SPACE, [](Char32 c) { return c == ' '; }},
      {QOC_FIELDING_NONSPACE, [](Char32 c) { return c != ' '; }},
  };
  for (uint32_t bits = 0; bits < 32; ++bits) {
    const auto asked = fielding(bits);
    for (Char32 code = 0; code < 0x80; ++code) {
      bool expected = false;
      for (const auto &one : cases) {
        expected = expected || ((bits & one.bits) != 0 && one.isIn(code));
      }
      EXPECT_EQ(admits(asked, code), expected) << "bits " << bits << " code " << code;
    }
  }
}

TEST(PositionFieldingIsMatch, NeverAdmitsTheEmptyCharacterAndDoesNotFail) {
  for (const auto &asked : {fielding(24), fielding(0, U"\uF801"), fielding(16), unchecked(0, {{0xF800, 0}})}) {
    EXPECT_FALSE(admits(asked, 0xF800));
  }
}

TEST(PositionFieldingIsMatch, FailsForACharacterBeyondSevenBitsWhateverThePositionAdmits) {
  for (const Char32 code : {0xE9u, 0x80u, 0xF801u}) {
    const auto one = character(code);
    for (const auto &asked : {fielding(24), fielding(0), fielding(0, U"\u00E9")}) {
      qsys_bool isMatch = 2;
      EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatch(asked, &one, nullptr, &isMatch), QOC_STATUS_NO_SUCH_VALUE);
    }
  }
}

TEST(PositionFieldingIsMatch, TakesNegativeTextCharactersAsTheyConvert) {
  EXPECT_TRUE(admits(fielding(16), 0xFFFFFFE9u));
  EXPECT_FALSE(admits(fielding(7), 0xFFFFFFE9u));
}

TEST(PositionFieldingIsMatch, ExpandsListedWildcards) {
  EXPECT_TRUE(admits(fielding(0, U"\uF801"), ' '));
  EXPECT_TRUE(admits(fielding(0, U"\uF801"), 'x'));
  EXPECT_FALSE(admits(fielding(0, U"\uF802"), ' '));
  EXPECT_TRUE(admits(fielding(0, U"\uF802"), 'x'));
}

TEST(PositionFieldingIsMatch, AdmitsBySwapIntoAClassOrTheList) {
  const auto set = swaps({U"O0", U"-_"});

  EXPECT_FALSE(admits(fielding(QOC_FIELDING_DIGIT), 'O'));
  EXPECT_TRUE(admits(fielding(QOC_FIELDING_DIGIT), 'O', set));
  EXPECT_FALSE(admits(fielding(0, U"-"), '_'));
  EXPECT_TRUE(admits(fielding(0, U"-"), '_', set));
  EXPECT_FALSE(admits(fielding(QOC_FIELDING_DIGIT), 'Q', set));
}

TEST(PositionFieldingIsMatch, FailsForASwapEquivalentBeyondSevenBitsOnlyWhereItIsAsked) {
  const auto set = swaps({U"e\u00E9"});
  const auto one = character('e');
  qsys_bool isMatch = 2;

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatch(fielding(QOC_FIELDING_DIGIT), &one, set, &isMatch),
            QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_TRUE(admits(fielding(QOC_FIELDING_LOWER), 'e', set));
}

/// One position of a reading, codes beyond ASCII included.
Owned<qoc_ocrDictionaryCharMulti> wide(std::u32string_view text) {
  const auto one = reading(text);
  return Owned<qoc_ocrDictionaryCharMulti>(elements(one->positions)[0]);
}

TEST(PositionFieldingIsMatchMulti, StopsAtTheFirstCandidateThatIsAdmitted) {
  const auto digit = fielding(QOC_FIELDING_DIGIT);
  qsys_bool isMatch = 2;

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatchMulti(digit, wide(U"x|1|\u00E9"), nullptr, &isMatch),
            QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 1u);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatchMulti(digit, wide(U"x|\u00E9|1"), nullptr, &isMatch),
            QOC_STATUS_NO_SUCH_VALUE);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatchMulti(digit, position("x|y"), nullptr, &isMatch), QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 0u);
  isMatch = 2;
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatchMulti(digit, position("~"), nullptr, &isMatch), QSYS_STATUS_OK);
  EXPECT_EQ(isMatch, 0u);
}

struct Graded {
  qsys_bool isMatch = 2;
  qoc_ocrDictionaryPositionStatus status = 77;
  bool operator==(const Graded &) const = default;
};

Graded grade(const PositionFielding &asked, const Owned<qoc_ocrDictionaryCharMulti> &multi,
             const qoc_swapCharSet *set = nullptr) {
  Graded graded;
  require(qoc_ocrDictionaryPositionFielding_isMatchMultiStatus(asked, multi, set, &graded.isMatch, &graded.status));
  return graded;
}

constexpr auto primary = qoc_ocrDictionaryPositionStatus_primary;
constexpr auto secondary = qoc_ocrDictionaryPositionStatus_secondary;

TEST(PositionFieldingIsMatchMultiStatus, TellsTheFirstCandidateFromTheOthers) {
  const auto digit = fielding(QOC_FIELDING_DIGIT);

  EXPECT_EQ(grade(digit, position("1|x")), (Graded{1, primary}));
  EXPECT_EQ(grade(digit, position("x|y|1")), (Graded{1, secondary}));
}

TEST(PositionFieldingIsMatchMultiStatus, AdmitsASecondCandidateAsSecondary) {
  EXPECT_EQ(grade(fielding(QOC_FIELDING_DIGIT), position("O|0")), (Graded{1, secondary}));
}

TEST(PositionFieldingIsMatchMultiStatus, LeavesSecondaryBehindARefusal) {
  EXPECT_EQ(grade(fielding(QOC_FIELDING_DIGIT), position("x")), (Graded{0, secondary}));
  EXPECT_EQ(grade(fielding(QOC_FIELDING_DIGIT), position("x|y")), (Graded{0, secondary}));
}

TEST(PositionFieldingIsMatchMultiStatus, WritesNoStatusWithoutCandidates) {
  EXPECT_EQ(grade(fielding(24), position("~")), (Graded{0, 77}));
}

TEST(PositionFieldingIsMatchMultiStatus, TakesAnythingAtAPositionThatAdmitsEverything) {
  EXPECT_EQ(grade(fielding(24), wide(U"\u00E9")), (Graded{1, primary}));
  EXPECT_EQ(grade(fielding(24), wide(U"\uF800")), (Graded{1, primary}));
}

TEST(PositionFieldingIsMatchMultiStatus, HasNoStatusForSwaps) {
  const auto set = swaps({U"O0"});

  EXPECT_EQ(grade(fielding(QOC_FIELDING_DIGIT), position("O"), set), (Graded{1, primary}));
  EXPECT_EQ(grade(fielding(QOC_FIELDING_DIGIT), position("x|O"), set), (Graded{1, secondary}));
}

TEST(PositionFieldingMatch, ListsTheCharacterAndItsEquivalentsThatAreAdmittedDirectly) {
  const auto set = swaps({U"0OD"});
  Owned<qstd_vector_qoc_ocrDictionaryChar> matches(*characters("x|y"));
  const auto one = character('O', 9);

  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_match(fielding(QOC_FIELDING_UPPER), &one, set, matches), QSYS_STATUS_OK);
  EXPECT_EQ(show(matches), "OD");
  EXPECT_EQ(elements(matches)[0].score, 9);
  EXPECT_EQ(elements(matches)[1].score, 0);

  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_match(fielding(QOC_FIELDING_DIGIT), &one, set, matches), QSYS_STATUS_OK);
  EXPECT_EQ(show(matches), "0");

  ASSERT_EQ(qoc_ocrDictionaryPositionFielding_match(fielding(QOC_FIELDING_DIGIT), &one, nullptr, matches),
            QSYS_STATUS_OK);
  EXPECT_EQ(show(matches), "");
}

TEST(PositionFieldingMatchMulti, KeepsTheFirstOfEveryCodeInCandidateOrder) {
  const auto set = swaps({U"0OD"});
  Owned<qstd_vector_qoc_ocrDictionaryChar> matches(*characters("x|y"));

  ASSERT_EQ(
      qoc_ocrDictionaryPositionFielding_matchMulti(fielding(QOC_FIELDING_UPPER), position("O5|D4|7|A3"), set, matches),
      QSYS_STATUS_OK);

  EXPECT_EQ(show(matches), "ODA");
  EXPECT_THAT(values(matches), ElementsAre(testing::Field(&qoc_ocrDictionaryChar::score, 5),
                                           testing::Field(&qoc_ocrDictionaryChar::score, 0),
                                           testing::Field(&qoc_ocrDictionaryChar::score, 3)));
}

TEST(PositionFieldingMatchMulti, FailsForACandidateBeyondSevenBitsEvenWhereEverythingIsAdmitted) {
  Owned<qstd_vector_qoc_ocrDictionaryChar> matches;

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_matchMulti(fielding(24), wide(U"a|\u00E9"), nullptr, matches),
            QOC_STATUS_NO_SUCH_VALUE);
}

TEST(PositionFieldingGetAllFieldingCharacters, GivesTheWildcardForWhatAdmitsEverything) {
  EXPECT_EQ(allOf(fielding(24)), U"\uF801");
  EXPECT_EQ(allOf(fielding(0, U" \uF802")), U"\uF801");
  EXPECT_EQ(allOf(fielding(16)), U"\uF802");
  EXPECT_EQ(allOf(fielding(0, U"x\uF802")), U"\uF802");
}

TEST(PositionFieldingGetAllFieldingCharacters, SortsClassesAndListTogether) {
  EXPECT_EQ(allOf(fielding(1 | 4, U"-")), U"-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  EXPECT_EQ(allOf(fielding(1 | 4, U"-")).size(), 37u);
  EXPECT_EQ(allOf(fielding(2 | 8, U"b~")), U" abcdefghijklmnopqrstuvwxyz~");
  EXPECT_EQ(allOf(fielding(8, U"\uF802")), U" \uF802");
}

TEST(PositionFieldingArguments, ReportNullAndChangeNothing) {
  FailedChecks checks;
  const auto asked = fielding(4);
  qsys_bool isMatch = 2;

  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatch(asked, nullptr, nullptr, &isMatch), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isMatchMulti(nullptr, position("1"), nullptr, &isMatch), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_setFieldingBits(nullptr, 4), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionaryPositionFielding_isEmpty(asked, nullptr), QSYS_STATUS_OK);

  EXPECT_EQ(checks.numNew(), 4);
  EXPECT_EQ(isMatch, 2u);
}

}  // namespace
