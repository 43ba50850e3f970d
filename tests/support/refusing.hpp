#pragma once
// Vectors whose elements fail to be destroyed, as elements of a program's own may.

#include "support/owned.hpp"

namespace qoc::test {

/// What the destructor of a refusing element answers.
inline constexpr qsys_status refusal = -77;

/// A typed vector of elements that the library knows nothing of but that their destructor fails.
template <class V, class Element>
class Refusing {
 public:
  Refusing() {
    static constexpr qstd_elementTable table = {nullptr, nullptr, nullptr, [](void *) { return refusal; }, 0xFFFFFFFFu};
    require(qstd_vector__constructWithVtable(&vector_.core, 2, sizeof(Element), &table));
  }
  ~Refusing() { qstd_vector__destruct(&vector_.core); }
  Refusing(const Refusing &) = delete;
  Refusing &operator=(const Refusing &) = delete;

  operator V *() { return &vector_; }
  int32_t size() const { return vector_.core.size; }

 private:
  V vector_;
};

}  // namespace qoc::test
