// The dictionary: its life, and the access to its entries, the same for the three kinds.

#include "run/run_builders.hpp"

namespace {

using namespace qoc::test;

/// The access to one kind of entry, for tests of all three.
template <class T>
struct Kind;

#define QOC_TEST_KIND(X, Xs, V, T)                                       \
  template <>                                                            \
  struct Kind<T> {                                                       \
    using Entry = T;                                                     \
    using Vector = V;                                                    \
    static constexpr auto getNum = qoc_ocrDictionary_getNum##Xs;         \
    static constexpr auto getAll = qoc_ocrDictionary_get##Xs;            \
    static constexpr auto setAll = qoc_ocrDictionary_set##Xs;            \
    static constexpr auto get = qoc_ocrDictionary_get##X##I;             \
    static constexpr auto set = qoc_ocrDictionary_set##X##I;             \
    static constexpr auto getExtend = qoc_ocrDictionary_get##X##IExtend; \
    static constexpr auto setExtend = qoc_ocrDictionary_set##X##IExtend; \
    static constexpr auto compareEqual = T##_compareEqual;               \
    static Owned<T> make(int number);                                    \
  };
QOC_TEST_KIND(Lexicon, Lexicons, qstd_vector_qoc_ocrDictionaryLexicon, qoc_ocrDictionaryLexicon)
QOC_TEST_KIND(RegularExpression, RegularExpressions, qstd_vector_qoc_ocrDictionaryRegularExpression,
              qoc_ocrDictionaryRegularExpression)
QOC_TEST_KIND(Fielding, Fieldings, qstd_vector_qoc_ocrDictionaryLineFielding, qoc_ocrDictionaryLineFielding)
#undef QOC_TEST_KIND

// Entries that differ from the empty one and, where the kind can already be filled, from each other by their number.
Owned<qoc_ocrDictionaryLexicon> Kind<qoc_ocrDictionaryLexicon>::make(int number) {
  return lexicon({"w" + std::to_string(number)});
}
Owned<qoc_ocrDictionaryRegularExpression> Kind<qoc_ocrDictionaryRegularExpression>::make(int /*number*/) {
  return {};  // An expression cannot be set yet.
}
Owned<qoc_ocrDictionaryLineFielding> Kind<qoc_ocrDictionaryLineFielding>::make(int number) {
  Owned<qoc_ocrDictionaryLineFielding> line;
  require(qstd_vector_qoc_ocrDictionaryPositionFielding_resize(&line->positions, number));
  return line;
}

template <class T>
class DictionaryEntries : public testing::Test {
 protected:
  using K = Kind<T>;

  static bool equal(const T &a, const T &b) {
    qsys_bool isEqual = 7;
    require(K::compareEqual(&a, &b, &isEqual));
    return isEqual == 1;
  }
  static Owned<qoc_ocrDictionary> dictionaryOf(const std::vector<int> &numbers) {
    Owned<qoc_ocrDictionary> dictionary;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      require(K::setExtend(dictionary, static_cast<int32_t>(i), K::make(numbers[i])));
    }
    return dictionary;
  }
  static int32_t count(const qoc_ocrDictionary &dictionary) {
    int32_t n = -1;
    require(K::getNum(&dictionary, &n));
    return n;
  }
  /// Whether the entries are those of these numbers; 0 stands for an empty entry.
  static testing::AssertionResult holds(const qoc_ocrDictionary &dictionary, const std::vector<int> &numbers) {
    if (count(dictionary) != static_cast<int32_t>(numbers.size())) {
      return testing::AssertionFailure() << "it has " << count(dictionary) << " entries";
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      Owned<T> entry;
      require(K::get(&dictionary, static_cast<int32_t>(i), entry));
      if (!equal(*entry, numbers[i] == 0 ? *Owned<T>() : *K::make(numbers[i]))) {
        return testing::AssertionFailure() << "entry " << i << " is not the one with number " << numbers[i];
      }
    }
    return testing::AssertionSuccess();
  }
};

using Kinds =
    testing::Types<qoc_ocrDictionaryLexicon, qoc_ocrDictionaryRegularExpression, qoc_ocrDictionaryLineFielding>;
TYPED_TEST_SUITE(DictionaryEntries, Kinds);

TYPED_TEST(DictionaryEntries, AreNoneAtFirst) { EXPECT_TRUE(this->holds(*Owned<qoc_ocrDictionary>(), {})); }

TYPED_TEST(DictionaryEntries, ComeOutAsTheyWentIn) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1, 2, 3});
  const auto replacement = K::make(7);

  EXPECT_EQ(K::set(dictionary, 1, replacement), QSYS_STATUS_OK);

  EXPECT_TRUE(this->holds(*dictionary, {1, 7, 3}));
}

TYPED_TEST(DictionaryEntries, AreCopies) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1});
  auto entry = K::make(2);
  require(K::set(dictionary, 0, entry));

  require(Life<TypeParam>::assign(entry, K::make(3)));
  EXPECT_TRUE(this->holds(*dictionary, {2}));

  require(K::get(dictionary, 0, entry));
  require(K::set(dictionary, 0, K::make(4)));
  EXPECT_TRUE(this->equal(*entry, *K::make(2)));
}

TYPED_TEST(DictionaryEntries, AreRefusedAtANegativeIndexByEveryAccess) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1});
  auto entry = K::make(5);

  for (const int32_t index : {-1, INT32_MIN}) {
    SCOPED_TRACE(index);
    EXPECT_EQ(K::get(dictionary, index, entry), QOC_STATUS_INDEX_NEGATIVE);
    EXPECT_EQ(K::set(dictionary, index, entry), QOC_STATUS_INDEX_NEGATIVE);
    EXPECT_EQ(K::getExtend(dictionary, index, entry), QOC_STATUS_INDEX_NEGATIVE);
    EXPECT_EQ(K::setExtend(dictionary, index, entry), QOC_STATUS_INDEX_NEGATIVE);
  }

  EXPECT_TRUE(this->holds(*dictionary, {1}));
  EXPECT_TRUE(this->equal(*entry, *K::make(5)));
}

TYPED_TEST(DictionaryEntries, AreRefusedByThePlainAccessBehindTheLast) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1, 2});
  auto entry = K::make(5);

  for (const int32_t index : {2, 3, INT32_MAX}) {
    SCOPED_TRACE(index);
    EXPECT_EQ(K::get(dictionary, index, entry), QOC_STATUS_INDEX_TOO_BIG);
    EXPECT_EQ(K::set(dictionary, index, entry), QOC_STATUS_INDEX_TOO_BIG);
  }

  EXPECT_TRUE(this->holds(*dictionary, {1, 2}));
  EXPECT_TRUE(this->equal(*entry, *K::make(5)));
}

TYPED_TEST(DictionaryEntries, GrowWithEmptyOnesWhenOneIsGotBehindTheLast) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1});
  auto entry = K::make(5);

  EXPECT_EQ(K::getExtend(dictionary, 3, entry), QSYS_STATUS_OK);

  EXPECT_TRUE(this->holds(*dictionary, {1, 0, 0, 0}));
  EXPECT_TRUE(this->equal(*entry, *Owned<TypeParam>()));
}

TYPED_TEST(DictionaryEntries, GrowWithEmptyOnesWhenOneIsSetBehindTheLast) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1});

  EXPECT_EQ(K::setExtend(dictionary, 3, K::make(9)), QSYS_STATUS_OK);

  EXPECT_TRUE(this->holds(*dictionary, {1, 0, 0, 9}));
}

TYPED_TEST(DictionaryEntries, DoNotGrowWhereTheIndexIsThere) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1, 2});
  Owned<TypeParam> entry;

  EXPECT_EQ(K::getExtend(dictionary, 1, entry), QSYS_STATUS_OK);
  EXPECT_EQ(K::setExtend(dictionary, 0, K::make(8)), QSYS_STATUS_OK);

  EXPECT_TRUE(this->equal(*entry, *K::make(2)));
  EXPECT_TRUE(this->holds(*dictionary, {8, 2}));
}

TYPED_TEST(DictionaryEntries, DoNotGrowBeyondWhatAListCanBe) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1});
  Owned<TypeParam> entry;

  EXPECT_LT(K::getExtend(dictionary, INT32_MAX, entry), 0);
  EXPECT_LT(K::setExtend(dictionary, INT32_MAX, entry), 0);

  EXPECT_TRUE(this->holds(*dictionary, {1}));
}

TYPED_TEST(DictionaryEntries, AreCopiedOutAndInAsAWhole) {
  using K = Kind<TypeParam>;
  const auto source = this->dictionaryOf({1, 2, 3});
  Owned<typename K::Vector> all;
  auto other = this->dictionaryOf({9});

  EXPECT_EQ(K::getAll(source, all), QSYS_STATUS_OK);
  EXPECT_EQ(elements(all).size(), 3u);
  EXPECT_EQ(K::setAll(other, all), QSYS_STATUS_OK);
  EXPECT_TRUE(this->holds(*other, {1, 2, 3}));

  EXPECT_EQ(K::setAll(other, Owned<typename K::Vector>()), QSYS_STATUS_OK);
  EXPECT_TRUE(this->holds(*other, {}));
}

TYPED_TEST(DictionaryEntries, AreCopiedWithTheDictionary) {
  using K = Kind<TypeParam>;
  auto source = this->dictionaryOf({1, 2});
  auto assigned = this->dictionaryOf({9, 9, 9});
  require(qoc_ocrDictionary_assign(assigned, source));
  const Owned<qoc_ocrDictionary> constructed(*source);

  require(K::set(source, 0, K::make(5)));

  EXPECT_TRUE(this->holds(*assigned, {1, 2}));
  EXPECT_TRUE(this->holds(*constructed, {1, 2}));
}

TYPED_TEST(DictionaryEntries, TellDictionariesApart) {
  const auto equal = [](const auto &a, const auto &b) {
    qsys_bool isEqual = 7;
    require(qoc_ocrDictionary_compareEqual(a, b, &isEqual));
    return isEqual;
  };
  const auto dictionary = this->dictionaryOf({1, 2});

  EXPECT_EQ(equal(dictionary, this->dictionaryOf({1, 2})), 1u);
  if (!this->equal(*Kind<TypeParam>::make(1), *Kind<TypeParam>::make(2))) {
    EXPECT_EQ(equal(dictionary, this->dictionaryOf({2, 1})), 0u);
  }
  EXPECT_EQ(equal(dictionary, this->dictionaryOf({1})), 0u);
  EXPECT_EQ(equal(dictionary, Owned<qoc_ocrDictionary>()), 0u);
}

TYPED_TEST(DictionaryEntries, OfAnyKindMakeADictionaryNotEmpty) {
  using K = Kind<TypeParam>;
  Owned<qoc_ocrDictionary> dictionary;
  qsys_bool isEmpty = 7;

  EXPECT_EQ(qoc_ocrDictionary_getIsEmpty(dictionary, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 1u);

  require(K::setExtend(dictionary, 0, Owned<TypeParam>()));
  EXPECT_EQ(qoc_ocrDictionary_getIsEmpty(dictionary, &isEmpty), QSYS_STATUS_OK);
  EXPECT_EQ(isEmpty, 0u);
}

TYPED_TEST(DictionaryEntries, ReportMissingArgumentsAndStayAsTheyAre) {
  using K = Kind<TypeParam>;
  auto dictionary = this->dictionaryOf({1});
  Owned<TypeParam> entry;
  int32_t n = 7;
  FailedChecks failed;

  const auto expectReport = [&](qsys_status outcome) {
    EXPECT_EQ(outcome, QSYS_STATUS_OK);
    EXPECT_EQ(failed.numNew(), 1);
  };
  expectReport(K::getNum(nullptr, &n));
  expectReport(K::getNum(dictionary, nullptr));
  expectReport(K::getAll(dictionary, nullptr));
  expectReport(K::setAll(dictionary, nullptr));
  expectReport(K::get(dictionary, 0, nullptr));
  expectReport(K::get(nullptr, 0, entry));
  expectReport(K::set(dictionary, 0, nullptr));
  expectReport(K::getExtend(dictionary, 5, nullptr));
  expectReport(K::setExtend(dictionary, 5, nullptr));
  EXPECT_EQ(n, 7);
  EXPECT_TRUE(this->holds(*dictionary, {1}));
}

TEST(DictionaryGetLexiconIExtend, AtIndexThreeOfOneLexiconLeavesFourAndCopiesOutAnEmptyOne) {
  auto dictionary = dictionaryOf({{"ab"}});
  auto entry = lexicon({"before"});

  EXPECT_EQ(qoc_ocrDictionary_getLexiconIExtend(dictionary, 3, entry), QSYS_STATUS_OK);

  int32_t n = 0;
  EXPECT_EQ(qoc_ocrDictionary_getNumLexicons(dictionary, &n), QSYS_STATUS_OK);
  EXPECT_EQ(n, 4);
  EXPECT_EQ(wordsOf(*entry).size(), 0u);
  const auto entries = elements(dictionary->lexicons);
  EXPECT_EQ(wordsOf(entries[0]), std::vector<std::string>{"ab"});
  for (std::size_t i = 1; i < 4; ++i) {
    EXPECT_EQ(wordsOf(entries[i]).size(), 0u);
  }
}

TEST(DictionaryRemoveLexiconI, MovesTheLaterOnesDown) {
  auto dictionary = dictionaryOf({{"a"}, {"b"}, {"c"}, {"d"}});

  EXPECT_EQ(qoc_ocrDictionary_removeLexiconI(dictionary, 1), QSYS_STATUS_OK);

  const auto entries = elements(dictionary->lexicons);
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(wordsOf(entries[0])[0], "a");
  EXPECT_EQ(wordsOf(entries[1])[0], "c");
  EXPECT_EQ(wordsOf(entries[2])[0], "d");
}

TEST(DictionaryRemoveLexiconI, AtTheLastIndexShrinksTheListByOne) {
  auto dictionary = dictionaryOf({{"a"}, {"b"}});

  EXPECT_EQ(qoc_ocrDictionary_removeLexiconI(dictionary, 1), QSYS_STATUS_OK);

  ASSERT_EQ(elements(dictionary->lexicons).size(), 1u);
  EXPECT_EQ(wordsOf(elements(dictionary->lexicons)[0])[0], "a");
}

TEST(DictionaryRemoveLexiconI, RefusesAnIndexThatIsNotThereAndChangesNothing) {
  auto dictionary = dictionaryOf({{"a"}, {"b"}});

  EXPECT_EQ(qoc_ocrDictionary_removeLexiconI(dictionary, 2), QOC_STATUS_INDEX_TOO_BIG);
  EXPECT_EQ(qoc_ocrDictionary_removeLexiconI(dictionary, -1), QOC_STATUS_INDEX_NEGATIVE);

  EXPECT_EQ(elements(dictionary->lexicons).size(), 2u);
}

TEST(DictionarySwapCharSet, IsCopiedInAndOutAndDoesNotMakeADictionaryNotEmpty) {
  Owned<qoc_ocrDictionary> dictionary;
  Owned<qoc_swapCharSet> in, out;
  qsys_bool flag = 7;
  require(qoc_swapCharSet_setSingleSwap(in, 'a', 'b'));

  EXPECT_EQ(qoc_ocrDictionary_setSwapCharSet(dictionary, in), QSYS_STATUS_OK);
  EXPECT_EQ(qoc_ocrDictionary_getSwapCharSet(dictionary, out), QSYS_STATUS_OK);

  EXPECT_EQ(qoc_swapCharSet_compareEqual(in, out, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(flag, 1u);
  EXPECT_EQ(qoc_ocrDictionary_getIsEmpty(dictionary, &flag), QSYS_STATUS_OK);
  EXPECT_EQ(flag, 1u);
  EXPECT_EQ(qoc_ocrDictionary_compareEqual(dictionary, Owned<qoc_ocrDictionary>(), &flag), QSYS_STATUS_OK);
  EXPECT_EQ(flag, 0u);
}

TEST(DictionaryAssign, OfADictionaryToItselfChangesNothing) {
  Owned<qoc_ocrDictionary> dictionary = dictionaryOf({{"ab", "cd"}, {"e"}});
  const Owned<qoc_ocrDictionary> before = dictionary;
  EXPECT_EQ(qoc_ocrDictionary_assign(dictionary, dictionary), QSYS_STATUS_OK);
  qsys_bool isEqual = 0;
  EXPECT_EQ(qoc_ocrDictionary_compareEqual(dictionary, before, &isEqual), QSYS_STATUS_OK);
  EXPECT_EQ(isEqual, 1u);
}

}  // namespace
