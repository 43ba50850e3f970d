// The ways in which a sequence matches, with a meter that asks for attention at every step.

#include "platform/regex/ways.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/regex/regexes.hpp"
#include "platform/regex/shared_expression.hpp"
#include "support/handlers.hpp"

namespace {

using namespace qoc::test;

/// An automaton whose work, however little, is asked about.
template <class States>
class Eager : public States {
 public:
  struct Meter {
    qsys_status add(std::size_t) noexcept { return qsys_attention_check(); }
  };
  using States::States;
  qsys_status tick(std::size_t) noexcept { return qsys_attention_check(); }
  Meter &meter() noexcept { return meter_; }

 private:
  Meter meter_;
};

using Found = std::vector<std::string>;
constexpr qsys_status interrupt = -777;

/// The ways of a sequence of places, each written as its candidates; every one is shown as the indexes that matched.
template <class States>
qsys_status findWays(const qstd_regex &regex, const std::vector<std::vector<Char32>> &sequence, Found &found,
                     qsys_status answer = QSYS_STATUS_OK) {
  Eager<States> states(qoc::expressionOf(regex));
  qoc::WayFinder finder(states);
  std::vector<typename decltype(finder)::Place> places(sequence.size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    places[i].codes = sequence[i];
  }
  found.clear();
  return finder.find(places, [&](const auto &way) {
    std::string shown;
    for (std::size_t i = 0; i < way.size(); ++i) {
      shown += i > 0 ? " " : "";
      for (const std::int32_t index : way[i]) {
        shown += std::to_string(index);
      }
    }
    found.push_back(shown);
    return answer;
  });
}

template <class States>
void expectInterrupts(std::string_view source, const std::vector<std::vector<Char32>> &sequence, const Found &ways) {
  SCOPED_TRACE(source);
  const auto expression = regex(source);
  Found found;
  int64_t numPolls = 0;
  {
    const Polls polls;
    ASSERT_EQ(findWays<States>(*expression, sequence, found), QSYS_STATUS_OK);
    ASSERT_EQ(found, ways);
    numPolls = polls.count();
  }
  ASSERT_GT(numPolls, 0);
  for (int64_t n = 0; n < numPolls; ++n) {
    SCOPED_TRACE(n);
    const Polls polls(n, interrupt);
    EXPECT_EQ(findWays<States>(*expression, sequence, found), interrupt);
    EXPECT_EQ(polls.count(), n + 1);
    ASSERT_LE(found.size(), ways.size());
    EXPECT_TRUE(std::equal(found.begin(), found.end(), ways.begin()));
  }
}

TEST(WayFinder, EndsAtWhateverPollRefuses) {
  const std::vector<std::vector<Char32>> choices = {{'a', 'b'}, {'a', 'c', 'b'}, {'b', 'a'}};
  const Found ways = {"0 0 1", "0 0 0", "0 2 1", "0 2 0", "1 0 1", "1 0 0", "1 2 1", "1 2 0"};
  expectInterrupts<qoc::NarrowStates>("(a|b)*", choices, ways);
  expectInterrupts<qoc::WideStates>("(a|b)*|x{100}", choices, ways);
  expectInterrupts<qoc::NarrowStates>("(a|b|ab)*", {{'a'}, {'b'}, {'a'}}, {"0 0 0"});
}

TEST(WayFinder, EndsWithTheFirstWayThatIsRefused) {
  const auto expression = regex("(a|b)*");
  Found found;
  EXPECT_EQ(findWays<qoc::NarrowStates>(*expression, {{'a', 'b'}, {'a', 'b'}}, found, interrupt), interrupt);
  EXPECT_EQ(found, Found{"0 0"});
  EXPECT_EQ(findWays<qoc::NarrowStates>(*expression, {{'a'}}, found, interrupt), interrupt);
  EXPECT_EQ(found, Found{"0"});
  EXPECT_EQ(findWays<qoc::NarrowStates>(*expression, {}, found, interrupt), interrupt);
  EXPECT_EQ(found, Found{""});
}

}  // namespace
