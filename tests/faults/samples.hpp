#pragma once
// Arguments for the functions of the public headers: values that make each of them do its work, and its failures.

#include "faults/interface.hpp"

namespace qoc::test {

/// What the arguments are like. Every function has to succeed in each world but the empty one.
enum class World {
  plain,    ///< Objects with contents; runs that allow edits and keep every result.
  windows,  ///< Longer readings, of which windows are matched; other modes of ranking and of the fielding run.
  empty,    ///< Objects as they are constructed.
};

inline constexpr World allWorlds[] = {World::plain, World::windows, World::empty};
const char *nameOf(World world);

/// Fills a constructed object. Objects of different variants differ where that matters to a function.
void fillSample(const Type &type, void *object, int variant, World world);

/// A constructed and filled object of C's allocator, made once. The allocator of the library, which it leaves aside, is
/// `memory`.
const void *sampleOf(const Type &type, int variant, World world, const qsys_memoryTable *memory);

/// Writes plain values: `count` of them, of which the last is 0 when it is the end of a text.
void fillBlock(const char *typeName, const Type *type, void *block, std::size_t size, int variant);

/// The variant of an object or a block.
int variantFor(const Function &function, std::size_t index);

/// A number.
std::uint64_t numberFor(const Function &function, std::size_t index);

/// Whether the cells that the function writes begin as 0, because it also reads them.
bool readsItsCells(const Function &function);

/// Why an argument may be null; null where it must not.
const char *reasonToBeOptional(const Function &function, std::size_t index);

/// Why the arguments of a function may differ after it ran out of memory; null where they must not.
const char *mayChangeOnFailure(const Function &function);

/// Why the arguments of a function may differ after it refused one of them; null where they must not.
const char *mayChangeOnRefusal(const Function &function);

/// Why a call after a failure may end otherwise than without it; null where it must not.
const char *mayDifferAfterFailure(const Function &function);

/// Why a function is not called with a null argument, or not called in a loop of faults; null where it is.
const char *reasonToSpare(const Function &function);

}  // namespace qoc::test
