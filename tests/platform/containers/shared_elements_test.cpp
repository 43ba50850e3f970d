// Elements that vectors share until one of them is written to.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "platform/containers/shared_elements.hpp"
#include "run/run_builders.hpp"
#include "support/allocator.hpp"
#include "text/views.hpp"

namespace {

using namespace qoc::test;

using Positions = qstd_vector_qoc_ocrDictionaryCharMulti;

/// A reading with one candidate at each position.
Owned<qoc_ocrDictionaryStringMulti> plainReading(const std::string &text) {
  Owned<qoc_ocrDictionaryStringMulti> made;
  require(qoc_ocrDictionaryStringMulti_setStringT(made, text.c_str()));
  return made;
}

Owned<qoc_ocrDictionaryStringMulti> sharedReading(const std::string &text) {
  Owned<qoc_ocrDictionaryStringMulti> made = plainReading(text);
  require(qoc::shareElements(made->positions.core));
  return made;
}

bool areEqual(const qoc_ocrDictionaryStringMulti &a, const qoc_ocrDictionaryStringMulti &b) {
  qsys_bool isEqual = 0;
  require(qoc_ocrDictionaryStringMulti_compareEqual(&a, &b, &isEqual));
  return isEqual != 0;
}

TEST(SharedElements, CopiesHoldOneBlockAndTheLastReleasesIt) {
  LibraryAllocator allocator;
  {
    const auto first = sharedReading("abc");
    const std::int64_t before = allocator.numAllocations();
    Owned<qoc_ocrDictionaryStringMulti> second;
    Owned<qoc_ocrDictionaryStringMulti> third = plainReading("xy");
    const std::int64_t beforeCopies = allocator.numAllocations();
    require(qoc_ocrDictionaryStringMulti_assign(second, first));
    require(qoc_ocrDictionaryStringMulti_assign(third, second));
    EXPECT_EQ(allocator.numAllocations(), beforeCopies);
    EXPECT_GT(beforeCopies, before);
    EXPECT_TRUE(qoc::holdSameElements(first->positions.core, third->positions.core));
    EXPECT_TRUE(areEqual(*first, *third));
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

/// Whatever writes, or hands out an address for writing, gives the vector a block of its own first.
TEST(SharedElements, EveryWriteLeavesTheOthersAsTheyWere) {
  const auto original = plainReading("abc");
  const auto extra = plainReading("z");
  const qoc_ocrDictionaryCharMulti *element = qoc::view(*extra).data();
  const std::vector<std::function<void(Positions *)>> writes = {
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_resize(p, 5)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_resize(p, 1)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_resize(p, 0)); },
      [&](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_resizeFill(p, 4, element)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_reserve(p, 20)); },
      [&](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(p, element)); },
      [&](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_insertElement(p, 1, element)); },
      [](Positions *p) {
        require(
            qstd_vector_qoc_ocrDictionaryCharMulti_insert(p, 1, qoc::viewAs<qoc_ocrDictionaryCharMulti>(*p).data(), 2));
      },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_append(p, p)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_eraseElement(p, 0)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_popBack(p)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_clear(p)); },
      [](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_clearAndFreeMemory(p)); },
      [&](Positions *p) { require(qstd_vector_qoc_ocrDictionaryCharMulti_assignElements(p, element, 1)); },
      [](Positions *p) {
        require(qstd_vector_qoc_ocrDictionaryCharMulti_assignElements(
            p, qoc::viewAs<qoc_ocrDictionaryCharMulti>(*p).data() + 1, 2));
      },
      [](Positions *p) {
        qoc_ocrDictionaryCharMulti *first = nullptr;
        require(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(p, 0, &first));
        require(qstd_vector_qoc_ocrDictionaryChar_clear(&first->candidates));
      },
      [](Positions *p) {
        qoc_ocrDictionaryCharMulti *first = nullptr;
        require(qstd_vector_qoc_ocrDictionaryCharMulti_getBegin(p, &first));
        require(qstd_vector_qoc_ocrDictionaryChar_clear(&first->candidates));
      },
      [](Positions *p) {
        qoc_ocrDictionaryCharMulti *first = nullptr;
        std::int32_t n = 0;
        require(qstd_vector_qoc_ocrDictionaryCharMulti_getBeginSize(p, &first, &n));
        require(qstd_vector_qoc_ocrDictionaryChar_clear(&first->candidates));
      }};
  for (std::size_t i = 0; i < writes.size(); ++i) {
    LibraryAllocator allocator;
    {
      const auto plain = plainReading("abc");
      Owned<qoc_ocrDictionaryStringMulti> expected;
      require(qoc_ocrDictionaryStringMulti_assign(expected, plain));
      writes[i](&expected->positions);
      const auto first = sharedReading("abc");
      Owned<qoc_ocrDictionaryStringMulti> second;
      require(qoc_ocrDictionaryStringMulti_assign(second, first));
      writes[i](&second->positions);
      EXPECT_TRUE(areEqual(*first, *original)) << "write " << i;
      EXPECT_TRUE(areEqual(*second, *expected)) << "write " << i;
    }
    EXPECT_EQ(allocator.numLive(), 0) << "write " << i;
  }
}

/// The vectors of a pool come and go in any order; copies have blocks of their own.
TEST(ElementPool, BlocksLiveAsLongAsTheirVectors) {
  LibraryAllocator allocator;
  std::mt19937 random(9);
  {
    std::vector<qstd_vector32s> vectors(5000);
    {
      qoc::ElementPool pool;
      const std::int64_t before = allocator.numAllocations();
      for (std::size_t i = 0; i < vectors.size(); ++i) {
        require(qstd_vector32s_constructEmpty(&vectors[i]));
        const std::vector<std::int32_t> values(i % 23, static_cast<std::int32_t>(i));
        require(pool.placeCopies(vectors[i].core, values.data(), static_cast<std::int32_t>(values.size())));
      }
      EXPECT_LT(allocator.numAllocations() - before, 30);
    }
    qstd_vector32s copy;
    require(qstd_vector32s_constructCopy(&copy, &vectors[22]));
    EXPECT_FALSE(qoc::holdSameElements(copy.core, vectors[22].core));
    std::shuffle(vectors.begin(), vectors.end(), random);
    for (std::size_t i = 0; i < vectors.size(); ++i) {
      const auto values = qoc::viewAs<std::int32_t>(vectors[i]);
      EXPECT_TRUE(std::all_of(values.begin(), values.end(), [&](std::int32_t value) { return value == values[0]; }));
      if (i % 3 == 0) {
        const std::int32_t value = 7;
        require(qstd_vector32s_pushBack(&vectors[i], &value));
        EXPECT_EQ(qoc::viewAs<std::int32_t>(vectors[i]).back(), 7);
      }
      require(qstd_vector32s_destruct(&vectors[i]));
    }
    EXPECT_EQ(qoc::viewAs<std::int32_t>(copy).size(), 22u);
    EXPECT_EQ(qoc::viewAs<std::int32_t>(copy)[0], 22);
    require(qstd_vector32s_destruct(&copy));
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SharedElements, AVectorWithoutMemoryForItsOwnCopyStaysAsItWas) {
  LibraryAllocator allocator;
  const auto first = sharedReading("abc");
  Owned<qoc_ocrDictionaryStringMulti> second;
  require(qoc_ocrDictionaryStringMulti_assign(second, first));
  allocator.failFrom(0);
  EXPECT_LT(qstd_vector_qoc_ocrDictionaryCharMulti_resize(&second->positions, 4), 0);
  qoc_ocrDictionaryCharMulti *element = nullptr;
  EXPECT_LT(qstd_vector_qoc_ocrDictionaryCharMulti_getElement(&second->positions, 0, &element), 0);
  allocator.failFrom(-1);
  EXPECT_TRUE(areEqual(*first, *second));
}

/// Without memory for a block of its own, a vector goes on sharing.
TEST(SharedElements, WritesThatFindNoMemoryChangeNothing) {
  const auto extra = plainReading("z");
  const qoc_ocrDictionaryCharMulti *element = qoc::view(*extra).data();
  const std::vector<std::function<qsys_status(Positions *)>> writes = {
      [](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_resize(p, 5); },
      [](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_reserve(p, 20); },
      [&](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_pushBack(p, element); },
      [&](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_insertElement(p, 1, element); },
      [](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_append(p, p); },
      [](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_eraseElement(p, 0); },
      [](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_popBack(p); },
      [&](Positions *p) { return qstd_vector_qoc_ocrDictionaryCharMulti_assignElements(p, element, 1); },
      [](Positions *p) {
        const auto *second = qoc::viewAs<qoc_ocrDictionaryCharMulti>(*p).data() + 1;
        return qstd_vector_qoc_ocrDictionaryCharMulti_assignElements(p, second, 2);
      },
      [](Positions *p) {
        qoc_ocrDictionaryCharMulti *first = nullptr;
        return qstd_vector_qoc_ocrDictionaryCharMulti_getElement(p, 0, &first);
      },
      [](Positions *p) {
        qoc_ocrDictionaryCharMulti *first = nullptr, *end = nullptr;
        return qstd_vector_qoc_ocrDictionaryCharMulti_getBeginEnd(p, &first, &end);
      },
      [](Positions *p) {
        qoc_ocrDictionaryCharMulti *first = nullptr;
        std::int32_t n = 0;
        return qstd_vector_qoc_ocrDictionaryCharMulti_getBeginSize(p, &first, &n);
      }};
  for (std::size_t i = 0; i < writes.size(); ++i) {
    SCOPED_TRACE(i);
    LibraryAllocator allocator;
    {
      const auto original = plainReading("abc");
      const auto first = sharedReading("abc");
      Owned<qoc_ocrDictionaryStringMulti> second(*first);
      for (std::int64_t n = 0; n < 2; ++n) {
        allocator.fail(n, FaultMode::once);
        const qsys_status status = writes[i](&second->positions);
        const bool hasFailed = allocator.hasFailed();
        allocator.failFrom(-1);
        ASSERT_TRUE(hasFailed);
        EXPECT_EQ(status, QSYS_STATUS_OUT_OF_MEMORY);
        EXPECT_TRUE(areEqual(*second, *original));
        EXPECT_TRUE(areEqual(*first, *original));
      }
    }
    EXPECT_EQ(allocator.numLive(), 0);
  }
}

TEST(SharedElements, AreConstructedAsACopyWithoutAnAllocation) {
  LibraryAllocator allocator;
  {
    const auto first = sharedReading("abc");
    const std::int64_t before = allocator.numAllocations();
    const Owned<qoc_ocrDictionaryStringMulti> second(*first);
    EXPECT_EQ(allocator.numAllocations(), before);
    EXPECT_TRUE(qoc::holdSameElements(first->positions.core, second->positions.core));
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

TEST(SharedElements, StayAsTheyAreWhenTheyAreSharedAgainOrThereAreNone) {
  LibraryAllocator allocator;
  auto shared = sharedReading("abc");
  auto none = plainReading("");
  const std::int64_t before = allocator.numAllocations();
  EXPECT_EQ(qoc::shareElements(shared->positions.core), QSYS_STATUS_OK);
  EXPECT_EQ(qoc::shareElements(none->positions.core), QSYS_STATUS_OK);
  EXPECT_EQ(allocator.numAllocations(), before);
}

TEST(SharedElements, AVectorWithAnAllocatorOfItsOwnGetsCopies) {
  CountingAllocator own;
  const auto shared = sharedReading("abc");
  qoc_ocrDictionaryStringMulti copy;
  require(qstd_vector_qoc_ocrDictionaryCharMulti_constructEmptyWithMtable(&copy.positions, own.table()));
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_assign(&copy, shared), QSYS_STATUS_OK);
  EXPECT_FALSE(qoc::holdSameElements(copy.positions.core, shared->positions.core));
  EXPECT_TRUE(areEqual(copy, *shared));
  EXPECT_EQ(own.numLive(), 1);
  EXPECT_EQ(qoc_ocrDictionaryStringMulti_destruct(&copy), QSYS_STATUS_OK);
  EXPECT_EQ(own.numLive(), 0);
}

/// A pool whose vectors have all gone before it has nobody to leave its block to.
TEST(ElementPool, ReleasesABlockThatNobodyHoldsAnyMore) {
  LibraryAllocator allocator;
  {
    qoc::ElementPool pool;
    Owned<qstd_vector32s> vector;
    const std::int32_t value = 7;
    require(pool.placeCopies(vector->core, &value, 1));
    require(qstd_vector32s_clearAndFreeMemory(vector));
    EXPECT_EQ(allocator.numLive(), 1);
  }
  EXPECT_EQ(allocator.numLive(), 0);
}

}  // namespace
