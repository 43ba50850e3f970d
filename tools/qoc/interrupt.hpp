#pragma once

/// @file Ctrl-C, and what asks a program to end: they end the library's work through the attention check, and waiting
/// for input through a pipe.

namespace qoc::program {

/// From its construction to its destruction the first SIGINT, SIGTERM or SIGHUP interrupts cleanly; a second one ends
/// the process as ever. What was told to ignore SIGTERM or SIGHUP goes on doing so.
class InterruptGuard {
public:
  InterruptGuard();
  InterruptGuard(const InterruptGuard &) = delete;
  InterruptGuard &operator=(const InterruptGuard &) = delete;
  ~InterruptGuard();
};

/// While it lives, the library's work in the calling thread ends when a signal has come, or the threads are stopped.
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

/// Throws Interrupted when such a signal has come, or the thread's attention handler says so.
void checkInterrupt();

/// Whether the descriptor can be read without waiting.
bool isReadable(int descriptor);

/// Waits until the descriptor can be read. Throws Interrupted when such a signal comes first.
void waitReadable(int descriptor);

} // namespace qoc::program
