#pragma once
// One call of a public function, with arguments of its own.

#include <memory>
#include <string>
#include <vector>

#include "faults/samples.hpp"
#include "support/allocator.hpp"

namespace qoc::test {

/// What the library tells the program in the course of a call. It allocates nothing, so that it does not meet the
/// faults.
struct Heard {
  int numChecks = 0;                         ///< Failed checks.
  int64_t numPolls = 0;                      ///< Polls of the attention.
  int64_t refusedPoll = -1;                  ///< The poll that is refused, counted from 0; -1: none.
  bool isInterrupted = false;                ///< One was.
  int64_t numPrints = 0;                     ///< Pieces of printed text.
  int64_t refusedPrint = -1;                 ///< The piece that is refused, counted from 0; -1: none.
  uint64_t printed = 14695981039346656037u;  ///< A hash of the printed text.
};

inline constexpr qsys_status interruption = -902;
inline constexpr qsys_status printRefusal = -903;

/// Arguments, alive from its construction to its destruction. There is one at a time, and it listens to the library.
class Call {
 public:
  Call(const Function &function, World world, const CountingAllocator &memory);
  ~Call();
  Call(const Call &) = delete;
  Call &operator=(const Call &) = delete;

  /// Calls the function. An object that it constructs or destructs is alive afterwards as the answer says.
  qsys_status run();

  /// Gives an argument a value of the sort that functions refuse: an object as it is constructed, a text that is none,
  /// a number out of range. @return false where the argument has no such value of that number, counted from 0
  bool makeHostile(std::size_t index, std::size_t kind);

  /// Calls the function with null in place of one argument.
  qsys_status runWithNull(std::size_t index);

  /// The values of all arguments, and what was printed: all that a caller could see of the last call.
  std::string describe() const;

  /// Differs when a byte of an argument's own storage differs; what an object owns is the allocator's to tell.
  std::uint64_t fingerprint() const;

  const Heard &heard() const { return heard_; }
  /// Forgets what was heard; the n-th poll from now on will be refused, or the n-th piece of printed text.
  void listen(int64_t refusedPoll = -1, int64_t refusedPrint = -1);

  /// What is wrong with the arguments now that they are not needed any more: nothing, or a sentence.
  std::string finish();

 private:
  struct Argument {
    std::unique_ptr<std::max_align_t[]> storage;
    std::size_t size = 0;
    bool isAlive = false;  ///< A constructed object.
  };

  void install();
  Answer callWith(const std::vector<Value> &values);

  const Function &function_;
  const CountingAllocator &memory_;
  std::vector<Argument> arguments_;
  std::vector<Value> values_;
  int64_t numLiveBefore_;
  Heard heard_;
};

}  // namespace qoc::test
