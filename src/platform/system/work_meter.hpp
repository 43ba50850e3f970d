#pragma once
// Polls in loops whose rounds are too short to poll in each.

#include <qoc/system.h>

#include <cstddef>

#include "platform/system/exceptions.hpp"

namespace qoc {

/// After how many units of work a meter of the calling thread asks; a unit is a few nanoseconds. Production code leaves
/// this alone; tests of interrupts make it small, so that small work is asked about, too.
inline std::size_t &unitsPerPoll() noexcept {
  thread_local std::size_t units = 1 << 20;  // A few milliseconds.
  return units;
}

/// Asks for attention once for so many units of work. Small work is never asked about, so that whoever counts an
/// operation's own polls finds these only where there is a reason for them.
class WorkMeter {
 public:
  qsys_status add(std::size_t units) noexcept {
    if (units < left_) {
      left_ -= units;
      return QSYS_STATUS_OK;
    }
    left_ = unitsPerPoll();
    return qsys_attention_check();
  }

  /// The same for work that gives no status: throws Interrupted.
  void spend(std::size_t units) {
    if (const qsys_status status = add(units); status < 0) {
      throw Interrupted{status};
    }
  }

 private:
  std::size_t left_ = unitsPerPoll();  ///< Until the next poll.
};

}  // namespace qoc
