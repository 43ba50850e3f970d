// Readings, dictionaries, runs and results through the C++ face, compared with the C functions where they say the same.

#include <gtest/gtest.h>
#include <qoc/qoc.hpp>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <ranges>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

static_assert(std::ranges::random_access_range<const qoc::Results>);
static_assert(std::ranges::sized_range<const qoc::Results>);
static_assert(std::ranges::random_access_range<const qoc::Reading>);
static_assert(std::ranges::borrowed_range<qoc::Results::Ranked>);
static_assert(std::ranges::view<qoc::Results::Ranked>);

using Statuses = std::vector<qoc::PositionStatus>;

template <class Range>
auto listOf(const Range &range) {
  std::vector<std::remove_cvref_t<decltype(*range.begin())>> list;
  for (auto &&element : range) {
    list.push_back(element);
  }
  return list;
}

qoc::Dictionary fruit() {
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon{"Apple", "Pear", "Plum"});
  return dictionary;
}

/// A dictionary and a reading whose run takes long: many words, many candidates, many edits.
qoc::Dictionary large() {
  std::vector<std::string> words;
  for (int i = 0; i < 40000; ++i) {
    std::string word;
    auto digits = static_cast<unsigned>(i);
    for (int k = 0; k < 12; digits = digits * 7 + 3, ++k) {
      word += static_cast<char>('a' + digits % 26);
    }
    words.push_back(word + std::to_string(i));
  }
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon(words));
  return dictionary;
}

const qoc::Parameters slow{.maxEdits = 12, .bestOnly = false};

TEST(CppReading, IsMadeOfCandidates) {
  const qoc::Reading reading{{{U'0', 90}, {U'O', 70}}, {{U'K', 99}}};
  ASSERT_EQ(reading.size(), 2u);
  EXPECT_EQ(reading[0].size(), 2u);
  EXPECT_EQ(reading[0][1].code, U'O');
  EXPECT_EQ(reading[0][1].score, 70);
  EXPECT_EQ(reading.utf8(), "0K");
  const std::vector<std::vector<qoc::Candidate>> positions{{{U'0', 90}, {U'O', 70}}, {{U'K', 99}}};
  EXPECT_EQ(qoc::Reading(positions), reading);
  EXPECT_EQ(qoc::Reading(qoc::ReadingView(reading)), reading);
}

TEST(CppReading, CanBeWalkedAsARange) {
  const qoc::Reading reading("abc");
  std::string text;
  for (const std::span<const qoc::Candidate> candidates : reading) {
    text += static_cast<char>(candidates.front().code);
  }
  EXPECT_EQ(text, "abc");
  const auto last = std::ranges::find_if(reading, [](auto candidates) { return candidates.front().code == U'c'; });
  EXPECT_EQ(last - reading.begin(), 2);
}

TEST(CppDictionary, RunsAndExplains) {
  const qoc::Results results = fruit().run("Aple", {.maxEdits = 1});
  ASSERT_EQ(results.size(), 1u);
  const qoc::ResultView best = results.front();
  EXPECT_EQ(best.utf8(), "Apple");
  EXPECT_EQ(best.numEdits(), 1);
  EXPECT_EQ(best.mode(), qoc::Mode::lexicon);
  EXPECT_EQ(std::ranges::count(best.statuses(), qoc::PositionStatus::inserted), 1);
  EXPECT_EQ(best.statuses().size(), 5u);
  EXPECT_EQ(best.readingStatuses().size(), 4u);
  EXPECT_EQ(best.lineStatus(), qoc::PositionStatus::inserted);
  EXPECT_EQ(best.insertedIndices().size(), 1u);
  EXPECT_EQ(std::ranges::count(best.readingIndices(), -1), 1);
  EXPECT_EQ(best.given(), qoc::Reading("Aple"));
}

TEST(CppDictionary, TakesOtherCandidates) {
  const qoc::Reading reading{{{U'P', 90}}, {{U'1', 60}, {U'l', 55}}, {{U'u', 90}}, {{U'm', 90}}};
  const qoc::Results results = fruit().run(reading);
  ASSERT_EQ(results.size(), 1u);
  using enum qoc::PositionStatus;
  EXPECT_EQ(listOf(results.front().statuses()), (Statuses{primary, secondary, primary, primary}));
}

TEST(CppDictionary, SaysWhatTheFunctionsSay) {
  const qoc::Dictionary dictionary = fruit();
  const qoc::Reading reading("Pea");
  const qoc::Results results = dictionary.run(reading, {.maxEdits = 2, .bestOnly = false});
  qoc::Results expected;
  qoc_ocrDictionaryRunParams params{};
  ASSERT_EQ(qoc_ocrDictionaryRunParams_construct(&params), 0);
  params.maxEdits = 2;
  params.returnBestOnly = 0;
  ASSERT_EQ(qoc_ocrDictionary_runMulti(dictionary.c(), reading.c(), &params, expected.c()), 0);
  ASSERT_GT(expected.size(), 0u);
  ASSERT_EQ(results.size(), expected.size());
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_EQ(results[i], expected[i]);
    EXPECT_EQ(listOf(results[i].statuses()), listOf(expected[i].statuses()));
  }
}

TEST(CppDictionary, ResultsOutliveTheirSetAsCopies) {
  std::vector<qoc::Result> kept;
  {
    const qoc::Results results = fruit().run("Pear");
    kept.emplace_back(results.front());
  }
  EXPECT_EQ(kept.front().utf8(), "Pear");
}

TEST(CppDictionary, TakesSwapsOfItsOwnAndOfARun) {
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon{"LOT"});
  EXPECT_TRUE(dictionary.run("L0T").empty());
  EXPECT_EQ(dictionary.run("L0T", {}, qoc::SwapSet::ofGroups({"O0"})).size(), 1u);
  dictionary.setSwaps(qoc::SwapSet::ofGroups({"O0"}));
  const qoc::Results results = dictionary.run("L0T");
  ASSERT_EQ(results.size(), 1u);
  // Deliberate: an alignment without edits calls a swap secondary.
  EXPECT_EQ(results.front().statuses()[1], qoc::PositionStatus::secondary);
  EXPECT_EQ(dictionary.swaps(), qoc::SwapSet::ofGroups({"O0"}));
}

TEST(CppDictionary, ExpandsSwapsOfSeveralCharacters) {
  qoc::Dictionary dictionary;
  dictionary.add(qoc::Lexicon{"modern"});
  dictionary.setSwaps(qoc::SwapSet::ofSwaps({{"rn", "m"}}));
  EXPECT_EQ(dictionary.run("modem").size(), 1u);
}

TEST(CppDictionary, HoldsEntriesOfAllKinds) {
  qoc::Dictionary dictionary;
  EXPECT_TRUE(dictionary.empty());
  const qoc::PositionFielding digit(QOC_FIELDING_DIGIT);
  dictionary.add(qoc::LineFielding{digit, qoc::PositionFielding("-"), digit});
  dictionary.add(qoc::Lexicon{"word"});
  dictionary.add(qoc::Lexicon{"other"});
  EXPECT_EQ(dictionary.lexicons().size(), 2u);
  EXPECT_EQ(dictionary.lineFieldings().size(), 1u);
  EXPECT_EQ(dictionary.run("1-2").front().mode(), qoc::Mode::fielding);
  EXPECT_EQ(dictionary.run("1-2").front().utf8(), "1-2");
  EXPECT_EQ(dictionary.lexicons()[1], qoc::Lexicon{"other"});
  dictionary.set(1, qoc::Lexicon{"changed"});
  EXPECT_EQ(dictionary.lexicons()[1].words().front().utf8(), "changed");
  dictionary.removeLexicon(0);
  EXPECT_EQ(dictionary.lexicons().size(), 1u);
  EXPECT_THROW(dictionary.set(1, qoc::Lexicon{"absent"}), qoc::Error);
  EXPECT_EQ(qoc::Lexicon(dictionary.lexicons().front()), qoc::Lexicon{"changed"});
  EXPECT_TRUE(dictionary.lexicons().front().isMatch("changed"));
  EXPECT_THROW(dictionary.removeLexicon(1), qoc::Error);
}

TEST(CppDictionary, RefusesWrongParameters) {
  EXPECT_EQ(qoc::attempt([] { return fruit().run("x", {.minLength = 0}); }).error(),
            qoc::Status(QOC_STATUS_MIN_LENGTH_INVALID));
  qoc::Results results;
  EXPECT_EQ(fruit().tryRun("x", {.minLength = 3, .maxLength = 2}, results), qoc::Status(QOC_STATUS_LENGTHS_REVERSED));
}

TEST(CppDictionary, TryRunUsesResultsAgain) {
  const qoc::Dictionary dictionary = fruit();
  qoc::Results results;
  ASSERT_TRUE(dictionary.tryRun("Pear", {}, results).isSuccess());
  EXPECT_EQ(results.size(), 1u);
  ASSERT_TRUE(dictionary.tryRun("nothing", {}, results).isSuccess());
  EXPECT_TRUE(results.empty());
}

TEST(CppKinds, MatchAlone) {
  const qoc::Lexicon lexicon{"Apple", "Pear"};
  EXPECT_TRUE(lexicon.isMatch("Pear"));
  EXPECT_FALSE(lexicon.isMatch("Bear"));
  EXPECT_TRUE(lexicon.isMatch("Bear", {.maxEdits = 1}));
  EXPECT_EQ(lexicon.match("Bear", {.maxEdits = 1}).front().utf8(), "Pear");
  const qoc::SwapSet swaps = qoc::SwapSet::ofGroups({"BP"});
  EXPECT_TRUE(lexicon.isMatch("Bear", {}, &swaps));
}

TEST(CppKinds, WordsCanBeSkipped) {
  const std::vector<std::string> words{"one", "", "one", "two"};
  EXPECT_THROW(qoc::Lexicon{words}, qoc::Error);
  EXPECT_EQ(qoc::Lexicon(words, qoc::Lexicon::Faults::skip).size(), 2u);
}

TEST(CppKinds, LexiconsChange) {
  qoc::Lexicon lexicon;
  lexicon.add("b");
  lexicon.add("aa");
  EXPECT_EQ(lexicon.words().back().utf8(), "aa");
  lexicon.remove("b");
  EXPECT_EQ(lexicon.size(), 1u);
  EXPECT_THROW(lexicon.remove("b"), qoc::Error);
}

TEST(CppKinds, LineFieldingsForceReadings) {
  const qoc::PositionFielding upper(QOC_FIELDING_UPPER), digit(QOC_FIELDING_DIGIT);
  const qoc::LineFielding line{upper, digit};
  const qoc::Reading reading{{{U'8', 90}, {U'B', 80}}, {{U'7', 90}}};
  const qoc::Results results = line.force(reading);
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results.front().valid().utf8(), "B7");
  EXPECT_EQ(line.positions()[1].classes(), QOC_FIELDING_DIGIT);
}

TEST(CppKinds, RegularExpressionsMatch) {
  const qoc::RegularExpression expression("[A-Z]{2}[0-9]{2}\u00E4?");
  EXPECT_EQ(expression.source(), "[A-Z]{2}[0-9]{2}\u00E4?");
  EXPECT_TRUE(expression.isMatch("AB12\u00E4"));
  EXPECT_FALSE(expression.isMatch("AB1"));
  qoc::Dictionary dictionary;
  dictionary.add(expression);
  const qoc::Results results = dictionary.run("AB12");
  ASSERT_EQ(results.size(), 1u);
  EXPECT_EQ(results.front().mode(), qoc::Mode::regularExpression);
  EXPECT_EQ(results.front().utf8(), "AB12");
  EXPECT_EQ(dictionary.regularExpressions().front(), expression);
  EXPECT_FALSE(qoc::attempt([] { return qoc::RegularExpression("(a"); }));
}

TEST(CppParameters, SurviveTheWayThroughTheRecord) {
  const qoc::Parameters all{.maxEdits = 3,
                            .substitution = false,
                            .missing = false,
                            .extra = false,
                            .minLength = 2,
                            .maxLength = 9,
                            .bestOnly = false,
                            .window = true,
                            .withoutInserted = true,
                            .ranking = qoc::Ranking::primarySecondary};
  EXPECT_EQ(qoc::Parameters::of(all.c()), all);
  EXPECT_EQ(qoc::Parameters::of(qoc::Parameters{}.c()), qoc::Parameters{});
  qoc_ocrDictionaryRunParams defaults{};
  ASSERT_EQ(qoc_ocrDictionaryRunParams_construct(&defaults), 0);
  EXPECT_EQ(qoc::Parameters::of(defaults), qoc::Parameters{});
}

TEST(CppParameters, OfFieldingRunsSurviveTheWayThroughTheRecord) {
  const qoc::FieldingParameters all{.placement = qoc::Placement::longPart,
                                    .minLength = 2,
                                    .maxLength = 9,
                                    .maxSkipped = 3,
                                    .minReach = 1,
                                    .trimEmptyEnds = false,
                                    .ignoreDeletedSpaces = false,
                                    .ranking = qoc::Ranking::primarySecondary};
  EXPECT_EQ(qoc::FieldingParameters::of(all.c()), all);
  qoc_ocrDictionaryFieldingRunParams defaults{};
  ASSERT_EQ(qoc_ocrDictionaryFieldingRunParams_construct(&defaults), 0);
  EXPECT_EQ(qoc::FieldingParameters::of(defaults), qoc::FieldingParameters{});
}

TEST(CppInterrupt, AStopTokenEndsARun) {
  const qoc::Dictionary dictionary = large();
  std::stop_source source;
  source.request_stop();
  const auto outcome = qoc::attempt([&] { return dictionary.run("word", slow, source.get_token()); });
  EXPECT_TRUE(outcome.error().isInterrupt());
  qsys_attentionHandler handler = nullptr;
  void *context = nullptr;
  (void)qsys_attention_getHandler(&handler, &context);
  EXPECT_EQ(handler, nullptr) << "the handler stayed behind";
}

TEST(CppInterrupt, AStopFromAnotherThreadEndsALongRun) {
  const qoc::Dictionary dictionary = large();
  std::jthread watch;
  qoc::Status status;
  std::stop_source source;
  watch = std::jthread([&source] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    source.request_stop();
  });
  qoc::Results results;
  // However fast the machine is, some run is under way when the stop comes.
  while (status.isSuccess()) {
    status = dictionary.tryRun("abcdefghijklmnop", slow, results, source.get_token());
  }
  EXPECT_TRUE(status.isInterrupt());
}

TEST(CppInterrupt, ScopesNestAndCarryExceptions) {
  const qoc::Dictionary dictionary = fruit();
  int numOuter = 0;
  const qoc::AttentionScope outer([&] { return ++numOuter, false; });
  {
    const qoc::AttentionScope inner([]() -> bool { throw std::runtime_error("enough"); });
    EXPECT_THROW((void)dictionary.run("Pear"), qoc::Error);
    EXPECT_THROW(inner.rethrow(), std::runtime_error);
  }
  EXPECT_GT(numOuter, 0);
  EXPECT_EQ(dictionary.run("Pear").size(), 1u);
}

TEST(CppThreads, OneDictionaryServesMany) {
  const qoc::Dictionary dictionary = fruit();
  std::vector<std::jthread> threads;
  std::vector<std::size_t> found(4);
  for (std::size_t i = 0; i < found.size(); ++i) {
    threads.emplace_back([&dictionary, &found, i] {
      for (int k = 0; k < 200; ++k) {
        found[i] += dictionary.run("Aple", {.maxEdits = 1}).size();
      }
    });
  }
  threads.clear();
  for (const std::size_t n : found) {
    EXPECT_EQ(n, 200u);
  }
}

}  // namespace
