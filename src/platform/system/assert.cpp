// Reports of failed checks.

#include <qoc/system.h>

#include <cstdio>
#include <mutex>

namespace {

void writeToErrorStream(void * /*context*/, std::int32_t line) {
  std::fprintf(stderr, "qoc: a check failed at line %d\n", static_cast<int>(line));
}

struct AssertHandler {
  qsys_assertHandler handler = writeToErrorStream;
  void *context = nullptr;
};

constinit std::mutex mutex;
constinit AssertHandler current;

}  // namespace

qsys_status qsys_assert_setHandler(qsys_assertHandler handler, void *context) {
  const std::lock_guard lock(mutex);
  current = handler != nullptr ? AssertHandler{handler, context} : AssertHandler{};
  return QSYS_STATUS_OK;
}

void qstd_assert_(int32_t line) {
  AssertHandler report;
  {
    const std::lock_guard lock(mutex);
    report = current;
  }
  report.handler(report.context, line);
}
