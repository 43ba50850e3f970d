#pragma once

/// @file What an OCR engine read: text, one reading a line; NDJSON with scored candidates; and what engines write
/// themselves.

#include "json_input.hpp"
#include "line_reader.hpp"

#include <qoc/base.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qoc::program {

class PageDocument;

/// One candidate of a position.
struct Candidate {
  Char32 code;
  std::int32_t score; ///< As the library gets it: the given score times 100, rounded.
  JsonScalar givenScore; ///< The score as it came.
};

/// Makes a candidate, or throws Trouble where the character or the score is refused.
/// @param place what messages start with
Candidate makeCandidate(Char32 code, double score, const std::string &place);

/// A rectangle on the page, in the engine's units, y downwards.
struct Box {
  double left = 0, top = 0, right = 0, bottom = 0;
};

/// As left, top, right and bottom, whole numbers without a fraction.
std::array<JsonScalar, 4> describeBox(const Box &box);

/// One reading and where it came from.
// NOLINTNEXTLINE(bugprone-exception-escape): what moves here does not throw, which clang-tidy cannot see of JsonScalar.
struct Reading {
  std::string file;       ///< As messages call it.
  std::uint64_t line = 0; ///< From 1.
  JsonScalar id;          ///< A string or a number, or null where the input gives none.
  std::vector<std::vector<Candidate>> positions;

  std::optional<Box> box;                ///< Of the whole reading.
  std::vector<std::optional<Box>> boxes; ///< One for each position, or none at all.
  std::string image;                     ///< The picture's file; empty where the input names none.
  JsonScalar truth;                      ///< What stood there, as a string, where the input says so; else null.
  JsonScalar kind;                       ///< What sort of text it is, likewise.

  std::shared_ptr<PageDocument> document; ///< The document it came from; null where there is none.
  std::size_t indexInDocument = 0;

  /// The first candidates put together, as UTF-8.
  std::string text() const;
  /// "FILE:LINE".
  std::string place() const { return file + ":" + std::to_string(line); }
  /// How people call the reading: its id where it has one, else its line.
  std::string name() const;
};

/// The path of a file that another one names, where relative ones start at that one's directory.
std::string pathBeside(const std::string &naming, const std::string &path);

enum class ReadingFormat {
  detect, ///< By content.
  text,
  ndjson,
  hocr,
  tsv,
  alto,
  page
};

/// Every format that can be named: its name, and what it is.
struct ReadingFormatName {
  const char *name;
  ReadingFormat format;
  const char *meaning;
};
inline constexpr ReadingFormatName readingFormats[] = {
    {"text", ReadingFormat::text, "a reading a line"},
    {"ndjson", ReadingFormat::ndjson, "a JSON object a line with \"positions\" or \"text\""},
    {"hocr", ReadingFormat::hocr, "hOCR, with character boxes and choices where it has them"},
    {"tsv", ReadingFormat::tsv, "the table that Tesseract writes"},
    {"alto", ReadingFormat::alto, "ALTO, with glyphs and variants where it has them"},
    {"page", ReadingFormat::page, "PAGE XML, with glyphs and their alternatives where it has them"},
};

/// What of a page is one reading.
enum class ReadingUnit { line, word };

/// How readings are to be taken from their files.
struct ReadingOptions {
  ReadingFormat format = ReadingFormat::detect;
  ReadingUnit unit = ReadingUnit::line;
};

/// Reads one format from a file, reading by reading.
class FormatReader {
public:
  FormatReader() = default;
  FormatReader(const FormatReader &) = delete;
  FormatReader &operator=(const FormatReader &) = delete;
  virtual ~FormatReader() = default;
  /// Gets the next reading into one that is empty but for its file. @return false at the end
  virtual bool next(Reading &reading) = 0;
};

/// Reads the table of words that Tesseract writes. @param lines has given the head, its first line
std::unique_ptr<FormatReader> readTsv(LineReader &lines, ReadingUnit unit);
/// Whether a file's first line is the head of such a table.
bool isTsvHead(std::string line);

/// The readings of several files, in order, one file's lines or one document in memory at a time.
class ReadingSource {
public:
  /// @param paths files; "-" is standard input
  /// @param beforeWait called before a read of a file that has to wait
  ReadingSource(std::vector<std::string> paths, ReadingOptions options, std::function<void()> beforeWait);

  /// Gets the next reading. Throws Trouble "FILE:LINE: …" where the input is faulty.
  /// @return false at the end
  bool next(Reading &reading);

  /// Called with every document as it has been read, before its first reading is given.
  void onDocument(std::function<void(std::shared_ptr<PageDocument>)> call) { onDocument_ = std::move(call); }

  /// The bytes consumed so far, over all files.
  std::uint64_t numBytes() const { return numFinishedBytes_ + (lines_ ? lines_->numBytes() : 0); }

private:
  void open(const std::string &path);

  std::vector<std::string> paths_;
  ReadingOptions options_;
  std::function<void()> beforeWait_;
  std::function<void(std::shared_ptr<PageDocument>)> onDocument_;
  std::size_t nextPath_ = 0;
  std::unique_ptr<LineReader> lines_;
  std::unique_ptr<FormatReader> reader_;
  std::uint64_t numFinishedBytes_ = 0;
};

} // namespace qoc::program
