#pragma once
// The definition of a typed vector family: every member of the list in vector.h, forwarded to the generic vector.

#include <qoc/containers.h>

#include <cstring>

#include "platform/system/present.hpp"

namespace qoc {

/// How the generic vector handles an element with operations of its own; Construct may be the default constructor only.
template <class T, auto Construct, auto ConstructCopy, auto Assign, auto Destruct>
inline constexpr qstd_elementTable elementTable = {
    [](void *element, const void *) { return Construct(static_cast<T *>(element)); },
    [](void *element, const void *source) {
      return ConstructCopy(static_cast<T *>(element), static_cast<const T *>(source));
    },
    [](void *element, const void *source) { return Assign(static_cast<T *>(element), static_cast<const T *>(source)); },
    [](void *element) { return Destruct(static_cast<T *>(element)); },
    0xFFFFFFFFu};

/// Elements that are plain bytes and 0 by default.
inline constexpr qstd_elementTable plainElementTable = {nullptr, nullptr, nullptr, nullptr, 0xFFFFFFFFu};

/// Elements that are plain bytes but for their default value.
template <class T, auto Construct>
inline constexpr qstd_elementTable plainElementTableWithDefault = {
    [](void *element, const void *) { return Construct(static_cast<T *>(element)); }, nullptr, nullptr, nullptr,
    0xFFFFFFFFu};

/// The generic vector inside a typed one; null for null, so that null is reported in one place.
template <class V>
qstd_vector *core(V *vector) noexcept {
  return vector != nullptr ? &vector->core : nullptr;
}
template <class V>
const qstd_vector *core(const V *vector) noexcept {
  return vector != nullptr ? &vector->core : nullptr;
}

/// An address output: the generic vector writes a void pointer, and the typed one is set on the way out if it did.
template <class T, class Void>
class OutAddress {
 public:
  explicit OutAddress(T **out) noexcept : out_(out) {}
  OutAddress(const OutAddress &) = delete;
  OutAddress &operator=(const OutAddress &) = delete;
  ~OutAddress() {
    if (out_ != nullptr && value_ != &unset) {
      *out_ = static_cast<T *>(value_);
    }
  }
  operator Void **() noexcept { return out_ != nullptr ? &value_ : nullptr; }

 private:
  static inline constexpr char unset = 0;  // Its address stands for "not written"; nobody writes there.
  T **out_;
  Void *value_ = const_cast<char *>(&unset);
};

template <class T>
OutAddress<T, void> outAddress(T **out) noexcept {
  return OutAddress<T, void>(out);
}
template <class T>
OutAddress<const T, const void> outAddress(const T **out) noexcept {
  return OutAddress<const T, const void>(out);
}

/// An address that the member does not hand on.
template <class Pointer>
class Unwanted {
 public:
  operator Pointer *() noexcept { return &value_; }

 private:
  Pointer value_ = nullptr;
};

template <class T, auto Compare>
qsys_status compareElements(const void *a, const void *b, qsys_bool *isEqual) noexcept {
  return Compare(static_cast<const T *>(a), static_cast<const T *>(b), isEqual);
}

template <class T>
qsys_status comparePlainElements(const void *a, const void *b, qsys_bool *isEqual) noexcept {
  *isEqual = std::memcmp(a, b, sizeof(T)) == 0 ? 1 : 0;
  return QSYS_STATUS_OK;
}

}  // namespace qoc

#define QOC_DEFINE_VECTOR_MEMBER(V, member, parameters, coreOperation, arguments) \
  qsys_status V##_##member parameters {                                           \
    using namespace qoc;                                                          \
    return qstd_vector__##coreOperation arguments;                                \
  }

#define QOC_DEFINE_TYPE_CHECKS(T)            \
  void qsys_typeCheck_##T(T) {}              \
  void qsys_typeCheckPtr_##T(const T *) {}   \
  void qsys_typeCheckFunc_##T(T(void)) {}    \
  void qsys_typeCheckFuncPtr_##T(T (**)(void)) {}

/// Defines the family V of elements T, handled by the given element table.
#define QOC_DEFINE_VECTOR_FAMILY(V, T, ...)                      \
  static constexpr auto &V##_elementTable = __VA_ARGS__;         \
  QOC_VECTOR_MEMBERS(QOC_DEFINE_VECTOR_MEMBER, V, T)             \
  QOC_DEFINE_TYPE_CHECKS(V)

/// A family whose elements have operations of their own under the prefix P; their default constructor is P_##Default.
#define QOC_DEFINE_OBJECT_FAMILY(V, T, P, Default) \
  QOC_DEFINE_VECTOR_FAMILY(V, T, (qoc::elementTable<T, P##_##Default, P##_constructCopy, P##_assign, P##_destruct>))

#define QOC_DEFINE_VECTOR_COMPARE_EQUAL(V, compare)                                    \
  qsys_status V##_compareEqual(const V *a, const V *b, qsys_bool *isEqual) {           \
    return qstd_vector__compareEqual(qoc::core(a), qoc::core(b), isEqual, compare);    \
  }
