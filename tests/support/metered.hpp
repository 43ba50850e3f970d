#pragma once
// Meters of long loops that poll often, so that interrupts reach every one of them.

#include "platform/system/work_meter.hpp"

namespace qoc::test {

/// As long as it lives, the meters that the calling thread makes ask for attention after so many units of work.
class PollingMeters {
 public:
  explicit PollingMeters(std::size_t units) : before_(unitsPerPoll()) { unitsPerPoll() = units; }
  ~PollingMeters() { unitsPerPoll() = before_; }
  PollingMeters(const PollingMeters &) = delete;
  PollingMeters &operator=(const PollingMeters &) = delete;

 private:
  std::size_t before_;
};

}  // namespace qoc::test
