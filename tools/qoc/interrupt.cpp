#include "interrupt.hpp"

#include "trouble.hpp"

#include <qoc/system.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace qoc::program {
namespace {

std::atomic<std::int32_t> isInterrupted{0};
static_assert(std::atomic<std::int32_t>::is_always_lock_free);
int wakePipe[2] = {-1, -1}; // Becomes readable with the signal, so that none slips in before a wait.

extern "C" void onInterrupt(int) {
  const int saved = errno;
  isInterrupted.store(1);
  const char byte = 0;
  if (write(wakePipe[1], &byte, 1) < 0) {
    // The pipe is full: it is readable, which is all that matters.
  }
  errno = saved;
}

qsys_status onAttention(void *context) {
  const auto &isStopped = *static_cast<const std::atomic<bool> *>(context);
  return isInterrupted.load() != 0 || isStopped.load() ? QSYS_STATUS_INTERRUPTED : 0;
}

} // namespace

InterruptGuard::InterruptGuard() {
  if (pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw Trouble(std::string("cannot make a pipe: ") + std::strerror(errno));
  }
  struct sigaction action {};
  action.sa_handler = onInterrupt;
  action.sa_flags = SA_RESETHAND; // And no SA_RESTART: a blocked open or read ends.
  sigaction(SIGINT, &action, nullptr);
  qsys_attention_setHandler(qsys_attention_flagHandler, &isInterrupted);
}

InterruptGuard::~InterruptGuard() {
  qsys_attention_setHandler(nullptr, nullptr);
  std::signal(SIGINT, SIG_DFL);
  close(wakePipe[0]);
  close(wakePipe[1]);
}

ThreadAttention::ThreadAttention(const std::atomic<bool> &isStopped) {
  // The library hands the context back as it came; the handler only reads it.
  qsys_attention_setHandler(onAttention, const_cast<std::atomic<bool> *>(&isStopped));
}

ThreadAttention::~ThreadAttention() { qsys_attention_setHandler(nullptr, nullptr); }

void checkInterrupt() {
  if (isInterrupted.load() != 0) throw Interrupted{};
  check(qsys_attention_check(), "interrupted");
}

bool isReadable(int descriptor) {
  pollfd wait{descriptor, POLLIN, 0};
  return poll(&wait, 1, 0) > 0;
}

void waitReadable(int descriptor) {
  for (;;) {
    checkInterrupt();
    pollfd waits[2] = {{descriptor, POLLIN, 0}, {wakePipe[0], POLLIN, 0}};
    if (poll(waits, 2, -1) >= 0 && waits[1].revents == 0) return;
    if (errno != EINTR && waits[1].revents == 0) return; // The read that follows tells what is wrong.
  }
}

} // namespace qoc::program
