#pragma once

/// @file Matching readings with a dictionary file.

#include "dictionary_file.hpp"
#include "options.hpp"
#include "output.hpp"

namespace qoc::program {

/// What is done with the dictionary and each reading.
struct Task {
  /// Makes the command line's changes to the dictionary file's parameters; throws Trouble where it cannot go on.
  void (*prepare)(const Options &options, DictionaryFile &file);
  /// Matches a reading. @param where the reading's place, for messages
  void (*match)(const Options &options, const DictionaryFile &file, const MultiString &reading,
                const std::string &where, Answer &answer);
};

/// The dictionary's entries, each matched with the reading.
extern const Task matchTask;
/// The same, and the one text that the reading is taken for.
extern const Task runTask;
/// The dictionary's lines, into which the reading is forced.
extern const Task fitTask;

/// Matches readings one after the other; each thread has one of its own, on one dictionary.
class Matcher {
public:
  /// @param options and `file` outlive the matcher; the dictionary does not change meanwhile
  Matcher(const Options &options, const Task &task, const DictionaryFile &file)
      : options_(options), task_(task), file_(file) {}

  /// Matches a reading. The answer stays until the next call.
  const Answer &match(const Reading &reading) {
    setReading(reading, !file_.lines().empty(), multi_, answer_.leftOut);
    task_.match(options_, file_, multi_, reading.place(), answer_);
    return answer_;
  }

private:
  const Options &options_;
  const Task &task_;
  const DictionaryFile &file_;
  MultiString multi_;
  Answer answer_;
};

} // namespace qoc::program
