#ifndef QOC_SYSTEM_H
#define QOC_SYSTEM_H

/** @file System services: clean-up, attention (interrupts), assertions, printing, memory. */

#include <qoc/base.h>

QOC_BEGIN_DECLS

/** What an operation registers of an object that it has constructed. */
typedef struct qsys_cleanupEntry {
  uint32_t sequence;                /**< Order of registration within one operation. */
  uint32_t kind;                    /**< 34: output, destroyed only after a failure; 50: local, always destroyed. */
  void *object;                     /**< The object. */
  qsys_status (*destruct)(void *);  /**< Its destructor. */
} qsys_cleanupEntry;

#define QSYS_CLEANUP_OUTPUT 34u
#define QSYS_CLEANUP_LOCAL 50u

/** A fresh tag for the clean-up frame of one operation. @return the tag; tags of one thread repeat after 2^32 calls */
QOC_API uint32_t qsys_cleanup_getNextTag(void);

/**
 * Destroys the registered objects that are due, last registered first, and empties the list.
 *
 * @param[in]     entries the entries, *count of them
 * @param[in,out] count   their number; 0 afterwards
 * @param[in,out] status  the operation's status: when negative, outputs are due too, and it stays; when it is a success, the first
 *                        failure of a destructor replaces it
 * @param[in]     tag     the frame's tag
 * @return 0
 */
QOC_API qsys_status qsys_cleanupExecute_(qsys_cleanupEntry *entries, int32_t *count, qsys_status *status, uint32_t tag);

/** A program's answer to "shall the work go on": 0 or more to go on, negative to end it with that status. */
typedef qsys_status (*qsys_attentionHandler)(void *context);

/** Installs what qsys_attention_check asks in the calling thread; a null handler removes it. The context stays the caller's. */
QOC_API qsys_status qsys_attention_setHandler(qsys_attentionHandler handler, void *context);

/** Gives the calling thread's handler and context, both null where none is installed. */
QOC_API qsys_status qsys_attention_getHandler(qsys_attentionHandler *handler, void **context);

/** Asks the calling thread's handler. @return 0 to go on (also without a handler), or the handler's negative status */
QOC_API qsys_status qsys_attention_check(void);

/** A ready handler: the context is a `volatile int32_t` (or `std::atomic<int32_t>`), interrupted while it is not 0. */
QOC_API qsys_status qsys_attention_flagHandler(void *context);

/** A ready handler: the context is a const uint64_t, a time of qsys_attention_getTimeNs after which work is interrupted. */
QOC_API qsys_status qsys_attention_deadlineHandler(void *context);

/** Nanoseconds of a clock that never runs backwards, for deadlines. */
QOC_API uint64_t qsys_attention_getTimeNs(void);

/** What a program does about a failed check at a line of the library. */
typedef void (*qsys_assertHandler)(void *context, int32_t line);

/** Installs what reports do, for the whole process; null restores the default, a line on the error stream. */
QOC_API qsys_status qsys_assert_setHandler(qsys_assertHandler handler, void *context);

/** Reports that the check at a source line failed. It returns; nothing in the library stops the process. */
QOC_API void qstd_assert_(int32_t line);

/** Takes the library's printed text, `size` bytes, not zero-terminated. @return negative when it could not be written */
typedef qsys_status (*qsys_printHandler)(void *context, const char *text, size_t size);

/** Installs where the calling thread's printed forms go; null restores the default, standard output. */
QOC_API qsys_status qsys_print_setHandler(qsys_printHandler handler, void *context);

/**
 * Prints in the manner of C's printf, to standard output or to the calling thread's print handler.
 *
 * @return 0, QSYS_STATUS_PRINT_FAILED, QSYS_STATUS_OUT_OF_MEMORY, or the handler's negative status
 */
QOC_API qsys_status qsys_printfA(const char *format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/** An allocator. `alloc` gives memory aligned for any object, or null; `free` takes what `alloc` gave. */
typedef struct qsys_memoryTable {
  void *(*alloc)(void *context, size_t size);
  void (*free)(void *context, void *block);
  void *context;
} qsys_memoryTable;

/**
 * Replaces the library's allocator for the whole process; null restores C's malloc and free.
 *
 * To be called while no object of the library is alive and no other thread is inside it. The table must outlive its use.
 */
QOC_API qsys_status qsys_memory_setTable(const qsys_memoryTable *table);

/** Allocates memory from the library's allocator. @return the block, or null; a size of 0 gives a block too */
QOC_API void *qsys_memory_alloc_internal(size_t size);

/** Frees a block of qsys_memory_alloc_internal; null is allowed. */
QOC_API void qsys_memory_free_internal(void *block);

QOC_END_DECLS

#endif
