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

/// While it lives, the library's work in the calling thread ends when SIGINT has come, or the threads are stopped.
class ThreadAttention {
public:
  ThreadAttention();
  ThreadAttention(const ThreadAttention &) = delete;
  ThreadAttention &operator=(const ThreadAttention &) = delete;
  ~ThreadAttention();
};

/// Ends the library's work in all threads that have a ThreadAttention, until they may work again.
void stopThreads();
void letThreadsWork();

/// Throws Interrupted when SIGINT has come, or the thread's attention handler says so.
void checkInterrupt();

/// Whether the descriptor can be read without waiting.
bool isReadable(int descriptor);

/// Waits until the descriptor can be read. Throws Interrupted when SIGINT comes first.
void waitReadable(int descriptor);

} // namespace qoc::program
