#pragma once
// What every operation does with its arguments and with the statuses of its calls.

#include <qoc/system.h>

#include <array>
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

/// The first failure among the statuses of calls that are all made, in order, such as the destructors of the fields of
/// a record; 0 without one.
inline qsys_status firstFailure(std::initializer_list<qsys_status> statuses) noexcept {
  for (const qsys_status status : statuses) {
    if (status < 0) {
      return status;
    }
  }
  return QSYS_STATUS_OK;
}

}  // namespace qoc

/// Ends the enclosing function with the call's status when that is a failure. Calls that cannot fail need none: what is
/// empty takes no memory, and neither do emptying, swapping and destroying what the library made itself.
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
/// Ends the program, by an exception that gets no further, where a call failed; no branch of its own.
inline void succeeds(qsys_status status) noexcept {
  static_cast<void>(std::array<char, 1>().at(static_cast<std::size_t>(status < 0)));
}
}  // namespace qoc
#else
#define QOC_NEVER(condition) (condition)
#define QOC_SURE(call) QOC_TRY(call)
#endif
