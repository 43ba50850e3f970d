// What an expression's source may hold, and what is wrong with it where.

#include <gtest/gtest.h>

#include <cctype>

#include "platform/regex/regexes.hpp"

namespace {

using namespace qoc::test;

TEST(RegexSyntax, MatchesTheWholeSequence) {
  EXPECT_TRUE(matches("ab", "ab"));
  EXPECT_FALSE(matches("ab", "abc"));
  EXPECT_FALSE(matches("ab", "a"));
  EXPECT_FALSE(matches("ab", "xab"));
}

TEST(RegexSyntax, TheEmptyExpressionMatchesTheEmptySequenceAlone) {
  EXPECT_TRUE(matches("", ""));
  EXPECT_FALSE(matches("", "a"));
}

TEST(RegexSyntax, ADotIsAnyCharacterLineEndsIncluded) {
  for (const char *text : {"a", "\n", "\r", " ", "\x80"}) {
    EXPECT_TRUE(matches(".", text)) << text;
  }
  EXPECT_FALSE(matches(".", ""));
}

TEST(RegexSyntax, ClassesHoldCharactersRangesAndEscapes) {
  EXPECT_TRUE(matches("[abx-z]", "y"));
  EXPECT_FALSE(matches("[abx-z]", "c"));
  EXPECT_TRUE(matches("[\\d_]+", "1_2"));
  EXPECT_TRUE(matches("[^a-c]", "\n"));
  EXPECT_FALSE(matches("[^a-c]", "b"));
  EXPECT_TRUE(matches("[^\\D]", "4"));
  EXPECT_TRUE(matches("[.*+?(){}|$^]", "$"));
  EXPECT_TRUE(matches("[\\]\\[]", "]"));
  EXPECT_TRUE(matches("[\\x41-\\x{43}]", "B"));
}

TEST(RegexSyntax, AHyphenStandsForItselfFirstLastBehindARangeAndBesideAClassEscape) {
  for (const char *source : {"[-a]", "[a-]", "[^b-]", "[a-c-e]", "[\\d-z]", "[a-\\d]", "[-]", "[a\\-z]", "[--a]"}) {
    EXPECT_EQ(matches(source, "-"), std::string(source) != "[^b-]") << source;
  }
  EXPECT_FALSE(matches("[a-c-e]", "d"));
  EXPECT_TRUE(matches("[a-c-e]", "e"));
  EXPECT_FALSE(matches("[\\d-z]", "b"));
  EXPECT_TRUE(matches("[\\d-z]", "z"));
  EXPECT_TRUE(matches("[a-\\d]", "7"));
  EXPECT_FALSE(matches("[a-\\d]", "b"));
  EXPECT_TRUE(matches("[--a]", "A"));
}

TEST(RegexSyntax, ClassEscapesAreOfAscii) {
  EXPECT_TRUE(matches("\\d\\w\\s", "0_\t"));
  EXPECT_TRUE(matches("\\D\\W\\S", "x-x"));
  EXPECT_FALSE(matches("\\D", "5"));
  EXPECT_FALSE(matches("\\w", "\xE4"));
  EXPECT_TRUE(matches("\\W", "\xE4"));
  EXPECT_TRUE(matches("\\s\\s\\s\\s\\s\\s", " \t\n\v\f\r"));
  EXPECT_FALSE(matches("\\S", " "));
}

TEST(RegexSyntax, EscapesNameCodesAndPunctuation) {
  EXPECT_TRUE(matches("\\t\\n\\r", "\t\n\r"));
  EXPECT_TRUE(matches("\\x41\\x{42}\\x{0000043}", "ABC"));
  EXPECT_TRUE(matches("\\.\\*\\\\\\/\\-\\_\\'\\`\\~", ".*\\/-_'`~"));
  EXPECT_TRUE(matches("\\x{FFFFFFE4}", "\xE4"));
  EXPECT_FALSE(matches("\\xE4", "\xE4"));
}

TEST(RegexSyntax, BytesOfASourceAreSigned) {
  EXPECT_TRUE(matches("\xE4[\xE0-\xEF]", "\xE4\xE5"));
  EXPECT_FALSE(matches("\xE4", "\xE5"));
}

TEST(RegexSyntax, GroupsAndAlternatives) {
  EXPECT_TRUE(matches("(ab|c)(?:d|)", "cd"));
  EXPECT_TRUE(matches("(ab|c)(?:d|)", "ab"));
  EXPECT_FALSE(matches("(ab|c)(?:d|)", "a"));
  EXPECT_TRUE(matches("a|b|", ""));
  EXPECT_TRUE(matches("()", ""));
  EXPECT_TRUE(matches("a()b(|)c", "abc"));
}

TEST(RegexSyntax, CountsSayHowOften) {
  const struct {
    const char *source;
    std::vector<int> lengths;
  } cases[] = {{"a*", {0, 1, 2, 3, 4, 5}},
               {"a+", {1, 2, 3, 4, 5}},
               {"a?", {0, 1}},
               {"a{0}", {0}},
               {"a{3}", {3}},
               {"a{2,}", {2, 3, 4, 5}},
               {"a{1,3}", {1, 2, 3}},
               {"a{0,2}", {0, 1, 2}},
               {"(aa){1,2}", {2, 4}},
               {"(a*){2}", {0, 1, 2, 3, 4, 5}},
               {"(a|){3}", {0, 1, 2, 3}},
               {"(a{0}){5}", {0}},
               {"(aa|a){2}", {2, 3, 4}},
               {"((a{2}){2})?", {0, 4}},
               {"(a+)?", {0, 1, 2, 3, 4, 5}},
               {"(a?)+", {0, 1, 2, 3, 4, 5}},
               {"(a{0,1}){1,1}", {0, 1}},
               {"(a{3,})*", {0, 3, 4, 5}}};
  for (const auto &one : cases) {
    for (int length = 0; length <= 5; ++length) {
      const bool isListed = std::find(one.lengths.begin(), one.lengths.end(), length) != one.lengths.end();
      EXPECT_EQ(matches(one.source, std::string(static_cast<std::size_t>(length), 'a')), isListed)
          << one.source << " and " << length;
    }
  }
}

TEST(RegexSyntax, MarksOfStartAndEndAddNothing) {
  EXPECT_TRUE(matches("^ab$", "ab"));
  EXPECT_FALSE(matches("^ab$", "xab"));
  EXPECT_TRUE(matches("^", ""));
  EXPECT_TRUE(matches("$", ""));
  EXPECT_TRUE(matches("^$", ""));
  EXPECT_TRUE(matches("^a|b$", "b"));
}

TEST(RegexSyntax, LoneClosingBracketsAreLiterals) { EXPECT_TRUE(matches("]a}", "]a}")); }

TEST(RegexSyntax, TellsWhatIsWrongAndWhere) {
  const struct {
    const char *source, *error;
  } cases[] = {
      {"(a", "QSTD_STATUS_REGEX_PARENTHESIS at 0"},
      {"a(b(c)", "QSTD_STATUS_REGEX_PARENTHESIS at 1"},
      {"(?:a", "QSTD_STATUS_REGEX_PARENTHESIS at 0"},
      {"a)b", "QSTD_STATUS_REGEX_PARENTHESIS at 1"},
      {"a^", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"(^a)", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"^^", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a|^b", "QSTD_STATUS_REGEX_SYNTAX at 2"},
      {"$a", "QSTD_STATUS_REGEX_SYNTAX at 0"},
      {"(a$)", "QSTD_STATUS_REGEX_SYNTAX at 2"},
      {"a$*", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{x}", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{1", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{1,", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{,2}", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{ 1}", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"a{1,2", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"(?=a)", "QSTD_STATUS_REGEX_SYNTAX at 0"},
      {"x(?", "QSTD_STATUS_REGEX_SYNTAX at 1"},
      {"(?P<n>a)", "QSTD_STATUS_REGEX_SYNTAX at 0"},
      {"x[ab", "QSTD_STATUS_REGEX_CLASS_OPEN at 1"},
      {"[", "QSTD_STATUS_REGEX_CLASS_OPEN at 0"},
      {"[^", "QSTD_STATUS_REGEX_CLASS_OPEN at 0"},
      {"[a-", "QSTD_STATUS_REGEX_CLASS_OPEN at 0"},
      {"[ab-a]", "QSTD_STATUS_REGEX_RANGE_REVERSED at 2"},
      {"[z-\\x41]", "QSTD_STATUS_REGEX_RANGE_REVERSED at 1"},
      {"a[]", "QSTD_STATUS_REGEX_CLASS_EMPTY at 1"},
      {"[]a]", "QSTD_STATUS_REGEX_CLASS_EMPTY at 0"},
      {"[^]", "QSTD_STATUS_REGEX_CLASS_EMPTY at 0"},
      {"a\\", "QSTD_STATUS_REGEX_ESCAPE at 1"},
      {"\\q", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\1", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\ ", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\x4", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\xg0", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\x4@", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\x4\xE1", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"[a-\\q]", "QSTD_STATUS_REGEX_ESCAPE at 3"},
      {"\\x{}", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\x{41", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"\\x{100000000}", "QSTD_STATUS_REGEX_ESCAPE at 0"},
      {"[\\b]", "QSTD_STATUS_REGEX_ESCAPE at 1"},
      {"[a\\", "QSTD_STATUS_REGEX_ESCAPE at 2"},
      {"*a", "QSTD_STATUS_REGEX_REPEAT_ALONE at 0"},
      {"a|+", "QSTD_STATUS_REGEX_REPEAT_ALONE at 2"},
      {"(?)", "QSTD_STATUS_REGEX_SYNTAX at 0"},
      {"(*)", "QSTD_STATUS_REGEX_REPEAT_ALONE at 1"},
      {"a**", "QSTD_STATUS_REGEX_REPEAT_ALONE at 2"},
      {"a+?", "QSTD_STATUS_REGEX_REPEAT_ALONE at 2"},
      {"a{2}{3}", "QSTD_STATUS_REGEX_REPEAT_ALONE at 4"},
      {"^*", "QSTD_STATUS_REGEX_REPEAT_ALONE at 1"},
      {"{2}", "QSTD_STATUS_REGEX_REPEAT_ALONE at 0"},
      {"a{2,1}", "QSTD_STATUS_REGEX_REPEAT_INVALID at 1"},
      {"a{1001}", "QSTD_STATUS_REGEX_REPEAT_INVALID at 1"},
      {"a{0,1001}", "QSTD_STATUS_REGEX_REPEAT_INVALID at 1"},
      {"a{99999999999999999999}", "QSTD_STATUS_REGEX_REPEAT_INVALID at 1"},
      {"(a{1000}){11}", "QSTD_STATUS_REGEX_TOO_LARGE at 0"},
      {"(a{1000}){10}b", "QSTD_STATUS_REGEX_TOO_LARGE at 0"},
      {"(((a{1000}){1000}){1000}){1000}", "QSTD_STATUS_REGEX_TOO_LARGE at 0"},
      {"(a{1000}){10}", ""},
      {"(((a{1000}){1000}){1000}){0}", ""},
      {"((((){1000}){1000}){1000}){1000}", ""},
      {"a{1000}", ""},
      {"a{0,1000}", ""},
  };
  for (const auto &one : cases) {
    EXPECT_EQ(errorOf(one.source), one.error) << one.source;
  }
}

TEST(RegexSyntax, FindsThePlaceInAWideSourceInItsCharacters) {
  int32_t place = -7;
  EXPECT_EQ(qstd_regex_findErrorT(L"\u20AC\u20AC)", &place), QSTD_STATUS_REGEX_PARENTHESIS);
  EXPECT_EQ(place, 2);
  EXPECT_EQ(qstd_regex_findErrorT(L"\u20AC", &place), QSYS_STATUS_OK);
  EXPECT_EQ(place, -1);
}

TEST(RegexSyntax, NestsAsDeeplyAsTheSourceIsLong) {
  const std::size_t depth = 100'000;
  const std::string open(depth, '('), close(depth, ')');
  EXPECT_TRUE(matches(open + "a" + close, "a"));
  EXPECT_EQ(errorOf(open), "QSTD_STATUS_REGEX_PARENTHESIS at 99999");
  EXPECT_EQ(errorOf(close), "QSTD_STATUS_REGEX_PARENTHESIS at 0");

  std::string starred = "a", chosen = "a", sequence = "a";
  for (std::size_t i = 0; i < depth; ++i) {
    starred += ")*";
  }
  EXPECT_TRUE(matches(open + starred, "aaa"));
  for (std::size_t i = 0; i < 9'000; ++i) {
    chosen = "b|(" + chosen + ")";
    sequence += "b)?";
  }
  EXPECT_TRUE(matches(chosen, "a"));
  EXPECT_TRUE(matches(std::string(9'000, '(') + sequence, "bbb"));
}

TEST(RegexSyntax, NestsEmptyAlternativesDeeply) {
  std::string source = "a";
  for (int i = 0; i < 2'000; ++i) {
    source = "(|" + source + ")*";
  }
  EXPECT_TRUE(matches(source, "aaa"));
}

TEST(RegexSyntax, TakesSourcesOfUpToAMillionCharacters) {
  std::string source;
  while (source.size() < QSTD_REGEX_MAX_SOURCE) {
    source += "()";
  }
  EXPECT_TRUE(matches(source, ""));
  EXPECT_EQ(errorOf(source + '|'), "QSTD_STATUS_REGEX_TOO_LARGE at 0");
}

TEST(RegexSyntax, ABackslashTakesTheMeaningFromPunctuationAlone) {
  constexpr std::string_view letters = "dDwWsStnrx";
  for (int code = 1; code < 128; ++code) {
    const std::string one(1, static_cast<char>(code));
    SCOPED_TRACE(code);
    if (std::ispunct(code) != 0) {
      EXPECT_TRUE(matches("\\" + one, one));
      EXPECT_FALSE(matches("\\" + one, "a"));
    } else if (letters.find(one) == std::string_view::npos) {
      EXPECT_EQ(errorOf("\\" + one), "QSTD_STATUS_REGEX_ESCAPE at 0");
    }
  }
}

TEST(RegexSyntax, ClassesReachToTheLastCode) {
  const char *toTheLast = "[\\x{FFFFFF00}-\\x{FFFFFFFF}\\x{FFFFFFFE}b]";
  EXPECT_TRUE(matches(toTheLast, "\xE4"));
  EXPECT_TRUE(matches(toTheLast, "b"));
  EXPECT_FALSE(matches(toTheLast, "a"));
  EXPECT_FALSE(matches("[^\\x{FFFFFF00}-\\x{FFFFFFFF}]", "\xE4"));
  EXPECT_TRUE(matches("[^\\x{FFFFFF00}-\\x{FFFFFFFF}]", "a"));
}

}  // namespace
