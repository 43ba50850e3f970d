// The library's allocator.

#include <gtest/gtest.h>
#include <qoc/system.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "support/allocator.hpp"
#include "support/owned.hpp"

namespace {

using namespace qoc::test;

TEST(Memory, GivesBlocksAlignedForAnyObject) {
  for (const std::size_t size : {1u, 3u, 16u, 1000u}) {
    void *block = qsys_memory_alloc_internal(size);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u);
    std::memset(block, 0xAB, size);
    qsys_memory_free_internal(block);
  }
}

TEST(Memory, ASizeOfZeroGivesABlockToo) {
  void *block = qsys_memory_alloc_internal(0);
  EXPECT_NE(block, nullptr);
  qsys_memory_free_internal(block);
}

TEST(Memory, NullMayBeFreed) { qsys_memory_free_internal(nullptr); }

TEST(Memory, AnImpossibleSizeGivesNull) { EXPECT_EQ(qsys_memory_alloc_internal(SIZE_MAX / 2 + 1), nullptr); }

TEST(Memory, ATableTakesTheLibrarysAllocations) {
  LibraryAllocator memory;
  void *block = qsys_memory_alloc_internal(10);
  EXPECT_EQ(memory.numLive(), 1);
  qsys_memory_free_internal(block);
  EXPECT_EQ(memory.numLive(), 0);
  EXPECT_EQ(memory.numAllocations(), 1);
}

TEST(Memory, VectorsTakeTheirStorageFromTheTable) {
  LibraryAllocator memory;
  {
    const auto numbers = vectorOf<qstd_vector32s>({1, 2, 3});
    EXPECT_EQ(memory.numLive(), 1);
  }
  EXPECT_EQ(memory.numLive(), 0);
}

TEST(Memory, ANullTableRestoresTheHeap) {
  CountingAllocator memory;
  ASSERT_EQ(qsys_memory_setTable(memory.table()), QSYS_STATUS_OK);
  ASSERT_EQ(qsys_memory_setTable(nullptr), QSYS_STATUS_OK);
  void *block = qsys_memory_alloc_internal(10);
  EXPECT_NE(block, nullptr);
  qsys_memory_free_internal(block);
  EXPECT_EQ(memory.numAllocations(), 0);
}

}  // namespace
