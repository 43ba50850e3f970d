// Check digits against examples that their standards and registrars publish.

#include <gtest/gtest.h>
#include <qoc/check_digit.h>

#include <utility>

#include "resolve/check_rule.hpp"
#include "support/handlers.hpp"
#include "support/text.hpp"

namespace {

using namespace qoc::test;

bool isValid(const Owned<qoc_checkDigitRule> &made, const std::string &text) {
  qsys_bool answer = 7;
  EXPECT_EQ(qoc_checkDigitRule_isValidT(made, text.c_str(), &answer), QSYS_STATUS_OK);
  return answer == 1;
}

/// A text that passes, and that passes no more when one of its digits changes.
void expectOnly(const Owned<qoc_checkDigitRule> &made, const std::string &text) {
  SCOPED_TRACE(text);
  EXPECT_TRUE(isValid(made, text));
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] < '0' || text[i] > '9') continue;
    std::string changed = text;
    changed[i] = static_cast<char>('0' + (text[i] - '0' + 1) % 10);
    EXPECT_FALSE(isValid(made, changed)) << changed;
  }
}

TEST(CheckDigit, LuhnPassesItsExamples) {
  const auto luhn = rule(qoc_checkDigitMethod_luhn);
  expectOnly(luhn, "79927398713");
  expectOnly(luhn, "4111 1111 1111 1111");
  EXPECT_FALSE(isValid(luhn, "79927398710"));
  EXPECT_FALSE(isValid(luhn, "7992739871X"));
}

TEST(CheckDigit, GtinPassesTradeItemAndBookNumbersOfEveryLength) {
  const auto gtin = rule(qoc_checkDigitMethod_gtin);
  for (const char *text : {"6291041500213", "036000291452", "73513537", "978-0-306-40615-7"}) expectOnly(gtin, text);
}

TEST(CheckDigit, Isbn10PassesBooksAndSerials) {
  const auto isbn = rule(qoc_checkDigitMethod_isbn10);
  for (const char *text : {"0-306-40615-2", "0-8044-2957-X", "0378-5955", "2434-561X"}) expectOnly(isbn, text);
  EXPECT_FALSE(isValid(isbn, "X378-5955")) << "X stands last only";
}

TEST(CheckDigit, Mod11x2PassesResearcherNumbers) {
  const auto mod = rule(qoc_checkDigitMethod_mod11x2);
  expectOnly(mod, "0000-0002-1825-0097");
  expectOnly(mod, "0000-0002-1694-233X");
}

TEST(CheckDigit, Mod37PassesBloodDonationAndReleaseNumbers) {
  expectOnly(rule(qoc_checkDigitMethod_mod37x2), "G123 498 654 321 H");
  expectOnly(rule(qoc_checkDigitMethod_mod37x36), "A1-2425G-ABC1234002-M");
}

TEST(CheckDigit, Mod97PassesAccountCodesAndEntityNumbers) {
  const auto account = rule(qoc_checkDigitMethod_mod97, {{4, QOC_CHECK_DIGIT_END}, {0, 4}});
  expectOnly(account, "GB82 WEST 1234 5698 7654 32");
  expectOnly(account, "DE89 3704 0044 0532 0130 00");
  expectOnly(rule(qoc_checkDigitMethod_mod97), "213800WSGIIZCXF1P572");
  EXPECT_FALSE(isValid(account, "GB8X WEST 1234 5698 7654 32"));
}

TEST(CheckDigit, ContainerPassesItsExamples) {
  const auto container = rule(qoc_checkDigitMethod_container);
  expectOnly(container, "CSQU 305438 3");
  expectOnly(container, "TOLU4734787");
  EXPECT_FALSE(isValid(container, "CSQU30543833"));
  EXPECT_FALSE(isValid(container, "CSQ13054383"));
  EXPECT_FALSE(isValid(container, "CSQU3O54383")) << "a letter among the digits";
}

TEST(CheckDigit, ContainerLettersCountFrom10WithoutTheMultiplesOf11) {
  // Only the first character counts once, and the rest of the sum is 0 but for the letters behind it.
  const int32_t values[] = {10, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 23, 24,
                            25, 26, 27, 28, 29, 30, 31, 32, 34, 35, 36, 37, 38};
  const auto container = rule(qoc_checkDigitMethod_container);
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const int32_t sum = values[letter - 'A'] + 10 * (2 + 4 + 8);
    const std::string text = std::string(1, letter) + "AAA000000";
    for (char digit = '0'; digit <= '9'; ++digit) {
      EXPECT_EQ(isValid(container, text + digit), sum % 11 % 10 == digit - '0') << text << digit;
    }
  }
}

TEST(CheckDigit, Mod37TakesOneCheckCharacterOf37AndAnAsteriskForTheLast) {
  const std::string characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ*";
  const auto mod = rule(qoc_checkDigitMethod_mod37x2);
  int32_t numAsterisks = 0;
  for (const char first : characters.substr(0, 36)) {
    const std::string prefix = std::string("G123") + first;
    std::string passing;
    for (const char check : characters) passing += isValid(mod, prefix + check) ? std::string(1, check) : "";
    EXPECT_EQ(passing.size(), 1u) << prefix << " passes with " << passing;
    numAsterisks += passing == "*" ? 1 : 0;
    EXPECT_FALSE(isValid(mod, "*" + prefix)) << "it stands last only";
  }
  EXPECT_EQ(numAsterisks, 1);
}

TEST(CheckDigit, VehiclePassesItsExamples) {
  const auto vehicle = rule(qoc_checkDigitMethod_vehicle);
  EXPECT_TRUE(isValid(vehicle, "1M8GDM9AXKP042788"));
  EXPECT_TRUE(isValid(vehicle, "11111111111111111"));
  EXPECT_FALSE(isValid(vehicle, "1M8GDM9A1KP042788"));
  EXPECT_FALSE(isValid(vehicle, "1M8GDM9AXKP042789"));
  EXPECT_FALSE(isValid(vehicle, "1M8GDM9AXKO042788")) << "O does not occur";
}

TEST(CheckDigit, Icao9303PassesTheSpecimenPassportPartByPart) {
  const std::string line = "L898902C36UTO7408122F1204159ZE184226B<<<<<10";
  const auto method = qoc_checkDigitMethod_icao9303;
  EXPECT_TRUE(isValid(rule(method), "AB2134<<<5"));
  EXPECT_TRUE(isValid(rule(method), "5207273"));
  for (const auto &parts : std::vector<std::vector<qstd_span32>>{{{0, 10}},
                                                                 {{13, 20}},
                                                                 {{21, 28}},
                                                                 {{28, 43}},
                                                                 {{0, 10}, {13, 20}, {21, 44}},
                                                                 {{0, 10}, {13, 20}, {-23, QOC_CHECK_DIGIT_END}}}) {
    const auto part = rule(method, parts);
    EXPECT_TRUE(isValid(part, line));
    std::string changed = line;
    changed[static_cast<std::size_t>(parts[0].begin)] =
        '7' == changed[static_cast<std::size_t>(parts[0].begin)] ? '8' : '7';
    EXPECT_FALSE(isValid(part, changed));
  }
}

TEST(CheckDigit, TextsThatDoNotFitDoNotPass) {
  EXPECT_FALSE(isValid(rule(qoc_checkDigitMethod_luhn), ""));
  EXPECT_FALSE(isValid(rule(qoc_checkDigitMethod_luhn), "0"));
  EXPECT_FALSE(isValid(rule(qoc_checkDigitMethod_luhn, {{0, 5}}), "1234"));
  EXPECT_FALSE(isValid(rule(qoc_checkDigitMethod_luhn, {{-5, QOC_CHECK_DIGIT_END}}), "1234"));
  EXPECT_FALSE(isValid(rule(qoc_checkDigitMethod_vehicle), "1M8GDM9AXKP04278"));
}

TEST(CheckDigitRule, IsRefusedWhereNoTextCanPass) {
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(0)), QOC_STATUS_CHECK_METHOD_INVALID);
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(11)), QOC_STATUS_CHECK_METHOD_INVALID);
  const auto luhn = qoc_checkDigitMethod_luhn, vehicle = qoc_checkDigitMethod_vehicle;
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(luhn, {{3, 3}})), QOC_STATUS_CHECK_PARTS_INVALID);
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(luhn, {{-2, -4}})), QOC_STATUS_CHECK_PARTS_INVALID);
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(vehicle, {{0, 16}})), QOC_STATUS_CHECK_LENGTH_INVALID);
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(vehicle, {{0, 17}})), QSYS_STATUS_OK);
  constexpr int32_t far = INT32_MAX - 1;  // One more is the end.
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(luhn, {{0, far}})), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(luhn, {{0, far}, {0, far}})), QOC_STATUS_CHECK_LENGTH_INVALID);
  EXPECT_EQ(qoc_checkDigitRule_validate(rule(vehicle)), QSYS_STATUS_OK);
  qsys_bool answer = 7;
  EXPECT_EQ(qoc_checkDigitRule_isValidT(rule(0), "1", &answer), QOC_STATUS_CHECK_METHOD_INVALID);
  EXPECT_EQ(answer, 7u);
}

TEST(CheckDigitRule, IsRefusedForALengthThatItsMethodOrItsPartsDoNotTake) {
  const auto vehicle = rule(qoc_checkDigitMethod_vehicle);
  EXPECT_EQ(qoc_checkDigitRule_validateLength(vehicle, 17), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_checkDigitRule_validateLength(vehicle, 16), QOC_STATUS_CHECK_LENGTH_INVALID);
  EXPECT_EQ(qoc_checkDigitRule_validateLength(rule(0), 17), QOC_STATUS_CHECK_METHOD_INVALID);
  const auto luhn = rule(qoc_checkDigitMethod_luhn, {{2, 6}});
  EXPECT_EQ(qoc_checkDigitRule_validateLength(luhn, 6), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_checkDigitRule_validateLength(luhn, 5), QOC_STATUS_CHECK_PARTS_INVALID);
}

TEST(CheckDigitRule, TellsOfEnormousLengthsAtOnce) {
  EXPECT_EQ(qoc_checkDigitRule_validateLength(rule(qoc_checkDigitMethod_luhn), INT32_MAX), QSYS_STATUS_OK);
  const auto end = rule(qoc_checkDigitMethod_luhn, {{-2, QOC_CHECK_DIGIT_END}});
  EXPECT_EQ(qoc_checkDigitRule_validateLength(end, INT32_MAX), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_checkDigitRule_validateLength(end, INT32_MIN), QOC_STATUS_CHECK_PARTS_INVALID);
  const auto twice = rule(qoc_checkDigitMethod_luhn, {{0, QOC_CHECK_DIGIT_END}, {0, QOC_CHECK_DIGIT_END}});
  EXPECT_EQ(qoc_checkDigitRule_validateLength(twice, INT32_MAX), QOC_STATUS_CHECK_LENGTH_INVALID);
}

TEST(CheckDigitRule, AssignedToItselfStays) {
  auto made = rule(qoc_checkDigitMethod_mod97, {{4, QOC_CHECK_DIGIT_END}, {0, 4}});
  made->ignoresSeparators = 0;
  require(qstd_vectorChar32_assign(&made->ignored, vectorOf<qstd_vectorChar32>(std::vector<Char32>{'.'})));
  EXPECT_EQ(qoc_checkDigitRule_assign(made, made), QSYS_STATUS_OK);
  EXPECT_TRUE(isValid(made, "GB82.WEST1234.5698.7654.32"));
  EXPECT_FALSE(isValid(made, "GB82 WEST12345698765432"));
}

TEST(CheckDigitRule, NamesItsMethods) {
  EXPECT_STREQ(qoc_checkDigitMethod_getName(qoc_checkDigitMethod_luhn), "luhn");
  EXPECT_STREQ(qoc_checkDigitMethod_getName(qoc_checkDigitMethod_icao9303), "icao9303");
  EXPECT_STREQ(qoc_checkDigitMethod_getName(0), "");
}

TEST(CheckDigitRule, ReportsNullAndGoesOn) {
  FailedChecks reports;
  EXPECT_EQ(qoc_checkDigitRule_validate(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_checkDigitRule_isValidT(rule(qoc_checkDigitMethod_luhn), nullptr, nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(reports.lines().size(), 2u);
}

TEST(CheckDigit, CharactersThatAMethodDoesNotKnowNeverPass) {
  const std::pair<qoc_checkDigitMethod, std::string> valid[] = {
      {qoc_checkDigitMethod_luhn, "79927398713"},           {qoc_checkDigitMethod_gtin, "6291041500213"},
      {qoc_checkDigitMethod_isbn10, "0306406152"},          {qoc_checkDigitMethod_mod11x2, "0000000218250097"},
      {qoc_checkDigitMethod_mod37x2, "G123498654321H"},     {qoc_checkDigitMethod_mod37x36, "A12425GABC1234002M"},
      {qoc_checkDigitMethod_mod97, "213800WSGIIZCXF1P572"}, {qoc_checkDigitMethod_container, "CSQU3054383"},
      {qoc_checkDigitMethod_container, "VLZU1234563"},      {qoc_checkDigitMethod_vehicle, "1M8GDM9AXKP042788"}};
  for (const auto &[method, text] : valid) {
    const auto made = rule(method);
    EXPECT_TRUE(isValid(made, text)) << text;
    for (std::size_t i = 0; i < text.size(); ++i) {
      for (const char unknown : {'/', ':', '@', '[', '`', 'a', '!', '\xC4'}) {
        std::string changed = text;
        changed[i] = unknown;
        EXPECT_FALSE(isValid(made, changed)) << changed;
      }
    }
  }
}

TEST(CheckDigit, SeparatorsCountWhereTheyAreNotIgnored) {
  auto luhn = rule(qoc_checkDigitMethod_luhn);
  EXPECT_TRUE(isValid(luhn, "7992 7398-713"));
  luhn->ignoresSeparators = 0;
  EXPECT_FALSE(isValid(luhn, "7992 7398713"));
  EXPECT_FALSE(isValid(luhn, "79927398-713"));
  EXPECT_TRUE(isValid(luhn, "79927398713"));
}

TEST(CheckDigit, APartMayEndBeforeTheTextDoes) {
  EXPECT_TRUE(isValid(rule(qoc_checkDigitMethod_luhn, {{2, -3}}), "ab79927398713cde"));
  EXPECT_TRUE(isValid(rule(qoc_checkDigitMethod_luhn, {{2, 13}}), "ab79927398713cde"));
  EXPECT_FALSE(isValid(rule(qoc_checkDigitMethod_luhn, {{2, -2}}), "ab79927398713cde"));
}

}  // namespace
