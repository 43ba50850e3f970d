// The generic vector.
//
// Storage is one block of `capacity` elements, the first `size` of which are constructed. Elements are moved byte by
// byte (the table's contract allows it), so growing, inserting and erasing call no element operation but the ones that
// the caller asked for, and cannot fail half-way: what is added is first constructed behind the last element, in the
// new block if one is needed, and only then moved to its place. That also makes it safe to add elements of the vector
// to itself.

#include <qoc/vector.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <utility>

#include "platform/containers/shared_elements.hpp"
#include "platform/system/present.hpp"

namespace {

using qoc::present;

std::byte *at(const qstd_vector &vector, std::int32_t index) {
  return static_cast<std::byte *>(vector.elements) + static_cast<std::size_t>(index) * vector.elementSize;
}

const std::byte *step(const void *first, std::int32_t index, const qstd_vector &vector) {
  return static_cast<const std::byte *>(first) + static_cast<std::size_t>(index) * vector.elementSize;
}

std::size_t numBytes(const qstd_vector &vector, std::int32_t n) {
  return static_cast<std::size_t>(n) * vector.elementSize;
}

/// No object may be larger than a ptrdiff_t can tell, and no size than 32 bits.
std::int64_t largestSize(const qstd_vector &vector) {
  // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): constructWith gives no vector elements without a size.
  const std::int64_t most = PTRDIFF_MAX / std::int64_t{vector.elementSize};
  return std::min<std::int64_t>(std::numeric_limits<std::int32_t>::max(), most);
}

bool isPossibleSize(const qstd_vector &vector, std::int64_t n) { return n >= 0 && n <= largestSize(vector); }

void *allocate(const qstd_vector &vector, std::size_t size) {
  return vector.memory != nullptr ? vector.memory->alloc(vector.memory->context, size)
                                  : qsys_memory_alloc_internal(size);
}

void release(const qstd_vector &vector, void *block) {
  if (block == nullptr) {
    return;
  }
  if (vector.memory != nullptr) {
    vector.memory->free(vector.memory->context, block);
  } else {
    qsys_memory_free_internal(block);
  }
}

/// Destroys elements [first, end); all of them, whatever fails. The first failure is returned.
qsys_status destroy(const qstd_vector &vector, std::int32_t first, std::int32_t end) {
  qsys_status status = QSYS_STATUS_OK;
  if (vector.table->destruct != nullptr) {
    for (std::int32_t i = first; i < end; ++i) {
      const qsys_status destructed = vector.table->destruct(at(vector, i));
      if (destructed < 0 && status >= 0) {
        status = destructed;
      }
    }
  }
  return status;
}

/// What a shared block begins with. In front of a vector's elements in it stands the block's address.
struct SharedBlock {
  std::atomic<std::int64_t> numHolders;
  bool isPool;
};

/// The memory of a vector whose elements lie in a shared block is this mark.
constexpr qsys_memoryTable sharedMemory = {nullptr, nullptr, nullptr};

/// What stands in front of a vector's elements in a shared block: a pointer, and meant as one.
constexpr std::size_t sizeOfLink = sizeof(SharedBlock *);  // NOLINT(bugprone-sizeof-expression)

constexpr std::size_t alignedUp(std::size_t size, std::size_t alignment) {
  return (size + alignment - 1) / alignment * alignment;
}
/// Where elements that several vectors have in common begin.
constexpr std::size_t sizeOfHead = alignedUp(sizeof(SharedBlock) + sizeOfLink, alignof(std::max_align_t));

bool isShared(const qstd_vector &vector) { return vector.memory == &sharedMemory; }

SharedBlock *&blockOf(void *elements) { return static_cast<SharedBlock **>(elements)[-1]; }

/// Whether copies may hold the vector's block, too.
bool isJoinable(const qstd_vector &vector) { return isShared(vector) && !blockOf(vector.elements)->isPool; }

/// Lets go of a shared block, which leaves the vector empty; the last holder destroys the elements.
qsys_status leaveShared(qstd_vector &vector) {
  qsys_status status = QSYS_STATUS_OK;
  SharedBlock *block = blockOf(vector.elements);
  if (block->numHolders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    status = block->isPool ? status : destroy(vector, 0, vector.size);  // Elements of a pool are plain.
    qsys_memory_free_internal(block);
  }
  vector = {nullptr, 0, 0, vector.elementSize, vector.table, nullptr};
  return status;
}

/// Makes a vector another holder of the block of a shared one; whatever it held before is the caller's to destroy.
void joinShared(qstd_vector &vector, const qstd_vector &shared) {
  blockOf(shared.elements)->numHolders.fetch_add(1, std::memory_order_relaxed);
  vector = shared;
}

/// Where added elements come from.
struct Source {
  enum class Kind { defaults, fill, block, uninitialised } kind;
  const void *first = nullptr;
};

/// Constructs n elements at `place`; on failure those that were constructed are destroyed again.
qsys_status constructAt(const qstd_vector &vector, std::byte *place, std::int32_t n, const Source &source) {
  const qstd_elementTable &table = *vector.table;
  const std::size_t size = vector.elementSize;
  if (source.kind == Source::Kind::uninitialised || n == 0) {
    return QSYS_STATUS_OK;
  }
  if (source.kind == Source::Kind::defaults && table.construct == nullptr) {
    std::memset(place, 0, numBytes(vector, n));
    return QSYS_STATUS_OK;
  }
  if (source.kind == Source::Kind::block && table.constructCopy == nullptr) {
    std::memcpy(place, source.first, numBytes(vector, n));
    return QSYS_STATUS_OK;
  }
  for (std::int32_t i = 0; i < n; ++i) {
    std::byte *element = place + static_cast<std::size_t>(i) * size;
    qsys_status status = QSYS_STATUS_OK;
    if (source.kind == Source::Kind::defaults) {
      status = table.construct(element, nullptr);
    } else {
      const void *from = source.kind == Source::Kind::fill ? source.first : step(source.first, i, vector);
      if (table.constructCopy == nullptr) {
        std::memcpy(element, from, size);
      } else {
        status = table.constructCopy(element, from);
      }
    }
    if (status < 0) {
      for (std::int32_t k = 0; k < i && table.destruct != nullptr; ++k) {
        table.destruct(place + static_cast<std::size_t>(k) * size);
      }
      return status;
    }
  }
  return QSYS_STATUS_OK;
}

/// Adds n elements behind the last. Nothing changes on failure.
qsys_status add(qstd_vector &vector, std::int32_t n, const Source &source, bool isExact) {
  const std::int64_t wanted = std::int64_t{vector.size} + n;
  if (n < 0 || !isPossibleSize(vector, wanted)) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  if (wanted <= vector.capacity) {
    QOC_TRY(constructAt(vector, n > 0 ? at(vector, vector.size) : nullptr, n, source));
    vector.size = static_cast<std::int32_t>(wanted);
    return QSYS_STATUS_OK;
  }
  std::int64_t capacity = wanted;
  if (!isExact) {
    // Half as much again makes n additions cost O(n) in all.
    const std::int64_t larger = std::int64_t{vector.capacity} + vector.capacity / 2 + 2;
    capacity = std::max(wanted, std::min(larger, largestSize(vector)));
  }
  const std::size_t blockSize = static_cast<std::size_t>(capacity) * vector.elementSize;
  auto *block = static_cast<std::byte *>(allocate(vector, blockSize));
  if (block == nullptr) {
    return QSYS_STATUS_OUT_OF_MEMORY;
  }
  const qsys_status status = constructAt(vector, block + numBytes(vector, vector.size), n, source);
  if (status < 0) {
    release(vector, block);
    return status;
  }
  if (vector.size > 0) {
    std::memcpy(block, vector.elements, numBytes(vector, vector.size));
  }
  release(vector, vector.elements);
  vector.elements = block;
  vector.capacity = static_cast<std::int32_t>(capacity);
  vector.size = static_cast<std::int32_t>(wanted);
  return QSYS_STATUS_OK;
}

qsys_status own(qstd_vector &vector);

qsys_status setSize(qstd_vector &vector, std::int32_t n, const Source &source) {
  if (!isPossibleSize(vector, n)) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  if (n == 0 && isShared(vector)) {
    return leaveShared(vector);
  }
  QOC_TRY(own(vector));
  if (n > vector.size) {
    return add(vector, n - vector.size, source, true);
  }
  const std::int32_t oldSize = std::exchange(vector.size, n);
  return destroy(vector, n, oldSize);
}

qsys_status constructWith(qstd_vector *vector, std::int32_t n, std::uint32_t elementSize,
                          const qstd_elementTable *table, const qsys_memoryTable *memory, const Source &source) {
  qstd_vector fresh = {nullptr, 0, 0, elementSize != 0 ? elementSize : 1, table, memory};
  QOC_TRY(setSize(fresh, n, source));
  *vector = fresh;
  return QSYS_STATUS_OK;
}

/// Gives a vector whose block is shared a copy of its own.
qsys_status own(qstd_vector &vector) {
  if (!isShared(vector)) {
    return QSYS_STATUS_OK;
  }
  qstd_vector copy;
  QOC_TRY(constructWith(&copy, vector.size, vector.elementSize, vector.table, nullptr,
                        {Source::Kind::block, vector.elements}));
  const qsys_status status = leaveShared(vector);
  vector = copy;
  return status;
}

/// Adds copies of a block, which may lie in the vector itself, behind the last element.
qsys_status addBlock(qstd_vector &vector, std::int32_t n, const void *first) {
  if (!isShared(vector)) {
    return add(vector, n, {Source::Kind::block, first}, false);
  }
  // The block given may be the shared one, which is to be there until it has been copied.
  qstd_vector before;
  joinShared(before, vector);
  qsys_status status = own(vector);
  if (status >= 0) {
    status = add(vector, n, {Source::Kind::block, first}, false);
  }
  const qsys_status left = leaveShared(before);
  return status < 0 ? status : left;
}

qsys_status insertBlock(qstd_vector &vector, std::int32_t position, const void *first, std::int32_t n) {
  if (position < 0 || position > vector.size) {
    return QSTD_STATUS_INDEX_INVALID;
  }
  const std::int32_t oldSize = vector.size;
  QOC_TRY(addBlock(vector, n, first));
  if (n > 0 && position < oldSize) {
    std::rotate(at(vector, position), at(vector, oldSize), at(vector, vector.size));
  }
  return QSYS_STATUS_OK;
}

/// Destroys [position, position + n) and closes the gap.
qsys_status removeRange(qstd_vector &vector, std::int32_t position, std::int32_t n) {
  if (n == vector.size && isShared(vector)) {
    return leaveShared(vector);
  }
  QOC_TRY(own(vector));
  const qsys_status status = destroy(vector, position, position + n);
  const std::int32_t numBehind = vector.size - position - n;
  if (n > 0 && numBehind > 0) {
    std::memmove(at(vector, position), at(vector, position + n), numBytes(vector, numBehind));
  }
  vector.size -= n;
  return status;
}

/// Replaces the elements by copies of a block of n that does not lie in the vector.
qsys_status assignBlock(qstd_vector &vector, const void *first, std::int32_t n) {
  if (isShared(vector)) {
    // Nothing of a block that others hold can be kept. The copy comes first, so that a failure changes nothing.
    qstd_vector copy;
    QOC_TRY(constructWith(&copy, n, vector.elementSize, vector.table, nullptr, {Source::Kind::block, first}));
    const qsys_status status = leaveShared(vector);
    vector = copy;
    return status;
  }
  QOC_TRY(qstd_vector__reserve(&vector, n));  // First, so that plain elements are replaced all or not at all.
  const std::int32_t numKept = std::min(n, vector.size);
  if (vector.table->assign == nullptr) {
    if (numKept > 0) {
      std::memcpy(vector.elements, first, numBytes(vector, numKept));
    }
  } else {
    for (std::int32_t i = 0; i < numKept; ++i) {
      QOC_TRY(vector.table->assign(at(vector, i), step(first, i, vector)));
    }
  }
  if (n < vector.size) {
    return setSize(vector, n, {Source::Kind::defaults});
  }
  return n == numKept ? QSYS_STATUS_OK
                      : add(vector, n - numKept, {Source::Kind::block, step(first, numKept, vector)}, true);
}

bool liesWithin(const qstd_vector &vector, const void *address) {
  const std::less_equal<const void *> notBehind;
  return vector.size > 0 && notBehind(vector.elements, address) && !notBehind(at(vector, vector.size), address);
}

}  // namespace

qsys_status qstd_vector__constructWithVtable(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                             const qstd_elementTable *table) {
  return qstd_vector__constructWithVtableWithMtable(vector, n, elementSize, table, nullptr);
}

qsys_status qstd_vector__constructWithVtableWithMtable(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                       const qstd_elementTable *table, const qsys_memoryTable *memory) {
  if (!present({vector, table})) {
    return QSYS_STATUS_OK;
  }
  return constructWith(vector, n, elementSize, table, memory, {Source::Kind::defaults});
}

qsys_status qstd_vector__constructWithVtableUninit(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                   const qstd_elementTable *table) {
  if (!present({vector, table})) {
    return QSYS_STATUS_OK;
  }
  return constructWith(vector, n, elementSize, table, nullptr, {Source::Kind::uninitialised});
}

qsys_status qstd_vector__constructFillWithVtable(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                 const void *element, const qstd_elementTable *table) {
  if (!present({vector, element, table})) {
    return QSYS_STATUS_OK;
  }
  return constructWith(vector, n, elementSize, table, nullptr, {Source::Kind::fill, element});
}

qsys_status qstd_vector__constructFromBlockWithVtable(qstd_vector *vector, uint32_t elementSize, const void *first,
                                                      int32_t n, const qstd_elementTable *table) {
  if (!present({vector, table}) || (n > 0 && !present({first}))) {
    return QSYS_STATUS_OK;
  }
  return constructWith(vector, n, elementSize, table, nullptr, {Source::Kind::block, first});
}

qsys_status qstd_vector__constructCopy(qstd_vector *vector, const qstd_vector *source) {
  if (!present({vector, source})) {
    return QSYS_STATUS_OK;
  }
  if (isJoinable(*source)) {
    joinShared(*vector, *source);
    return QSYS_STATUS_OK;
  }
  return constructWith(vector, source->size, source->elementSize, source->table, nullptr,
                       {Source::Kind::block, source->elements});
}

qsys_status qstd_vector__assign(qstd_vector *vector, const qstd_vector *source) {
  if (!present({vector, source}) || vector == source) {
    return QSYS_STATUS_OK;
  }
  if (isJoinable(*source) && (vector->memory == nullptr || isShared(*vector))) {
    qstd_vector before = *vector;
    joinShared(*vector, *source);
    return qstd_vector__destruct(&before);
  }
  return assignBlock(*vector, source->elements, source->size);
}

qsys_status qstd_vector__assignElements(qstd_vector *vector, const void *first, int32_t n) {
  if (!present({vector}) || (n > 0 && !present({first}))) {
    return QSYS_STATUS_OK;
  }
  if (!isPossibleSize(*vector, n)) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  if (n > 0 && liesWithin(*vector, first)) {
    qstd_vector copy;
    QOC_TRY(constructWith(&copy, n, vector->elementSize, vector->table, isShared(*vector) ? nullptr : vector->memory,
                          {Source::Kind::block, first}));
    qstd_vector__swap(vector, &copy);
    return qstd_vector__destruct(&copy);
  }
  return assignBlock(*vector, first, n);
}

qsys_status qstd_vector__destruct(qstd_vector *vector) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  return qstd_vector__clearAndFreeMemory(vector);
}

qsys_status qstd_vector__resize(qstd_vector *vector, int32_t n) {
  return present({vector}) ? setSize(*vector, n, {Source::Kind::defaults}) : QSYS_STATUS_OK;
}

qsys_status qstd_vector__resizeUninit(qstd_vector *vector, int32_t n) {
  return present({vector}) ? setSize(*vector, n, {Source::Kind::uninitialised}) : QSYS_STATUS_OK;
}

qsys_status qstd_vector__resizeFill(qstd_vector *vector, int32_t n, const void *element) {
  return present({vector, element}) ? setSize(*vector, n, {Source::Kind::fill, element}) : QSYS_STATUS_OK;
}

qsys_status qstd_vector__reserve(qstd_vector *vector, int32_t n) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  if (!isPossibleSize(*vector, n)) {
    return QSTD_STATUS_SIZE_INVALID;
  }
  if (n <= vector->capacity) {
    return QSYS_STATUS_OK;
  }
  QOC_TRY(own(*vector));
  const std::int32_t size = vector->size;
  QOC_TRY(add(*vector, n - size, {Source::Kind::uninitialised}, true));
  vector->size = size;
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getSize32(const qstd_vector *vector, int32_t *n) {
  if (present({vector, n})) {
    *n = vector->size;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getCapacity(const qstd_vector *vector, int32_t *n) {
  if (present({vector, n})) {
    *n = vector->capacity;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getElementSize(const qstd_vector *vector, int32_t *size) {
  if (present({vector, size})) {
    *size = static_cast<std::int32_t>(vector->elementSize);
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getBeginEnd(qstd_vector *vector, void **first, void **end) {
  if (present({vector, first, end})) {
    QOC_TRY(own(*vector));
    *first = vector->elements;
    *end = vector->size > 0 ? at(*vector, vector->size) : vector->elements;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getBeginEndConst(const qstd_vector *vector, const void **first, const void **end) {
  if (present({vector, first, end})) {
    *first = vector->elements;
    *end = vector->size > 0 ? at(*vector, vector->size) : vector->elements;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getBeginSize32(qstd_vector *vector, void **first, int32_t *n) {
  if (present({vector, first, n})) {
    QOC_TRY(own(*vector));
    *first = vector->elements;
    *n = vector->size;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getBeginSize32Const(const qstd_vector *vector, const void **first, int32_t *n) {
  if (present({vector, first, n})) {
    *first = vector->elements;
    *n = vector->size;
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getElement(qstd_vector *vector, int32_t index, void **element) {
  if (!present({vector, element})) {
    return QSYS_STATUS_OK;
  }
  if (index < 0 || index >= vector->size) {
    return QSTD_STATUS_INDEX_INVALID;
  }
  QOC_TRY(own(*vector));
  *element = at(*vector, index);
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__getElementConst(const qstd_vector *vector, int32_t index, const void **element) {
  if (!present({vector, element})) {
    return QSYS_STATUS_OK;
  }
  if (index < 0 || index >= vector->size) {
    return QSTD_STATUS_INDEX_INVALID;
  }
  *element = at(*vector, index);
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__insert(qstd_vector *vector, int32_t position, const void *first, int32_t n) {
  if (!present({vector}) || (n > 0 && !present({first}))) {
    return QSYS_STATUS_OK;
  }
  return insertBlock(*vector, position, first, n);
}

qsys_status qstd_vector__insertElement(qstd_vector *vector, int32_t position, const void *element) {
  return present({vector, element}) ? insertBlock(*vector, position, element, 1) : QSYS_STATUS_OK;
}

qsys_status qstd_vector__erase(qstd_vector *vector, int32_t position, int32_t n) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  if (n < 0 || position < 0 || std::int64_t{position} + n > vector->size) {
    return QSTD_STATUS_INDEX_INVALID;
  }
  return removeRange(*vector, position, n);
}

qsys_status qstd_vector__eraseElement(qstd_vector *vector, int32_t position) {
  return qstd_vector__erase(vector, position, 1);
}

qsys_status qstd_vector__pushBack(qstd_vector *vector, const void *element) {
  return present({vector, element}) ? addBlock(*vector, 1, element) : QSYS_STATUS_OK;
}

qsys_status qstd_vector__popBack(qstd_vector *vector) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  return vector->size == 0 ? QSTD_STATUS_CONTAINER_EMPTY : removeRange(*vector, vector->size - 1, 1);
}

qsys_status qstd_vector__clear(qstd_vector *vector) {
  return present({vector}) ? removeRange(*vector, 0, vector->size) : QSYS_STATUS_OK;
}

qsys_status qstd_vector__clearAndFreeMemory(qstd_vector *vector) {
  if (!present({vector})) {
    return QSYS_STATUS_OK;
  }
  if (isShared(*vector)) {
    return leaveShared(*vector);
  }
  const qsys_status status = removeRange(*vector, 0, vector->size);
  release(*vector, std::exchange(vector->elements, nullptr));
  vector->capacity = 0;
  return status;
}

qsys_status qstd_vector__append(qstd_vector *vector, const qstd_vector *other) {
  if (!present({vector, other})) {
    return QSYS_STATUS_OK;
  }
  return addBlock(*vector, other->size, other->elements);
}

qsys_status qstd_vector__swap(qstd_vector *vector, qstd_vector *other) {
  if (present({vector, other})) {
    std::swap(*vector, *other);
  }
  return QSYS_STATUS_OK;
}

qsys_status qstd_vector__compareEqual(const qstd_vector *a, const qstd_vector *b, qsys_bool *isEqual,
                                      qstd_elementCompareEqual compare) {
  if (!present({a, b, isEqual, reinterpret_cast<const void *>(compare)})) {
    return QSYS_STATUS_OK;
  }
  *isEqual = a->size == b->size ? 1 : 0;
  for (std::int32_t i = 0; i < a->size && *isEqual != 0; ++i) {
    QOC_TRY(compare(at(*a, i), at(*b, i), isEqual));
  }
  return QSYS_STATUS_OK;
}

qsys_status qoc::shareElements(qstd_vector &vector) noexcept {
  if (isShared(vector) || vector.size == 0) {
    return QSYS_STATUS_OK;  // No elements need no block.
  }
  auto *block = static_cast<std::byte *>(qsys_memory_alloc_internal(sizeOfHead + numBytes(vector, vector.size)));
  if (block == nullptr) {
    return QSYS_STATUS_OUT_OF_MEMORY;
  }
  auto *elements = block + sizeOfHead;
  blockOf(elements) = new (block) SharedBlock{1, false};
  std::memcpy(elements, vector.elements, numBytes(vector, vector.size));
  release(vector, vector.elements);
  vector.elements = elements;
  vector.capacity = vector.size;
  vector.memory = &sharedMemory;
  return QSYS_STATUS_OK;
}

namespace {

/// More holders than there will ever be: an open block of a pool counts them, and settles when it is closed.
constexpr std::int64_t numHoldersOfOpen = std::int64_t{1} << 62;

}  // namespace

qoc::ElementPool::~ElementPool() { close(); }

void qoc::ElementPool::close() noexcept {
  if (block_ != nullptr) {
    const std::int64_t numUnused = numHoldersOfOpen - numPlaced_;
    if (reinterpret_cast<SharedBlock *>(block_)->numHolders.fetch_sub(numUnused, std::memory_order_acq_rel) ==
        numUnused) {
      qsys_memory_free_internal(block_);
    }
    block_ = nullptr;
  }
  numPlaced_ = 0;
}

qsys_status qoc::ElementPool::place(qstd_vector &vector, std::int32_t n, void *&elements) noexcept {
  elements = nullptr;
  if (n <= 0) {
    return QSYS_STATUS_OK;
  }
  const std::size_t needed = sizeOf(static_cast<std::size_t>(n), vector.elementSize);
  if (block_ == nullptr || needed > size_ - used_) {
    close();
    used_ = alignedUp(sizeof(SharedBlock), sizeOfLink);
    size_ = used_ + std::max(blockSize_, needed);
    blockSize_ = mostBytes;  // What goes beyond the bytes that were expected is not known.
    block_ = static_cast<std::byte *>(qsys_memory_alloc_internal(size_));
    if (block_ == nullptr) {
      return QSYS_STATUS_OUT_OF_MEMORY;
    }
    new (block_) SharedBlock{numHoldersOfOpen, true};
  }
  elements = block_ + used_ + sizeOfLink;
  blockOf(elements) = reinterpret_cast<SharedBlock *>(block_);
  used_ += needed;
  ++numPlaced_;
  vector.elements = elements;
  vector.size = vector.capacity = n;
  vector.memory = &sharedMemory;
  return QSYS_STATUS_OK;
}

qsys_status qoc::ElementPool::placeCopies(qstd_vector &vector, const void *first, std::int32_t n) noexcept {
  void *elements = nullptr;
  QOC_TRY(place(vector, n, elements));
  if (elements != nullptr) {
    std::memcpy(elements, first, numBytes(vector, n));
  }
  return QSYS_STATUS_OK;
}
