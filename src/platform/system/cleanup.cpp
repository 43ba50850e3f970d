// The cleanup stack of an operation.

#include "platform/system/present.hpp"

namespace {
thread_local std::uint32_t lastTag = 0;
}

uint32_t qsys_cleanup_getNextTag(void) { return ++lastTag; }

qsys_status qsys_cleanupExecute_(qsys_cleanupEntry *entries, int32_t *count, qsys_status *status, uint32_t /*tag*/) {
  if (!qoc::present({entries, count, status})) {
    return QSYS_STATUS_OK;
  }
  // Last in, first out, so that an object is gone before what it was made of. What is due is settled before any destructor
  // runs: a failing destructor does not turn a finished output into one to be destroyed.
  const bool isFailure = *status < 0;
  for (int32_t i = *count - 1; i >= 0; --i) {
    const bool isDue = entries[i].kind == QSYS_CLEANUP_LOCAL || (entries[i].kind == QSYS_CLEANUP_OUTPUT && isFailure);
    if (isDue) {
      const qsys_status destructed = entries[i].destruct(entries[i].object);
      if (destructed < 0 && *status >= 0) {
        *status = destructed;
      }
    }
  }
  *count = 0;
  return QSYS_STATUS_OK;
}
