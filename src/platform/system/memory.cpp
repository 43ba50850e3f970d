// The library's allocator.

#include <qoc/system.h>

#include <atomic>
#include <cstdlib>

namespace {

void *allocateFromHeap(void * /*context*/, std::size_t size) { return std::malloc(size != 0 ? size : 1); }
void freeToHeap(void * /*context*/, void *block) { std::free(block); }

constexpr qsys_memoryTable heap = {allocateFromHeap, freeToHeap, nullptr};
constinit std::atomic<const qsys_memoryTable *> current{&heap};

}  // namespace

qsys_status qsys_memory_setTable(const qsys_memoryTable *table) {
  current.store(table != nullptr ? table : &heap);
  return QSYS_STATUS_OK;
}

void *qsys_memory_alloc_internal(size_t size) {
  const qsys_memoryTable *table = current.load(std::memory_order_relaxed);
  return table->alloc(table->context, size);
}

void qsys_memory_free_internal(void *block) {
  if (block != nullptr) {
    const qsys_memoryTable *table = current.load(std::memory_order_relaxed);
    table->free(table->context, block);
  }
}
