#pragma once
// Exceptions become statuses before they reach the C face.

#include <qoc/base.h>

#include <new>

namespace qoc {

/// Thrown where work that gives no status is interrupted.
struct Interrupted {
  qsys_status status;  ///< What the attention check answered.
};

/// The status of the exception that is being handled: the only ones that can arise come from running out of memory and
/// from interrupts.
inline qsys_status statusOfException() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc &) {
    return QSYS_STATUS_OUT_OF_MEMORY;
  } catch (const Interrupted &interrupted) {
    return interrupted.status;
  } catch (...) {
    return QSYS_STATUS_INTERNAL;
  }
}

/// The status that body() returns, or that of the exception that ends it.
template <class Body>
qsys_status withoutExceptions(Body &&body) noexcept {
  try {
    return body();
  } catch (...) {
    return statusOfException();
  }
}

}  // namespace qoc
