#pragma once
// Checks that required arguments are there, at the door of every operation.

#include <qoc/system.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace qoc {

/// True when no pointer is null. Otherwise reports the caller's line, once, and the caller is to end with status 0.
inline bool present(std::initializer_list<const void *> arguments, int line = __builtin_LINE()) noexcept {
  for (const void *argument : arguments) {
    if (argument == nullptr) {
      qstd_assert_(line);
      return false;
    }
  }
  return true;
}

}  // namespace qoc

/// Ends the enclosing function with the call's status when that is a failure.
#define QOC_TRY(call)                                        \
  do {                                                       \
    if (const qsys_status qocTried = (call); qocTried < 0) { \
      return qocTried;                                       \
    }                                                        \
  } while (false)

/// QOC_NEVER marks a condition of the library's own that cannot hold, and QOC_SURE a call that cannot fail where it
/// stands; the branch behind it is a second line of defence, and a comment says why nothing leads there. Builds that
/// count coverage leave the branch out, as no test can take it, and end where a call fails all the same;
/// scripts/coverage counts the marks.
#ifdef QOC_COVERAGE
#define QOC_NEVER(condition) (false && (condition))
#define QOC_SURE(call) qoc::succeeds(call)
namespace qoc {
[[gnu::noinline, gnu::no_profile_instrument_function]] inline void succeeds(qsys_status status) noexcept {
  if (status < 0) {
    __builtin_trap();
  }
}
}  // namespace qoc
#else
#define QOC_NEVER(condition) (condition)
#define QOC_SURE(call) QOC_TRY(call)
#endif
