// The resolver through the C++ face.

#include <gtest/gtest.h>
#include <qoc/qoc.hpp>

#include <string>

namespace {

TEST(CppResolver, GivesOneTextAndHowSure) {
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon{"Apple", "Pear", "Plum"});
  const qoc::Reading reading{{{U'P', 9800}}, {{U'1', 7100}, {U'l', 7000}}, {{U'u', 9700}}, {{U'm', 9600}}};
  const qoc::Parameters parameters{.bestOnly = false};
  const qoc::Results results = dictionary.run(reading, parameters);
  const qoc::Resolution resolution = qoc::Resolver(dictionary).resolve(reading, parameters, nullptr, results);
  ASSERT_FALSE(resolution.empty());
  EXPECT_EQ(resolution.front().utf8(), "Plum");
  EXPECT_EQ(resolution.front().mode(), qoc::Mode::lexicon);
  EXPECT_EQ(resolution.front().resultIndex(), 0);
  EXPECT_EQ(resolution.front().candidateIndices()[1], 1);
  EXPECT_EQ(resolution.front().readingIndices()[3], 3);
  EXPECT_FALSE(resolution.front().hasCheck());
  EXPECT_NE(resolution.outcome(), qoc::Outcome::none);
}

TEST(CppResolver, SaysTheSameAsTheFunction) {
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon{"LOT A1", "LOT A2"});
  const qoc::Reading reading("LOT A7");
  const qoc::Parameters parameters{.maxEdits = 1, .bestOnly = false};
  const qoc::Results results = dictionary.run(reading, parameters);
  const qoc::Resolver resolver(dictionary, qoc::ResolverRules());
  const qoc::Resolution resolution = resolver.resolve(reading, parameters, nullptr, results);
  qoc::Resolution expected;
  const qoc_ocrDictionaryRunParams params = parameters.c();
  ASSERT_EQ(qoc_ocrDictionaryResolver_resolve(resolver.c(), reading.c(), &params, nullptr, results.c(), expected.c()),
            0);
  EXPECT_EQ(resolution.outcome(), expected.outcome());
  ASSERT_EQ(resolution.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(resolution.texts()[i].utf8(), expected.texts()[i].utf8());
    EXPECT_EQ(resolution.texts()[i].margin(), expected.texts()[i].margin());
  }
}

TEST(CppResolver, HasNoTextWithoutResults) {
  const qoc::Dictionary dictionary;
  const qoc::Reading reading("x");
  const qoc::Resolution resolution = qoc::Resolver().resolve(reading, {}, nullptr, dictionary.run(reading));
  EXPECT_EQ(resolution.outcome(), qoc::Outcome::none);
  EXPECT_STREQ(name(resolution.outcome()), "none");
}

TEST(CppResolver, RefusesRulesOutOfRange) {
  qoc::ResolverRules rules;
  rules.c()->maxTexts = 0;
  EXPECT_FALSE(qoc::attempt([&] { qoc::Resolver().setRules(rules); }).isSuccess());
}

}  // namespace
