#include "faults/interface.hpp"

#include <qoc/ocr_dictionary.h>

#include <stdexcept>

namespace qoc::test {

namespace {

constexpr qstd_elementTable plainElements = {nullptr, nullptr, nullptr, nullptr, 0xFFFFFFFFu};

qsys_status constructCoreVector(void *object) {
  return qstd_vector__constructWithVtable(static_cast<qstd_vector *>(object), 0, 4, &plainElements);
}

qsys_status copyCoreVector(void *object, const void *source) {
  return qstd_vector__constructCopy(static_cast<qstd_vector *>(object), static_cast<const qstd_vector *>(source));
}

/// The answer of a function that allocates: null is its way to say that there is no memory.
Answer ofMemory(void *block) { return {block != nullptr ? QSYS_STATUS_OK : QSYS_STATUS_OUT_OF_MEMORY, block}; }

}  // namespace

// The print function is called with a format alone, which clang warns of.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#include "interface.inc"
#pragma GCC diagnostic pop

std::span<const Function> publicFunctions() { return allFunctions; }

std::span<const Type *const> publicTypes() { return allTypes; }

const Type &typeNamed(const std::string &name) {
  for (const Type *type : allTypes) {
    if (name == type->name) {
      return *type;
    }
  }
  throw std::invalid_argument("no public type is named " + name);
}

}  // namespace qoc::test
