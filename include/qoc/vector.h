#ifndef QOC_VECTOR_H
#define QOC_VECTOR_H

/** @file The generic vector, and the pattern from which every typed vector family is declared. */

#include <qoc/system.h>

QOC_BEGIN_DECLS

/**
 * How a vector handles one element. An entry that is null treats the element as plain bytes: zeroed, copied, forgotten.
 *
 * Elements may be moved within memory byte by byte (their old place is then forgotten, not destroyed), so an element must not hold
 * its own address.
 */
typedef struct qstd_elementTable {
  qsys_status (*construct)(void *element, const void *unused);
  qsys_status (*constructCopy)(void *element, const void *source);
  qsys_status (*assign)(void *element, const void *source);
  qsys_status (*destruct)(void *element);
  uint32_t flags; /**< 0xFFFFFFFF. */
} qstd_elementTable;

/** Compares two elements: *isEqual becomes 1 or 0. */
typedef qsys_status (*qstd_elementCompareEqual)(const void *a, const void *b, qsys_bool *isEqual);

/** A growing, contiguous sequence of elements of one type. Owns its elements. The fields are the library's. */
typedef struct qstd_vector {
  void *elements;
  int32_t size, capacity;
  uint32_t elementSize;
  const qstd_elementTable *table;
  const qsys_memoryTable *memory; /**< The vector's own allocator; null for the library's. */
} qstd_vector;

/* Each of these has the meaning of the typed member of the same name; see QOC_VECTOR_MEMBERS. */
QOC_API qsys_status qstd_vector__constructWithVtable(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                     const qstd_elementTable *table);
QOC_API qsys_status qstd_vector__constructWithVtableWithMtable(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                               const qstd_elementTable *table,
                                                               const qsys_memoryTable *memory);
QOC_API qsys_status qstd_vector__constructWithVtableUninit(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                           const qstd_elementTable *table);
QOC_API qsys_status qstd_vector__constructFillWithVtable(qstd_vector *vector, int32_t n, uint32_t elementSize,
                                                         const void *element, const qstd_elementTable *table);
QOC_API qsys_status qstd_vector__constructFromBlockWithVtable(qstd_vector *vector, uint32_t elementSize,
                                                              const void *first, int32_t n,
                                                              const qstd_elementTable *table);
QOC_API qsys_status qstd_vector__constructCopy(qstd_vector *vector, const qstd_vector *source);
QOC_API qsys_status qstd_vector__assign(qstd_vector *vector, const qstd_vector *source);
QOC_API qsys_status qstd_vector__assignElements(qstd_vector *vector, const void *first, int32_t n);
QOC_API qsys_status qstd_vector__destruct(qstd_vector *vector);
QOC_API qsys_status qstd_vector__resize(qstd_vector *vector, int32_t n);
QOC_API qsys_status qstd_vector__resizeUninit(qstd_vector *vector, int32_t n);
QOC_API qsys_status qstd_vector__resizeFill(qstd_vector *vector, int32_t n, const void *element);
QOC_API qsys_status qstd_vector__reserve(qstd_vector *vector, int32_t n);
QOC_API qsys_status qstd_vector__getSize32(const qstd_vector *vector, int32_t *n);
QOC_API qsys_status qstd_vector__getCapacity(const qstd_vector *vector, int32_t *n);
QOC_API qsys_status qstd_vector__getElementSize(const qstd_vector *vector, int32_t *size);
QOC_API qsys_status qstd_vector__getBeginEnd(qstd_vector *vector, void **first, void **end);
QOC_API qsys_status qstd_vector__getBeginEndConst(const qstd_vector *vector, const void **first, const void **end);
QOC_API qsys_status qstd_vector__getBeginSize32(qstd_vector *vector, void **first, int32_t *n);
QOC_API qsys_status qstd_vector__getBeginSize32Const(const qstd_vector *vector, const void **first, int32_t *n);
QOC_API qsys_status qstd_vector__getElement(qstd_vector *vector, int32_t index, void **element);
QOC_API qsys_status qstd_vector__getElementConst(const qstd_vector *vector, int32_t index, const void **element);
QOC_API qsys_status qstd_vector__insert(qstd_vector *vector, int32_t position, const void *first, int32_t n);
QOC_API qsys_status qstd_vector__insertElement(qstd_vector *vector, int32_t position, const void *element);
QOC_API qsys_status qstd_vector__erase(qstd_vector *vector, int32_t position, int32_t n);
QOC_API qsys_status qstd_vector__eraseElement(qstd_vector *vector, int32_t position);
QOC_API qsys_status qstd_vector__pushBack(qstd_vector *vector, const void *element);
QOC_API qsys_status qstd_vector__popBack(qstd_vector *vector);
QOC_API qsys_status qstd_vector__clear(qstd_vector *vector);
QOC_API qsys_status qstd_vector__clearAndFreeMemory(qstd_vector *vector);
QOC_API qsys_status qstd_vector__append(qstd_vector *vector, const qstd_vector *other);
QOC_API qsys_status qstd_vector__swap(qstd_vector *vector, qstd_vector *other);
QOC_API qsys_status qstd_vector__compareEqual(const qstd_vector *a, const qstd_vector *b, qsys_bool *isEqual,
                                              qstd_elementCompareEqual compare);

/**
 * The members that every typed family V with elements of type T has, as M(V, member, parameters, core operation, its arguments).
 *
 * construct…     a vector of n default elements, of none, of n elements left uninitialised for the caller to construct, of n copies
 *                of one element, of copies of a block, of copies of another vector; `…WithMtable` with the caller's allocator,
 *                which must outlive the vector. On failure the vector stays unconstructed.
 * assign…        replaces the elements by copies; assigning a vector to itself does nothing.
 * resize…        grows with default elements, with elements left uninitialised, or with copies of one; or shrinks.
 * get…           counts, capacity, element size in bytes, addresses. Addresses stay valid until size or capacity changes; those of
 *                an empty vector may be null. `first` and `end` enclose the elements.
 * insert…        puts copies before the element at `position` (0 to size); erase… removes the elements from `position` on.
 *                Blocks and elements may lie in the vector itself.
 * clear          removes all elements and keeps the storage; clearAndFreeMemory releases it too.
 * append         appends copies of the other vector's elements; the other may be the vector itself.
 * swap           exchanges contents, allocators included.
 *
 * @return 0; QSTD_STATUS_SIZE_INVALID for a negative or impossible count, QSTD_STATUS_INDEX_INVALID for an index, position or
 *         range that does not lie within the vector, QSTD_STATUS_CONTAINER_EMPTY from popBack of an empty one (nothing changes in
 *         these cases); QSYS_STATUS_OUT_OF_MEMORY; or the failure of an element's own operation
 */
#define QOC_VECTOR_MEMBERS(M, V, T)                                                                                    \
  M(V, construct, (V * vector, int32_t n), constructWithVtable, (core(vector), n, sizeof(T), &V##_elementTable))       \
  M(V, constructWithMtable, (V * vector, int32_t n, const qsys_memoryTable *memory), constructWithVtableWithMtable,    \
    (core(vector), n, sizeof(T), &V##_elementTable, memory))                                                           \
  M(V, constructEmpty, (V * vector), constructWithVtable, (core(vector), 0, sizeof(T), &V##_elementTable))             \
  M(V, constructEmptyWithMtable, (V * vector, const qsys_memoryTable *memory), constructWithVtableWithMtable,          \
    (core(vector), 0, sizeof(T), &V##_elementTable, memory))                                                           \
  M(V, constructUninit, (V * vector, int32_t n), constructWithVtableUninit,                                            \
    (core(vector), n, sizeof(T), &V##_elementTable))                                                                   \
  M(V, constructFill, (V * vector, int32_t n, const T *element), constructFillWithVtable,                              \
    (core(vector), n, sizeof(T), element, &V##_elementTable))                                                          \
  M(V, constructFromBlock, (V * vector, const T *first, int32_t n), constructFromBlockWithVtable,                      \
    (core(vector), sizeof(T), first, n, &V##_elementTable))                                                            \
  M(V, constructCopy, (V * vector, const V *source), constructCopy, (core(vector), core(source)))                      \
  M(V, assign, (V * vector, const V *source), assign, (core(vector), core(source)))                                    \
  M(V, assignElements, (V * vector, const T *first, int32_t n), assignElements, (core(vector), first, n))              \
  M(V, destruct, (V * vector), destruct, (core(vector)))                                                               \
  M(V, resize, (V * vector, int32_t n), resize, (core(vector), n))                                                     \
  M(V, resizeUninit, (V * vector, int32_t n), resizeUninit, (core(vector), n))                                         \
  M(V, resizeFill, (V * vector, int32_t n, const T *element), resizeFill, (core(vector), n, element))                  \
  M(V, reserve, (V * vector, int32_t n), reserve, (core(vector), n))                                                   \
  M(V, getSize, (const V *vector, int32_t *n), getSize32, (core(vector), n))                                           \
  M(V, getSize32, (const V *vector, int32_t *n), getSize32, (core(vector), n))                                         \
  M(V, getCapacity, (const V *vector, int32_t *n), getCapacity, (core(vector), n))                                     \
  M(V, getElementSize, (const V *vector, int32_t *size), getElementSize, (core(vector), size))                         \
  M(V, getBeginEnd, (V * vector, T * *first, T * *end), getBeginEnd,                                                   \
    (core(vector), outAddress(first), outAddress(end)))                                                                \
  M(V, getBeginEndConst, (const V *vector, const T **first, const T **end), getBeginEndConst,                          \
    (core(vector), outAddress(first), outAddress(end)))                                                                \
  M(V, getBegin, (V * vector, T * *first), getBeginEnd, (core(vector), outAddress(first), Unwanted<void *>()))         \
  M(V, getBeginConst, (const V *vector, const T **first), getBeginEndConst,                                            \
    (core(vector), outAddress(first), Unwanted<const void *>()))                                                       \
  M(V, getBeginSize, (V * vector, T * *first, int32_t *n), getBeginSize32, (core(vector), outAddress(first), n))       \
  M(V, getBeginSize32, (V * vector, T * *first, int32_t *n), getBeginSize32, (core(vector), outAddress(first), n))     \
  M(V, getBeginSizeConst, (const V *vector, const T **first, int32_t *n), getBeginSize32Const,                         \
    (core(vector), outAddress(first), n))                                                                              \
  M(V, getBeginSize32Const, (const V *vector, const T **first, int32_t *n), getBeginSize32Const,                       \
    (core(vector), outAddress(first), n))                                                                              \
  M(V, getElement, (V * vector, int32_t index, T * *element), getElement, (core(vector), index, outAddress(element)))  \
  M(V, getElementConst, (const V *vector, int32_t index, const T **element), getElementConst,                          \
    (core(vector), index, outAddress(element)))                                                                        \
  M(V, insert, (V * vector, int32_t position, const T *first, int32_t n), insert, (core(vector), position, first, n))  \
  M(V, insertElement, (V * vector, int32_t position, const T *element), insertElement,                                 \
    (core(vector), position, element))                                                                                 \
  M(V, erase, (V * vector, int32_t position, int32_t n), erase, (core(vector), position, n))                           \
  M(V, eraseElement, (V * vector, int32_t position), eraseElement, (core(vector), position))                           \
  M(V, pushBack, (V * vector, const T *element), pushBack, (core(vector), element))                                    \
  M(V, popBack, (V * vector), popBack, (core(vector)))                                                                 \
  M(V, clear, (V * vector), clear, (core(vector)))                                                                     \
  M(V, clearAndFreeMemory, (V * vector), clearAndFreeMemory, (core(vector)))                                           \
  M(V, append, (V * vector, const V *other), append, (core(vector), core(other)))                                      \
  M(V, swap, (V * vector, V * other), swap, (core(vector), core(other)))

#define QOC_DECLARE_VECTOR_MEMBER(V, member, parameters, coreOperation, arguments)                                     \
  QOC_API qsys_status V##_##member parameters;

/** Type checks: calls that compile only for the type, and do nothing. Objects and functions are passed by address. */
#define QOC_DECLARE_TYPE_CHECKS(T)                                                                                     \
  QOC_API void qsys_typeCheck_##T(T object);                                                                           \
  QOC_API void qsys_typeCheckPtr_##T(const T *object);                                                                 \
  QOC_API void qsys_typeCheckFunc_##T(T function(void));                                                               \
  QOC_API void qsys_typeCheckFuncPtr_##T(T (**function)(void));

/** Declares the vector type V of elements T, its members and its type checks. */
#define QOC_DECLARE_VECTOR_FAMILY(V, T)                                                                                \
  typedef struct V {                                                                                                   \
    qstd_vector core;                                                                                                  \
  } V;                                                                                                                 \
  QOC_VECTOR_MEMBERS(QOC_DECLARE_VECTOR_MEMBER, V, T)                                                                  \
  QOC_DECLARE_TYPE_CHECKS(V)

/** Declares V_compareEqual: 1 when the sizes are equal and every pair of elements compares equal. */
#define QOC_DECLARE_VECTOR_COMPARE_EQUAL(V)                                                                            \
  QOC_API qsys_status V##_compareEqual(const V *a, const V *b, qsys_bool *isEqual);

/** Declares the life of an object type: default construction, copies, destruction; all return 0 or a container's failure. */
#define QOC_DECLARE_OBJECT(T)                                                                                          \
  QOC_API qsys_status T##_construct(T *object);                                                                        \
  QOC_API qsys_status T##_constructCopy(T *object, const T *source);                                                   \
  QOC_API qsys_status T##_assign(T *object, const T *source);                                                          \
  QOC_API qsys_status T##_destruct(T *object);                                                                         \
  QOC_DECLARE_TYPE_CHECKS(T)

QOC_END_DECLS

#endif
