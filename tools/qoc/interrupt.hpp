#pragma once

/// @file Ctrl-C: it ends the library's work through the attention check, and waiting for input through a pipe.

namespace qoc::program {

/// From its construction to its destruction the first SIGINT interrupts cleanly; a second one ends the process as ever.
class InterruptGuard {
public:
  InterruptGuard();
  InterruptGuard(const InterruptGuard &) = delete;
  InterruptGuard &operator=(const InterruptGuard &) = delete;
  ~InterruptGuard();
};

/// Throws Interrupted when the thread's attention handler says so: when SIGINT has come.
void checkInterrupt();

/// Waits until the descriptor can be read. Throws Interrupted when SIGINT comes first.
void waitReadable(int descriptor);

} // namespace qoc::program
