#pragma once
// Whether a machine can compute with registers of 32 bytes.

#include <cstdint>

namespace qoc {

/// What a processor answers to a question about itself.
struct ProcessorAnswer {
  unsigned a, b, c, d;
};

/// Machine answers a question by ask(number, answer), false where it does not know it, and by savedRegisters() which
/// kinds of registers the system keeps for a program; the latter may be asked only where an answer says so.
template <class Machine>
bool hasWideRegisters(const Machine &machine) {
  constexpr unsigned tellsSavedRegisters = 1u << 27;
  constexpr std::uint64_t wideRegisters = 6;
  constexpr unsigned computesWithIntegers = 1u << 5;
  ProcessorAnswer answer = {};
  return machine.ask(1, answer) && (answer.c & tellsSavedRegisters) != 0 &&
         (machine.savedRegisters() & wideRegisters) == wideRegisters && machine.ask(7, answer) &&
         (answer.b & computesWithIntegers) != 0;
}

}  // namespace qoc
