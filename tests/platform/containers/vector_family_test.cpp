// Every typed vector family has every member, with the same meaning.

#include <gtest/gtest.h>

#include <cstring>

#include "support/allocator.hpp"
#include "support/handlers.hpp"
#include "support/owned.hpp"

namespace {

using namespace qoc::test;

template <class V>
class VectorFamily : public ::testing::Test {
 protected:
  using F = Family<V>;
  using Element = typename F::Element;

  static int32_t sizeOf(const V *vector) {
    int32_t n = -1;
    EXPECT_EQ(F::getSize(vector, &n), QSYS_STATUS_OK);
    return n;
  }
  /// The vector's element at the index; every family's default element is a valid argument of every member.
  static Element *at(V *vector, int32_t index) {
    Element *element = nullptr;
    EXPECT_EQ(F::getElement(vector, index, &element), QSYS_STATUS_OK);
    return element;
  }
};

#define QOC_TEST_TYPE(V, T) , V
template <class First, class... Vectors>
struct Drop {
  using Types = ::testing::Types<Vectors...>;
};
using Families = Drop<void QOC_TEST_FAMILIES(QOC_TEST_TYPE)>::Types;
#undef QOC_TEST_TYPE

struct FamilyName {
  template <class V>
  static std::string GetName(int) {
    return Family<V>::name;
  }
};
TYPED_TEST_SUITE(VectorFamily, Families, FamilyName);

TYPED_TEST(VectorFamily, EveryConstructorMakesAsManyElementsAsAsked) {
  using F = typename TestFixture::F;
  const CountingAllocator own;
  const Owned<TypeParam> three([](TypeParam *vector) { return F::construct(vector, 3); });
  const Owned<TypeParam> threeOwn([&](TypeParam *vector) { return F::constructWithMtable(vector, 3, own.table()); });
  const Owned<TypeParam> empty([](TypeParam *vector) { return F::constructEmpty(vector); });
  const Owned<TypeParam> emptyOwn([&](TypeParam *vector) { return F::constructEmptyWithMtable(vector, own.table()); });
  const Owned<TypeParam> uninitialised([](TypeParam *vector) { return F::constructUninit(vector, 0); });
  const auto block = elements(three);
  const Owned<TypeParam> filled([&](TypeParam *vector) { return F::constructFill(vector, 4, block.data()); });
  const Owned<TypeParam> fromBlock([&](TypeParam *vector) { return F::constructFromBlock(vector, block.data(), 2); });
  const Owned<TypeParam> copy([&](TypeParam *vector) { return F::constructCopy(vector, three); });

  EXPECT_EQ(TestFixture::sizeOf(three), 3);
  EXPECT_EQ(TestFixture::sizeOf(threeOwn), 3);
  EXPECT_EQ(TestFixture::sizeOf(empty), 0);
  EXPECT_EQ(TestFixture::sizeOf(emptyOwn), 0);
  EXPECT_EQ(TestFixture::sizeOf(uninitialised), 0);
  EXPECT_EQ(TestFixture::sizeOf(filled), 4);
  EXPECT_EQ(TestFixture::sizeOf(fromBlock), 2);
  EXPECT_EQ(TestFixture::sizeOf(copy), 3);
  EXPECT_GT(own.numAllocations(), 0);
}

TYPED_TEST(VectorFamily, TheGettersAgree) {
  using F = typename TestFixture::F;
  using Element = typename TestFixture::Element;
  Owned<TypeParam> vector([](TypeParam *v) { return F::construct(v, 3); });
  int32_t n[5] = {}, capacity = 0, elementSize = 0;
  Element *first = nullptr, *end = nullptr, *begin = nullptr, *firstOfSize = nullptr, *firstOfSize32 = nullptr;
  const Element *firstConst = nullptr, *endConst = nullptr, *beginConst = nullptr, *ofSizeConst = nullptr,
                *ofSize32Const = nullptr, *elementConst = nullptr;

  EXPECT_EQ(F::getSize32(vector, &n[0]), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginSize(vector, &firstOfSize, &n[1]), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginSize32(vector, &firstOfSize32, &n[2]), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginSizeConst(vector, &ofSizeConst, &n[3]), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginSize32Const(vector, &ofSize32Const, &n[4]), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginEnd(vector, &first, &end), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginEndConst(vector, &firstConst, &endConst), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBegin(vector, &begin), QSYS_STATUS_OK);
  EXPECT_EQ(F::getBeginConst(vector, &beginConst), QSYS_STATUS_OK);
  EXPECT_EQ(F::getElementConst(vector, 1, &elementConst), QSYS_STATUS_OK);
  EXPECT_EQ(F::getCapacity(vector, &capacity), QSYS_STATUS_OK);
  EXPECT_EQ(F::getElementSize(vector, &elementSize), QSYS_STATUS_OK);

  for (const int32_t size : n) {
    EXPECT_EQ(size, 3);
  }
  EXPECT_EQ(end - first, 3);
  for (const Element *address :
       {static_cast<const Element *>(begin), static_cast<const Element *>(firstOfSize),
        static_cast<const Element *>(firstOfSize32), firstConst, beginConst, ofSizeConst, ofSize32Const}) {
    EXPECT_EQ(address, first);
  }
  EXPECT_EQ(endConst, end);
  EXPECT_EQ(elementConst, first + 1);
  EXPECT_EQ(TestFixture::at(vector, 2), first + 2);
  EXPECT_GE(capacity, 3);
  EXPECT_EQ(elementSize, static_cast<int32_t>(sizeof(Element)));
}

TYPED_TEST(VectorFamily, GrowsAndShrinksByEveryMember) {
  using F = typename TestFixture::F;
  const Owned<TypeParam> other([](TypeParam *v) { return F::construct(v, 2); });
  const auto *element = elements(other).data();
  Owned<TypeParam> vector;
  int32_t wanted = 0;
  const auto expectSize = [&](qsys_status status, int32_t change, const char *member) {
    SCOPED_TRACE(member);
    EXPECT_EQ(status, QSYS_STATUS_OK);
    wanted += change;
    EXPECT_EQ(TestFixture::sizeOf(vector), wanted);
  };
  expectSize(F::resize(vector, 2), 2, "resize");
  expectSize(F::resizeFill(vector, 5, element), 3, "resizeFill");
  expectSize(F::resizeUninit(vector, 4), -1, "resizeUninit");
  expectSize(F::reserve(vector, 30), 0, "reserve");
  expectSize(F::insert(vector, 1, element, 2), 2, "insert");
  expectSize(F::insertElement(vector, 6, element), 1, "insertElement");
  expectSize(F::pushBack(vector, element), 1, "pushBack");
  expectSize(F::append(vector, other), 2, "append");
  expectSize(F::append(vector, vector), 10, "append to itself");
  expectSize(F::erase(vector, 3, 4), -4, "erase");
  expectSize(F::eraseElement(vector, 0), -1, "eraseElement");
  expectSize(F::popBack(vector), -1, "popBack");
  expectSize(F::assignElements(vector, element, 2), -12, "assignElements");
  expectSize(F::assign(vector, other), 0, "assign");
  expectSize(F::assign(vector, vector), 0, "assign to itself");
  expectSize(F::clear(vector), -2, "clear");
  expectSize(F::pushBack(vector, element), 1, "pushBack after clear");
  expectSize(F::clearAndFreeMemory(vector), -1, "clearAndFreeMemory");
}

TYPED_TEST(VectorFamily, SwapExchangesContents) {
  using F = typename TestFixture::F;
  Owned<TypeParam> one([](TypeParam *v) { return F::construct(v, 1); });
  Owned<TypeParam> four([](TypeParam *v) { return F::construct(v, 4); });
  EXPECT_EQ(F::swap(one, four), QSYS_STATUS_OK);
  EXPECT_EQ(TestFixture::sizeOf(one), 4);
  EXPECT_EQ(TestFixture::sizeOf(four), 1);
}

TYPED_TEST(VectorFamily, BadSizesAndIndicesFailAndChangeNothing) {
  using F = typename TestFixture::F;
  using Element = typename TestFixture::Element;
  Owned<TypeParam> vector([](TypeParam *v) { return F::construct(v, 2); });
  Element *element = TestFixture::at(vector, 0), *out = nullptr;
  const Element *outConst = nullptr;

  EXPECT_EQ(F::resize(vector, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::resizeUninit(vector, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::resizeFill(vector, -1, element), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::reserve(vector, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::assignElements(vector, element, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::insert(vector, 0, element, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::insert(vector, 3, element, 1), QSTD_STATUS_INDEX_INVALID);
  EXPECT_EQ(F::insertElement(vector, -1, element), QSTD_STATUS_INDEX_INVALID);
  EXPECT_EQ(F::erase(vector, 1, 2), QSTD_STATUS_INDEX_INVALID);
  EXPECT_EQ(F::eraseElement(vector, 2), QSTD_STATUS_INDEX_INVALID);
  EXPECT_EQ(F::getElement(vector, 2, &out), QSTD_STATUS_INDEX_INVALID);
  EXPECT_EQ(F::getElementConst(vector, -1, &outConst), QSTD_STATUS_INDEX_INVALID);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(outConst, nullptr);
  EXPECT_EQ(TestFixture::sizeOf(vector), 2);

  Owned<TypeParam> empty;
  EXPECT_EQ(F::popBack(empty), QSTD_STATUS_CONTAINER_EMPTY);
  TypeParam storage;
  EXPECT_EQ(F::construct(&storage, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::constructUninit(&storage, -1), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::constructFill(&storage, -1, element), QSTD_STATUS_SIZE_INVALID);
  EXPECT_EQ(F::constructFromBlock(&storage, element, -1), QSTD_STATUS_SIZE_INVALID);
}

TYPED_TEST(VectorFamily, MissingVectorsAreReportedOnce) {
  using F = typename TestFixture::F;
  using Element = typename TestFixture::Element;
  FailedChecks checks;
  int mark = 0;
  auto *element = reinterpret_cast<Element *>(&mark);
  Element *const before = element;
  EXPECT_EQ(F::constructEmpty(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(F::pushBack(nullptr, element), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(F::getBegin(nullptr, &element), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
  EXPECT_EQ(element, before);
  EXPECT_EQ(F::destruct(nullptr), QSYS_STATUS_OK);
  EXPECT_EQ(checks.numNew(), 1);
}

TYPED_TEST(VectorFamily, GivesAllItsMemoryBackWhereverItRunsOut) {
  using F = typename TestFixture::F;
  LibraryAllocator memory;
  const auto run = []() -> qsys_status {
    TypeParam vector, copy;
    qsys_status status = F::construct(&vector, 2);
    if (status < 0) {
      return status;
    }
    status = F::append(&vector, &vector);
    if (status >= 0) {
      status = F::constructCopy(&copy, &vector);
    }
    if (status >= 0) {
      status = F::resize(&copy, 9);
      if (status >= 0) {
        status = F::assign(&vector, &copy);
      }
      F::destruct(&copy);
    }
    F::destruct(&vector);
    return status;
  };
  for (int64_t n = 0;; ++n) {
    SCOPED_TRACE(n);
    memory.failFrom(n);
    const qsys_status status = run();
    memory.failFrom(-1);
    EXPECT_EQ(memory.numLive(), 0);
    if (status >= 0) {
      EXPECT_GT(n, 0);
      break;
    }
    EXPECT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
    ASSERT_LT(n, 10'000);
  }
}

TEST(PlainVector, IsAssignedAllOrNothingWhenMemoryRunsOut) {
  LibraryAllocator memory;
  const auto source = vectorOf<qstd_vector32s>({7, 8, 9, 10});
  auto target = vectorOf<qstd_vector32s>({1, 2});
  memory.failFrom(0);
  EXPECT_EQ(qstd_vector32s_assign(target, source), QSYS_STATUS_OUT_OF_MEMORY);
  memory.failFrom(-1);
  EXPECT_EQ(values(target), (std::vector<int32_t>{1, 2}));
}

}  // namespace
