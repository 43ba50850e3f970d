#pragma once

/// @file How the program's parts tell that they cannot go on.

#include <qoc/base.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace qoc::program {

/// Bad usage, bad input or a failed write. The message says where, what, and what was expected; the program
/// ends with 2.
class Trouble : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The user asked the program to stop.
struct Interrupted {};

/// Turns a failure of the library into an exception: Interrupted where it was one, else Trouble "what: the
/// status's sentence". Takes no memory where it was none, so that what was constructed just before is not lost.
inline void check(qsys_status status, std::string_view what) {
  if (status >= 0) return;
  if (status == QSYS_STATUS_INTERRUPTED) throw Interrupted{};
  throw Trouble(std::string(what) + ": " + qoc_status_getText(status));
}

} // namespace qoc::program
