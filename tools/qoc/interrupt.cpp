#include "interrupt.hpp"

#include "trouble.hpp"

#include <qoc/system.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <iterator>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace qoc::program {
namespace {

// The library is given flags rather than a handler of the program's own, which it would ask every single time.
std::atomic<std::int32_t> isInterrupted{0};
std::atomic<std::int32_t> areThreadsStopped{0}; // By the signal, too.
static_assert(std::atomic<std::int32_t>::is_always_lock_free);
constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};
struct sigaction before[std::size(endingSignals)]; // What each of them did without the guard.
int wakePipe[2] = {-1, -1}; // Becomes readable with the signal, so that none slips in before a wait.

extern "C" void onInterrupt(int) {
  const int saved = errno;
  isInterrupted.store(1);
  areThreadsStopped.store(1);
  const char byte = 0;
  if (write(wakePipe[1], &byte, 1) < 0) {
    // The pipe is full: it is readable, which is all that matters.
  }
  errno = saved;
}

} // namespace

InterruptGuard::InterruptGuard() {
  if (pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw Trouble(std::string("cannot make a pipe: ") + std::strerror(errno));
  }
  struct sigaction action {};
  action.sa_handler = onInterrupt;
  action.sa_flags = static_cast<int>(SA_RESETHAND); // And no SA_RESTART: a blocked open or read ends.
  for (std::size_t i = 0; i < std::size(endingSignals); ++i) {
    sigaction(endingSignals[i], &action, &before[i]);
    // nohup asks for a program that outlives its terminal.
    if (endingSignals[i] != SIGINT && before[i].sa_handler == SIG_IGN) std::signal(endingSignals[i], SIG_IGN);
  }
  qsys_attention_setHandler(qsys_attention_flagHandler, &isInterrupted);
}

InterruptGuard::~InterruptGuard() {
  qsys_attention_setHandler(nullptr, nullptr);
  for (std::size_t i = 0; i < std::size(endingSignals); ++i) sigaction(endingSignals[i], &before[i], nullptr);
  close(wakePipe[0]);
  close(wakePipe[1]);
}

ThreadAttention::ThreadAttention() { qsys_attention_setHandler(qsys_attention_flagHandler, &areThreadsStopped); }

ThreadAttention::~ThreadAttention() { qsys_attention_setHandler(nullptr, nullptr); }

void stopThreads() { areThreadsStopped.store(1); }

void letThreadsWork() {
  areThreadsStopped.store(0);
  if (isInterrupted.load() != 0) areThreadsStopped.store(1);
}

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
