#pragma once
// Polls in loops whose rounds are too short to poll in each.

#include <qoc/system.h>

#include <cstddef>

#include "platform/system/exceptions.hpp"

namespace qoc {

/// Asks for attention once for so many units of work; a unit is a few nanoseconds. Small work is never asked about, so
/// that whoever counts an operation's own polls finds these only where there is a reason for them.
class WorkMeter {
 public:
  qsys_status add(std::size_t units) noexcept {
    done_ += units;
    if (done_ < unitsPerPoll) {
      return QSYS_STATUS_OK;
    }
    done_ = 0;
    return qsys_attention_check();
  }

  /// The same for work that gives no status: throws Interrupted.
  void spend(std::size_t units) {
    if (const qsys_status status = add(units); status < 0) {
      throw Interrupted{status};
    }
  }

 private:
  static constexpr std::size_t unitsPerPoll = 1 << 20;  // A few milliseconds.
  std::size_t done_ = 0;
};

}  // namespace qoc
