// The generic vector: every operation, over elements that count their lives and can fail.

#include <gtest/gtest.h>
#include <qoc/vector.h>

#include <algorithm>
#include <set>
#include <vector>

#include "support/allocator.hpp"
#include "support/handlers.hpp"

namespace {

using qoc::test::CountingAllocator;
using qoc::test::FailedChecks;
using qoc::test::LibraryAllocator;
using Numbers = std::vector<int32_t>;

/// An element that owns a block, so that a leak or a double destruction is noticed, and holds a number.
struct Counted {
  int32_t *number;

  static inline int64_t numLive = 0, numOperations = 0, failAt = -1;
  static constexpr qsys_status failure = -31337;

  /// Counts an operation of an element; the one that is to fail, and all behind it, fail.
  static qsys_status next() { return failAt >= 0 && numOperations++ >= failAt ? failure : QSYS_STATUS_OK; }
  static void failFrom(int64_t n) {
    numOperations = 0;
    failAt = n;
  }
};

qsys_status constructCounted(void *element, int32_t number) {
  if (const qsys_status status = Counted::next(); status < 0) {
    return status;
  }
  static_cast<Counted *>(element)->number = new int32_t(number);
  ++Counted::numLive;
  return QSYS_STATUS_OK;
}

constexpr int32_t defaultNumber = -1;

constexpr qstd_elementTable countedTable = {
    [](void *element, const void *) { return constructCounted(element, defaultNumber); },
    [](void *element, const void *source) {
      return constructCounted(element, *static_cast<const Counted *>(source)->number);
    },
    [](void *element, const void *source) -> qsys_status {
      if (const qsys_status status = Counted::next(); status < 0) {
        return status;
      }
      *static_cast<Counted *>(element)->number = *static_cast<const Counted *>(source)->number;
      return QSYS_STATUS_OK;
    },
    [](void *element) -> qsys_status {
      delete static_cast<Counted *>(element)->number;
      --Counted::numLive;
      return QSYS_STATUS_OK;
    },
    0xFFFFFFFFu};

/// A block of elements outside any vector.
class Block {
 public:
  explicit Block(const Numbers &numbers) {
    for (const int32_t number : numbers) {
      elements_.push_back({new int32_t(number)});
    }
  }
  ~Block() {
    for (const Counted &element : elements_) {
      delete element.number;
    }
  }
  Block(const Block &) = delete;
  Block &operator=(const Block &) = delete;
  const Counted *data() const { return elements_.data(); }
  int32_t size() const { return static_cast<int32_t>(elements_.size()); }

 private:
  std::vector<Counted> elements_;
};

/// A vector of Counted elements.
class Vector {
 public:
  explicit Vector(const Numbers &numbers = {}) {
    const Block block(numbers);
    const qsys_status status =
        qstd_vector__constructFromBlockWithVtable(&vector_, sizeof(Counted), block.data(), block.size(), &countedTable);
    EXPECT_EQ(status, QSYS_STATUS_OK);
  }
  ~Vector() { qstd_vector__destruct(&vector_); }
  Vector(const Vector &) = delete;
  Vector &operator=(const Vector &) = delete;
  operator qstd_vector *() { return &vector_; }

 private:
  qstd_vector vector_;
};

int32_t sizeOf(const qstd_vector *vector) {
  int32_t n = -1;
  EXPECT_EQ(qstd_vector__getSize32(vector, &n), QSYS_STATUS_OK);
  return n;
}

int32_t capacityOf(const qstd_vector *vector) {
  int32_t n = -1;
  EXPECT_EQ(qstd_vector__getCapacity(vector, &n), QSYS_STATUS_OK);
  return n;
}

Numbers numbersOf(const qstd_vector *vector) {
  const void *first = nullptr;
  int32_t n = 0;
  EXPECT_EQ(qstd_vector__getBeginSize32Const(vector, &first, &n), QSYS_STATUS_OK);
  Numbers numbers;
  for (int32_t i = 0; i < n; ++i) {
    numbers.push_back(*static_cast<const Counted *>(first)[i].number);
  }
  return numbers;
}

Counted *elementAt(qstd_vector *vector, int32_t index) {
  void *element = nullptr;
  EXPECT_EQ(qstd_vector__getElement(vector, index, &element), QSYS_STATUS_OK);
  return static_cast<Counted *>(element);
}

class GenericVector : public ::testing::Test {
 protected:
  GenericVector() {
    Counted::numLive = 0;
    Counted::failFrom(-1);
  }
  ~GenericVector() override {
    EXPECT_EQ(Counted::numLive, 0) << "elements are left alive, or were destroyed twice";
    EXPECT_EQ(memory_.numLive(), 0) << "storage is left";
  }
  LibraryAllocator memory_;
};

TEST_F(GenericVector, ConstructMakesDefaultElements) {
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 3, sizeof(Counted), &countedTable), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(&vector), Numbers(3, defaultNumber));
  EXPECT_EQ(Counted::numLive, 3);
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

TEST_F(GenericVector, ConstructOfNoElementsIsEmpty) {
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 0, sizeof(Counted), &countedTable), QSYS_STATUS_OK);
  EXPECT_EQ(sizeOf(&vector), 0);
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

TEST_F(GenericVector, ConstructUninitCallsNoElementOperation) {
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtableUninit(&vector, 2, sizeof(Counted), &countedTable), QSYS_STATUS_OK);
  EXPECT_EQ(sizeOf(&vector), 2);
  EXPECT_EQ(Counted::numLive, 0);
  for (int32_t i = 0; i < 2; ++i) {
    ASSERT_EQ(constructCounted(elementAt(&vector, i), 40 + i), QSYS_STATUS_OK);
  }
  EXPECT_EQ(numbersOf(&vector), (Numbers{40, 41}));
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

TEST_F(GenericVector, ConstructFillCopiesTheElement) {
  const Block seven({7});
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructFillWithVtable(&vector, 3, sizeof(Counted), seven.data(), &countedTable),
            QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(&vector), (Numbers{7, 7, 7}));
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

TEST_F(GenericVector, ConstructFromBlockAllowsAnEmptyBlockWithoutAddress) {
  FailedChecks checks;
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructFromBlockWithVtable(&vector, sizeof(Counted), nullptr, 0, &countedTable),
            QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 0);
  EXPECT_EQ(sizeOf(&vector), 0);
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

TEST_F(GenericVector, ConstructCopyIsDeepAndLeavesTheSourceAlone) {
  Vector source({1, 2, 3});
  qstd_vector copy;
  ASSERT_EQ(qstd_vector__constructCopy(&copy, source), QSYS_STATUS_OK);
  *elementAt(&copy, 0)->number = 99;
  EXPECT_EQ(numbersOf(&copy), (Numbers{99, 2, 3}));
  EXPECT_EQ(numbersOf(source), (Numbers{1, 2, 3}));
  EXPECT_EQ(qstd_vector__destruct(&copy), QSYS_STATUS_OK);
}

TEST_F(GenericVector, ConstructWithMtableTakesItsStorageFromTheCallersAllocator) {
  CountingAllocator own;
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtableWithMtable(&vector, 2, sizeof(Counted), &countedTable, own.table()),
            QSYS_STATUS_OK);
  ASSERT_EQ(qstd_vector__resize(&vector, 100), QSYS_STATUS_OK);
  EXPECT_EQ(own.numLive(), 1);
  EXPECT_EQ(memory_.numAllocations(), 0);
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
  EXPECT_EQ(own.numLive(), 0);
}

TEST_F(GenericVector, AssignReplacesTheElementsWhateverTheSizes) {
  for (const Numbers &before : {Numbers{}, Numbers{1}, Numbers{1, 2, 3, 4}}) {
    Vector vector(before), source({8, 9});
    EXPECT_EQ(qstd_vector__assign(vector, source), QSYS_STATUS_OK);
    EXPECT_EQ(numbersOf(vector), (Numbers{8, 9}));
    EXPECT_EQ(numbersOf(source), (Numbers{8, 9}));
  }
}

TEST_F(GenericVector, AssignToItselfDoesNothing) {
  Vector vector({1, 2});
  const Counted *before = elementAt(vector, 0);
  EXPECT_EQ(qstd_vector__assign(vector, vector), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2}));
  EXPECT_EQ(elementAt(vector, 0), before);
}

TEST_F(GenericVector, AssignElementsCopiesABlock) {
  Vector vector({1, 2, 3});
  const Block block({7, 8, 9, 10});
  EXPECT_EQ(qstd_vector__assignElements(vector, block.data(), 4), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{7, 8, 9, 10}));
  EXPECT_EQ(qstd_vector__assignElements(vector, nullptr, 0), QSYS_STATUS_OK);
  EXPECT_EQ(sizeOf(vector), 0);
}

TEST_F(GenericVector, AssignElementsTakesABlockOfTheVectorItself) {
  for (int32_t first = 0; first < 4; ++first) {
    for (int32_t n = 0; first + n <= 4; ++n) {
      SCOPED_TRACE(testing::Message() << n << " elements from " << first);
      const Numbers all = {1, 2, 3, 4};
      Vector vector(all);
      EXPECT_EQ(qstd_vector__assignElements(vector, elementAt(vector, first), n), QSYS_STATUS_OK);
      EXPECT_EQ(numbersOf(vector), Numbers(all.begin() + first, all.begin() + first + n));
    }
  }
}

TEST_F(GenericVector, ResizeGrowsWithDefaultsAndShrinksFromTheEnd) {
  Vector vector({1, 2});
  EXPECT_EQ(qstd_vector__resize(vector, 4), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, defaultNumber, defaultNumber}));
  EXPECT_EQ(qstd_vector__resize(vector, 1), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), Numbers{1});
  EXPECT_EQ(Counted::numLive, 1);
  EXPECT_EQ(qstd_vector__resize(vector, 0), QSYS_STATUS_OK);
  EXPECT_EQ(Counted::numLive, 0);
}

TEST_F(GenericVector, ResizeFillGrowsWithCopiesAndShrinksToo) {
  Vector vector({1});
  const Block five({5});
  EXPECT_EQ(qstd_vector__resizeFill(vector, 3, five.data()), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 5, 5}));
  EXPECT_EQ(qstd_vector__resizeFill(vector, 2, five.data()), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 5}));
}

TEST_F(GenericVector, ResizeFillTakesAnElementOfTheVectorItself) {
  Vector vector({1, 2, 3});
  EXPECT_EQ(qstd_vector__resizeFill(vector, 100, elementAt(vector, 1)), QSYS_STATUS_OK);
  Numbers wanted = {1, 2, 3};
  wanted.resize(100, 2);
  EXPECT_EQ(numbersOf(vector), wanted);
}

TEST_F(GenericVector, ResizeUninitLeavesTheNewElementsToTheCaller) {
  Vector vector({1});
  EXPECT_EQ(qstd_vector__resizeUninit(vector, 2), QSYS_STATUS_OK);
  EXPECT_EQ(Counted::numLive, 1);
  ASSERT_EQ(constructCounted(elementAt(vector, 1), 2), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2}));
}

TEST_F(GenericVector, ReserveKeepsTheElementsAndTheSize) {
  Vector vector({1, 2});
  EXPECT_EQ(qstd_vector__reserve(vector, 50), QSYS_STATUS_OK);
  EXPECT_GE(capacityOf(vector), 50);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2}));

  const Counted *before = elementAt(vector, 0);
  EXPECT_EQ(qstd_vector__resize(vector, 50), QSYS_STATUS_OK);
  EXPECT_EQ(elementAt(vector, 0), before) << "the reserved storage was not used";
  EXPECT_EQ(qstd_vector__reserve(vector, 0), QSYS_STATUS_OK);
  EXPECT_GE(capacityOf(vector), 50);
}

TEST_F(GenericVector, TheGettersAgree) {
  Vector vector({1, 2, 3});
  int32_t elementSize = 0, n = 0;
  EXPECT_EQ(qstd_vector__getElementSize(vector, &elementSize), QSYS_STATUS_OK);
  EXPECT_EQ(elementSize, static_cast<int32_t>(sizeof(Counted)));
  EXPECT_GE(capacityOf(vector), 3);

  void *first = nullptr, *end = nullptr, *again = nullptr;
  const void *firstConst = nullptr, *endConst = nullptr, *elementConst = nullptr;
  EXPECT_EQ(qstd_vector__getBeginEnd(vector, &first, &end), QSYS_STATUS_OK);
  EXPECT_EQ(static_cast<Counted *>(end) - static_cast<Counted *>(first), 3);
  EXPECT_EQ(qstd_vector__getBeginEndConst(vector, &firstConst, &endConst), QSYS_STATUS_OK);
  EXPECT_EQ(firstConst, first);
  EXPECT_EQ(endConst, end);
  EXPECT_EQ(qstd_vector__getBeginSize32(vector, &again, &n), QSYS_STATUS_OK);
  EXPECT_EQ(again, first);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(qstd_vector__getElementConst(vector, 2, &elementConst), QSYS_STATUS_OK);
  EXPECT_EQ(elementConst, static_cast<Counted *>(first) + 2);
}

TEST_F(GenericVector, ElementsHaveAByteAtLeast) {
  constexpr qstd_elementTable plain = {nullptr, nullptr, nullptr, nullptr, 0xFFFFFFFFu};
  qstd_vector vector;
  int32_t elementSize = 0;
  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 3, 0, &plain), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_vector__getElementSize(&vector, &elementSize), QSYS_STATUS_OK);
  EXPECT_EQ(elementSize, 1);
  EXPECT_EQ(sizeOf(&vector), 3);
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

TEST_F(GenericVector, BeginAndEndOfAnEmptyVectorAreTheSame) {
  Vector vector;
  void *first = &vector, *end = nullptr;
  EXPECT_EQ(qstd_vector__getBeginEnd(vector, &first, &end), QSYS_STATUS_OK);
  EXPECT_EQ(first, end);
}

TEST_F(GenericVector, InsertPutsABlockBeforeEachPosition) {
  for (int32_t position = 0; position <= 3; ++position) {
    SCOPED_TRACE(position);
    Vector vector({1, 2, 3});
    const Block block({8, 9});
    EXPECT_EQ(qstd_vector__insert(vector, position, block.data(), 2), QSYS_STATUS_OK);
    Numbers wanted = {1, 2, 3};
    wanted.insert(wanted.begin() + position, {8, 9});
    EXPECT_EQ(numbersOf(vector), wanted);
  }
}

TEST_F(GenericVector, InsertTakesABlockOfTheVectorItselfWithAndWithoutRoom) {
  for (const int32_t room : {0, 100}) {
    for (int32_t position = 0; position <= 4; ++position) {
      for (int32_t first = 0; first < 4; ++first) {
        for (int32_t n = 0; first + n <= 4; ++n) {
          SCOPED_TRACE(testing::Message() << n << " from " << first << " to " << position << ", room " << room);
          const Numbers all = {1, 2, 3, 4};
          Vector vector(all);
          ASSERT_EQ(qstd_vector__reserve(vector, room), QSYS_STATUS_OK);
          EXPECT_EQ(qstd_vector__insert(vector, position, elementAt(vector, first), n), QSYS_STATUS_OK);
          Numbers wanted = all;
          wanted.insert(wanted.begin() + position, all.begin() + first, all.begin() + first + n);
          EXPECT_EQ(numbersOf(vector), wanted);
        }
      }
    }
  }
}

TEST_F(GenericVector, InsertElementPutsOneBeforeThePosition) {
  Vector vector({1, 3});
  const Block two({2});
  EXPECT_EQ(qstd_vector__insertElement(vector, 1, two.data()), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3}));
  EXPECT_EQ(qstd_vector__insertElement(vector, 0, elementAt(vector, 2)), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{3, 1, 2, 3}));
}

TEST_F(GenericVector, EraseRemovesEachRun) {
  for (int32_t position = 0; position <= 4; ++position) {
    for (int32_t n = 0; position + n <= 4; ++n) {
      SCOPED_TRACE(testing::Message() << n << " from " << position);
      Vector vector({1, 2, 3, 4});
      EXPECT_EQ(qstd_vector__erase(vector, position, n), QSYS_STATUS_OK);
      Numbers wanted = {1, 2, 3, 4};
      wanted.erase(wanted.begin() + position, wanted.begin() + position + n);
      EXPECT_EQ(numbersOf(vector), wanted);
      EXPECT_EQ(Counted::numLive, 4 - n);
    }
  }
}

TEST_F(GenericVector, EraseElementRemovesOne) {
  Vector vector({1, 2, 3});
  EXPECT_EQ(qstd_vector__eraseElement(vector, 1), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 3}));
}

TEST_F(GenericVector, PushBackAndPopBackWorkAtTheEnd) {
  Vector vector;
  for (int32_t i = 0; i < 100; ++i) {
    const Block block({i});
    ASSERT_EQ(qstd_vector__pushBack(vector, block.data()), QSYS_STATUS_OK);
  }
  Numbers wanted;
  for (int32_t i = 0; i < 100; ++i) {
    wanted.push_back(i);
  }
  EXPECT_EQ(numbersOf(vector), wanted);
  EXPECT_EQ(qstd_vector__popBack(vector), QSYS_STATUS_OK);
  wanted.pop_back();
  EXPECT_EQ(numbersOf(vector), wanted);
}

TEST_F(GenericVector, PushBackTakesAnElementOfTheVectorItself) {
  Vector vector({1});
  for (int32_t i = 0; i < 20; ++i) {
    ASSERT_EQ(qstd_vector__pushBack(vector, elementAt(vector, 0)), QSYS_STATUS_OK);
  }
  EXPECT_EQ(numbersOf(vector), Numbers(21, 1));
}

TEST_F(GenericVector, PushBackAllocatesNowAndThenOnly) {
  Vector vector;
  const Block block({1});
  for (int32_t i = 0; i < 10'000; ++i) {
    ASSERT_EQ(qstd_vector__pushBack(vector, block.data()), QSYS_STATUS_OK);
  }
  EXPECT_LT(memory_.numAllocations(), 50);
}

TEST_F(GenericVector, ClearKeepsTheStorageAndClearAndFreeMemoryReleasesIt) {
  Vector vector({1, 2, 3});
  EXPECT_EQ(qstd_vector__clear(vector), QSYS_STATUS_OK);
  EXPECT_EQ(sizeOf(vector), 0);
  EXPECT_EQ(Counted::numLive, 0);
  EXPECT_GE(capacityOf(vector), 3);
  EXPECT_EQ(memory_.numLive(), 1);

  EXPECT_EQ(qstd_vector__resize(vector, 2), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_vector__clearAndFreeMemory(vector), QSYS_STATUS_OK);
  EXPECT_EQ(sizeOf(vector), 0);
  EXPECT_EQ(capacityOf(vector), 0);
  EXPECT_EQ(memory_.numLive(), 0);
  EXPECT_EQ(qstd_vector__resize(vector, 1), QSYS_STATUS_OK);
}

TEST_F(GenericVector, AppendCopiesTheOthersElements) {
  Vector vector({1, 2}), other({3, 4});
  EXPECT_EQ(qstd_vector__append(vector, other), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3, 4}));
  EXPECT_EQ(numbersOf(other), (Numbers{3, 4}));
}

TEST_F(GenericVector, AppendOfItselfDoubles) {
  Vector vector({1, 2, 3});
  EXPECT_EQ(qstd_vector__append(vector, vector), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3, 1, 2, 3}));
}

TEST_F(GenericVector, SwapExchangesContentsAndAllocators) {
  CountingAllocator own;
  Vector vector({1});
  qstd_vector other;
  ASSERT_EQ(qstd_vector__constructWithVtableWithMtable(&other, 2, sizeof(Counted), &countedTable, own.table()),
            QSYS_STATUS_OK);
  EXPECT_EQ(qstd_vector__swap(vector, &other), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), Numbers(2, defaultNumber));
  EXPECT_EQ(numbersOf(&other), Numbers{1});
  EXPECT_EQ(qstd_vector__destruct(&other), QSYS_STATUS_OK);
  EXPECT_EQ(own.numLive(), 1);
  EXPECT_EQ(qstd_vector__clearAndFreeMemory(vector), QSYS_STATUS_OK);
  EXPECT_EQ(own.numLive(), 0);
}

TEST_F(GenericVector, SwapWithItselfChangesNothing) {
  Vector vector({1, 2});
  EXPECT_EQ(qstd_vector__swap(vector, vector), QSYS_STATUS_OK);
  EXPECT_EQ(numbersOf(vector), (Numbers{1, 2}));
}

qsys_status compareCounted(const void *a, const void *b, qsys_bool *isEqual) {
  *isEqual = *static_cast<const Counted *>(a)->number == *static_cast<const Counted *>(b)->number ? 1 : 0;
  return QSYS_STATUS_OK;
}

TEST_F(GenericVector, CompareEqualWantsEqualSizesAndEqualPairs) {
  Vector vector({1, 2}), same({1, 2}), shorter({1}), different({1, 3}), empty, alsoEmpty;
  const auto isEqual = [](qstd_vector *a, qstd_vector *b) {
    qsys_bool flag = 77;
    EXPECT_EQ(qstd_vector__compareEqual(a, b, &flag, compareCounted), QSYS_STATUS_OK);
    return flag;
  };
  EXPECT_EQ(isEqual(vector, same), 1u);
  EXPECT_EQ(isEqual(vector, vector), 1u);
  EXPECT_EQ(isEqual(vector, shorter), 0u);
  EXPECT_EQ(isEqual(shorter, vector), 0u);
  EXPECT_EQ(isEqual(vector, different), 0u);
  EXPECT_EQ(isEqual(empty, alsoEmpty), 1u);
  EXPECT_EQ(isEqual(empty, vector), 0u);
}

TEST_F(GenericVector, CompareEqualGivesTheComparisonsFailure) {
  Vector a({1}), b({1});
  qsys_bool flag = 0;
  const auto fail = [](const void *, const void *, qsys_bool *) -> qsys_status { return -4; };
  EXPECT_EQ(qstd_vector__compareEqual(a, b, &flag, fail), -4);
}

// Bad sizes, indices and an empty popBack -----------------------------------------------------------------------------

/// Every call that is refused, with the status it gives.
struct Refusal {
  const char *what;
  qsys_status status;
  qsys_status (*call)(qstd_vector *vector, const Counted *element);
};

constexpr Refusal refusals[] = {
    {"resize to a negative size", QSTD_STATUS_SIZE_INVALID, [](auto *v, auto *) { return qstd_vector__resize(v, -1); }},
    {"resize to the least size", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *) { return qstd_vector__resize(v, INT32_MIN); }},
    {"resizeUninit to a negative size", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *) { return qstd_vector__resizeUninit(v, -1); }},
    {"resizeFill to a negative size", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *e) { return qstd_vector__resizeFill(v, -5, e); }},
    {"reserve of a negative size", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *) { return qstd_vector__reserve(v, -1); }},
    {"assignElements of a negative count", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *e) { return qstd_vector__assignElements(v, e, -1); }},
    {"insert of a negative count", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insert(v, 0, e, -1); }},
    {"insert of more than a vector can hold", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insert(v, 0, e, INT32_MAX); }},
    {"insert before the begin", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insert(v, -1, e, 1); }},
    {"insert behind the end", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insert(v, 4, e, 1); }},
    {"insertElement before the begin", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insertElement(v, -1, e); }},
    {"insertElement behind the end", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insertElement(v, 4, e); }},
    {"erase before the begin", QSTD_STATUS_INDEX_INVALID, [](auto *v, auto *) { return qstd_vector__erase(v, -1, 1); }},
    {"erase beyond the end", QSTD_STATUS_INDEX_INVALID, [](auto *v, auto *) { return qstd_vector__erase(v, 2, 2); }},
    {"insert of more than sizes can tell", QSTD_STATUS_SIZE_INVALID,
     [](auto *v, auto *e) { return qstd_vector__insert(v, 3, e, INT32_MAX); }},
    {"erase of a negative count", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *) { return qstd_vector__erase(v, 2, -1); }},
    {"erase of a run whose end overflows", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *) { return qstd_vector__erase(v, 1, INT32_MAX); }},
    {"eraseElement before the begin", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *) { return qstd_vector__eraseElement(v, -1); }},
    {"eraseElement at the end", QSTD_STATUS_INDEX_INVALID,
     [](auto *v, auto *) { return qstd_vector__eraseElement(v, 3); }},
};

TEST_F(GenericVector, BadSizesAndIndicesFailAndChangeNothing) {
  for (const Refusal &refusal : refusals) {
    SCOPED_TRACE(refusal.what);
    Vector vector({1, 2, 3});
    const Block block({9});
    const int32_t capacity = capacityOf(vector);
    EXPECT_EQ(refusal.call(vector, block.data()), refusal.status) << qoc_status_getName(refusal.status);
    EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3}));
    EXPECT_EQ(capacityOf(vector), capacity);
  }
}

TEST_F(GenericVector, GetElementRefusesBadIndicesAndLeavesTheOutputAlone) {
  Vector vector({1, 2, 3});
  for (const int32_t index : {-1, 3, INT32_MIN, INT32_MAX}) {
    SCOPED_TRACE(index);
    int mark = 0;
    void *element = &mark;
    const void *elementConst = &mark;
    EXPECT_EQ(qstd_vector__getElement(vector, index, &element), QSTD_STATUS_INDEX_INVALID);
    EXPECT_EQ(qstd_vector__getElementConst(vector, index, &elementConst), QSTD_STATUS_INDEX_INVALID);
    EXPECT_EQ(element, &mark);
    EXPECT_EQ(elementConst, &mark);
  }
}

TEST_F(GenericVector, PopBackOfAnEmptyVectorFails) {
  Vector vector;
  EXPECT_EQ(qstd_vector__popBack(vector), QSTD_STATUS_CONTAINER_EMPTY);
  EXPECT_EQ(sizeOf(vector), 0);
}

TEST_F(GenericVector, ConstructorsRefuseNegativeSizes) {
  const Block block({1});
  qstd_vector vector;
  const uint32_t size = sizeof(Counted);
  EXPECT_EQ(qstd_vector__constructWithVtable(&vector, -1, size, &countedTable), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(qstd_vector__constructWithVtableWithMtable(&vector, INT32_MIN, size, &countedTable, nullptr),
            QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(qstd_vector__constructWithVtableUninit(&vector, -1, size, &countedTable), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(qstd_vector__constructFillWithVtable(&vector, -1, size, block.data(), &countedTable),
            QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(qstd_vector__constructFromBlockWithVtable(&vector, size, block.data(), -1, &countedTable),
            QSTD_STATUS_SIZE_INVALID);
}

TEST_F(GenericVector, SizesBeyondMemoryFailAndChangeNothing) {
  // 2^31 elements of a gigabyte each: no address space holds them.
  constexpr qstd_elementTable plain = {nullptr, nullptr, nullptr, nullptr, 0xFFFFFFFFu};
  qstd_vector vector;
  EXPECT_LT(qstd_vector__constructWithVtableUninit(&vector, INT32_MAX, 1u << 30, &plain), 0);
  EXPECT_LT(qstd_vector__constructWithVtable(&vector, INT32_MAX, UINT32_MAX, &plain), 0);

  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 0, 1u << 30, &plain), QSYS_STATUS_OK);
  EXPECT_LT(qstd_vector__resize(&vector, INT32_MAX), 0);
  EXPECT_LT(qstd_vector__resizeUninit(&vector, INT32_MAX), 0);
  EXPECT_LT(qstd_vector__reserve(&vector, INT32_MAX), 0);
  EXPECT_EQ(sizeOf(&vector), 0);
  EXPECT_EQ(capacityOf(&vector), 0);
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

// Failures ------------------------------------------------------------------------------------------------------------

/// Operations on a vector of 1 2 3 that handle elements or allocate.
constexpr struct {
  const char *name;
  qsys_status (*call)(qstd_vector *vector, const Counted *fourElements);
} changes[] = {
    {"resize", [](auto *v, auto *) { return qstd_vector__resize(v, 40); }},
    {"resizeFill", [](auto *v, auto *e) { return qstd_vector__resizeFill(v, 40, e); }},
    {"insert", [](auto *v, auto *e) { return qstd_vector__insert(v, 1, e, 4); }},
    {"insertElement", [](auto *v, auto *e) { return qstd_vector__insertElement(v, 1, e); }},
    {"pushBack", [](auto *v, auto *e) { return qstd_vector__pushBack(v, e); }},
    {"append", [](auto *v, auto *) { return qstd_vector__append(v, v); }},
};

TEST_F(GenericVector, AFailingElementOperationOfAGrowingCallLeavesTheVectorAsItWas) {
  for (const auto &change : changes) {
    for (const int32_t room : {0, 100}) {
      const Block block({6, 7, 8, 9});
      for (int64_t n = 0;; ++n) {
        SCOPED_TRACE(testing::Message() << change.name << ", room " << room << ", element operation " << n << " fails");
        Vector vector({1, 2, 3});
        ASSERT_EQ(qstd_vector__reserve(vector, room), QSYS_STATUS_OK);
        Counted::failFrom(n);
        const qsys_status status = change.call(vector, block.data());
        Counted::failFrom(-1);
        if (status >= 0) {
          EXPECT_GT(n, 0) << "nothing ever failed";
          break;
        }
        EXPECT_EQ(status, Counted::failure);
        EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3}));
        EXPECT_EQ(Counted::numLive, 3);
      }
    }
  }
}

TEST_F(GenericVector, AFailingAllocationOfAGrowingCallLeavesTheVectorAsItWas) {
  for (const auto &change : changes) {
    SCOPED_TRACE(change.name);
    const Block block({6, 7, 8, 9});
    Vector vector({1, 2, 3});
    memory_.failFrom(0);
    EXPECT_EQ(change.call(vector, block.data()), QSYS_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(qstd_vector__reserve(vector, 100), QSYS_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(qstd_vector__resizeUninit(vector, 100), QSYS_STATUS_OUT_OF_MEMORY);
    memory_.failFrom(-1);
    EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3}));
  }
}

TEST_F(GenericVector, AFailingElementOperationOfAConstructorLeavesNothing) {
  const Block block({6, 7, 8, 9});
  Vector source({1, 2, 3, 4});
  for (int64_t n = 0; n < 4; ++n) {
    SCOPED_TRACE(n);
    qstd_vector vector;
    const uint32_t size = sizeof(Counted);
    Counted::failFrom(n);
    EXPECT_EQ(qstd_vector__constructWithVtable(&vector, 4, size, &countedTable), Counted::failure);
    Counted::failFrom(n);
    EXPECT_EQ(qstd_vector__constructFillWithVtable(&vector, 4, size, block.data(), &countedTable), Counted::failure);
    Counted::failFrom(n);
    EXPECT_EQ(qstd_vector__constructFromBlockWithVtable(&vector, size, block.data(), 4, &countedTable),
              Counted::failure);
    Counted::failFrom(n);
    EXPECT_EQ(qstd_vector__constructCopy(&vector, source), Counted::failure);
    Counted::failFrom(-1);
    EXPECT_EQ(Counted::numLive, 4) << "only the source is alive";
    EXPECT_EQ(memory_.numLive(), 1) << "only the source's storage is left";
  }
}

TEST_F(GenericVector, AFailingAssignmentGivesTheElementsFailureAndLeaksNothing) {
  const Block block({6, 7, 8, 9});
  for (const Numbers &before : {Numbers{}, Numbers{1, 2}, Numbers{1, 2, 3, 4, 5, 6}}) {
    for (int64_t n = 0;; ++n) {
      SCOPED_TRACE(testing::Message() << before.size() << " elements before, operation " << n << " fails");
      Vector vector(before), source({6, 7, 8, 9});
      Counted::failFrom(n);
      const qsys_status assigned = qstd_vector__assign(vector, source);
      Counted::failFrom(n);
      const qsys_status assignedElements = qstd_vector__assignElements(vector, block.data(), 4);
      Counted::failFrom(-1);
      EXPECT_EQ(Counted::numLive, sizeOf(vector) + 4);
      if (assigned >= 0 && assignedElements >= 0) {
        EXPECT_EQ(numbersOf(vector), (Numbers{6, 7, 8, 9}));
        break;
      }
      EXPECT_EQ(std::min(assigned, assignedElements), Counted::failure);
    }
  }
}

TEST_F(GenericVector, AFailingDestructorIsToldAndTheOtherElementsAreDestroyedAllTheSame) {
  static int numDestroyed = 0;
  numDestroyed = 0;
  constexpr qstd_elementTable failing = {
      nullptr, nullptr, nullptr, [](void *) -> qsys_status { return ++numDestroyed == 2 ? -8 : 0; }, 0xFFFFFFFFu};
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 4, 1, &failing), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_vector__destruct(&vector), -8);
  EXPECT_EQ(numDestroyed, 4);
}

TEST_F(GenericVector, TheFirstOfSeveralFailingDestructorsIsTold) {
  static int numDestroyed = 0;
  numDestroyed = 0;
  constexpr qstd_elementTable failing = {nullptr, nullptr, nullptr,
                                         [](void *) -> qsys_status { return -(++numDestroyed); }, 0xFFFFFFFFu};
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 3, 1, &failing), QSYS_STATUS_OK);
  EXPECT_EQ(qstd_vector__destruct(&vector), -1);
  EXPECT_EQ(numDestroyed, 3);
}

TEST_F(GenericVector, AFailingElementWithoutADestructorLeavesNothing) {
  static int numConstructed = 0;
  numConstructed = 0;
  constexpr qstd_elementTable failing = {
      [](void *, const void *) -> qsys_status { return ++numConstructed == 3 ? -8 : 0; }, nullptr, nullptr, nullptr,
      0xFFFFFFFFu};
  qstd_vector vector;
  EXPECT_EQ(qstd_vector__constructWithVtable(&vector, 4, 1, &failing), -8);
  EXPECT_EQ(numConstructed, 3);
  EXPECT_EQ(memory_.numLive(), 0);
}

TEST_F(GenericVector, AnEntryThatIsNullTreatsTheElementAsPlainBytes) {
  constexpr qstd_elementTable plain = {nullptr, nullptr, nullptr, nullptr, 0xFFFFFFFFu};
  qstd_vector vector;
  ASSERT_EQ(qstd_vector__constructWithVtable(&vector, 2, sizeof(int32_t), &plain), QSYS_STATUS_OK);
  const int32_t number = 7;
  ASSERT_EQ(qstd_vector__insertElement(&vector, 1, &number), QSYS_STATUS_OK);
  const void *first = nullptr;
  int32_t n = 0;
  ASSERT_EQ(qstd_vector__getBeginSize32Const(&vector, &first, &n), QSYS_STATUS_OK);
  const auto *numbers = static_cast<const int32_t *>(first);
  EXPECT_EQ(Numbers(numbers, numbers + n), (Numbers{0, 7, 0}));
  EXPECT_EQ(qstd_vector__destruct(&vector), QSYS_STATUS_OK);
}

// Missing arguments ---------------------------------------------------------------------------------------------------

TEST_F(GenericVector, EveryMissingArgumentIsOneReportAndTouchesNothing) {
  Vector vector({1, 2, 3}), other({1, 2, 3});
  const Block block({9});
  FailedChecks checks;
  const auto expectReport = [&](qsys_status status, const char *what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(status, QSYS_STATUS_OK);
    EXPECT_EQ(checks.numNew(), 1);
    EXPECT_EQ(numbersOf(vector), (Numbers{1, 2, 3}));
  };
  qstd_vector fresh;
  const uint32_t size = sizeof(Counted);
  int32_t n = 55;
  void *first = &n, *end = &n;
  const void *firstConst = &n, *endConst = &n;
  qsys_bool flag = 55;
#define EXPECT_REPORT(call) expectReport(call, #call)
  EXPECT_REPORT(qstd_vector__constructWithVtable(nullptr, 1, size, &countedTable));
  EXPECT_REPORT(qstd_vector__constructWithVtable(&fresh, 1, size, nullptr));
  EXPECT_REPORT(qstd_vector__constructWithVtableWithMtable(nullptr, 1, size, &countedTable, nullptr));
  EXPECT_REPORT(qstd_vector__constructWithVtableUninit(nullptr, 1, size, &countedTable));
  EXPECT_REPORT(qstd_vector__constructFillWithVtable(&fresh, 1, size, nullptr, &countedTable));
  EXPECT_REPORT(qstd_vector__constructFromBlockWithVtable(&fresh, size, nullptr, 1, &countedTable));
  EXPECT_REPORT(qstd_vector__constructCopy(&fresh, nullptr));
  EXPECT_REPORT(qstd_vector__constructCopy(nullptr, vector));
  EXPECT_REPORT(qstd_vector__assign(vector, nullptr));
  EXPECT_REPORT(qstd_vector__assign(nullptr, vector));
  EXPECT_REPORT(qstd_vector__assignElements(vector, nullptr, 1));
  EXPECT_REPORT(qstd_vector__assignElements(nullptr, block.data(), 1));
  EXPECT_REPORT(qstd_vector__destruct(nullptr));
  EXPECT_REPORT(qstd_vector__resize(nullptr, 1));
  EXPECT_REPORT(qstd_vector__resizeUninit(nullptr, 1));
  EXPECT_REPORT(qstd_vector__resizeFill(nullptr, 1, block.data()));
  EXPECT_REPORT(qstd_vector__resizeFill(vector, 9, nullptr));
  EXPECT_REPORT(qstd_vector__reserve(nullptr, 1));
  EXPECT_REPORT(qstd_vector__getSize32(nullptr, &n));
  EXPECT_REPORT(qstd_vector__getSize32(vector, nullptr));
  EXPECT_REPORT(qstd_vector__getCapacity(nullptr, &n));
  EXPECT_REPORT(qstd_vector__getCapacity(vector, nullptr));
  EXPECT_REPORT(qstd_vector__getElementSize(nullptr, &n));
  EXPECT_REPORT(qstd_vector__getElementSize(vector, nullptr));
  EXPECT_REPORT(qstd_vector__getBeginEnd(nullptr, &first, &end));
  EXPECT_REPORT(qstd_vector__getBeginEnd(vector, nullptr, &end));
  EXPECT_REPORT(qstd_vector__getBeginEnd(vector, &first, nullptr));
  EXPECT_REPORT(qstd_vector__getBeginEndConst(nullptr, &firstConst, &endConst));
  EXPECT_REPORT(qstd_vector__getBeginSize32(nullptr, &first, &n));
  EXPECT_REPORT(qstd_vector__getBeginSize32(vector, nullptr, &n));
  EXPECT_REPORT(qstd_vector__getBeginSize32Const(vector, &firstConst, nullptr));
  EXPECT_REPORT(qstd_vector__getElement(nullptr, 0, &first));
  EXPECT_REPORT(qstd_vector__getElement(vector, 0, nullptr));
  EXPECT_REPORT(qstd_vector__getElementConst(nullptr, 0, &firstConst));
  EXPECT_REPORT(qstd_vector__getElementConst(vector, 0, nullptr));
  EXPECT_REPORT(qstd_vector__insert(nullptr, 0, block.data(), 1));
  EXPECT_REPORT(qstd_vector__insert(vector, 0, nullptr, 1));
  EXPECT_REPORT(qstd_vector__insertElement(nullptr, 0, block.data()));
  EXPECT_REPORT(qstd_vector__insertElement(vector, 0, nullptr));
  EXPECT_REPORT(qstd_vector__erase(nullptr, 0, 1));
  EXPECT_REPORT(qstd_vector__eraseElement(nullptr, 0));
  EXPECT_REPORT(qstd_vector__pushBack(nullptr, block.data()));
  EXPECT_REPORT(qstd_vector__pushBack(vector, nullptr));
  EXPECT_REPORT(qstd_vector__popBack(nullptr));
  EXPECT_REPORT(qstd_vector__clear(nullptr));
  EXPECT_REPORT(qstd_vector__clearAndFreeMemory(nullptr));
  EXPECT_REPORT(qstd_vector__append(nullptr, vector));
  EXPECT_REPORT(qstd_vector__append(vector, nullptr));
  EXPECT_REPORT(qstd_vector__swap(nullptr, vector));
  EXPECT_REPORT(qstd_vector__swap(vector, nullptr));
  EXPECT_REPORT(qstd_vector__compareEqual(nullptr, other, &flag, compareCounted));
  EXPECT_REPORT(qstd_vector__compareEqual(vector, nullptr, &flag, compareCounted));
  EXPECT_REPORT(qstd_vector__compareEqual(vector, other, nullptr, compareCounted));
  EXPECT_REPORT(qstd_vector__compareEqual(vector, other, &flag, nullptr));
#undef EXPECT_REPORT
  EXPECT_EQ(n, 55);
  EXPECT_EQ(flag, 55u);
  EXPECT_EQ(first, &n);
  EXPECT_EQ(end, &n);
  EXPECT_EQ(firstConst, &n);
  EXPECT_EQ(endConst, &n);
}

}  // namespace
