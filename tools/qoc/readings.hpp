#pragma once

/// @file What an OCR engine read: text, one reading a line, or NDJSON with scored candidates.

#include "json_input.hpp"
#include "line_reader.hpp"

#include <qoc/base.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qoc::program {

/// One candidate of a position.
struct Candidate {
  Char32 code;
  std::int32_t score; ///< As the library gets it: the given score times 100, rounded.
  Json givenScore;    ///< The score as it came.
};

/// One reading and where it came from.
struct Reading {
  std::string file;       ///< As messages call it.
  std::uint64_t line = 0; ///< From 1.
  Json id;                ///< A string or a number, or null where the input gives none.
  std::vector<std::vector<Candidate>> positions;

  /// The first candidates put together, as UTF-8.
  std::string text() const;
};

enum class ReadingFormat {
  detect, ///< NDJSON where the file's first line begins with "{", else text.
  text,
  ndjson
};

/// The readings of several files, in order, one in memory at a time.
class ReadingSource {
public:
  /// @param paths files; "-" is standard input
  /// @param beforeWait called before each read of a file, which may take long
  ReadingSource(std::vector<std::string> paths, ReadingFormat format, std::function<void()> beforeWait);

  /// Gets the next reading. Throws Trouble "FILE:LINE: …" where the input is faulty.
  /// @return false at the end
  bool next(Reading &reading);

  /// The bytes consumed so far, over all files.
  std::uint64_t numBytes() const { return numFinishedBytes_ + (reader_ ? reader_->numBytes() : 0); }

private:
  bool nextLine();

  std::vector<std::string> paths_;
  ReadingFormat givenFormat_, format_ = ReadingFormat::detect;
  std::function<void()> beforeWait_;
  std::size_t nextPath_ = 0;
  std::unique_ptr<LineReader> reader_;
  std::string line_;
  std::uint64_t numFinishedBytes_ = 0;
};

} // namespace qoc::program
