#pragma once
// Every public type and function as data, so that a test can go through all of them. The tables are generated from the
// public headers when the tests are built.

#include <qoc/system.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace qoc::test {

struct Type;

/// A field of a record that holds a value, or points to an object that the record owns.
struct Field {
  const char *name;
  std::size_t offset;
  const Type *type;
  bool isOwnedPointer;
};

/// A type of values. A type without a constructor is a scalar: plain bytes.
struct Type {
  const char *name;
  std::size_t size;
  qsys_status (*construct)(void *) = nullptr;
  qsys_status (*constructCopy)(void *, const void *) = nullptr;
  qsys_status (*destruct)(void *) = nullptr;
  const Type *element = nullptr;  ///< Of a vector family.
  qsys_status (*pushBack)(void *, const void *) = nullptr;
  std::span<const Field> fields = {};  ///< Of a record.

  bool isScalar() const { return construct == nullptr; }
};

/// How an argument is made.
enum class Role {
  number,    ///< A value.
  input,     ///< The address of an object that the function only reads.
  object,    ///< The address of an object that it may change.
  block,     ///< The address of plain values that it only reads: a text, an element.
  cell,      ///< The address of a plain value or a pointer that it writes.
  function,  ///< A function of the caller's.
  special,   ///< A table, a stream.
};

struct Parameter {
  const char *name;
  Role role;
  const Type *type;      ///< Of the value, the object or the element of the block; null where that says nothing.
  const char *typeName;  ///< Without const and stars.

  bool isPointer() const { return role != Role::number; }
};

/// An argument: the one that is due by the parameter's role.
struct Value {
  void *pointer = nullptr;
  std::uint64_t number = 0;
  void (*function)() = nullptr;
};

/// What a call gave: 0 where the function returns no status.
struct Answer {
  qsys_status status = QSYS_STATUS_OK;
  void *memory = nullptr;  ///< From a function that allocates.
};

struct Function {
  const char *name;
  Answer (*call)(const Value *);
  std::vector<Parameter> parameters;
};

/// All functions of the public headers, in order of declaration.
std::span<const Function> publicFunctions();

/// All object types of the public headers.
std::span<const Type *const> publicTypes();

/// The type of the name; ends the test program's build-up with an exception where there is none.
const Type &typeNamed(const std::string &name);

}  // namespace qoc::test
